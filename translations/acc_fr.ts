<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Veldacc Instrumenter</name>
    <message>
        <source>a second function of this name</source>
        <translation>une deuxième fonction de ce nom</translation>
    </message>
    <message>
        <source>the compiler refuses it instrumented</source>
        <translation>le compilateur la refuse une fois instrumentée</translation>
    </message>
    <message>
        <source>%1:%2: function %3 is left as it is: %4</source>
        <comment>%1 is a source, %2 a line, %3 a function, %4 a construct of C or the parser&apos;s message</comment>
        <translation>%1:%2 : la fonction %3 reste telle quelle : %4</translation>
    </message>
    <message>
        <source>%1:%2: the cases of a decision of %3 conditions are not described: more than %4</source>
        <comment>%1 is a source, %2 a line, %3 and %4 are numbers</comment>
        <translation>%1:%2 : les cas d’une décision de %3 conditions ne sont pas décrits : plus de %4</translation>
    </message>
    <message>
        <source>%1: what macros made cannot be traced back to them; texts are those of the preprocessed source</source>
        <comment>%1 is a source</comment>
        <translation>%1 : ce que les macros ont produit ne peut leur être rattaché ; les textes sont ceux de la source prétraitée</translation>
    </message>
    <message>
        <source>%1: not understood; it is not instrumented</source>
        <comment>%1 is a source</comment>
        <translation>%1 : source non comprise ; elle n’est pas instrumentée</translation>
    </message>
    <message>
        <source>Cannot read %1</source>
        <comment>%1 is a file</comment>
        <translation>Impossible de lire %1</translation>
    </message>
    <message>
        <source>Cannot write %1</source>
        <comment>%1 is a file</comment>
        <translation>Impossible d’écrire %1</translation>
    </message>
    <message>
        <source>Unknown option %1</source>
        <comment>%1 is an option</comment>
        <translation>Option inconnue %1</translation>
    </message>
    <message>
        <source>Option %1 cannot be %2</source>
        <comment>%1 is an option, %2 a text</comment>
        <translation>L’option %1 ne peut pas être %2</translation>
    </message>
    <message>
        <source>naked function</source>
        <translation>fonction sans prologue (naked)</translation>
    </message>
    <message>
        <source>loop without a place in the text</source>
        <translation>boucle sans place dans le texte</translation>
    </message>
    <message>
        <source>computed goto among local labels</source>
        <translation>goto calculé parmi des étiquettes locales</translation>
    </message>
</context>
<context>
    <name>Veldacc Message</name>
    <message>
        <source>Unknown option %1; veldacc --help lists them</source>
        <comment>%1 is an option</comment>
        <translation>Option inconnue %1 ; veldacc --help les énumère</translation>
    </message>
    <message>
        <source>Option %1 needs a value</source>
        <comment>%1 is an option</comment>
        <translation>L&apos;option %1 demande une valeur</translation>
    </message>
    <message>
        <source>The time limit is a number of seconds, not %1</source>
        <comment>%1 is a text</comment>
        <translation>La limite de temps est un nombre de secondes, pas %1</translation>
    </message>
    <message>
        <source>No compiler: veldacc stands in front of one, as in veldacc gcc -c x.c</source>
        <comment>the example stays as it is</comment>
        <translation>Pas de compilateur : veldacc se place devant, comme dans veldacc gcc -c x.c</translation>
    </message>
    <message>
        <source>Cannot run %1: %2</source>
        <comment>%1 is a program, %2 the system&apos;s reason</comment>
        <translation>Impossible de lancer %1 : %2</translation>
    </message>
    <message>
        <source>Cannot make a temporary directory %1: %2</source>
        <comment>%1 is a name, %2 the system&apos;s reason</comment>
        <translation>Impossible de créer le répertoire temporaire %1 : %2</translation>
    </message>
    <message>
        <source>As a compiler launcher, veldacc does not see the links. Make it the compiler instead: configure in a fresh directory with CC=&quot;veldacc gcc&quot; in the environment, without CMAKE_C_COMPILER_LAUNCHER</source>
        <comment>names of variables stay as they are</comment>
        <translation>Comme lanceur du compilateur, veldacc ne voit pas les éditions de liens. Il doit être le compilateur : configurez dans un répertoire neuf avec CC=&quot;veldacc gcc&quot; dans l&apos;environnement, sans CMAKE_C_COMPILER_LAUNCHER</translation>
    </message>
    <message>
        <source>%1: the instrumenter failed (status %2); it is not instrumented</source>
        <comment>%1 is a source, %2 a number</comment>
        <translation>%1 : l&apos;instrumenteur a échoué (code %2) ; la source n&apos;est pas instrumentée</translation>
    </message>
    <message>
        <source>%1: instrumenting took more than %2 seconds; it is not instrumented</source>
        <comment>%1 is a source, %2 a number</comment>
        <translation>%1 : l&apos;instrumentation a pris plus de %2 secondes ; la source n&apos;est pas instrumentée</translation>
    </message>
    <message>
        <source>%1: the instrumented source does not compile; it is not instrumented</source>
        <comment>%1 is a source</comment>
        <translation>%1 : la source instrumentée ne se compile pas ; elle n&apos;est pas instrumentée</translation>
    </message>
    <message>
        <source>Cannot write the description %1</source>
        <comment>%1 is a file</comment>
        <translation>Impossible d&apos;écrire la description %1</translation>
    </message>
    <message>
        <source>%1 cannot compile the run-time library:
%2</source>
        <comment>%1 is a compiler, %2 what it said</comment>
        <translation>%1 ne peut pas compiler la bibliothèque d&apos;exécution :
%2</translation>
    </message>
    <message>
        <source>There is no run-time library %1</source>
        <comment>%1 is a file</comment>
        <translation>Il n&apos;y a pas de bibliothèque d&apos;exécution %1</translation>
    </message>
    <message>
        <source>The files between the steps stay in %1</source>
        <comment>%1 is a directory</comment>
        <translation>Les fichiers entre les étapes restent dans %1</translation>
    </message>
</context>
<context>
    <name>Veldacc Usage</name>
    <message>
        <source>Usage: veldacc [options] [--] COMPILER ARGUMENTS...
Compiles C so that the program writes traces, and describes what they can hit.

  --fdc-dir DIR       put descriptions into DIR, not beside the objects
  --root DIR          name sources from DIR on, so that names do not depend on where the tree stands
  --types LIST        describe these only: PR,RE,AP,BS,BI,BL,BA,CO,CC
  --headers           describe functions in headers, too
  --forced            evaluate all conditions of a decision where that is safe
  --max-cases N       leave out decisions with more cases
  --ordered           keep every hit as it happens
  --strict            what cannot be instrumented is an error
  --time-limit S      compile a source as it is after S seconds (60); 0: never
  --verbose           show the commands of all steps
  --keep-temporary    keep the files between the steps
  --help, --version

VELDACC_OPTIONS holds further options, VELDACC=off switches everything off.
</source>
        <comment>the options stay as they are</comment>
        <translation>Usage : veldacc [options] [--] COMPILATEUR ARGUMENTS...
Compile du C de sorte que le programme écrive des traces, et décrit ce qu&apos;elles peuvent atteindre.

  --fdc-dir DIR       mettre les descriptions dans DIR, pas à côté des objets
  --root DIR          nommer les sources à partir de DIR, où que soit l&apos;arborescence
  --types LIST        ne décrire que : PR,RE,AP,BS,BI,BL,BA,CO,CC
  --headers           décrire aussi les fonctions des fichiers d&apos;en-tête
  --forced            évaluer toutes les conditions d&apos;une décision quand c&apos;est sûr
  --max-cases N       omettre les décisions de plus de N cas
  --ordered           garder chaque passage comme il se produit
  --strict            ce qui ne peut être instrumenté est une erreur
  --time-limit S      après S secondes (60), compiler une source telle quelle ; 0 : jamais
  --verbose           montrer les commandes de toutes les étapes
  --keep-temporary    garder les fichiers entre les étapes
  --help, --version

VELDACC_OPTIONS contient d&apos;autres options, VELDACC=off désactive tout.
</translation>
    </message>
    <message>
        <source>%1 veldacc %2
</source>
        <comment>%1 is the product name, %2 the version</comment>
        <translation>%1 veldacc %2
</translation>
    </message>
</context>
</TS>
