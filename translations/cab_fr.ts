<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>CAB</name>
    <message>
        <source>Arg value too small,</source>
        <translation>Valeur d&apos;argument trop petite,</translation>
    </message>
    <message>
        <source>Arg value too large,</source>
        <translation>Valeur d&apos;argument trop grande,</translation>
    </message>
    <message>
        <source>Arg length too small,</source>
        <translation>Argument trop court,</translation>
    </message>
    <message>
        <source>Arg length too large,</source>
        <translation>Argument trop long,</translation>
    </message>
    <message>
        <source>Too many arguments invalid argument,</source>
        <translation>Trop d&apos;arguments, argument non valide,</translation>
    </message>
    <message>
        <source>List forbidden invalid argument,</source>
        <translation>Liste interdite, argument non valide,</translation>
    </message>
    <message>
        <source>Unknown option,</source>
        <translation>Option inconnue,</translation>
    </message>
    <message>
        <source>Invalid character following option,</source>
        <translation>Caractère non valide après l&apos;option,</translation>
    </message>
    <message>
        <source>An option can&apos;t be used twice,</source>
        <translation>Une option ne peut pas être utilisée deux fois,</translation>
    </message>
    <message>
        <source>Mandatory argument for this option,</source>
        <translation>Argument obligatoire pour cette option,</translation>
    </message>
    <message>
        <source>No argument for this option,</source>
        <translation>Aucun argument admis pour cette option,</translation>
    </message>
    <message>
        <source>List forbidden invalid option,</source>
        <translation>Liste interdite, option non valide,</translation>
    </message>
    <message>
        <source>Argument missing,</source>
        <translation>Argument manquant,</translation>
    </message>
    <message>
        <source>Ambiguous option,</source>
        <translation>Option ambiguë,</translation>
    </message>
    <message>
        <source>Unknown value of option,</source>
        <translation>Valeur d&apos;option inconnue,</translation>
    </message>
    <message>
        <source>Ambiguous value of option,</source>
        <translation>Valeur d&apos;option ambiguë,</translation>
    </message>
    <message>
        <source>Illegal combination of command elements,</source>
        <translation>Combinaison interdite d&apos;éléments de commande,</translation>
    </message>
    <message>
        <source>File not found</source>
        <translation>Fichier introuvable,</translation>
    </message>
    <message>
        <source>Command analysis: No memory left</source>
        <translation>- Analyse de la commande&#xa0;: Mémoire épuisée</translation>
    </message>
    <message>
        <source>Command analysis</source>
        <translation>- Analyse de la commande</translation>
    </message>
    <message>
        <source>Internal error, bad option name</source>
        <translation>Erreur interne, nom d&apos;option incorrect,</translation>
    </message>
    <message>
        <source>and</source>
        <translation>et</translation>
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
Utilisation de veldacov&#xa0;:
&lt;fichier&gt;[,fichier]
	[-PROC[=&lt;RET&gt;]]
	[-NOPROC]
	[-CALL|-NOCALL]
	[-BLOCK[=&lt;IMPLICIT|DECISION|LOGICAL|ATC&gt;]]
	[-NOBLOCK]
	[-COND[=&lt;MODIFIED|COMPOUND&gt;]]
	[-NOCOND]
	[-OUTPUT=&lt;fichier&gt;]
	[-LISTING[=&lt;répertoire&gt;]]
	[-GLOBAL|-NOGLOBAL]
	[-CLEAN=&lt;nouveau fichier TIO&gt;]
	[-MERGETESTS]
	[-BRANCH=&lt;NOCOV|COV&gt;]
	[-SUMMARY=&lt;SERVICE|FILE|CONCLUSION&gt;]
	[-FILE=&lt;fichier&gt;[,fichier]]
	[-EXFILE=&lt;fichier&gt;[,fichier]]
	[-SERVICE=&lt;nom&gt;[,nom]]
	[-EXSERVICE=&lt;nom&gt;[,nom]]
	[-TEST=&lt;test&gt;[,test]]
	[-EXTEST=&lt;test&gt;[,test]]
	[-CIO=&lt;fichier&gt;]
</translation>
    </message>
    <message>
        <source>file</source>
        <translation>fichier</translation>
    </message>
</context>
</TS>
