<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CAB</name>
    <message>
        <source>Arg value too small,</source>
        <translation>Argumentwert zu klein:</translation>
    </message>
    <message>
        <source>Arg value too large,</source>
        <translation>Argumentwert zu groß:</translation>
    </message>
    <message>
        <source>Arg length too small,</source>
        <translation>Argument zu kurz:</translation>
    </message>
    <message>
        <source>Arg length too large,</source>
        <translation>Argument zu lang:</translation>
    </message>
    <message>
        <source>Too many arguments invalid argument,</source>
        <translation>Zu viele Argumente, ungültiges Argument:</translation>
    </message>
    <message>
        <source>List forbidden invalid argument,</source>
        <translation>Liste nicht erlaubt, ungültiges Argument:</translation>
    </message>
    <message>
        <source>Unknown option,</source>
        <translation>Unbekannte Option:</translation>
    </message>
    <message>
        <source>Invalid character following option,</source>
        <translation>Ungültiges Zeichen hinter der Option:</translation>
    </message>
    <message>
        <source>An option can&apos;t be used twice,</source>
        <translation>Option darf nicht zweimal verwendet werden:</translation>
    </message>
    <message>
        <source>Mandatory argument for this option,</source>
        <translation>Diese Option erfordert ein Argument:</translation>
    </message>
    <message>
        <source>No argument for this option,</source>
        <translation>Diese Option erlaubt kein Argument:</translation>
    </message>
    <message>
        <source>List forbidden invalid option,</source>
        <translation>Liste nicht erlaubt, ungültige Option:</translation>
    </message>
    <message>
        <source>Argument missing,</source>
        <translation>Argument fehlt:</translation>
    </message>
    <message>
        <source>Ambiguous option,</source>
        <translation>Mehrdeutige Option:</translation>
    </message>
    <message>
        <source>Unknown value of option,</source>
        <translation>Unbekannter Optionswert:</translation>
    </message>
    <message>
        <source>Ambiguous value of option,</source>
        <translation>Mehrdeutiger Optionswert:</translation>
    </message>
    <message>
        <source>Illegal combination of command elements,</source>
        <translation>Unzulässige Kombination von Befehlselementen:</translation>
    </message>
    <message>
        <source>File not found</source>
        <translation>Datei nicht gefunden:</translation>
    </message>
    <message>
        <source>Command analysis: No memory left</source>
        <translation>Befehlsanalyse: Kein Speicher mehr verfügbar</translation>
    </message>
    <message>
        <source>Command analysis</source>
        <translation>Befehlsanalyse</translation>
    </message>
    <message>
        <source>Internal error, bad option name</source>
        <translation>Interner Fehler, ungültiger Optionsname:</translation>
    </message>
    <message>
        <source>and</source>
        <translation>und</translation>
    </message>
    <message>
        <source>Orbis(R)</source>
        <translation>Orbis(R)</translation>
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
        <translation>
Aufruf von veldacov:
&lt;Datei&gt;[,Datei]
	[-PROC[=&lt;RET&gt;]]
	[-NOPROC]
	[-CALL|-NOCALL]
	[-BLOCK[=&lt;IMPLICIT|DECISION|LOGICAL|ATC&gt;]]
	[-NOBLOCK]
	[-COND[=&lt;MODIFIED|COMPOUND&gt;]]
	[-NOCOND]
	[-OUTPUT=&lt;Datei&gt;]
	[-LISTING[=&lt;Verzeichnis&gt;]]
	[-GLOBAL|-NOGLOBAL]
	[-CLEAN=&lt;neue TIO-Datei&gt;]
	[-MERGETESTS]
	[-BRANCH=&lt;NOCOV|COV&gt;]
	[-SUMMARY=&lt;SERVICE|FILE|CONCLUSION&gt;]
	[-FILE=&lt;Datei&gt;[,Datei]]
	[-EXFILE=&lt;Datei&gt;[,Datei]]
	[-SERVICE=&lt;Name&gt;[,Name]]
	[-EXSERVICE=&lt;Name&gt;[,Name]]
	[-TEST=&lt;Test&gt;[,Test]]
	[-EXTEST=&lt;Test&gt;[,Test]]
	[-CIO=&lt;Datei&gt;]
</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
</context>
</TS>
