<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Cio message</name>
    <message>
        <source>Hit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Functions and exits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Calls</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Statement blocks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Implicit blocks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decisions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loops</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Asynchronous transfer block</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Basic conditions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modified conditions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Multiple conditions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forced modified conditions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forced multiple conditions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>n/a</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>For modified conditions, previous tests are taken into account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>For modified conditions, previous tests and services are taken into account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>For modified conditions, previous services are taken into account</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Coverage analysis : nothing was hit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Error</name>
    <message>
        <source>Error unlocking transaction</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot open file :%1
</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reason is : %1
</source>
        <comment>%1 is a system message</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File is currently in use.
  Please break
      or wait until previous task has finished
      or remove file: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File is now available</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>User break.
  File is still in use.
  Please wait until previous task has finished
      or remove file: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to create DataBase file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to write in DataBase file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable write in DataBase file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to create TPM file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to write in Index file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to write fail in Index file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to close Index file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable close DataBase file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to read index file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reposition in DataBase file fail</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to read DataBase file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to open DataBase file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to close DataBase</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to update DataBase file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to open index file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to update Index File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to allocate memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>VELDA_TPM_ROOT is not set!</source>
        <comment>VELDA_TPM_ROOT is an environment variable name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>VELDA_TPM_ROOT directory does not exist: %1</source>
        <comment>%1 is a directory name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to get User name
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Too many measure sub values</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Error Display</name>
    <message>
        <source>%1 - Test Process Monitor: %2
</source>
        <comment>%1 is the product name; %2 the error message</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Fatal Error</name>
    <message>
        <source>Errors in command line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot create output file %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot create flow output file %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is nothing to report ... report is empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot create CIO file %1</source>
        <comment>%1 is the name of the cio file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No current test number in file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No current service number in file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write to file %1</source>
        <comment>%1 is the name of the cleaned tio file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot open trace file %1</source>
        <comment>%1 is the name of the trace file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown opcode in trace file %1</source>
        <comment>%1 is the name of the trace file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No DC line in TIO file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DC line missing after FT line in TIO file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Incorrect traces in %1 (branch hit outside of any file-part)</source>
        <comment>%1 is the name of the incorrect trace file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Maybe this Coverage Trace file has been generated using an older version of the Deplonix</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad hexadecimal number while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No memory left</source>
        <comment>program failed on memory allocation</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write to file %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Internal Error</name>
    <message>
        <source>Cannot get service name in GetServiceAuth()</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad bigramme in AddTioBranch()</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ident is too big in AddTioBranch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No entry point in proc</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please, contact your support</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Merged test</name>
    <message>
        <source>Merged test</source>
        <comment>The test name to display for a set of merged tests</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>User Error</name>
    <message>
        <source>a source object was not linked with the right runtime object (check instrumentation mode)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a composition of conditions evaluates in an unexpected result, contact your vendor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a composition of conditions reached with an unexpected input vector, contact your vendor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown error opcode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not a valid Code Coverage trace file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number overflow while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>User Info</name>
    <message>
        <source>Creating annotated listing of %1</source>
        <comment>%1 is the corresponding source file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Appending annotated listing of %1</source>
        <comment>%1 is the corresponding source file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Parts of traces do not match any listed FDC files; such parts are ignored</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>User Warning</name>
    <message>
        <source>Use of -SUMMARY=CONCLUSION and -FILE is inconsistent, -FILE is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File %1 with path in -FILE list; path ignored</source>
        <comment>%1 is the file with a path</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file %1 appears twice in -FILE list</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION and -EXFILE is inconsistent, -EXFILE is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File %1 with path in -EXFILE list; path ignored</source>
        <comment>%1 is the file with a path</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file %1 appears twice in -EXFILE list</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION|FILE and -SERVICE is inconsistent, -SERVICE is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service %1 appears twice in -SERVICE list</source>
        <comment>%1 is the name of the service</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION|FILE and -EXSERVICE is inconsistent, -EXSERVICE is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service %1 appears twice in -EXSERVICE list</source>
        <comment>%1 is the name of the service</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use of -GLOBAL and -TEST is inconsistent, -TEST is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The test %1 appears twice in -TEST list</source>
        <comment>%1 is the name of the test</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use of -GLOBAL and -EXTEST is inconsistent, -EXTEST is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The test %1 appears twice in -EXTEST list</source>
        <comment>%1 is the name of the test</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>-MERGETESTS cannot be used without -CLEAN, -MERGETESTS is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use of -SUMMARY and -BRANCH is inconsistent, -BRANCH is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Some unexecuted branches do not come from file %1, they are copied at the end of listing file.</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot create annotated listing %1</source>
        <comment>%1 is the name of the listing file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot create annotated listing, source file %1 not found</source>
        <comment>%1 is the name of the source file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File %1 in -FILE option is not in source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File %1 in -EXFILE option is not in source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Service %1 in -SERVICE option is unknown in selected source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Service %1 in -EXSERVICE option is unknown in selected source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Test %1 in -TEST option was unknown in trace file list</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Test %1 in -EXTEST option was unknown in trace file list</source>
        <comment>%1 is the name of the file</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No traces in argument list; generating report showing all branches</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Selected test list is empty; generating conclusion only</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Some traces are count-oriented and others are not, count is ignored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error detected during execution:
-&gt; %1</source>
        <comment>%1 is the message of the error</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>fdcL-Assertion</name>
    <message>
        <source>Bad expression in CalculVector()</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot find condition in current procedure</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot add a couple of vectors</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot retrieve correctly basic condition text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad attempt to validate FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad attempt to free FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad attempt to close FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Attempt to open unnamed FDC file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>fdcL-Error</name>
    <message>
        <source>Bad composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad number of basic condition in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad number of cases in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad cases or expression in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad frontier for a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot calculate modified conditions without composition</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>src-file name in FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>src-file directory in FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>entity name in FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>calling function in FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>called function in FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enclosing entity in FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>label in FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Multiple input in procedure %1</source>
        <comment>%1 is a procedure name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown tpr type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown tb type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown bigramme %1 in FDC file %2</source>
        <comment>%1 is the text, %2 a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No data in FDC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FDC file without any version string: %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 has been generated with an incompatible version of the product: %2</source>
        <comment>%1 is a file name, %2 a version</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FDC file without any token string: %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad or missing FC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad or missing FD in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Garbage at the end of FD line in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad or missing TC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad or missing TC information in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown coverage type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad FDC file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bad or missing DC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Garbage at the end of DC line checksum in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot find instrumentation ID for specified trace in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot retrieve correctly %1 %2</source>
        <comment>%1 is a message, %2 a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Empty %1 %2</source>
        <comment>%1 is a message, %2 a file name</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>fdcL-Info</name>
    <message>
        <source>Computing modified conditions from %1compound conditions, it can take a few minutes ...</source>
        <comment>%1 is a number</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 contains redundant static information; it is ignored</source>
        <comment>%1 is a fdc file name</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>fdcL-Warning</name>
    <message>
        <source>Procedures coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Procedures and outputs coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Calls coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Simple blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Implicit blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Logical blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Asynchronous transfer blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Basic conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modified conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compound conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source file touched after instrumentation: %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Older version of src file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None of requested coverage types will be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot open file %1</source>
        <comment>%1 is a file name</comment>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
