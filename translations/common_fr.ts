<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Assertion</name>
    <message>
        <source>Bad decimal number while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Nombre décimal incorrect à la lecture du fichier %1</translation>
    </message>
    <message>
        <source>Null pointer for value while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Valeur absente (pointeur nul) à la lecture du fichier %1</translation>
    </message>
    <message>
        <source>Null pointer for time while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Horodatage absent (pointeur nul) à la lecture du fichier %1</translation>
    </message>
    <message>
        <source>Bad hexadecimal number while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Nombre hexadécimal incorrect à la lecture du fichier %1</translation>
    </message>
    <message>
        <source>Cannot eval file key</source>
        <translation>Impossible d&apos;évaluer la clé du fichier</translation>
    </message>
    <message>
        <source>Source file name empty while changing extension</source>
        <translation>Nom du fichier source vide lors du changement d&apos;extension</translation>
    </message>
    <message>
        <source>Extension empty while changing it to a file</source>
        <translation>Extension vide lors du changement d&apos;extension d&apos;un fichier</translation>
    </message>
    <message>
        <source>Extension not beginning with period while changing it to a file</source>
        <translation>Extension sans point initial lors du changement d&apos;extension d&apos;un fichier</translation>
    </message>
    <message>
        <source>Environment variable not defined: %1</source>
        <comment>%1 is the variable name</comment>
        <translation>Variable d&apos;environnement non définie&#xa0;: %1</translation>
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
        <translation>%1 %2 - ERREUR FATALE&#xa0;: %3
</translation>
    </message>
    <message>
        <source>%1 %2 - INTERNAL ERROR: %3
</source>
        <comment>Used for internal error message
%1: product name
%2: executable name
%3: message to display</comment>
        <translation>%1 %2 - ERREUR INTERNE&#xa0;: %3
</translation>
    </message>
    <message>
        <source>%1 %2 - ERROR: %3
</source>
        <comment>Used for user errors messages
%1: product name
%2: executable name
%3: message to display</comment>
        <translation>%1 %2 - ERREUR&#xa0;: %3
</translation>
    </message>
    <message>
        <source>%1 %2 - WARNING: %3
</source>
        <comment>Used for warning messages
%1: product name
%2: executable name
%3: message</comment>
        <translation>%1 %2 - AVERTISSEMENT&#xa0;: %3
</translation>
    </message>
    <message>
        <source>%1 %2 - INFO: %3
</source>
        <comment>Used for information messages%1:product name
%2: executable name
%3: message to print</comment>
        <translation>%1 %2 - INFO&#xa0;: %3
</translation>
    </message>
</context>
</TS>
