<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CAB</name>
    <message>
        <source>Arg value too small,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Arg value too large,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Arg length too small,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Arg length too large,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Too many arguments invalid argument,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List forbidden invalid argument,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown option,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid character following option,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An option can&apos;t be used twice,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mandatory argument for this option,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No argument for this option,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List forbidden invalid option,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Argument missing,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ambiguous option,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown value of option,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ambiguous value of option,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Illegal combination of command elements,</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Command analysis: No memory left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Command analysis</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Internal error, bad option name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>and</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Orbis(R)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Command-line</name>
    <message>
        <source>
Usage veldacov:
&lt;file&gt;[,file]
	[-PROC[=&lt;RET&gt;]]
	[-NOPROC]
	[-CALL|-NOCALL]
	[-BLOCK[=&lt;IMPLICIT|DECISION|LOGICAL|ATC&gt;]]
	[-NOBLOCK]
	[-COND[=&lt;MODIFIED|COMPOUND&gt;]]
	[-NOCOND]
	[-OUTPUT=&lt;file&gt;]
	[-LISTING[=&lt;directory&gt;]]
	[-GLOBAL|-NOGLOBAL]
	[-CLEAN=&lt;newtiofile&gt;]
	[-MERGETESTS]
	[-BRANCH=&lt;NOCOV|COV&gt;]
	[-SUMMARY=&lt;SERVICE|FILE|CONCLUSION&gt;]
	[-FILE=&lt;file&gt;[,file]]
	[-EXFILE=&lt;file&gt;[,file]]
	[-SERVICE=&lt;name&gt;[,name]]
	[-EXSERVICE=&lt;name&gt;[,name]]
	[-TEST=&lt;test&gt;[,test]]
	[-EXTEST=&lt;test&gt;[,test]]
	[-CIO=&lt;file&gt;]
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
