<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Assertion</name>
    <message>
        <source>Bad decimal number while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Ungültige Dezimalzahl beim Lesen der Datei %1</translation>
    </message>
    <message>
        <source>Null pointer for value while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Nullzeiger anstelle eines Wertes beim Lesen der Datei %1</translation>
    </message>
    <message>
        <source>Null pointer for time while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Nullzeiger anstelle einer Zeitangabe beim Lesen der Datei %1</translation>
    </message>
    <message>
        <source>Bad hexadecimal number while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Ungültige Hexadezimalzahl beim Lesen der Datei %1</translation>
    </message>
    <message>
        <source>Cannot eval file key</source>
        <translation>Dateischlüssel kann nicht berechnet werden</translation>
    </message>
    <message>
        <source>Source file name empty while changing extension</source>
        <translation>Ändern der Dateierweiterung: Name der Quelldatei ist leer</translation>
    </message>
    <message>
        <source>Extension empty while changing it to a file</source>
        <translation>Ändern der Dateierweiterung: neue Erweiterung ist leer</translation>
    </message>
    <message>
        <source>Extension not beginning with period while changing it to a file</source>
        <translation>Ändern der Dateierweiterung: neue Erweiterung beginnt nicht mit einem Punkt</translation>
    </message>
    <message>
        <source>Environment variable not defined: %1</source>
        <comment>%1 is the variable name</comment>
        <translation>Umgebungsvariable nicht definiert: %1</translation>
    </message>
</context>
<context>
    <name>Display Message</name>
    <message>
        <source>%1 %2 - FATAL ERROR: %3
</source>
        <comment>Used for fatal error message
%1: product name
%2: executable name
%3: message to display</comment>
        <translation>%1 %2 - SCHWERER FEHLER: %3
</translation>
    </message>
    <message>
        <source>%1 %2 - INTERNAL ERROR: %3
</source>
        <comment>Used for internal error message
%1: product name
%2: executable name
%3: message to display</comment>
        <translation>%1 %2 - INTERNER FEHLER: %3
</translation>
    </message>
    <message>
        <source>%1 %2 - ERROR: %3
</source>
        <comment>Used for user errors messages
%1: product name
%2: executable name
%3: message to display</comment>
        <translation>%1 %2 - FEHLER: %3
</translation>
    </message>
    <message>
        <source>%1 %2 - WARNING: %3
</source>
        <comment>Used for warning messages
%1: product name
%2: executable name
%3: message</comment>
        <translation>%1 %2 - WARNUNG: %3
</translation>
    </message>
    <message>
        <source>%1 %2 - INFO: %3
</source>
        <comment>Used for information messages%1:product name
%2: executable name
%3: message to print</comment>
        <translation>%1 %2 - INFO: %3
</translation>
    </message>
</context>
</TS>
