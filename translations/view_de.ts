<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>View</name>
    <message>
        <source>Traces of another build of %1 are ignored, parts: %2</source>
        <comment>%1 is the name of a source, %2 a number</comment>
        <translation>Traces eines anderen Standes von %1 werden übergangen, Teile: %2</translation>
    </message>
    <message>
        <source>Traces that nothing describes are ignored, key %1, checksum %2, parts: %3</source>
        <comment>%1 and %2 are numbers of trace lines, %3 is a number</comment>
        <translation>Traces, die nichts beschreibt, werden übergangen, Schlüssel %1, Prüfsumme %2, Teile: %3</translation>
    </message>
    <message>
        <source>Traces of %1 more sources are ignored</source>
        <comment>%1 is a number</comment>
        <translation>Traces von %1 weiteren Quelldateien werden übergangen</translation>
    </message>
    <message>
        <source>Reading inputs: %1 of %2</source>
        <comment>%1 and %2 are numbers</comment>
        <translation>Eingaben werden gelesen: %1 von %2</translation>
    </message>
    <message>
        <source>Reading traces: %1 of %2</source>
        <comment>%1 and %2 are numbers</comment>
        <translation>Traces werden gelesen: %1 von %2</translation>
    </message>
    <message>
        <source>There is no test: nothing counts as hit</source>
        <translation>Es gibt keinen Test: nichts gilt als durchlaufen</translation>
    </message>
    <message>
        <source>Cannot open response file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Antwortdatei %1 kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>%1 is no minimum: RATE=PERCENT, the rate one of %2</source>
        <comment>%1 is a word of the command line, %2 a list of names</comment>
        <translation>%1 ist kein Mindestwert: RATE=PERCENT, die Rate eine von %2</translation>
    </message>
    <message>
        <source>The pattern %1 of %2 matches nothing</source>
        <comment>%1 is a pattern, %2 an option</comment>
        <translation>Auf das Muster %1 von %2 passt nichts</translation>
    </message>
    <message>
        <source>Writing: %1 of %2</source>
        <comment>%1 and %2 are numbers</comment>
        <translation>Schreibe: %1 von %2</translation>
    </message>
    <message>
        <source>MCDC records of %1 decisions are left out: an earlier decision of as many conditions begins on the same line</source>
        <comment>%1 is a number</comment>
        <translation>MCDC-Sätze von %1 Entscheidungen fehlen: eine frühere Entscheidung mit ebenso vielen Bedingungen beginnt in derselben Zeile</translation>
    </message>
    <message>
        <source>Cannot create folder %1</source>
        <comment>%1 is the name of a folder</comment>
        <translation>Ordner %1 kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>%1 is no folder</source>
        <comment>%1 is the name of a file</comment>
        <translation>%1 ist kein Ordner</translation>
    </message>
    <message>
        <source>Folder %1 has something that is no page of an earlier run: %2</source>
        <comment>%1 is the name of a folder, %2 of a file in it</comment>
        <translation>Ordner %1 enthält etwas, das keine Seite eines früheren Laufs ist: %2</translation>
    </message>
    <message>
        <source>%1 is no value of %2, possible: %3</source>
        <comment>%1 is a word of the command line, %2 an option, %3 a list</comment>
        <translation>%1 ist kein Wert von %2, möglich: %3</translation>
    </message>
    <message>
        <source>A sub-command is missing: %1</source>
        <comment>%1 is a list of names</comment>
        <translation>Es fehlt ein Unterbefehl: %1</translation>
    </message>
    <message>
        <source>%1 is no sub-command</source>
        <comment>%1 is a word of the command line</comment>
        <translation>%1 ist kein Unterbefehl</translation>
    </message>
    <message>
        <source>%1 is missing</source>
        <comment>%1 is an option, or what stands for file names</comment>
        <translation>%1 fehlt</translation>
    </message>
    <message>
        <source>Not expected in the command line: %1</source>
        <comment>%1 are words of it</comment>
        <translation>In der Befehlszeile nicht erwartet: %1</translation>
    </message>
    <message>
        <source>%1 takes one value</source>
        <comment>%1 is an option</comment>
        <translation>%1 hat genau einen Wert</translation>
    </message>
    <message>
        <source>%1 is for %2 only</source>
        <comment>%1 and %2 are options</comment>
        <translation>%1 gibt es nur mit %2</translation>
    </message>
</context>
</TS>
