<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Cio message</name>
    <message>
        <source>Hit</source>
        <translation>Hit</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>no</source>
        <translation>no</translation>
    </message>
    <message>
        <source>Functions and exits</source>
        <translation>Functions and exits</translation>
    </message>
    <message>
        <source>Calls</source>
        <translation>Calls</translation>
    </message>
    <message>
        <source>Statement blocks</source>
        <translation>Statement blocks</translation>
    </message>
    <message>
        <source>Implicit blocks</source>
        <translation>Implicit blocks</translation>
    </message>
    <message>
        <source>Decisions</source>
        <translation>Decisions</translation>
    </message>
    <message>
        <source>Loops</source>
        <translation>Loops</translation>
    </message>
    <message>
        <source>Asynchronous transfer block</source>
        <translation>Asynchronous transfer block</translation>
    </message>
    <message>
        <source>Basic conditions</source>
        <translation>Basic conditions</translation>
    </message>
    <message>
        <source>Modified conditions</source>
        <translation>Modified conditions</translation>
    </message>
    <message>
        <source>Multiple conditions</source>
        <translation>Multiple conditions</translation>
    </message>
    <message>
        <source>Forced modified conditions</source>
        <translation>Forced modified conditions</translation>
    </message>
    <message>
        <source>Forced multiple conditions</source>
        <translation>Forced multiple conditions</translation>
    </message>
    <message>
        <source>none</source>
        <translation>none</translation>
    </message>
    <message>
        <source>n/a</source>
        <translation>n/a</translation>
    </message>
    <message>
        <source>For modified conditions, previous tests are taken into account</source>
        <translation>For modified conditions, previous tests are taken into account</translation>
    </message>
    <message>
        <source>For modified conditions, previous tests and services are taken into account</source>
        <translation>For modified conditions, previous tests and services are taken into account</translation>
    </message>
    <message>
        <source>For modified conditions, previous services are taken into account</source>
        <translation>For modified conditions, previous services are taken into account</translation>
    </message>
    <message>
        <source>Coverage analysis : nothing was hit</source>
        <translation>Coverage analysis : nothing was hit</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
</context>
<context>
    <name>Error</name>
    <message>
        <source>Error unlocking transaction</source>
        <translation>Fehler beim Entsperren der Transaktion</translation>
    </message>
    <message>
        <source>Cannot open file :%1
</source>
        <comment>%1 is a file name</comment>
        <translation>Datei kann nicht geöffnet werden: %1
</translation>
    </message>
    <message>
        <source>Reason is : %1
</source>
        <comment>%1 is a system message</comment>
        <translation>Ursache: %1
</translation>
    </message>
    <message>
        <source>File is currently in use.
  Please break
      or wait until previous task has finished
      or remove file: %1</source>
        <translation>Datei wird gerade verwendet.
  Bitte abbrechen
      oder das Ende des vorherigen Vorgangs abwarten
      oder die Datei entfernen: %1</translation>
    </message>
    <message>
        <source>File is now available</source>
        <translation>Datei ist jetzt verfügbar</translation>
    </message>
    <message>
        <source>User break.
  File is still in use.
  Please wait until previous task has finished
      or remove file: %1</source>
        <translation>Benutzerabbruch.
  Datei wird noch verwendet.
  Bitte das Ende des vorherigen Vorgangs abwarten
      oder die Datei entfernen: %1</translation>
    </message>
    <message>
        <source>Unable to create DataBase file</source>
        <translation>Datenbankdatei kann nicht erstellt werden</translation>
    </message>
    <message>
        <source>Unable to write in DataBase file</source>
        <translation>In Datenbankdatei kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Unable write in DataBase file</source>
        <translation>Schreiben in Datenbankdatei nicht möglich</translation>
    </message>
    <message>
        <source>Unable to create TPM file</source>
        <translation>TPM-Datei kann nicht erstellt werden</translation>
    </message>
    <message>
        <source>Unable to write in Index file</source>
        <translation>In Indexdatei kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Unable to write fail in Index file</source>
        <translation>Schreiben in Indexdatei fehlgeschlagen</translation>
    </message>
    <message>
        <source>Unable to close Index file</source>
        <translation>Indexdatei kann nicht geschlossen werden</translation>
    </message>
    <message>
        <source>Unable close DataBase file</source>
        <translation>Datenbankdatei kann nicht geschlossen werden</translation>
    </message>
    <message>
        <source>Unable to read index file</source>
        <translation>Indexdatei kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Reposition in DataBase file fail</source>
        <translation>Positionieren in Datenbankdatei fehlgeschlagen</translation>
    </message>
    <message>
        <source>Unable to read DataBase file</source>
        <translation>Datenbankdatei kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Unable to open DataBase file</source>
        <translation>Datenbankdatei kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Unable to close DataBase</source>
        <translation>Datenbank kann nicht geschlossen werden</translation>
    </message>
    <message>
        <source>Unable to update DataBase file</source>
        <translation>Datenbankdatei kann nicht aktualisiert werden</translation>
    </message>
    <message>
        <source>Unable to open index file</source>
        <translation>Indexdatei kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Unable to update Index File</source>
        <translation>Indexdatei kann nicht aktualisiert werden</translation>
    </message>
    <message>
        <source>Unable to allocate memory</source>
        <translation>Speicher kann nicht reserviert werden</translation>
    </message>
    <message>
        <source>VELDA_TPM_ROOT is not set!</source>
        <comment>VELDA_TPM_ROOT is an environment variable name</comment>
        <translation>VELDA_TPM_ROOT ist nicht gesetzt!</translation>
    </message>
    <message>
        <source>VELDA_TPM_ROOT directory does not exist: %1</source>
        <comment>%1 is a directory name</comment>
        <translation>In VELDA_TPM_ROOT angegebenes Verzeichnis existiert nicht: %1</translation>
    </message>
    <message>
        <source>Unable to get User name
</source>
        <translation>Benutzername kann nicht ermittelt werden
</translation>
    </message>
    <message>
        <source>Too many measure sub values</source>
        <translation>Zu viele Teilwerte eines Messwertes</translation>
    </message>
</context>
<context>
    <name>Error Display</name>
    <message>
        <source>%1 - Test Process Monitor: %2
</source>
        <comment>%1 is the product name; %2 the error message</comment>
        <translation>%1 - Testprozess-Monitor: %2
</translation>
    </message>
</context>
<context>
    <name>Fatal Error</name>
    <message>
        <source>Errors in command line</source>
        <translation>Fehler in der Befehlszeile</translation>
    </message>
    <message>
        <source>Cannot create output file %1</source>
        <translation>Ausgabedatei %1 kann nicht erstellt werden</translation>
    </message>
    <message>
        <source>Cannot create flow output file %1</source>
        <translation>Ablauf-Ausgabedatei %1 kann nicht erstellt werden</translation>
    </message>
    <message>
        <source>There is nothing to report ... report is empty</source>
        <translation>Es gibt nichts zu berichten ... der Bericht ist leer</translation>
    </message>
    <message>
        <source>Cannot create CIO file %1</source>
        <comment>%1 is the name of the cio file</comment>
        <translation>CIO-Datei %1 kann nicht erstellt werden</translation>
    </message>
    <message>
        <source>No current test number in file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation>Keine aktuelle Testnummer in Datei %1</translation>
    </message>
    <message>
        <source>No current service number in file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation>Keine aktuelle Servicenummer in Datei %1</translation>
    </message>
    <message>
        <source>Cannot write to file %1</source>
        <comment>%1 is the name of the cleaned tio file</comment>
        <translation>In Datei %1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Cannot open trace file %1</source>
        <comment>%1 is the name of the trace file</comment>
        <translation>Trace-Datei %1 kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Unknown opcode in trace file %1</source>
        <comment>%1 is the name of the trace file</comment>
        <translation>Unbekannter Opcode in Trace-Datei %1</translation>
    </message>
    <message>
        <source>No DC line in TIO file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation>Keine DC-Zeile in TIO-Datei %1</translation>
    </message>
    <message>
        <source>DC line missing after FT line in TIO file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation>DC-Zeile fehlt hinter FT-Zeile in TIO-Datei %1</translation>
    </message>
    <message>
        <source>Incorrect traces in %1 (branch hit outside of any file-part)</source>
        <comment>%1 is the name of the incorrect trace file</comment>
        <translation>Fehlerhafte Traces in %1 (Zweigtreffer außerhalb aller Dateiabschnitte)</translation>
    </message>
    <message>
        <source>Maybe this Coverage Trace file has been generated using an older version of the Deplonix</source>
        <translation>Diese Trace-Datei der Codeüberdeckung wurde möglicherweise mit einer älteren Version von Deplonix erzeugt</translation>
    </message>
    <message>
        <source>Bad hexadecimal number while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Ungültige Hexadezimalzahl beim Lesen der Datei %1</translation>
    </message>
    <message>
        <source>No memory left</source>
        <comment>program failed on memory allocation</comment>
        <translation>Kein Speicher mehr verfügbar</translation>
    </message>
    <message>
        <source>Cannot write to file %1</source>
        <translation>In Datei %1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Cannot read file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Datei %1 kann nicht gelesen werden</translation>
    </message>
</context>
<context>
    <name>Internal Error</name>
    <message>
        <source>Cannot get service name in GetServiceAuth()</source>
        <translation>Servicename kann in GetServiceAuth() nicht ermittelt werden</translation>
    </message>
    <message>
        <source>Bad bigramme in AddTioBranch()</source>
        <translation>Ungültiges Bigramm in AddTioBranch()</translation>
    </message>
    <message>
        <source>Ident is too big in AddTioBranch</source>
        <translation>Kennung zu groß in AddTioBranch</translation>
    </message>
    <message>
        <source>No entry point in proc</source>
        <translation>Kein Eintrittspunkt in Prozedur</translation>
    </message>
    <message>
        <source>Please, contact your support</source>
        <translation>Bitte an den Support wenden</translation>
    </message>
</context>
<context>
    <name>Merged test</name>
    <message>
        <source>Merged test</source>
        <comment>The test name to display for a set of merged tests</comment>
        <translation>Merged test</translation>
    </message>
</context>
<context>
    <name>User Error</name>
    <message>
        <source>a source object was not linked with the right runtime object (check instrumentation mode)</source>
        <translation>ein Quellobjekt wurde nicht mit dem richtigen Laufzeitobjekt gebunden (Instrumentierungsmodus prüfen)</translation>
    </message>
    <message>
        <source>a composition of conditions evaluates in an unexpected result, contact your vendor</source>
        <translation>eine Bedingungsverknüpfung liefert ein unerwartetes Ergebnis, bitte an den Anbieter wenden</translation>
    </message>
    <message>
        <source>a composition of conditions reached with an unexpected input vector, contact your vendor</source>
        <translation>eine Bedingungsverknüpfung wurde mit einem unerwarteten Eingabevektor erreicht, bitte an den Anbieter wenden</translation>
    </message>
    <message>
        <source>unknown error opcode</source>
        <translation>unbekannter Fehler-Opcode</translation>
    </message>
    <message>
        <source>%1 is not a valid Code Coverage trace file</source>
        <translation>%1 ist keine gültige Trace-Datei der Codeüberdeckung</translation>
    </message>
    <message>
        <source>Number overflow while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Zahlenüberlauf beim Lesen der Datei %1</translation>
    </message>
</context>
<context>
    <name>User Info</name>
    <message>
        <source>Creating annotated listing of %1</source>
        <comment>%1 is the corresponding source file name</comment>
        <translation>Annotiertes Listing von %1 wird erstellt</translation>
    </message>
    <message>
        <source>Appending annotated listing of %1</source>
        <comment>%1 is the corresponding source file name</comment>
        <translation>Annotiertes Listing von %1 wird angehängt</translation>
    </message>
    <message>
        <source>Parts of traces do not match any listed FDC files; such parts are ignored</source>
        <translation>Abschnitte der Traces passen zu keiner der angegebenen FDC-Dateien; solche Abschnitte werden ignoriert</translation>
    </message>
</context>
<context>
    <name>User Warning</name>
    <message>
        <source>Use of -SUMMARY=CONCLUSION and -FILE is inconsistent, -FILE is ignored</source>
        <translation>Gleichzeitige Verwendung von -SUMMARY=CONCLUSION und -FILE ist widersprüchlich, -FILE wird ignoriert</translation>
    </message>
    <message>
        <source>File %1 with path in -FILE list; path ignored</source>
        <comment>%1 is the file with a path</comment>
        <translation>Datei %1 mit Pfad in der Liste von -FILE; der Pfad wird ignoriert</translation>
    </message>
    <message>
        <source>The file %1 appears twice in -FILE list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Datei %1 kommt in der Liste von -FILE zweimal vor</translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION and -EXFILE is inconsistent, -EXFILE is ignored</source>
        <translation>Gleichzeitige Verwendung von -SUMMARY=CONCLUSION und -EXFILE ist widersprüchlich, -EXFILE wird ignoriert</translation>
    </message>
    <message>
        <source>File %1 with path in -EXFILE list; path ignored</source>
        <comment>%1 is the file with a path</comment>
        <translation>Datei %1 mit Pfad in der Liste von -EXFILE; der Pfad wird ignoriert</translation>
    </message>
    <message>
        <source>The file %1 appears twice in -EXFILE list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Datei %1 kommt in der Liste von -EXFILE zweimal vor</translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION|FILE and -SERVICE is inconsistent, -SERVICE is ignored</source>
        <translation>Gleichzeitige Verwendung von -SUMMARY=CONCLUSION|FILE und -SERVICE ist widersprüchlich, -SERVICE wird ignoriert</translation>
    </message>
    <message>
        <source>The service %1 appears twice in -SERVICE list</source>
        <comment>%1 is the name of the service</comment>
        <translation>Service %1 kommt in der Liste von -SERVICE zweimal vor</translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION|FILE and -EXSERVICE is inconsistent, -EXSERVICE is ignored</source>
        <translation>Gleichzeitige Verwendung von -SUMMARY=CONCLUSION|FILE und -EXSERVICE ist widersprüchlich, -EXSERVICE wird ignoriert</translation>
    </message>
    <message>
        <source>The service %1 appears twice in -EXSERVICE list</source>
        <comment>%1 is the name of the service</comment>
        <translation>Service %1 kommt in der Liste von -EXSERVICE zweimal vor</translation>
    </message>
    <message>
        <source>Use of -GLOBAL and -TEST is inconsistent, -TEST is ignored</source>
        <translation>Gleichzeitige Verwendung von -GLOBAL und -TEST ist widersprüchlich, -TEST wird ignoriert</translation>
    </message>
    <message>
        <source>The test %1 appears twice in -TEST list</source>
        <comment>%1 is the name of the test</comment>
        <translation>Test %1 kommt in der Liste von -TEST zweimal vor</translation>
    </message>
    <message>
        <source>Use of -GLOBAL and -EXTEST is inconsistent, -EXTEST is ignored</source>
        <translation>Gleichzeitige Verwendung von -GLOBAL und -EXTEST ist widersprüchlich, -EXTEST wird ignoriert</translation>
    </message>
    <message>
        <source>The test %1 appears twice in -EXTEST list</source>
        <comment>%1 is the name of the test</comment>
        <translation>Test %1 kommt in der Liste von -EXTEST zweimal vor</translation>
    </message>
    <message>
        <source>-MERGETESTS cannot be used without -CLEAN, -MERGETESTS is ignored</source>
        <translation>-MERGETESTS kann nicht ohne -CLEAN verwendet werden, -MERGETESTS wird ignoriert</translation>
    </message>
    <message>
        <source>Use of -SUMMARY and -BRANCH is inconsistent, -BRANCH is ignored</source>
        <translation>Gleichzeitige Verwendung von -SUMMARY und -BRANCH ist widersprüchlich, -BRANCH wird ignoriert</translation>
    </message>
    <message>
        <source>Some unexecuted branches do not come from file %1, they are copied at the end of listing file.</source>
        <comment>%1 is the name of the file</comment>
        <translation>Einige nicht ausgeführte Zweige stammen nicht aus Datei %1, sie werden an das Ende der Listing-Datei kopiert.</translation>
    </message>
    <message>
        <source>Cannot create annotated listing %1</source>
        <comment>%1 is the name of the listing file</comment>
        <translation>Annotiertes Listing %1 kann nicht erstellt werden</translation>
    </message>
    <message>
        <source>Cannot create annotated listing, source file %1 not found</source>
        <comment>%1 is the name of the source file</comment>
        <translation>Annotiertes Listing kann nicht erstellt werden, Quelldatei %1 nicht gefunden</translation>
    </message>
    <message>
        <source>File %1 in -FILE option is not in source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Datei %1 der Option -FILE ist nicht in der Liste der Quelldateien</translation>
    </message>
    <message>
        <source>File %1 in -EXFILE option is not in source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Datei %1 der Option -EXFILE ist nicht in der Liste der Quelldateien</translation>
    </message>
    <message>
        <source>Service %1 in -SERVICE option is unknown in selected source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Service %1 der Option -SERVICE ist in der Liste der ausgewählten Quelldateien unbekannt</translation>
    </message>
    <message>
        <source>Service %1 in -EXSERVICE option is unknown in selected source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Service %1 der Option -EXSERVICE ist in der Liste der ausgewählten Quelldateien unbekannt</translation>
    </message>
    <message>
        <source>Test %1 in -TEST option was unknown in trace file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Test %1 der Option -TEST ist in der Liste der Trace-Dateien unbekannt</translation>
    </message>
    <message>
        <source>Test %1 in -EXTEST option was unknown in trace file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Test %1 der Option -EXTEST ist in der Liste der Trace-Dateien unbekannt</translation>
    </message>
    <message>
        <source>No traces in argument list; generating report showing all branches</source>
        <translation>Keine Traces in der Argumentliste; Bericht mit allen Zweigen wird erstellt</translation>
    </message>
    <message>
        <source>Selected test list is empty; generating conclusion only</source>
        <translation>Liste der ausgewählten Tests ist leer; nur das Gesamtergebnis (Conclusion) wird erstellt</translation>
    </message>
    <message>
        <source>Some traces are count-oriented and others are not, count is ignored</source>
        <translation>Einige Traces enthalten Zählerwerte, andere nicht; die Zählerwerte werden ignoriert</translation>
    </message>
    <message>
        <source>Error detected during execution:
-&gt; %1</source>
        <comment>%1 is the message of the error</comment>
        <translation>Fehler während der Ausführung erkannt:
-&gt; %1</translation>
    </message>
</context>
<context>
    <name>fdcL-Assertion</name>
    <message>
        <source>Bad expression in CalculVector()</source>
        <translation>Fehlerhafter Ausdruck in CalculVector()</translation>
    </message>
    <message>
        <source>Cannot find condition in current procedure</source>
        <translation>Bedingung in aktueller Prozedur nicht gefunden</translation>
    </message>
    <message>
        <source>Cannot add a couple of vectors</source>
        <translation>Vektorpaar kann nicht hinzugefügt werden</translation>
    </message>
    <message>
        <source>Cannot retrieve correctly basic condition text</source>
        <translation>Nicht korrekt lesbare Angabe: Text der einfachen Bedingung</translation>
    </message>
    <message>
        <source>Bad attempt to validate FDC file</source>
        <translation>Unzulässiger Versuch, eine FDC-Datei zu prüfen</translation>
    </message>
    <message>
        <source>Bad attempt to free FDC file</source>
        <translation>Unzulässiger Versuch, eine FDC-Datei freizugeben</translation>
    </message>
    <message>
        <source>Bad attempt to close FDC file</source>
        <translation>Unzulässiger Versuch, eine FDC-Datei zu schließen</translation>
    </message>
    <message>
        <source>Attempt to open unnamed FDC file</source>
        <translation>Versuch, eine FDC-Datei ohne Namen zu öffnen</translation>
    </message>
</context>
<context>
    <name>fdcL-Error</name>
    <message>
        <source>Bad composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fehlerhafte Bedingungsverknüpfung in Datei %1</translation>
    </message>
    <message>
        <source>Bad number of basic condition in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Ungültige Anzahl einfacher Bedingungen einer Bedingungsverknüpfung in Datei %1</translation>
    </message>
    <message>
        <source>Bad number of cases in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Ungültige Anzahl von Fällen einer Bedingungsverknüpfung in Datei %1</translation>
    </message>
    <message>
        <source>Bad cases or expression in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fehlerhafte Fälle oder fehlerhafter Ausdruck einer Bedingungsverknüpfung in Datei %1</translation>
    </message>
    <message>
        <source>Bad frontier for a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Ungültige Grenze einer Bedingungsverknüpfung in Datei %1</translation>
    </message>
    <message>
        <source>Cannot calculate modified conditions without composition</source>
        <translation>Modifizierte Bedingungen können ohne Bedingungsverknüpfung nicht berechnet werden</translation>
    </message>
    <message>
        <source>src-file name in FDC file</source>
        <translation>Name der Quelldatei in FDC-Datei</translation>
    </message>
    <message>
        <source>src-file directory in FDC file</source>
        <translation>Verzeichnis der Quelldatei in FDC-Datei</translation>
    </message>
    <message>
        <source>entity name in FDC file</source>
        <translation>Name der Einheit in FDC-Datei</translation>
    </message>
    <message>
        <source>calling function in FDC file</source>
        <translation>aufrufende Funktion in FDC-Datei</translation>
    </message>
    <message>
        <source>called function in FDC file</source>
        <translation>aufgerufene Funktion in FDC-Datei</translation>
    </message>
    <message>
        <source>enclosing entity in FDC file</source>
        <translation>umschließende Einheit in FDC-Datei</translation>
    </message>
    <message>
        <source>label in FDC file</source>
        <translation>Bezeichnung in FDC-Datei</translation>
    </message>
    <message>
        <source>Multiple input in procedure %1</source>
        <comment>%1 is a procedure name</comment>
        <translation>Mehrere Eintrittspunkte in Prozedur %1</translation>
    </message>
    <message>
        <source>Unknown tpr type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Unbekannter tpr-Typ in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Unknown tb type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Unbekannter tb-Typ in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Unknown bigramme %1 in FDC file %2</source>
        <comment>%1 is the text, %2 a file name</comment>
        <translation>Unbekanntes Bigramm %1 in FDC-Datei %2</translation>
    </message>
    <message>
        <source>No data in FDC</source>
        <translation>Keine Daten in der FDC-Datei</translation>
    </message>
    <message>
        <source>FDC file without any version string: %1</source>
        <comment>%1 is a file name</comment>
        <translation>FDC-Datei ohne Versionsangabe: %1</translation>
    </message>
    <message>
        <source>%1 has been generated with an incompatible version of the product: %2</source>
        <comment>%1 is a file name, %2 a version</comment>
        <translation>%1 wurde mit einer inkompatiblen Version des Produkts erzeugt: %2</translation>
    </message>
    <message>
        <source>FDC file without any token string: %1</source>
        <comment>%1 is a file name</comment>
        <translation>FDC-Datei ohne Token-Angabe: %1</translation>
    </message>
    <message>
        <source>Bad or missing FC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fehlerhafte oder fehlende FC-Zeile in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Bad or missing FD in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fehlerhafte oder fehlende FD-Zeile in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Garbage at the end of FD line in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überzählige Zeichen am Ende der FD-Zeile in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Bad or missing TC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fehlerhafte oder fehlende TC-Zeile in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Bad or missing TC information in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fehlerhafte oder fehlende Angaben der TC-Zeile in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Unknown coverage type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Unbekannte Überdeckungsart in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Bad FDC file</source>
        <translation>Fehlerhafte FDC-Datei</translation>
    </message>
    <message>
        <source>Bad or missing DC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fehlerhafte oder fehlende DC-Zeile in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Garbage at the end of DC line checksum in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überzählige Zeichen hinter der Prüfsumme der DC-Zeile in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Cannot find instrumentation ID for specified trace in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Instrumentierungskennung aus dem angegebenen Trace nicht gefunden in FDC-Datei %1</translation>
    </message>
    <message>
        <source>Cannot retrieve correctly %1 %2</source>
        <comment>%1 is a message, %2 a file name</comment>
        <translation>Nicht korrekt lesbare Angabe: %1 %2</translation>
    </message>
    <message>
        <source>Empty %1 %2</source>
        <comment>%1 is a message, %2 a file name</comment>
        <translation>Leere Angabe: %1 %2</translation>
    </message>
</context>
<context>
    <name>fdcL-Info</name>
    <message>
        <source>Computing modified conditions from %1compound conditions, it can take a few minutes ...</source>
        <comment>%1 is a number</comment>
        <translation>Modifizierte Bedingungen werden aus %1 Mehrfachbedingungen berechnet, dies kann einige Minuten dauern ...</translation>
    </message>
    <message>
        <source>%1 contains redundant static information; it is ignored</source>
        <comment>%1 is a fdc file name</comment>
        <translation>%1 enthält redundante statische Informationen; sie werden ignoriert</translation>
    </message>
</context>
<context>
    <name>fdcL-Warning</name>
    <message>
        <source>Procedures coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der Prozeduren wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Procedures and outputs coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der Prozeduren und Ausgänge wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Calls coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der Aufrufe wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Simple blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der einfachen Blöcke wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Implicit blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der impliziten Blöcke wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Logical blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der logischen Blöcke wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Asynchronous transfer blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der Blöcke mit asynchronem Kontrolltransfer wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Basic conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der einfachen Bedingungen wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Modified conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der modifizierten Bedingungen wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Compound conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Überdeckung der Mehrfachbedingungen wird für Datei %1 nicht berechnet</translation>
    </message>
    <message>
        <source>Source file touched after instrumentation: %1</source>
        <comment>%1 is a file name</comment>
        <translation>Quelldatei nach der Instrumentierung geändert: %1</translation>
    </message>
    <message>
        <source>Older version of src file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Ältere Version der Quelldatei %1</translation>
    </message>
    <message>
        <source>None of requested coverage types will be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Keine der angeforderten Überdeckungsarten wird für Datei %1 berechnet</translation>
    </message>
    <message>
        <source>Cannot open file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Datei %1 kann nicht geöffnet werden</translation>
    </message>
</context>
</TS>
