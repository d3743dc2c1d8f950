<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Veldacc Instrumenter</name>
    <message>
        <source>a second function of this name</source>
        <translation>eine zweite Funktion dieses Namens</translation>
    </message>
    <message>
        <source>the compiler refuses it instrumented</source>
        <translation>der Übersetzer weist sie instrumentiert zurück</translation>
    </message>
    <message>
        <source>%1:%2: function %3 is left as it is: %4</source>
        <comment>%1 is a source, %2 a line, %3 a function, %4 a construct of C or the parser&apos;s message</comment>
        <translation>%1:%2: Funktion %3 bleibt, wie sie ist: %4</translation>
    </message>
    <message>
        <source>%1:%2: the cases of a decision of %3 conditions are not described: more than %4</source>
        <comment>%1 is a source, %2 a line, %3 and %4 are numbers</comment>
        <translation>%1:%2: die Fälle einer Entscheidung mit %3 Bedingungen sind nicht beschrieben: mehr als %4</translation>
    </message>
    <message>
        <source>%1: what macros made cannot be traced back to them; texts are those of the preprocessed source</source>
        <comment>%1 is a source</comment>
        <translation>%1: was Makros erzeugt haben, lässt sich nicht auf sie zurückführen; die Texte sind die der vorverarbeiteten Quelle</translation>
    </message>
    <message>
        <source>%1: not understood; it is not instrumented</source>
        <comment>%1 is a source</comment>
        <translation>%1: nicht verstanden; die Quelle ist nicht instrumentiert</translation>
    </message>
    <message>
        <source>Cannot read %1</source>
        <comment>%1 is a file</comment>
        <translation>%1 kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Cannot write %1</source>
        <comment>%1 is a file</comment>
        <translation>%1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Unknown option %1</source>
        <comment>%1 is an option</comment>
        <translation>Unbekannte Option %1</translation>
    </message>
    <message>
        <source>Option %1 cannot be %2</source>
        <comment>%1 is an option, %2 a text</comment>
        <translation>Option %1 kann nicht %2 sein</translation>
    </message>
    <message>
        <source>naked function</source>
        <translation>Funktion ohne Prolog (naked)</translation>
    </message>
    <message>
        <source>loop without a place in the text</source>
        <translation>Schleife ohne Ort im Text</translation>
    </message>
    <message>
        <source>computed goto among local labels</source>
        <translation>berechnetes goto zwischen lokalen Marken</translation>
    </message>
</context>
<context>
    <name>Veldacc Message</name>
    <message>
        <source>Unknown option %1; veldacc --help lists them</source>
        <comment>%1 is an option</comment>
        <translation>Unbekannte Option %1; veldacc --help zählt sie auf</translation>
    </message>
    <message>
        <source>Option %1 needs a value</source>
        <comment>%1 is an option</comment>
        <translation>Option %1 braucht einen Wert</translation>
    </message>
    <message>
        <source>The time limit is a number of seconds, not %1</source>
        <comment>%1 is a text</comment>
        <translation>Die Zeitgrenze ist eine Zahl von Sekunden, nicht %1</translation>
    </message>
    <message>
        <source>No compiler: veldacc stands in front of one, as in veldacc gcc -c x.c</source>
        <comment>the example stays as it is</comment>
        <translation>Kein Übersetzer: veldacc steht vor einem, wie in veldacc gcc -c x.c</translation>
    </message>
    <message>
        <source>Cannot run %1: %2</source>
        <comment>%1 is a program, %2 the system&apos;s reason</comment>
        <translation>%1 lässt sich nicht starten: %2</translation>
    </message>
    <message>
        <source>Cannot make a temporary directory %1: %2</source>
        <comment>%1 is a name, %2 the system&apos;s reason</comment>
        <translation>Temporäres Verzeichnis %1 kann nicht angelegt werden: %2</translation>
    </message>
    <message>
        <source>As a compiler launcher, veldacc does not see the links. Make it the compiler instead: configure in a fresh directory with CC=&quot;veldacc gcc&quot; in the environment, without CMAKE_C_COMPILER_LAUNCHER</source>
        <comment>names of variables stay as they are</comment>
        <translation>Als Starter des Übersetzers sieht veldacc nicht, was gebunden wird. Es soll selbst der Übersetzer sein: in einem neuen Verzeichnis mit CC=&quot;veldacc gcc&quot; in der Umgebung konfigurieren, ohne CMAKE_C_COMPILER_LAUNCHER</translation>
    </message>
    <message>
        <source>%1: the instrumenter failed (status %2); it is not instrumented</source>
        <comment>%1 is a source, %2 a number</comment>
        <translation>%1: der Instrumentierer ist gescheitert (Status %2); die Quelle ist nicht instrumentiert</translation>
    </message>
    <message>
        <source>%1: instrumenting took more than %2 seconds; it is not instrumented</source>
        <comment>%1 is a source, %2 a number</comment>
        <translation>%1: das Instrumentieren dauerte länger als %2 Sekunden; die Quelle ist nicht instrumentiert</translation>
    </message>
    <message>
        <source>%1: the instrumented source does not compile; it is not instrumented</source>
        <comment>%1 is a source</comment>
        <translation>%1: die instrumentierte Quelle lässt sich nicht übersetzen; sie ist nicht instrumentiert</translation>
    </message>
    <message>
        <source>Cannot write the description %1</source>
        <comment>%1 is a file</comment>
        <translation>Beschreibung %1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>%1 cannot compile the run-time library:
%2</source>
        <comment>%1 is a compiler, %2 what it said</comment>
        <translation>%1 kann die Laufzeitbibliothek nicht übersetzen:
%2</translation>
    </message>
    <message>
        <source>There is no run-time library %1</source>
        <comment>%1 is a file</comment>
        <translation>Es gibt keine Laufzeitbibliothek %1</translation>
    </message>
    <message>
        <source>The files between the steps stay in %1</source>
        <comment>%1 is a directory</comment>
        <translation>Die Dateien zwischen den Schritten bleiben in %1</translation>
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
        <translation>Aufruf: veldacc [Optionen] [--] ÜBERSETZER ARGUMENTE...
Übersetzt C so, dass das Programm Spuren schreibt, und beschreibt, was sie treffen können.

  --fdc-dir DIR       Beschreibungen nach DIR schreiben, nicht neben die Objekte
  --root DIR          Quellen von DIR an benennen, unabhängig vom Ort des Baumes
  --types LIST        nur diese beschreiben: PR,RE,AP,BS,BI,BL,BA,CO,CC
  --headers           auch Funktionen in Header-Dateien beschreiben
  --forced            alle Bedingungen einer Entscheidung auswerten, wo das sicher ist
  --max-cases N       Entscheidungen mit mehr Fällen weglassen
  --ordered           jeden Treffer festhalten, wie er geschieht
  --strict            was nicht instrumentiert werden kann, ist ein Fehler
  --time-limit S      nach S Sekunden (60) eine Quelle unverändert übersetzen; 0: nie
  --verbose           die Befehle aller Schritte zeigen
  --keep-temporary    die Dateien zwischen den Schritten behalten
  --help, --version

VELDACC_OPTIONS enthält weitere Optionen, VELDACC=off schaltet alles ab.
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
