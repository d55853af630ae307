<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Changes</name>
    <message>
        <source>Add %1</source>
        <translation>Ajouter %1</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>Supprimer %1</translation>
    </message>
    <message>
        <source>Move %1</source>
        <translation>Déplacer %1</translation>
    </message>
    <message>
        <source>Replace %1</source>
        <translation>Remplacer %1</translation>
    </message>
    <message>
        <source>Rename %1 to %2</source>
        <translation>Renommer %1 en %2</translation>
    </message>
    <message>
        <source>Add configuration %1</source>
        <translation>Ajouter la configuration %1</translation>
    </message>
    <message>
        <source>Remove configuration %1</source>
        <translation>Supprimer la configuration %1</translation>
    </message>
    <message>
        <source>Select configuration %1</source>
        <translation>Sélectionner la configuration %1</translation>
    </message>
    <message>
        <source>Set %1</source>
        <translation>Définir %1</translation>
    </message>
    <message>
        <source>Reset %1</source>
        <translation>Réinitialiser %1</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>Modifier %1</translation>
    </message>
    <message>
        <source>Select application %1</source>
        <translation>Sélectionner l’application %1</translation>
    </message>
    <message>
        <source>Change the project</source>
        <translation>Modifier le projet</translation>
    </message>
    <message numerus="yes">
        <source>%n options</source>
        <translation>
            <numerusform>%n option</numerusform>
            <numerusform>%n options</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files</source>
        <translation>
            <numerusform>%n fichier</numerusform>
            <numerusform>%n fichiers</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n groups</source>
        <translation>
            <numerusform>%n groupe</numerusform>
            <numerusform>%n groupes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n applications</source>
        <translation>
            <numerusform>%n application</numerusform>
            <numerusform>%n applications</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n élément</numerusform>
            <numerusform>%n éléments</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CodeEditor</name>
    <message>
        <source>The text contains characters that the file&apos;s encoding can&apos;t represent.</source>
        <translation>Le texte contient des caractères que l’encodage du fichier ne permet pas de représenter.</translation>
    </message>
</context>
<context>
    <name>CrashRecovery</name>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>Not everything could be restored. The unsaved changes will be offered again at the next start.</source>
        <translation>Tout n’a pas pu être restauré. Les modifications non enregistrées seront proposées de nouveau au prochain démarrage.</translation>
    </message>
    <message>
        <source>%1 can&apos;t be opened.</source>
        <translation>Impossible d’ouvrir %1.</translation>
    </message>
    <message>
        <source>These project changes conflict with changes that were already restored:</source>
        <translation>Ces modifications du projet sont en conflit avec d’autres déjà restaurées&#xa0;:</translation>
    </message>
    <message>
        <source>%1 already has other unsaved changes.</source>
        <translation>%1 a déjà d’autres modifications non enregistrées.</translation>
    </message>
    <message>
        <source>%1 and its folder no longer exist. The unsaved changes will be offered again at the next start. You can also save copies of them in another folder now.</source>
        <translation>%1 et son dossier n’existent plus. Les modifications non enregistrées seront proposées de nouveau au prochain démarrage. Vous pouvez aussi en enregistrer dès maintenant des copies dans un autre dossier.</translation>
    </message>
    <message>
        <source>&amp;Save copies...</source>
        <translation>Enregistrer des &amp;copies…</translation>
    </message>
    <message>
        <source>Folder for the copies</source>
        <translation>Dossier pour les copies</translation>
    </message>
    <message>
        <source>Unsaved changes to %1</source>
        <translation>Modifications non enregistrées de %1</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written: %2</source>
        <translation>Impossible d’écrire %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Saved as:</source>
        <translation>Enregistré sous&#xa0;:</translation>
    </message>
</context>
<context>
    <name>DamageNotice</name>
    <message numerus="yes">
        <source>%1, and %n more</source>
        <translation>
            <numerusform>%1 et %n autre endroit</numerusform>
            <numerusform>%1 et %n autres endroits</numerusform>
        </translation>
    </message>
    <message>
        <source>The project was only partially read: %1</source>
        <translation>Le projet n’a été lu que partiellement&#xa0;: %1</translation>
    </message>
    <message>
        <source>%1

Build or save it without the unread parts? Before a file is overwritten, it is copied to a file with .bak appended to its name.</source>
        <translation>%1

Générer ou enregistrer sans les parties non lues&#xa0;? Avant d’être remplacé, chaque fichier est copié sous son nom suivi de .bak.</translation>
    </message>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>%1

Save the project&apos;s changes without the unread parts?</source>
        <translation>%1

Enregistrer les modifications du projet sans les parties non lues&#xa0;?</translation>
    </message>
</context>
<context>
    <name>DeclarationSearch</name>
    <message>
        <source>No identifier at the cursor</source>
        <translation>Aucun identificateur à la position du curseur</translation>
    </message>
    <message>
        <source>No global named %1 found</source>
        <translation>Aucun nom global %1 trouvé</translation>
    </message>
    <message>
        <source>No global named %1 found; build the project first</source>
        <translation>Aucun nom global %1 trouvé&#xa0;; générez d’abord le projet</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Réta&amp;blir</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Co&amp;uper</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>C&amp;oller</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>&amp;Tout sélectionner</translation>
    </message>
    <message>
        <source>Go to line</source>
        <translation>Aller à la ligne</translation>
    </message>
    <message>
        <source>Line (1 to %1):</source>
        <translation>Ligne (1 à %1)&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Édition</translation>
    </message>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Rechercher…</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>Rechercher le &amp;suivant</translation>
    </message>
    <message>
        <source>Find pre&amp;vious</source>
        <translation>Rechercher le &amp;précédent</translation>
    </message>
    <message>
        <source>R&amp;eplace...</source>
        <translation>R&amp;emplacer…</translation>
    </message>
    <message>
        <source>&amp;Go to line...</source>
        <translation>Aller à la &amp;ligne…</translation>
    </message>
    <message>
        <source>Go to &amp;declaration</source>
        <translation>Aller à la &amp;déclaration</translation>
    </message>
</context>
<context>
    <name>EditorArea</name>
    <message>
        <source>Reload project</source>
        <translation>Recharger le projet</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorer</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Recharger</translation>
    </message>
    <message>
        <source>Keep mine</source>
        <translation>Conserver ma version</translation>
    </message>
    <message>
        <source>%1 has been changed both here and by another program.</source>
        <translation>%1 a été modifié à la fois ici et par un autre programme.</translation>
    </message>
    <message>
        <source>Allow building and saving</source>
        <translation>Autoriser la génération et l’enregistrement</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Masquer</translation>
    </message>
    <message>
        <source>Details...</source>
        <translation>Détails…</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Réessayer</translation>
    </message>
    <message numerus="yes">
        <source>%1 was not saved, because another program has changed it too.</source>
        <translation>
            <numerusform>%1 n’a pas été enregistré, car un autre programme l’a aussi modifié.</numerusform>
            <numerusform>%1 n’ont pas été enregistrés, car un autre programme les a aussi modifiés.</numerusform>
        </translation>
    </message>
    <message>
        <source>Trust</source>
        <translation>Faire confiance</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Pas maintenant</translation>
    </message>
</context>
<context>
    <name>EditorStatus</name>
    <message>
        <source>Line %1, column %2</source>
        <translation>Ligne %1, colonne %2</translation>
    </message>
    <message>
        <source>8-bit</source>
        <translation>8 bits</translation>
    </message>
    <message>
        <source>Tabs</source>
        <translation>Tabulations</translation>
    </message>
    <message>
        <source>%1 spaces</source>
        <translation>%1 espaces</translation>
    </message>
</context>
<context>
    <name>EditorTabs</name>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>%1 can&apos;t be read: %2</source>
        <translation>Impossible de lire %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written: %2</source>
        <translation>Impossible d’écrire %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Save changes to %1?</source>
        <translation>Enregistrer les modifications de %1&#xa0;?</translation>
    </message>
    <message>
        <source>Open files</source>
        <translation>Fichiers ouverts</translation>
    </message>
    <message numerus="yes">
        <source>%1 has unsaved changes. Build the version on disk?</source>
        <translation>
            <numerusform>%1 a des modifications non enregistrées. Générer avec la version sur le disque&#xa0;?</numerusform>
            <numerusform>%1 ont des modifications non enregistrées. Générer avec les versions sur le disque&#xa0;?</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Build</source>
        <translation>&amp;Générer</translation>
    </message>
    <message>
        <source>Another program has also changed this file. Saving overwrites its changes.</source>
        <translation>Un autre programme a aussi modifié ce fichier. L’enregistrement écrasera ses modifications.</translation>
    </message>
</context>
<context>
    <name>EditorZoom</name>
    <message>
        <source>Zoom &amp;in</source>
        <translation>Zoom &amp;avant</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>Zoom a&amp;rrière</translation>
    </message>
    <message>
        <source>Reset &amp;zoom</source>
        <translation>Réinitialiser le &amp;zoom</translation>
    </message>
</context>
<context>
    <name>FindBar</name>
    <message>
        <source>Find</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Texte à rechercher</translation>
    </message>
    <message>
        <source>Replace with</source>
        <translation>Remplacer par</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Respecter la casse</translation>
    </message>
    <message>
        <source>Whole words only</source>
        <translation>Mots entiers uniquement</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Expression régulière</translation>
    </message>
    <message>
        <source>Previous match</source>
        <translation>Occurrence précédente</translation>
    </message>
    <message>
        <source>Next match</source>
        <translation>Occurrence suivante</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Remplacer</translation>
    </message>
    <message>
        <source>Replace &amp;all</source>
        <translation>&amp;Tout remplacer</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Introuvable</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>%1 au total</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message numerus="yes">
        <source>%n replaced</source>
        <translation>
            <numerusform>%n remplacée</numerusform>
            <numerusform>%n remplacées</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Findings</name>
    <message>
        <source>Damage</source>
        <translation>Données endommagées</translation>
    </message>
    <message>
        <source>Missing files</source>
        <translation>Fichiers manquants</translation>
    </message>
    <message>
        <source>%1 is missing</source>
        <translation>%1 est manquant</translation>
    </message>
    <message>
        <source>Missing folders</source>
        <translation>Dossiers manquants</translation>
    </message>
    <message>
        <source>Missing libraries</source>
        <translation>Bibliothèques manquantes</translation>
    </message>
    <message>
        <source>the library %1 was found neither in the library folders nor among the compiler&apos;s libraries</source>
        <translation>La bibliothèque %1 est introuvable, tant dans les dossiers de bibliothèques que parmi celles du compilateur</translation>
    </message>
    <message>
        <source>Letter case</source>
        <translation>Casse des noms</translation>
    </message>
    <message>
        <source>%1 is spelled %2 on disk</source>
        <translation>%1 s’écrit %2 sur le disque</translation>
    </message>
    <message>
        <source>Duplicate files</source>
        <translation>Fichiers en double</translation>
    </message>
    <message>
        <source>%1 is listed more than once</source>
        <translation>%1 figure plusieurs fois dans la liste</translation>
    </message>
    <message>
        <source>Duplicate outputs</source>
        <translation>Fichiers de sortie en double</translation>
    </message>
    <message>
        <source>%1 is also the output of %2</source>
        <translation>%1 est aussi le fichier de sortie de %2</translation>
    </message>
    <message>
        <source>Unreachable drives</source>
        <translation>Lecteurs inaccessibles</translation>
    </message>
    <message>
        <source>%1 is on a drive that is not mapped</source>
        <translation>%1 se trouve sur un lecteur qui n’est pas associé</translation>
    </message>
    <message>
        <source>Absolute paths</source>
        <translation>Chemins absolus</translation>
    </message>
    <message>
        <source>%1 is an absolute path</source>
        <translation>%1 est un chemin absolu</translation>
    </message>
    <message>
        <source>Unknown options</source>
        <translation>Options inconnues</translation>
    </message>
    <message>
        <source>no definition contains the option %1</source>
        <translation>Aucune définition ne contient l’option %1</translation>
    </message>
    <message>
        <source>Invalid values</source>
        <translation>Valeurs non valides</translation>
    </message>
    <message>
        <source>Unknown node types</source>
        <translation>Types de nœuds inconnus</translation>
    </message>
    <message>
        <source>%1 is not a type in the configuration file, so %2 is not built</source>
        <translation>%1 n’est pas un type du fichier de configuration&#xa0;; %2 n’est donc pas généré</translation>
    </message>
    <message>
        <source>Unknown tools</source>
        <translation>Outils inconnus</translation>
    </message>
    <message>
        <source>no definition contains the tool %1</source>
        <translation>Aucune définition ne contient l’outil %1</translation>
    </message>
    <message>
        <source>Missing programs</source>
        <translation>Programmes manquants</translation>
    </message>
    <message>
        <source>%1 is not installed; it is needed by %2</source>
        <translation>%1 n’est pas installé, mais %2 en a besoin</translation>
    </message>
    <message>
        <source>Errors in definitions</source>
        <translation>Erreurs dans les définitions</translation>
    </message>
    <message>
        <source>Not a file</source>
        <translation>Pas un fichier</translation>
    </message>
    <message>
        <source>%1 is not a file</source>
        <translation>%1 n’est pas un fichier</translation>
    </message>
    <message>
        <source>Not a folder</source>
        <translation>Pas un dossier</translation>
    </message>
    <message>
        <source>%1 is not a folder</source>
        <translation>%1 n’est pas un dossier</translation>
    </message>
    <message>
        <source>Unreadable files</source>
        <translation>Fichiers illisibles</translation>
    </message>
    <message>
        <source>%1 can&apos;t be read</source>
        <translation>Impossible de lire %1</translation>
    </message>
    <message>
        <source>Duplicate labels</source>
        <translation>Libellés en double</translation>
    </message>
    <message>
        <source>the labels of the applications %1 and %2 differ only in letter case</source>
        <translation>Les libellés des applications %1 et %2 ne diffèrent que par la casse</translation>
    </message>
    <message>
        <source>Dependency cycles</source>
        <translation>Dépendances circulaires</translation>
    </message>
    <message>
        <source>applications that use each other&apos;s outputs can&apos;t be built: %1</source>
        <translation>Impossible de générer des applications qui utilisent mutuellement leurs fichiers de sortie&#xa0;: %1</translation>
    </message>
    <message>
        <source>Files with several names</source>
        <translation>Fichiers ayant plusieurs noms</translation>
    </message>
    <message>
        <source>%1 and %2 are the same file, which is built twice</source>
        <translation>%1 et %2 sont un même fichier, qui est généré deux fois</translation>
    </message>
    <message>
        <source>Unknown configurations</source>
        <translation>Configurations inconnues</translation>
    </message>
    <message>
        <source>options are stored for the configuration %1, which the application does not have</source>
        <translation>Des options sont enregistrées pour la configuration %1, qui n’existe pas dans l’application</translation>
    </message>
    <message>
        <source>Nodes without a file</source>
        <translation>Nœuds sans fichier</translation>
    </message>
    <message>
        <source>%1 does not name a file</source>
        <translation>%1 ne désigne aucun fichier</translation>
    </message>
    <message>
        <source>Leftover applications</source>
        <translation>Applications oubliées</translation>
    </message>
    <message>
        <source>%1 is not part of the project, but may have changes that %2 lacks</source>
        <translation>%1 ne fait pas partie du projet, mais peut contenir des modifications absentes de %2</translation>
    </message>
</context>
<context>
    <name>FindingsPane</name>
    <message>
        <source>Finding</source>
        <translation>Anomalie</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>Project check findings</source>
        <translation>Anomalies relevées par la vérification du projet</translation>
    </message>
    <message>
        <source>No project is open.</source>
        <translation>Aucun projet n’est ouvert.</translation>
    </message>
    <message>
        <source>Checking the project...</source>
        <translation>Vérification du projet…</translation>
    </message>
    <message>
        <source>No findings.</source>
        <translation>Aucune anomalie.</translation>
    </message>
    <message numerus="yes">
        <source>%n finding(s)</source>
        <translation>
            <numerusform>%n anomalie</numerusform>
            <numerusform>%n anomalies</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>GeneratorDialog</name>
    <message>
        <source>Add generated file</source>
        <translation>Ajouter un fichier généré</translation>
    </message>
    <message>
        <source>&amp;Made from:</source>
        <translation>&amp;Source :</translation>
    </message>
    <message>
        <source>&amp;Tool:</source>
        <translation>&amp;Outil :</translation>
    </message>
    <message>
        <source>Command lines that make the file, separated by semicolons. They run in the application&apos;s folder, and only if the project is trusted.</source>
        <translation>Lignes de commande qui créent le fichier, séparées par des points-virgules. Elles s&apos;exécutent dans le dossier de l&apos;application, et seulement si vous faites confiance au projet.</translation>
    </message>
    <message>
        <source>&amp;Commands:</source>
        <translation>&amp;Commandes :</translation>
    </message>
    <message>
        <source>The file that is made, relative to the application&apos;s folder.</source>
        <translation>Le fichier créé, relatif au dossier de l&apos;application.</translation>
    </message>
    <message>
        <source>&amp;Output:</source>
        <translation>S&amp;ortie :</translation>
    </message>
    <message>
        <source>&amp;Add the output to the project, to compile it</source>
        <translation>&amp;Ajouter la sortie au projet, pour la compiler</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>A picture, a table, a template ...</source>
        <translation>Une image, un tableau, un modèle…</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Parcourir…</translation>
    </message>
    <message>
        <source>File to make another one from</source>
        <translation>Fichier à partir duquel un autre est créé</translation>
    </message>
    <message>
        <source>Choose the file that another one is made from.</source>
        <translation>Choisissez le fichier à partir duquel un autre est créé.</translation>
    </message>
    <message>
        <source>%1 does not exist.</source>
        <translation>%1 n&apos;existe pas.</translation>
    </message>
    <message>
        <source>%1 is a folder.</source>
        <translation>%1 est un dossier.</translation>
    </message>
    <message>
        <source>A project can&apos;t store the name %1.</source>
        <translation>Un projet ne peut pas enregistrer le nom %1.</translation>
    </message>
    <message>
        <source>%1 is in the application already. Remove it there first.</source>
        <translation>%1 est déjà dans l&apos;application. Retirez-le d&apos;abord.</translation>
    </message>
    <message>
        <source>Enter the commands that make the output.</source>
        <translation>Saisissez les commandes qui créent la sortie.</translation>
    </message>
    <message>
        <source>The output can&apos;t be the file that it is made from.</source>
        <translation>La sortie ne peut pas être le fichier à partir duquel elle est créée.</translation>
    </message>
    <message>
        <source>%1 is made from another file already.</source>
        <translation>%1 est déjà créé à partir d&apos;un autre fichier.</translation>
    </message>
    <message>
        <source>%1 exists. Only files in a subfolder of &quot;build&quot; are replaced.</source>
        <translation>%1 existe. Seuls les fichiers dans un sous-dossier de « build » sont remplacés.</translation>
    </message>
</context>
<context>
    <name>GroupBox</name>
    <message>
        <source>Drag a column header here to group by that column</source>
        <translation>Glissez ici un en-tête de colonne pour grouper selon cette colonne</translation>
    </message>
    <message>
        <source>Grouped by</source>
        <translation>Groupé par</translation>
    </message>
    <message>
        <source>Stop grouping by %1</source>
        <translation>Ne plus grouper par %1</translation>
    </message>
</context>
<context>
    <name>IdeWindow</name>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>Save &amp;all</source>
        <translation>&amp;Tout enregistrer</translation>
    </message>
    <message>
        <source>&amp;Close file</source>
        <translation>&amp;Fermer le fichier</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>Closing once the build has stopped...</source>
        <translation>Fermeture dès l’arrêt de la génération…</translation>
    </message>
    <message>
        <source>%1[*] - Tarn</source>
        <translation>%1[*] – Tarn</translation>
    </message>
    <message>
        <source>&amp;Navigate</source>
        <translation>&amp;Naviguer</translation>
    </message>
    <message numerus="yes">
        <source>File not found:
%1</source>
        <translation>
            <numerusform>Fichier introuvable&#xa0;:
%1</numerusform>
            <numerusform>Fichiers introuvables&#xa0;:
%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>The project is being built.</source>
        <translation>Le projet est en cours de génération.</translation>
    </message>
    <message>
        <source>Find in pro&amp;ject...</source>
        <translation>Rechercher dans le pro&amp;jet…</translation>
    </message>
    <message>
        <source>This installation is incomplete: %1</source>
        <translation>Cette installation est incomplète&#xa0;: %1</translation>
    </message>
    <message>
        <source>Project check</source>
        <translation>Vérification du projet</translation>
    </message>
    <message>
        <source>&amp;Check project</source>
        <translation>&amp;Vérifier le projet</translation>
    </message>
    <message>
        <source>Only groups and applications can be renamed here; files are shown under their names on disk.</source>
        <translation>Seuls les groupes et les applications peuvent être renommés ici&#xa0;; les fichiers portent leur nom sur le disque.</translation>
    </message>
    <message>
        <source>Program output</source>
        <translation>Sortie du programme</translation>
    </message>
    <message>
        <source>Local Settings</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>%1 Local Settings</source>
        <translation>Options de %1</translation>
    </message>
    <message>
        <source>A definition has to be corrected: %1</source>
        <translation>Une définition doit être corrigée&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>JournalManager</name>
    <message>
        <source>Unsaved changes would be lost in a crash: %1 can&apos;t be written (%2).</source>
        <translation>Les modifications non enregistrées seraient perdues en cas de plantage&#xa0;: impossible d’écrire %1 (%2).</translation>
    </message>
    <message>
        <source>Too large for crash recovery: %1.</source>
        <translation>Trop volumineux pour la récupération après un plantage&#xa0;: %1.</translation>
    </message>
</context>
<context>
    <name>NewProjectForm</name>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Lists the microcontrollers and boards with these words in their name, family, core or description</source>
        <translation>Liste les microcontrôleurs et les cartes dont le nom, la famille, le cœur ou la description contient ces mots</translation>
    </message>
    <message>
        <source>Choose a microcontroller.</source>
        <translation>Choisissez un microcontrôleur.</translation>
    </message>
    <message>
        <source>%1 already exists.</source>
        <translation>%1 existe déjà.</translation>
    </message>
    <message>
        <source>%1 can&apos;t handle spaces or special characters in a name.</source>
        <translation>%1 n’accepte ni espaces ni caractères spéciaux dans un nom.</translation>
    </message>
</context>
<context>
    <name>OutputPane</name>
    <message>
        <source>Program output</source>
        <translation>Sortie du programme</translation>
    </message>
    <message>
        <source>What a simulator or another tool prints appears here while it runs.</source>
        <translation>Ce qu’un simulateur ou un autre outil affiche apparaît ici pendant son exécution.</translation>
    </message>
</context>
<context>
    <name>PageView</name>
    <message>
        <source>This page can&apos;t be shown:
%1</source>
        <translation>Impossible d’afficher cette page&#xa0;:
%1</translation>
    </message>
</context>
<context>
    <name>PaneFocusCycle</name>
    <message>
        <source>&amp;Next pane</source>
        <translation>Volet &amp;suivant</translation>
    </message>
    <message>
        <source>&amp;Previous pane</source>
        <translation>Volet &amp;précédent</translation>
    </message>
</context>
<context>
    <name>ProblemNavigator</name>
    <message>
        <source>&amp;Next problem</source>
        <translation>Problème &amp;suivant</translation>
    </message>
    <message>
        <source>&amp;Previous problem</source>
        <translation>Problème &amp;précédent</translation>
    </message>
    <message>
        <source>The last build had no errors or warnings</source>
        <translation>La dernière génération n’a produit ni erreur ni avertissement</translation>
    </message>
    <message>
        <source>Error %1 of %2: %3</source>
        <translation>Erreur %1 sur %2&#xa0;: %3</translation>
    </message>
    <message>
        <source>Warning %1 of %2: %3</source>
        <translation>Avertissement %1 sur %2&#xa0;: %3</translation>
    </message>
</context>
<context>
    <name>ProjectActions</name>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>The project&apos;s files have been changed by another program.</source>
        <translation>Les fichiers du projet ont été modifiés par un autre programme.</translation>
    </message>
    <message>
        <source>You can open another project once the build has finished.</source>
        <translation>Vous pourrez ouvrir un autre projet une fois la génération terminée.</translation>
    </message>
    <message>
        <source>%1 can&apos;t be opened.</source>
        <translation>Impossible d’ouvrir %1.</translation>
    </message>
    <message>
        <source>Open project</source>
        <translation>Ouvrir un projet</translation>
    </message>
    <message>
        <source>Projects (*.tprj)</source>
        <translation>Projets (*.tprj)</translation>
    </message>
    <message>
        <source>Choose a folder for the copy of %1</source>
        <translation>Choisir un dossier pour la copie de %1</translation>
    </message>
    <message>
        <source>%1 can&apos;t be copied: %2</source>
        <translation>Impossible de copier %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>&amp;New project...</source>
        <translation>&amp;Nouveau projet…</translation>
    </message>
    <message>
        <source>&amp;Open project...</source>
        <translation>&amp;Ouvrir un projet…</translation>
    </message>
    <message>
        <source>Undo project change</source>
        <translation>Annuler la modification du projet</translation>
    </message>
    <message>
        <source>Redo project change</source>
        <translation>Rétablir la modification du projet</translation>
    </message>
    <message>
        <source>The project&apos;s changes could not be saved.</source>
        <translation>Les modifications du projet n’ont pas pu être enregistrées.</translation>
    </message>
    <message>
        <source>The project has unsaved changes.

Saving merges them with the other program&apos;s changes.</source>
        <translation>Le projet a des modifications non enregistrées.

L’enregistrement les fusionne avec celles de l’autre programme.</translation>
    </message>
    <message>
        <source>Another program is changing the project.</source>
        <translation>Un autre programme est en train de modifier le projet.</translation>
    </message>
    <message>
        <source>&amp;Find moved files...</source>
        <translation>&amp;Rechercher les fichiers déplacés…</translation>
    </message>
    <message>
        <source>Find &amp;moved files...</source>
        <translation>Rechercher les fichiers &amp;déplacés…</translation>
    </message>
    <message>
        <source>%1 must be closed first. Save its changes?</source>
        <translation>%1 doit d’abord être fermé. Enregistrer ses modifications&#xa0;?</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Annuler&#xa0;: %1</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>Rétablir&#xa0;: %1</translation>
    </message>
    <message>
        <source>&amp;Save copies...</source>
        <translation>Enregistrer des &amp;copies…</translation>
    </message>
    <message>
        <source>Folder for the copies</source>
        <translation>Dossier pour les copies</translation>
    </message>
    <message>
        <source>New file</source>
        <translation>Nouveau fichier</translation>
    </message>
    <message>
        <source>New &amp;file...</source>
        <translation>Nouveau &amp;fichier...</translation>
    </message>
    <message>
        <source>&amp;Create</source>
        <translation>&amp;Créer</translation>
    </message>
</context>
<context>
    <name>RecentMenu</name>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Vider la liste</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>Projets &amp;récents</translation>
    </message>
</context>
<context>
    <name>RecoveryDialog</name>
    <message>
        <source>Tarn closed unexpectedly on %1. These changes were not saved:</source>
        <translation>Tarn s’est arrêté de façon inattendue le %1. Ces modifications n’étaient pas enregistrées&#xa0;:</translation>
    </message>
    <message>
        <source>Restore unsaved changes</source>
        <translation>Restaurer les modifications non enregistrées</translation>
    </message>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Restaurer</translation>
    </message>
    <message>
        <source>&amp;Discard</source>
        <translation>&amp;Abandonner</translation>
    </message>
    <message>
        <source>&amp;Later</source>
        <translation>&amp;Plus tard</translation>
    </message>
    <message>
        <source>Discard these changes? They can&apos;t be restored afterwards.</source>
        <translation>Abandonner ces modifications&#xa0;? Il sera ensuite impossible de les restaurer.</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Recoverable changes</source>
        <translation>Modifications récupérables</translation>
    </message>
    <message>
        <source>Project changes: files and options</source>
        <translation>Modifications du projet&#xa0;: fichiers et options</translation>
    </message>
    <message>
        <source>None: the recovery data is damaged</source>
        <translation>Aucune&#xa0;: les données de récupération sont endommagées</translation>
    </message>
    <message>
        <source>Restored changes are not saved yet: review them, then save or undo them.</source>
        <translation>Les modifications restaurées ne sont pas encore enregistrées&#xa0;: vérifiez-les, puis enregistrez-les ou annulez-les.</translation>
    </message>
    <message>
        <source>Unsaved text; the file no longer exists</source>
        <translation>Texte non enregistré&#xa0;; le fichier n’existe plus</translation>
    </message>
    <message>
        <source>Unsaved text; the file has changed since</source>
        <translation>Texte non enregistré&#xa0;; le fichier a changé depuis</translation>
    </message>
    <message>
        <source>Unsaved text</source>
        <translation>Texte non enregistré</translation>
    </message>
    <message>
        <source>Tarn closed unexpectedly, and the unsaved changes can&apos;t be restored: the journal is damaged.

%1: %2</source>
        <translation>Tarn s’est arrêté de façon inattendue, et les modifications non enregistrées ne peuvent pas être restaurées&#xa0;: le journal est endommagé.

%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Another version of Tarn closed unexpectedly. Only that version can restore its unsaved changes.

%1</source>
        <translation>Une autre version de Tarn s’est arrêtée de façon inattendue. Seule cette version peut restaurer ses modifications non enregistrées.

%1</translation>
    </message>
    <message>
        <source>Project changes: files and options; the project no longer exists</source>
        <translation>Modifications du projet&#xa0;: fichiers et options&#xa0;; le projet n’existe plus</translation>
    </message>
</context>
<context>
    <name>RelocateDialog</name>
    <message>
        <source>Find moved files</source>
        <translation>Rechercher les fichiers déplacés</translation>
    </message>
    <message>
        <source>Search &amp;in:</source>
        <translation>Rechercher dan&amp;s&#xa0;:</translation>
    </message>
    <message>
        <source>Choose &amp;folder...</source>
        <translation>Choisir un &amp;dossier…</translation>
    </message>
    <message>
        <source>Folder to search</source>
        <translation>Dossier à parcourir</translation>
    </message>
    <message>
        <source>Missing</source>
        <translation>Manquant</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>Trouvé</translation>
    </message>
    <message>
        <source>Used as</source>
        <translation>Utilisé comme</translation>
    </message>
    <message>
        <source>&amp;Update project</source>
        <translation>&amp;Mettre à jour le projet</translation>
    </message>
    <message>
        <source>Searching...</source>
        <translation>Recherche en cours…</translation>
    </message>
    <message>
        <source>Nothing is missing.</source>
        <translation>Rien ne manque.</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n missing files found</source>
        <translation>
            <numerusform>%1 fichier trouvé sur %n manquant</numerusform>
            <numerusform>%1 fichiers trouvés sur %n manquants</numerusform>
        </translation>
    </message>
    <message>
        <source>application of %1</source>
        <translation>application de %1</translation>
    </message>
    <message>
        <source>file of %1</source>
        <translation>fichier de %1</translation>
    </message>
    <message>
        <source>New location of %1</source>
        <translation>Nouvel emplacement de %1</translation>
    </message>
    <message numerus="yes">
        <source>one of %n matching files</source>
        <translation>
            <numerusform>un fichier parmi %n correspondant</numerusform>
            <numerusform>un fichier parmi %n correspondants</numerusform>
        </translation>
    </message>
    <message>
        <source>option in %1; follows the files in its folder</source>
        <translation>option dans %1&#xa0;; suit les fichiers de son dossier</translation>
    </message>
    <message>
        <source>not found in this folder</source>
        <translation>introuvable dans ce dossier</translation>
    </message>
    <message numerus="yes">
        <source>%n folders can&apos;t be read</source>
        <translation>
            <numerusform>Impossible de lire %n dossier</numerusform>
            <numerusform>Impossible de lire %n dossiers</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ReportView</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>&amp;Tout sélectionner</translation>
    </message>
    <message>
        <source>&amp;Sort by</source>
        <translation>&amp;Trier par</translation>
    </message>
</context>
<context>
    <name>SaveNotice</name>
    <message numerus="yes">
        <source>%1 was also changed by another program. It now contains both changes.</source>
        <translation>
            <numerusform>%1 a aussi été modifié par un autre programme. Le fichier contient maintenant les deux modifications.</numerusform>
            <numerusform>%1 ont aussi été modifiés par un autre programme. Les fichiers contiennent maintenant les deux modifications.</numerusform>
        </translation>
    </message>
    <message>
        <source>Merged with another program&apos;s changes</source>
        <translation>Fusionné avec les modifications d’un autre programme</translation>
    </message>
    <message>
        <source>&amp;Open the other version</source>
        <translation>&amp;Ouvrir l’autre version</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Modification</translation>
    </message>
    <message>
        <source>Other version</source>
        <translation>Autre version</translation>
    </message>
    <message>
        <source>Files changed on both sides</source>
        <translation>Fichiers modifiés des deux côtés</translation>
    </message>
    <message>
        <source>removed here, changed there</source>
        <translation>supprimé ici, modifié de l’autre côté</translation>
    </message>
    <message>
        <source>changed here, removed there</source>
        <translation>modifié ici, supprimé de l’autre côté</translation>
    </message>
    <message>
        <source>%1 changed on both sides</source>
        <translation>%1 modifié des deux côtés</translation>
    </message>
    <message>
        <source>the file itself</source>
        <translation>le fichier lui-même</translation>
    </message>
    <message>
        <source>contains the changes from both sides</source>
        <translation>contient les modifications des deux côtés</translation>
    </message>
    <message>
        <source>contained more than could be read</source>
        <translation>contenait plus que ce qui a pu être lu</translation>
    </message>
    <message>
        <source>replaced by your version</source>
        <translation>remplacé par votre version</translation>
    </message>
    <message>
        <source>The other version:</source>
        <translation>L’autre version&#xa0;:</translation>
    </message>
    <message numerus="yes">
        <source>%1 was changed here and by another program, with %n conflict(s).</source>
        <translation>
            <numerusform>%1 a été modifié ici et par un autre programme, avec un conflit.</numerusform>
            <numerusform>%1 a été modifié ici et par un autre programme, avec %n conflits.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Project files were changed here and by another program, with %n conflict(s).</source>
        <translation>
            <numerusform>Des fichiers du projet ont été modifiés ici et par un autre programme, avec un conflit.</numerusform>
            <numerusform>Des fichiers du projet ont été modifiés ici et par un autre programme, avec %n conflits.</numerusform>
        </translation>
    </message>
    <message>
        <source>Where both sides changed the same value, yours was saved. Whatever was removed on one side but changed on the other was kept.</source>
        <translation>Là où les deux côtés ont modifié la même valeur, la vôtre a été enregistrée. Ce qui a été supprimé d’un côté et modifié de l’autre a été conservé.</translation>
    </message>
    <message numerus="yes">
        <source>%1 was replaced. Its previous content was saved as:</source>
        <translation>
            <numerusform>%1 a été remplacé. L’ancien contenu a été enregistré sous&#xa0;:</numerusform>
            <numerusform>%1 ont été remplacés. L’ancien contenu a été enregistré sous&#xa0;:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source> and %n more</source>
        <translation>
            <numerusform> et %n autre</numerusform>
            <numerusform> et %n autres</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 was missing and has been re-created.</source>
        <translation>%1 manquait et a été recréé.</translation>
    </message>
    <message>
        <source>was missing, re-created</source>
        <translation>manquait, recréé</translation>
    </message>
</context>
<context>
    <name>Server</name>
    <message>
        <source>Project</source>
        <translation>Projet</translation>
    </message>
    <message>
        <source>Add files</source>
        <translation>Ajouter des fichiers</translation>
    </message>
    <message>
        <source>New folder</source>
        <translation>Nouveau dossier</translation>
    </message>
    <message>
        <source>Build all</source>
        <translation>Tout générer</translation>
    </message>
    <message>
        <source>Build the active application</source>
        <translation>Générer l’application active</translation>
    </message>
    <message>
        <source>Rebuild all</source>
        <translation>Tout régénérer</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>&amp;Project</source>
        <translation>&amp;Projet</translation>
    </message>
    <message>
        <source>Add files...</source>
        <translation>Ajouter des fichiers…</translation>
    </message>
    <message>
        <source>New application...</source>
        <translation>Nouvelle application…</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Coller</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>Set as active application</source>
        <translation>Définir comme application active</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Configuration</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Sélectionner</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>Options...</source>
        <translation>Options…</translation>
    </message>
    <message>
        <source>Options of the active application...</source>
        <translation>Options de l’application active…</translation>
    </message>
    <message>
        <source>Reset to defaults</source>
        <translation>Rétablir les valeurs par défaut</translation>
    </message>
    <message>
        <source>B&amp;uild</source>
        <translation>&amp;Générer</translation>
    </message>
    <message>
        <source>Clean all</source>
        <translation>Tout nettoyer</translation>
    </message>
    <message>
        <source>Build the selection</source>
        <translation>Générer la sélection</translation>
    </message>
    <message>
        <source>Rebuild the selection</source>
        <translation>Régénérer la sélection</translation>
    </message>
    <message>
        <source>Clean the selection</source>
        <translation>Nettoyer la sélection</translation>
    </message>
    <message>
        <source>Translate the file</source>
        <translation>Compiler le fichier</translation>
    </message>
    <message>
        <source>Listing of the selection</source>
        <translation>Listing de la sélection</translation>
    </message>
    <message>
        <source>Listing of the active application</source>
        <translation>Listing de l’application active</translation>
    </message>
    <message>
        <source>Add applications...</source>
        <translation>Ajouter des applications…</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>Générer</translation>
    </message>
    <message>
        <source>Rebuild</source>
        <translation>Régénérer</translation>
    </message>
    <message>
        <source>Clean</source>
        <translation>Nettoyer</translation>
    </message>
    <message>
        <source>Run tool</source>
        <translation>Exécuter un outil</translation>
    </message>
    <message>
        <source>Listing</source>
        <translation>Listing</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Translate</source>
        <translation>Compiler</translation>
    </message>
    <message>
        <source>Clear the log</source>
        <translation>Effacer le journal</translation>
    </message>
    <message>
        <source>Run in simulator</source>
        <translation>Exécuter dans le simulateur</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Téléverser</translation>
    </message>
    <message>
        <source>Disassemble</source>
        <translation>Désassembler</translation>
    </message>
    <message>
        <source>List symbols</source>
        <translation>Lister les symboles</translation>
    </message>
    <message>
        <source>Write a copy without debug information</source>
        <translation>Écrire une copie sans informations de débogage</translation>
    </message>
    <message>
        <source>Put the object files into an archive</source>
        <translation>Placer les fichiers objets dans une archive</translation>
    </message>
    <message>
        <source>Globals</source>
        <translation>Symboles globaux</translation>
    </message>
    <message>
        <source>Build Report</source>
        <translation>Rapport de génération</translation>
    </message>
    <message>
        <source>Build Log</source>
        <translation>Journal de génération</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Propriétés</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>Infos</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Afficher</translation>
    </message>
    <message>
        <source>Build information</source>
        <translation>Informations de génération</translation>
    </message>
    <message>
        <source>Dependencies</source>
        <translation>Dépendances</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Ligne</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Definition</source>
        <translation>Définition</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Colonnes</translation>
    </message>
    <message>
        <source>Arrange by</source>
        <translation>Trier par</translation>
    </message>
    <message>
        <source>Sort &amp;Ascending</source>
        <translation>Tri &amp;croissant</translation>
    </message>
    <message>
        <source>Sort &amp;Descending</source>
        <translation>Tri &amp;décroissant</translation>
    </message>
    <message>
        <source>Group by Field</source>
        <translation>Grouper par champ</translation>
    </message>
    <message>
        <source>Group by box</source>
        <translation>Barre de groupement</translation>
    </message>
    <message>
        <source>Remove Column</source>
        <translation>Retirer la colonne</translation>
    </message>
    <message>
        <source>Best Fit</source>
        <translation>Largeur optimale</translation>
    </message>
    <message>
        <source>Alignment</source>
        <translation>Alignement</translation>
    </message>
    <message>
        <source>Align Left</source>
        <translation>Aligner à gauche</translation>
    </message>
    <message>
        <source>Align Right</source>
        <translation>Aligner à droite</translation>
    </message>
    <message>
        <source>Align Center</source>
        <translation>Centrer</translation>
    </message>
    <message>
        <source>Create a new project</source>
        <translation>Créer un nouveau projet</translation>
    </message>
    <message>
        <source>Add an application to the open project</source>
        <translation>Ajouter une application au projet ouvert</translation>
    </message>
    <message>
        <source>Choose the microcontroller, the kind of application, its name and its folder.</source>
        <translation>Choisissez le microcontrôleur, le type d’application, son nom et son dossier.</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>Type&#xa0;:</translation>
    </message>
    <message>
        <source>Processor:</source>
        <translation>Processeur&#xa0;:</translation>
    </message>
    <message>
        <source>Description:</source>
        <translation>Description&#xa0;:</translation>
    </message>
    <message>
        <source>DataSheet</source>
        <translation>Fiche technique</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Nom&#xa0;:</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Dossier&#xa0;:</translation>
    </message>
    <message>
        <source>Launch Cobbler to generate source files</source>
        <translation>Lancer Cobbler pour générer des fichiers source</translation>
    </message>
    <message>
        <source>Insert to the current project</source>
        <translation>Insérer dans le projet actuel</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Application</translation>
    </message>
    <message>
        <source>Debug session</source>
        <translation>Session de débogage</translation>
    </message>
    <message>
        <source>Live debug session</source>
        <translation>Session de débogage en direct</translation>
    </message>
    <message>
        <source>The application needs a name.</source>
        <translation>L’application a besoin d’un nom.</translation>
    </message>
    <message>
        <source>A name can&apos;t contain a slash, a backslash or a control character, or start with a drive.</source>
        <translation>Un nom ne peut ni contenir de barre oblique, de barre oblique inverse ou de caractère de contrôle, ni commencer par un lecteur.</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>Le nom est trop long.</translation>
    </message>
    <message>
        <source>The application needs a folder.</source>
        <translation>L’application a besoin d’un dossier.</translation>
    </message>
    <message>
        <source>Enter the full path of the folder.</source>
        <translation>Indiquez le chemin complet du dossier.</translation>
    </message>
    <message>
        <source>Add generated file...</source>
        <translation>Ajouter un fichier généré…</translation>
    </message>
    <message>
        <source>Array of the file&apos;s bytes</source>
        <translation>Tableau des octets du fichier</translation>
    </message>
    <message>
        <source>Template for the version of the sources</source>
        <translation>Modèle pour la version des sources</translation>
    </message>
    <message>
        <source>Commands of the project</source>
        <translation>Commandes du projet</translation>
    </message>
</context>
<context>
    <name>ServerDocks</name>
    <message>
        <source>The commands of a build and their output appear here.</source>
        <translation>Les commandes d’une génération et leur sortie apparaissent ici.</translation>
    </message>
    <message>
        <source>The errors and warnings of the last build appear here.</source>
        <translation>Les erreurs et avertissements de la dernière génération apparaissent ici.</translation>
    </message>
    <message>
        <source>The functions, variables and types of the program appear here after a build.</source>
        <translation>Les fonctions, variables et types du programme apparaissent ici après une génération.</translation>
    </message>
</context>
<context>
    <name>ServerNotifications</name>
    <message>
        <source>Current selection</source>
        <translation>Sélection actuelle</translation>
    </message>
    <message>
        <source>%1 is out of date</source>
        <translation>%1 n’est plus à jour</translation>
    </message>
    <message>
        <source>%1 has been created</source>
        <translation>%1 a été créé</translation>
    </message>
    <message>
        <source>The new application is ready to be built</source>
        <translation>La nouvelle application peut être générée</translation>
    </message>
    <message>
        <source>Time stamp %1</source>
        <translation>Horodatage %1</translation>
    </message>
    <message>
        <source>The help file %1 can&apos;t be shown</source>
        <translation>Impossible d’afficher le fichier d’aide %1</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>SheetDialog</name>
    <message>
        <source>Finish</source>
        <translation>Terminer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>StatusProgress</name>
    <message>
        <source>Cleaned</source>
        <translation>Nettoyage terminé</translation>
    </message>
    <message>
        <source>Nothing to do</source>
        <translation>Rien à faire</translation>
    </message>
    <message>
        <source>Build succeeded</source>
        <translation>Génération réussie</translation>
    </message>
    <message>
        <source>Build stopped</source>
        <translation>Génération interrompue</translation>
    </message>
    <message>
        <source>Build failed</source>
        <translation>Échec de la génération</translation>
    </message>
    <message numerus="yes">
        <source>%n error(s)</source>
        <translation>
            <numerusform>%n erreur</numerusform>
            <numerusform>%n erreurs</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n warning(s)</source>
        <translation>
            <numerusform>%n avertissement</numerusform>
            <numerusform>%n avertissements</numerusform>
        </translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Prêt</translation>
    </message>
    <message>
        <source>Show the build log</source>
        <translation>Afficher le journal de génération</translation>
    </message>
    <message>
        <source>Build progress</source>
        <translation>Progression de la génération</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Stop the build</source>
        <translation>Arrêter la génération</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>Stopping the build...</source>
        <translation>Arrêt de la génération…</translation>
    </message>
    <message>
        <source>Building...</source>
        <translation>Génération…</translation>
    </message>
    <message>
        <source>Building %1 of %2</source>
        <translation>Génération de %1 sur %2</translation>
    </message>
    <message>
        <source>Building file %1</source>
        <translation>Génération du fichier %1</translation>
    </message>
    <message>
        <source>Build not started</source>
        <translation>Génération non lancée</translation>
    </message>
    <message>
        <source>Waiting for the project&apos;s options...</source>
        <translation>En attente des options du projet…</translation>
    </message>
    <message>
        <source>Waiting for another build of this project (%1)</source>
        <translation>En attente d’une autre génération de ce projet (%1)</translation>
    </message>
    <message>
        <source>, %1 running</source>
        <translation>, %1 en cours</translation>
    </message>
    <message>
        <source>%1, %2 left</source>
        <translation>%1, reste %2</translation>
    </message>
    <message>
        <source>%1 s  %2</source>
        <translation>%1 s  %2</translation>
    </message>
    <message>
        <source>%1: finished</source>
        <translation>%1&#xa0;: terminé</translation>
    </message>
    <message>
        <source>%1: stopped</source>
        <translation>%1&#xa0;: arrêté</translation>
    </message>
    <message>
        <source>%1: not started</source>
        <translation>%1&#xa0;: non lancé</translation>
    </message>
    <message>
        <source>%1: failed</source>
        <translation>%1&#xa0;: échec</translation>
    </message>
    <message>
        <source>%1: running...</source>
        <translation>%1&#xa0;: en cours…</translation>
    </message>
    <message>
        <source>Stopping...</source>
        <translation>Arrêt en cours…</translation>
    </message>
</context>
<context>
    <name>TreeFilter</name>
    <message>
        <source>Find in project</source>
        <translation>Rechercher dans le projet</translation>
    </message>
    <message>
        <source>Lists all nodes whose name or path contains this text (Ctrl+P)</source>
        <translation>Affiche tous les nœuds dont le nom ou le chemin contient ce texte (Ctrl+P)</translation>
    </message>
    <message>
        <source>Matching nodes</source>
        <translation>Nœuds trouvés</translation>
    </message>
    <message>
        <source>Nothing matches.</source>
        <translation>Aucun résultat.</translation>
    </message>
</context>
<context>
    <name>TrustNotice</name>
    <message>
        <source>This project wants to run the launcher %1.</source>
        <translation>Ce projet veut exécuter le lanceur %1.</translation>
    </message>
    <message>
        <source>This project wants to run the tool %1.</source>
        <translation>Ce projet veut exécuter l’outil %1.</translation>
    </message>
    <message>
        <source>This project wants to run the script %1.</source>
        <translation>Ce projet veut exécuter le script %1.</translation>
    </message>
    <message>
        <source>This project wants to run its own code through the argument %1.</source>
        <translation>Ce projet veut exécuter son propre code au moyen de l’argument %1.</translation>
    </message>
    <message>
        <source>This project wants to run %1.</source>
        <translation>Ce projet veut exécuter %1.</translation>
    </message>
    <message>
        <source>This project wants to write %1.</source>
        <translation>Ce projet veut écrire %1.</translation>
    </message>
    <message>
        <source>This project wants to delete %1.</source>
        <translation>Ce projet veut supprimer %1.</translation>
    </message>
    <message numerus="yes">
        <source> %n more request(s) in the log.</source>
        <translation>
            <numerusform> %n autre demande figure dans le journal.</numerusform>
            <numerusform> %n autres demandes figurent dans le journal.</numerusform>
        </translation>
    </message>
    <message>
        <source>Do you trust the folder %1?</source>
        <translation>Faites-vous confiance au dossier %1&#xa0;?</translation>
    </message>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>The answer can&apos;t be saved: %1: %2</source>
        <translation>Impossible d’enregistrer la réponse&#xa0;: %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>This project wants to run a tool with the argument %1.</source>
        <translation>Ce projet veut exécuter un outil avec l’argument %1.</translation>
    </message>
    <message>
        <source>This project wants to run a tool with the argument %1, which writes files of other names.</source>
        <translation>Ce projet veut exécuter un outil avec l’argument %1, qui écrit des fichiers d’autres noms.</translation>
    </message>
    <message>
        <source>This project wants to run a tool with the argument %1, which writes a file of an unknown name.</source>
        <translation>Ce projet veut exécuter un outil avec l’argument %1, qui écrit un fichier de nom inconnu.</translation>
    </message>
    <message>
        <source>This project wants to run commands from the file %1.</source>
        <translation>Ce projet veut exécuter des commandes du fichier %1.</translation>
    </message>
    <message>
        <source>The definitions of this project are ignored: %1.</source>
        <translation>Les définitions de ce projet sont ignorées&#xa0;: %1.</translation>
    </message>
</context>
<context>
    <name>WelcomePage</name>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>Microcontroller firmware projects</source>
        <translation>Projets de micrologiciels pour microcontrôleurs</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Démarrer</translation>
    </message>
    <message>
        <source>Open a project...</source>
        <translation>Ouvrir un projet…</translation>
    </message>
    <message>
        <source>From a folder on this computer</source>
        <translation>Depuis un dossier de cet ordinateur</translation>
    </message>
    <message>
        <source>New project...</source>
        <translation>Nouveau projet…</translation>
    </message>
    <message>
        <source>For a microcontroller of your choice</source>
        <translation>Pour le microcontrôleur de votre choix</translation>
    </message>
    <message>
        <source>Open a copy of an example</source>
        <translation>Ouvrir une copie d’un exemple</translation>
    </message>
    <message>
        <source>Recent</source>
        <translation>Projets récents</translation>
    </message>
    <message>
        <source>Projects that you open will be listed here.</source>
        <translation>Les projets que vous ouvrirez apparaîtront ici.</translation>
    </message>
</context>
<context>
    <name>WindowLayout</name>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <source>&amp;Reset layout</source>
        <translation>Réinitialiser la &amp;disposition</translation>
    </message>
    <message>
        <source>Tool bar: %1</source>
        <translation>Barre d’outils&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Opens a project and files to edit.</source>
        <translation>Ouvre un projet et des fichiers à modifier.</translation>
    </message>
    <message>
        <source>Project (.tprj) and source files.</source>
        <translation>Projet (.tprj) et fichiers source.</translation>
    </message>
</context>
<context>
    <name>tarn::host::ChoiceEditor</name>
    <message>
        <source>(inherited)</source>
        <translation>(hérité)</translation>
    </message>
</context>
<context>
    <name>tarn::host::ListDialog</name>
    <message>
        <source>Choose a folder</source>
        <translation>Choisir un dossier</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Ajouter</translation>
    </message>
    <message>
        <source>Add &amp;folder...</source>
        <translation>Ajouter un &amp;dossier…</translation>
    </message>
    <message>
        <source>Add &amp;inherited</source>
        <translation>Ajouter l’&amp;hérité</translation>
    </message>
    <message>
        <source>Insert the inherited value</source>
        <translation>Insérer la valeur héritée</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Move &amp;up</source>
        <translation>&amp;Monter</translation>
    </message>
    <message>
        <source>Move &amp;down</source>
        <translation>D&amp;escendre</translation>
    </message>
    <message>
        <source>%1 stands for the inherited value.</source>
        <translation>%1 représente la valeur héritée.</translation>
    </message>
</context>
<context>
    <name>tarn::host::OptionsDelegate</name>
    <message>
        <source>Reset to the inherited value (Del)</source>
        <translation>Rétablir la valeur héritée (Suppr)</translation>
    </message>
</context>
<context>
    <name>tarn::host::OptionsModel</name>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>As written: %1</source>
        <translation>Texte saisi&#xa0;: %1</translation>
    </message>
    <message>
        <source>Expands to: %1</source>
        <translation>Valeur développée&#xa0;: %1</translation>
    </message>
    <message>
        <source>(empty)</source>
        <translation>(vide)</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>application</source>
        <translation>application</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>dossier</translation>
    </message>
    <message>
        <source>project</source>
        <translation>projet</translation>
    </message>
    <message>
        <source>file</source>
        <translation>fichier</translation>
    </message>
    <message>
        <source>set here</source>
        <translation>défini ici</translation>
    </message>
    <message>
        <source>from %1 %2</source>
        <translation>hérité de&#xa0;: %1 %2</translation>
    </message>
    <message>
        <source>same as %1 %2</source>
        <translation>comme %1 %2</translation>
    </message>
    <message>
        <source>default</source>
        <translation>par défaut</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>Option</source>
        <translation>Option</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
    <message>
        <source>Origin</source>
        <translation>Origine</translation>
    </message>
</context>
<context>
    <name>tarn::host::OptionsWindow</name>
    <message>
        <source>From %1 to %2.</source>
        <translation>De %1 à %2.</translation>
    </message>
    <message>
        <source>At least %1.</source>
        <translation>Au moins %1.</translation>
    </message>
    <message>
        <source>At most %1.</source>
        <translation>Au plus %1.</translation>
    </message>
    <message>
        <source>(empty)</source>
        <translation>(vide)</translation>
    </message>
    <message>
        <source>Set on %1 %2 for %3: %4</source>
        <translation>Défini pour %1 %2, configuration %3&#xa0;: %4</translation>
    </message>
    <message>
        <source>Option description</source>
        <translation>Description de l’option</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>Search options</source>
        <translation>Rechercher une option</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Réinitialiser</translation>
    </message>
    <message>
        <source>Reset all options of this node...</source>
        <translation>Réinitialiser toutes les options de ce nœud…</translation>
    </message>
    <message>
        <source>Copy name</source>
        <translation>Copier le nom</translation>
    </message>
    <message>
        <source>Explain</source>
        <translation>Expliquer</translation>
    </message>
    <message>
        <source>Confi&amp;guration:</source>
        <translation>Confi&amp;guration&#xa0;:</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Configuration</translation>
    </message>
    <message>
        <source>Add a configuration...</source>
        <translation>Ajouter une configuration…</translation>
    </message>
    <message>
        <source>Add a configuration</source>
        <translation>Ajouter une configuration</translation>
    </message>
    <message>
        <source>&amp;Options of:</source>
        <translation>&amp;Options de&#xa0;:</translation>
    </message>
    <message>
        <source>Options of</source>
        <translation>Options de</translation>
    </message>
    <message>
        <source>%1 in %2</source>
        <translation>%1 dans %2</translation>
    </message>
    <message>
        <source>Options can&apos;t be changed while a build is running.</source>
        <translation>Les options ne peuvent pas être modifiées pendant une génération.</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Annuler&#xa0;: %1</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>Rétablir&#xa0;: %1</translation>
    </message>
    <message>
        <source>Select a node of the project.</source>
        <translation>Sélectionnez un nœud du projet.</translation>
    </message>
    <message>
        <source>Select an option to see its description.</source>
        <translation>Sélectionnez une option pour voir sa description.</translation>
    </message>
    <message>
        <source>As written: %1</source>
        <translation>Texte saisi&#xa0;: %1</translation>
    </message>
    <message>
        <source>Expands to: %1</source>
        <translation>Valeur développée&#xa0;: %1</translation>
    </message>
    <message>
        <source>Default: %1</source>
        <translation>Valeur par défaut&#xa0;: %1</translation>
    </message>
    <message>
        <source>Reset options</source>
        <translation>Réinitialiser les options</translation>
    </message>
    <message>
        <source>Reset all options set on %1, in every configuration? This can&apos;t be undone.</source>
        <translation>Réinitialiser toutes les options définies pour %1, dans toutes les configurations&#xa0;? Cette action est irréversible.</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Nom&#xa0;:</translation>
    </message>
    <message>
        <source>The configuration %1 already exists.</source>
        <translation>La configuration %1 existe déjà.</translation>
    </message>
    <message>
        <source>Unknown node type &quot;%1&quot;. Known types: %2.</source>
        <translation>Type de nœud inconnu «&#xa0;%1&#xa0;». Types connus&#xa0;: %2.</translation>
    </message>
</context>
<context>
    <name>tarn::host::TextEditor</name>
    <message>
        <source>Edit the list (Alt+Down)</source>
        <translation>Modifier la liste (Alt+Bas)</translation>
    </message>
    <message>
        <source>Choose (Alt+Down)</source>
        <translation>Choisir (Alt+Bas)</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Choisir</translation>
    </message>
</context>
</TS>
