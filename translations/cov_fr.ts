<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
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
        <translation>Erreur au déverrouillage de la transaction</translation>
    </message>
    <message>
        <source>Cannot open file :%1
</source>
        <comment>%1 is a file name</comment>
        <translation>Impossible d&apos;ouvrir le fichier&#xa0;: %1
</translation>
    </message>
    <message>
        <source>Reason is : %1
</source>
        <comment>%1 is a system message</comment>
        <translation>Cause&#xa0;: %1
</translation>
    </message>
    <message>
        <source>File is currently in use.
  Please break
      or wait until previous task has finished
      or remove file: %1</source>
        <translation>Le fichier est en cours d&apos;utilisation.
  Interrompre le programme
      ou attendre la fin de la tâche précédente
      ou supprimer le fichier&#xa0;: %1</translation>
    </message>
    <message>
        <source>File is now available</source>
        <translation>Le fichier est maintenant disponible</translation>
    </message>
    <message>
        <source>User break.
  File is still in use.
  Please wait until previous task has finished
      or remove file: %1</source>
        <translation>Interruption par l&apos;utilisateur.
  Le fichier est toujours en cours d&apos;utilisation.
  Attendre la fin de la tâche précédente
      ou supprimer le fichier&#xa0;: %1</translation>
    </message>
    <message>
        <source>Unable to create DataBase file</source>
        <translation>Impossible de créer le fichier de base de données</translation>
    </message>
    <message>
        <source>Unable to write in DataBase file</source>
        <translation>Impossible d&apos;écrire dans le fichier de base de données</translation>
    </message>
    <message>
        <source>Unable write in DataBase file</source>
        <translation>Écriture impossible dans le fichier de base de données</translation>
    </message>
    <message>
        <source>Unable to create TPM file</source>
        <translation>Impossible de créer le fichier TPM</translation>
    </message>
    <message>
        <source>Unable to write in Index file</source>
        <translation>Impossible d&apos;écrire dans le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable to write fail in Index file</source>
        <translation>Échec de l&apos;écriture dans le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable to close Index file</source>
        <translation>Impossible de fermer le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable close DataBase file</source>
        <translation>Impossible de fermer le fichier de base de données</translation>
    </message>
    <message>
        <source>Unable to read index file</source>
        <translation>Impossible de lire le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Reposition in DataBase file fail</source>
        <translation>Échec du repositionnement dans le fichier de base de données</translation>
    </message>
    <message>
        <source>Unable to read DataBase file</source>
        <translation>Impossible de lire le fichier de base de données</translation>
    </message>
    <message>
        <source>Unable to open DataBase file</source>
        <translation>Impossible d&apos;ouvrir le fichier de base de données</translation>
    </message>
    <message>
        <source>Unable to close DataBase</source>
        <translation>Impossible de fermer la base de données</translation>
    </message>
    <message>
        <source>Unable to update DataBase file</source>
        <translation>Impossible de mettre à jour le fichier de base de données</translation>
    </message>
    <message>
        <source>Unable to open index file</source>
        <translation>Impossible d&apos;ouvrir le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable to update Index File</source>
        <translation>Impossible de mettre à jour le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable to allocate memory</source>
        <translation>Impossible d&apos;allouer de la mémoire</translation>
    </message>
    <message>
        <source>VELDA_TPM_ROOT is not set!</source>
        <comment>VELDA_TPM_ROOT is an environment variable name</comment>
        <translation>VELDA_TPM_ROOT n&apos;est pas définie&#xa0;!</translation>
    </message>
    <message>
        <source>VELDA_TPM_ROOT directory does not exist: %1</source>
        <comment>%1 is a directory name</comment>
        <translation>Le répertoire de VELDA_TPM_ROOT n&apos;existe pas&#xa0;: %1</translation>
    </message>
    <message>
        <source>Unable to get User name
</source>
        <translation>Impossible d&apos;obtenir le nom de l&apos;utilisateur
</translation>
    </message>
    <message>
        <source>Too many measure sub values</source>
        <translation>Trop de sous-valeurs de mesure</translation>
    </message>
</context>
<context>
    <name>Error Display</name>
    <message>
        <source>%1 - Test Process Monitor: %2
</source>
        <comment>%1 is the product name; %2 the error message</comment>
        <translation>%1 - Moniteur du processus de test&#xa0;: %2
</translation>
    </message>
</context>
<context>
    <name>Fatal Error</name>
    <message>
        <source>Errors in command line</source>
        <translation>Erreurs dans la ligne de commande</translation>
    </message>
    <message>
        <source>Cannot create output file %1</source>
        <translation>Impossible de créer le fichier de sortie %1</translation>
    </message>
    <message>
        <source>Cannot create flow output file %1</source>
        <translation>Impossible de créer le fichier de trace de chemin %1</translation>
    </message>
    <message>
        <source>There is nothing to report ... report is empty</source>
        <translation>Aucun élément à rapporter, le rapport est vide</translation>
    </message>
    <message>
        <source>Cannot create CIO file %1</source>
        <comment>%1 is the name of the cio file</comment>
        <translation>Impossible de créer le fichier CIO %1</translation>
    </message>
    <message>
        <source>No current test number in file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation>Aucun numéro de test courant dans le fichier %1</translation>
    </message>
    <message>
        <source>No current service number in file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation>Aucun numéro de service courant dans le fichier %1</translation>
    </message>
    <message>
        <source>Cannot write to file %1</source>
        <comment>%1 is the name of the cleaned tio file</comment>
        <translation>Impossible d&apos;écrire dans le fichier %1</translation>
    </message>
    <message>
        <source>Cannot open trace file %1</source>
        <comment>%1 is the name of the trace file</comment>
        <translation>Impossible d&apos;ouvrir le fichier de trace %1</translation>
    </message>
    <message>
        <source>Unknown opcode in trace file %1</source>
        <comment>%1 is the name of the trace file</comment>
        <translation>Code d&apos;opération inconnu dans le fichier de trace %1</translation>
    </message>
    <message>
        <source>No DC line in TIO file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation>Aucune ligne DC dans le fichier TIO %1</translation>
    </message>
    <message>
        <source>DC line missing after FT line in TIO file %1</source>
        <comment>%1 is the name of the file</comment>
        <translation>Ligne DC absente après une ligne FT dans le fichier TIO %1</translation>
    </message>
    <message>
        <source>Incorrect traces in %1 (branch hit outside of any file-part)</source>
        <comment>%1 is the name of the incorrect trace file</comment>
        <translation>Traces incorrectes dans %1 (branche exécutée hors de toute partie de fichier)</translation>
    </message>
    <message>
        <source>Maybe this Coverage Trace file has been generated using an older version of the Deplonix</source>
        <translation>Ce fichier de trace de couverture a peut-être été généré avec une version plus ancienne de Deplonix</translation>
    </message>
    <message>
        <source>Bad hexadecimal number while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Nombre hexadécimal incorrect à la lecture du fichier %1</translation>
    </message>
    <message>
        <source>No memory left</source>
        <comment>program failed on memory allocation</comment>
        <translation>Mémoire épuisée</translation>
    </message>
    <message>
        <source>Cannot write to file %1</source>
        <translation>Impossible d&apos;écrire dans le fichier %1</translation>
    </message>
    <message>
        <source>Cannot read file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Impossible de lire le fichier %1</translation>
    </message>
</context>
<context>
    <name>Internal Error</name>
    <message>
        <source>Cannot get service name in GetServiceAuth()</source>
        <translation>Impossible d&apos;obtenir le nom du service dans GetServiceAuth()</translation>
    </message>
    <message>
        <source>Bad bigramme in AddTioBranch()</source>
        <translation>Bigramme incorrect dans AddTioBranch()</translation>
    </message>
    <message>
        <source>Ident is too big in AddTioBranch</source>
        <translation>Identifiant trop grand dans AddTioBranch</translation>
    </message>
    <message>
        <source>No entry point in proc</source>
        <translation>Aucun point d&apos;entrée dans la fonction</translation>
    </message>
    <message>
        <source>Please, contact your support</source>
        <translation>Contacter le support technique</translation>
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
        <translation>l&apos;objet d&apos;un fichier source n&apos;a pas été lié avec le bon objet d&apos;exécution (vérifier le mode d&apos;instrumentation)</translation>
    </message>
    <message>
        <source>a composition of conditions evaluates in an unexpected result, contact your vendor</source>
        <translation>une composition de conditions donne un résultat inattendu, contacter le fournisseur</translation>
    </message>
    <message>
        <source>a composition of conditions reached with an unexpected input vector, contact your vendor</source>
        <translation>une composition de conditions a été atteinte avec un vecteur d&apos;entrée inattendu, contacter le fournisseur</translation>
    </message>
    <message>
        <source>unknown error opcode</source>
        <translation>code d&apos;erreur inconnu</translation>
    </message>
    <message>
        <source>%1 is not a valid Code Coverage trace file</source>
        <translation>%1 n&apos;est pas un fichier valide de trace de couverture de code</translation>
    </message>
    <message>
        <source>Number overflow while reading file %1</source>
        <comment>%1 is the file name</comment>
        <translation>Nombre trop grand à la lecture du fichier %1</translation>
    </message>
</context>
<context>
    <name>User Info</name>
    <message>
        <source>Creating annotated listing of %1</source>
        <comment>%1 is the corresponding source file name</comment>
        <translation>Création du listage annoté du fichier %1</translation>
    </message>
    <message>
        <source>Appending annotated listing of %1</source>
        <comment>%1 is the corresponding source file name</comment>
        <translation>Ajout du listage annoté du fichier %1</translation>
    </message>
    <message>
        <source>Parts of traces do not match any listed FDC files; such parts are ignored</source>
        <translation>Des parties de traces ne correspondent à aucun des fichiers FDC indiqués&#xa0;; elles sont ignorées</translation>
    </message>
</context>
<context>
    <name>User Warning</name>
    <message>
        <source>Use of -SUMMARY=CONCLUSION and -FILE is inconsistent, -FILE is ignored</source>
        <translation>Les options -SUMMARY=CONCLUSION et -FILE sont incompatibles, -FILE est ignorée</translation>
    </message>
    <message>
        <source>File %1 with path in -FILE list; path ignored</source>
        <comment>%1 is the file with a path</comment>
        <translation>Fichier %1 indiqué avec un chemin dans la liste de l&apos;option -FILE&#xa0;; le chemin est ignoré</translation>
    </message>
    <message>
        <source>The file %1 appears twice in -FILE list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Le fichier %1 figure deux fois dans la liste de l&apos;option -FILE</translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION and -EXFILE is inconsistent, -EXFILE is ignored</source>
        <translation>Les options -SUMMARY=CONCLUSION et -EXFILE sont incompatibles, -EXFILE est ignorée</translation>
    </message>
    <message>
        <source>File %1 with path in -EXFILE list; path ignored</source>
        <comment>%1 is the file with a path</comment>
        <translation>Fichier %1 indiqué avec un chemin dans la liste de l&apos;option -EXFILE&#xa0;; le chemin est ignoré</translation>
    </message>
    <message>
        <source>The file %1 appears twice in -EXFILE list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Le fichier %1 figure deux fois dans la liste de l&apos;option -EXFILE</translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION|FILE and -SERVICE is inconsistent, -SERVICE is ignored</source>
        <translation>Les options -SUMMARY=CONCLUSION|FILE et -SERVICE sont incompatibles, -SERVICE est ignorée</translation>
    </message>
    <message>
        <source>The service %1 appears twice in -SERVICE list</source>
        <comment>%1 is the name of the service</comment>
        <translation>Le service %1 figure deux fois dans la liste de l&apos;option -SERVICE</translation>
    </message>
    <message>
        <source>Use of -SUMMARY=CONCLUSION|FILE and -EXSERVICE is inconsistent, -EXSERVICE is ignored</source>
        <translation>Les options -SUMMARY=CONCLUSION|FILE et -EXSERVICE sont incompatibles, -EXSERVICE est ignorée</translation>
    </message>
    <message>
        <source>The service %1 appears twice in -EXSERVICE list</source>
        <comment>%1 is the name of the service</comment>
        <translation>Le service %1 figure deux fois dans la liste de l&apos;option -EXSERVICE</translation>
    </message>
    <message>
        <source>Use of -GLOBAL and -TEST is inconsistent, -TEST is ignored</source>
        <translation>Les options -GLOBAL et -TEST sont incompatibles, -TEST est ignorée</translation>
    </message>
    <message>
        <source>The test %1 appears twice in -TEST list</source>
        <comment>%1 is the name of the test</comment>
        <translation>Le test %1 figure deux fois dans la liste de l&apos;option -TEST</translation>
    </message>
    <message>
        <source>Use of -GLOBAL and -EXTEST is inconsistent, -EXTEST is ignored</source>
        <translation>Les options -GLOBAL et -EXTEST sont incompatibles, -EXTEST est ignorée</translation>
    </message>
    <message>
        <source>The test %1 appears twice in -EXTEST list</source>
        <comment>%1 is the name of the test</comment>
        <translation>Le test %1 figure deux fois dans la liste de l&apos;option -EXTEST</translation>
    </message>
    <message>
        <source>-MERGETESTS cannot be used without -CLEAN, -MERGETESTS is ignored</source>
        <translation>L&apos;option -MERGETESTS n&apos;est pas utilisable sans -CLEAN, -MERGETESTS est ignorée</translation>
    </message>
    <message>
        <source>Use of -SUMMARY and -BRANCH is inconsistent, -BRANCH is ignored</source>
        <translation>Les options -SUMMARY et -BRANCH sont incompatibles, -BRANCH est ignorée</translation>
    </message>
    <message>
        <source>Some unexecuted branches do not come from file %1, they are copied at the end of listing file.</source>
        <comment>%1 is the name of the file</comment>
        <translation>Certaines branches non exécutées ne proviennent pas du fichier %1, elles sont recopiées à la fin du fichier de listage.</translation>
    </message>
    <message>
        <source>Cannot create annotated listing %1</source>
        <comment>%1 is the name of the listing file</comment>
        <translation>Impossible de créer le listage annoté %1</translation>
    </message>
    <message>
        <source>Cannot create annotated listing, source file %1 not found</source>
        <comment>%1 is the name of the source file</comment>
        <translation>Impossible de créer le listage annoté, fichier source %1 introuvable</translation>
    </message>
    <message>
        <source>File %1 in -FILE option is not in source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Le fichier %1 de l&apos;option -FILE ne figure pas dans la liste des fichiers source</translation>
    </message>
    <message>
        <source>File %1 in -EXFILE option is not in source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Le fichier %1 de l&apos;option -EXFILE ne figure pas dans la liste des fichiers source</translation>
    </message>
    <message>
        <source>Service %1 in -SERVICE option is unknown in selected source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Le service %1 de l&apos;option -SERVICE est inconnu dans la liste des fichiers source sélectionnés</translation>
    </message>
    <message>
        <source>Service %1 in -EXSERVICE option is unknown in selected source file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Le service %1 de l&apos;option -EXSERVICE est inconnu dans la liste des fichiers source sélectionnés</translation>
    </message>
    <message>
        <source>Test %1 in -TEST option was unknown in trace file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Le test %1 de l&apos;option -TEST est inconnu dans la liste des fichiers de trace</translation>
    </message>
    <message>
        <source>Test %1 in -EXTEST option was unknown in trace file list</source>
        <comment>%1 is the name of the file</comment>
        <translation>Le test %1 de l&apos;option -EXTEST est inconnu dans la liste des fichiers de trace</translation>
    </message>
    <message>
        <source>No traces in argument list; generating report showing all branches</source>
        <translation>Aucune trace dans la liste d&apos;arguments&#xa0;; le rapport produit présente toutes les branches</translation>
    </message>
    <message>
        <source>Selected test list is empty; generating conclusion only</source>
        <translation>La liste des tests sélectionnés est vide&#xa0;; seule la conclusion est produite</translation>
    </message>
    <message>
        <source>Some traces are count-oriented and others are not, count is ignored</source>
        <translation>Certaines traces comportent des comptages et d&apos;autres non, les comptages sont ignorés</translation>
    </message>
    <message>
        <source>Error detected during execution:
-&gt; %1</source>
        <comment>%1 is the message of the error</comment>
        <translation>Erreur détectée pendant l&apos;exécution&#xa0;:
-&gt; %1</translation>
    </message>
</context>
<context>
    <name>fdcL-Assertion</name>
    <message>
        <source>Bad expression in CalculVector()</source>
        <translation>Expression incorrecte dans CalculVector()</translation>
    </message>
    <message>
        <source>Cannot find condition in current procedure</source>
        <translation>Condition introuvable dans la fonction courante</translation>
    </message>
    <message>
        <source>Cannot add a couple of vectors</source>
        <translation>Impossible d&apos;ajouter un couple de vecteurs</translation>
    </message>
    <message>
        <source>Cannot retrieve correctly basic condition text</source>
        <translation>Lecture impossible&#xa0;: texte de la condition élémentaire</translation>
    </message>
    <message>
        <source>Bad attempt to validate FDC file</source>
        <translation>Tentative incorrecte de validation d&apos;un fichier FDC</translation>
    </message>
    <message>
        <source>Bad attempt to free FDC file</source>
        <translation>Tentative incorrecte de libération d&apos;un fichier FDC</translation>
    </message>
    <message>
        <source>Bad attempt to close FDC file</source>
        <translation>Tentative incorrecte de fermeture d&apos;un fichier FDC</translation>
    </message>
    <message>
        <source>Attempt to open unnamed FDC file</source>
        <translation>Tentative d&apos;ouverture d&apos;un fichier FDC sans nom</translation>
    </message>
</context>
<context>
    <name>fdcL-Error</name>
    <message>
        <source>Bad composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Composition incorrecte dans le fichier %1</translation>
    </message>
    <message>
        <source>Bad number of basic condition in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Nombre incorrect de conditions élémentaires dans une composition du fichier %1</translation>
    </message>
    <message>
        <source>Bad number of cases in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Nombre incorrect de cas dans une composition du fichier %1</translation>
    </message>
    <message>
        <source>Bad cases or expression in a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Cas ou expression incorrects dans une composition du fichier %1</translation>
    </message>
    <message>
        <source>Bad frontier for a composition in file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Frontière incorrecte pour une composition du fichier %1</translation>
    </message>
    <message>
        <source>Cannot calculate modified conditions without composition</source>
        <translation>Impossible de calculer les conditions modifiées sans composition</translation>
    </message>
    <message>
        <source>src-file name in FDC file</source>
        <translation>nom du fichier source dans le fichier FDC</translation>
    </message>
    <message>
        <source>src-file directory in FDC file</source>
        <translation>répertoire du fichier source dans le fichier FDC</translation>
    </message>
    <message>
        <source>entity name in FDC file</source>
        <translation>nom de l&apos;entité dans le fichier FDC</translation>
    </message>
    <message>
        <source>calling function in FDC file</source>
        <translation>fonction appelante dans le fichier FDC</translation>
    </message>
    <message>
        <source>called function in FDC file</source>
        <translation>fonction appelée dans le fichier FDC</translation>
    </message>
    <message>
        <source>enclosing entity in FDC file</source>
        <translation>entité englobante dans le fichier FDC</translation>
    </message>
    <message>
        <source>label in FDC file</source>
        <translation>libellé dans le fichier FDC</translation>
    </message>
    <message>
        <source>Multiple input in procedure %1</source>
        <comment>%1 is a procedure name</comment>
        <translation>Plusieurs entrées dans la fonction %1</translation>
    </message>
    <message>
        <source>Unknown tpr type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Type tpr inconnu dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Unknown tb type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Type tb inconnu dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Unknown bigramme %1 in FDC file %2</source>
        <comment>%1 is the text, %2 a file name</comment>
        <translation>Bigramme %1 inconnu dans le fichier FDC %2</translation>
    </message>
    <message>
        <source>No data in FDC</source>
        <translation>Aucune donnée dans le fichier FDC</translation>
    </message>
    <message>
        <source>FDC file without any version string: %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fichier FDC sans chaîne de version&#xa0;: %1</translation>
    </message>
    <message>
        <source>%1 has been generated with an incompatible version of the product: %2</source>
        <comment>%1 is a file name, %2 a version</comment>
        <translation>%1 a été généré avec une version incompatible du produit&#xa0;: %2</translation>
    </message>
    <message>
        <source>FDC file without any token string: %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fichier FDC sans chaîne de jeton&#xa0;: %1</translation>
    </message>
    <message>
        <source>Bad or missing FC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Ligne FC incorrecte ou absente dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Bad or missing FD in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Ligne FD incorrecte ou absente dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Garbage at the end of FD line in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Texte superflu à la fin de la ligne FD dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Bad or missing TC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Ligne TC incorrecte ou absente dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Bad or missing TC information in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Informations de la ligne TC incorrectes ou absentes dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Unknown coverage type in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Type de couverture inconnu dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Bad FDC file</source>
        <translation>Fichier FDC incorrect</translation>
    </message>
    <message>
        <source>Bad or missing DC in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Ligne DC incorrecte ou absente dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Garbage at the end of DC line checksum in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Texte superflu après la somme de contrôle de la ligne DC dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Cannot find instrumentation ID for specified trace in FDC file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Identifiant d&apos;instrumentation de la trace indiquée introuvable dans le fichier FDC %1</translation>
    </message>
    <message>
        <source>Cannot retrieve correctly %1 %2</source>
        <comment>%1 is a message, %2 a file name</comment>
        <translation>Lecture impossible&#xa0;: %1 %2</translation>
    </message>
    <message>
        <source>Empty %1 %2</source>
        <comment>%1 is a message, %2 a file name</comment>
        <translation>Champ vide&#xa0;: %1 %2</translation>
    </message>
</context>
<context>
    <name>fdcL-Info</name>
    <message>
        <source>Computing modified conditions from %1compound conditions, it can take a few minutes ...</source>
        <comment>%1 is a number</comment>
        <translation>Calcul des conditions modifiées à partir de %1 conditions composées, cela peut prendre quelques minutes...</translation>
    </message>
    <message>
        <source>%1 contains redundant static information; it is ignored</source>
        <comment>%1 is a fdc file name</comment>
        <translation>%1 contient des informations statiques redondantes&#xa0;; elles sont ignorées</translation>
    </message>
</context>
<context>
    <name>fdcL-Warning</name>
    <message>
        <source>Procedures coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des fonctions ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Procedures and outputs coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des fonctions et sorties ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Calls coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des appels ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Simple blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des blocs d&apos;instructions ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Implicit blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des blocs implicites ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Logical blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des boucles (blocs logiques) ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Asynchronous transfer blocks coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des blocs asynchrones ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Basic conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des conditions élémentaires ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Modified conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des conditions modifiées ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Compound conditions coverage type won&apos;t be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>La couverture des conditions composées ne sera pas calculée pour le fichier %1</translation>
    </message>
    <message>
        <source>Source file touched after instrumentation: %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fichier source modifié après l&apos;instrumentation&#xa0;: %1</translation>
    </message>
    <message>
        <source>Older version of src file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Fichier source plus ancien que lors de l&apos;instrumentation&#xa0;: %1</translation>
    </message>
    <message>
        <source>None of requested coverage types will be computed for file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Aucun des types de couverture demandés ne sera calculé pour le fichier %1</translation>
    </message>
    <message>
        <source>Cannot open file %1</source>
        <comment>%1 is a file name</comment>
        <translation>Impossible d&apos;ouvrir le fichier %1</translation>
    </message>
</context>
</TS>
