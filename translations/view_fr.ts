<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>View</name>
    <message>
        <source>Traces of another build of %1 are ignored, parts: %2</source>
        <comment>%1 is the name of a source, %2 a number</comment>
        <translation>Les traces d&apos;une autre version de %1 sont ignorées, parties&#xa0;: %2</translation>
    </message>
    <message>
        <source>Traces that nothing describes are ignored, key %1, checksum %2, parts: %3</source>
        <comment>%1 and %2 are numbers of trace lines, %3 is a number</comment>
        <translation>Les traces que rien ne décrit sont ignorées, clé %1, somme de contrôle %2, parties&#xa0;: %3</translation>
    </message>
    <message>
        <source>Traces of %1 more sources are ignored</source>
        <comment>%1 is a number</comment>
        <translation>Les traces de %1 autres sources sont ignorées</translation>
    </message>
    <message>
        <source>Reading inputs: %1 of %2</source>
        <comment>%1 and %2 are numbers</comment>
        <translation>Lecture des entrées&#xa0;: %1 sur %2</translation>
    </message>
    <message>
        <source>Reading traces: %1 of %2</source>
        <comment>%1 and %2 are numbers</comment>
        <translation>Lecture des traces&#xa0;: %1 sur %2</translation>
    </message>
    <message>
        <source>There is no test: nothing counts as hit</source>
        <translation>Il n&apos;y a aucun test&#xa0;: rien n&apos;est considéré comme exécuté</translation>
    </message>
    <message>
        <source>Cannot open response file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Impossible d&apos;ouvrir le fichier de réponse %1</translation>
    </message>
    <message>
        <source>%1 is no minimum: RATE=PERCENT, the rate one of %2</source>
        <comment>%1 is a word of the command line, %2 a list of names</comment>
        <translation>%1 n&apos;est pas un minimum&#xa0;: RATE=PERCENT, le taux étant l&apos;un de %2</translation>
    </message>
    <message>
        <source>The pattern %1 of %2 matches nothing</source>
        <comment>%1 is a pattern, %2 an option</comment>
        <translation>Le motif %1 de %2 ne correspond à rien</translation>
    </message>
    <message>
        <source>Writing: %1 of %2</source>
        <comment>%1 and %2 are numbers</comment>
        <translation>Écriture&#xa0;: %1 sur %2</translation>
    </message>
    <message>
        <source>MCDC records of %1 decisions are left out: an earlier decision of as many conditions begins on the same line</source>
        <comment>%1 is a number</comment>
        <translation>Les enregistrements MCDC de %1 décisions manquent&#xa0;: une décision précédente d&apos;autant de conditions commence à la même ligne</translation>
    </message>
    <message>
        <source>Cannot create folder %1</source>
        <comment>%1 is the name of a folder</comment>
        <translation>Impossible de créer le dossier %1</translation>
    </message>
    <message>
        <source>%1 is no folder</source>
        <comment>%1 is the name of a file</comment>
        <translation>%1 n&apos;est pas un dossier</translation>
    </message>
    <message>
        <source>Folder %1 has something that is no page of an earlier run: %2</source>
        <comment>%1 is the name of a folder, %2 of a file in it</comment>
        <translation>Le dossier %1 contient autre chose que les pages d&apos;une exécution précédente&#xa0;: %2</translation>
    </message>
    <message>
        <source>%1 is no value of %2, possible: %3</source>
        <comment>%1 is a word of the command line, %2 an option, %3 a list</comment>
        <translation>%1 n&apos;est pas une valeur de %2, valeurs possibles&#xa0;: %3</translation>
    </message>
    <message>
        <source>A sub-command is missing: %1</source>
        <comment>%1 is a list of names</comment>
        <translation>Il manque une sous-commande&#xa0;: %1</translation>
    </message>
    <message>
        <source>%1 is no sub-command</source>
        <comment>%1 is a word of the command line</comment>
        <translation>%1 n&apos;est pas une sous-commande</translation>
    </message>
    <message>
        <source>%1 is missing</source>
        <comment>%1 is an option, or what stands for file names</comment>
        <translation>%1 manque</translation>
    </message>
    <message>
        <source>Not expected in the command line: %1</source>
        <comment>%1 are words of it</comment>
        <translation>Inattendu dans la ligne de commande&#xa0;: %1</translation>
    </message>
    <message>
        <source>%1 takes one value</source>
        <comment>%1 is an option</comment>
        <translation>%1 prend exactement une valeur</translation>
    </message>
    <message>
        <source>%1 is for %2 only</source>
        <comment>%1 and %2 are options</comment>
        <translation>%1 ne va qu&apos;avec %2</translation>
    </message>
</context>
</TS>
