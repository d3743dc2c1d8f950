<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>ULMOIdent</name>
    <message>
        <source>Corvane Orbis Norvik Suite</source>
        <translation>Corvane Orbis Norvik Suite</translation>
    </message>
    <message>
        <source>Norvik</source>
        <translation>Norvik</translation>
    </message>
</context>
<context>
    <name>Version</name>
    <message>
        <source>Coverage Report Generator</source>
        <translation>Générateur de rapports de couverture</translation>
    </message>
    <message>
        <source>ms-dos</source>
        <comment>Operating system name</comment>
        <translation>ms-dos</translation>
    </message>
    <message>
        <source>%1 %2 %3 %4 %5
</source>
        <comment>%1 is a prefix, %2 a product name, %3 a module name</comment>
        <translation>%1 %2 %3 %4 %5
</translation>
    </message>
    <message>
        <source>%1 Build Number: %2 %3
</source>
        <comment>%1 is a prefix, %2 a build number, %3 a suffix</comment>
        <translation>%1 Numéro de compilation&#xa0;: %2 %3
</translation>
    </message>
    <message>
        <source>%1   Date : %2 %3 %4
</source>
        <comment>%1 is a prefix, %2 a date, %3 a time, %4 a suffix</comment>
        <translation>%1   Date&#xa0;: %2 %3 %4
</translation>
    </message>
    <message>
        <source>%1    OS : %2 %3
</source>
        <comment>%1 is a string prefix, %2 the operating system name, %3 a string suffix</comment>
        <translation>%1    Système&#xa0;: %2 %3
</translation>
    </message>
</context>
</TS>
