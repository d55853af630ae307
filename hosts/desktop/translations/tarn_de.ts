<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Changes</name>
    <message>
        <source>Add %1</source>
        <translation>%1 hinzufügen</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
    <message>
        <source>Move %1</source>
        <translation>%1 verschieben</translation>
    </message>
    <message>
        <source>Replace %1</source>
        <translation>%1 ersetzen</translation>
    </message>
    <message>
        <source>Rename %1 to %2</source>
        <translation>%1 in %2 umbenennen</translation>
    </message>
    <message>
        <source>Add configuration %1</source>
        <translation>Konfiguration %1 hinzufügen</translation>
    </message>
    <message>
        <source>Remove configuration %1</source>
        <translation>Konfiguration %1 entfernen</translation>
    </message>
    <message>
        <source>Select configuration %1</source>
        <translation>Konfiguration %1 auswählen</translation>
    </message>
    <message>
        <source>Set %1</source>
        <translation>%1 setzen</translation>
    </message>
    <message>
        <source>Reset %1</source>
        <translation>%1 zurücksetzen</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>%1 ändern</translation>
    </message>
    <message>
        <source>Select application %1</source>
        <translation>Anwendung %1 auswählen</translation>
    </message>
    <message>
        <source>Change the project</source>
        <translation>Projekt ändern</translation>
    </message>
    <message numerus="yes">
        <source>%n options</source>
        <translation>
            <numerusform>%n Option</numerusform>
            <numerusform>%n Optionen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files</source>
        <translation>
            <numerusform>%n Datei</numerusform>
            <numerusform>%n Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n groups</source>
        <translation>
            <numerusform>%n Gruppe</numerusform>
            <numerusform>%n Gruppen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n applications</source>
        <translation>
            <numerusform>%n Anwendung</numerusform>
            <numerusform>%n Anwendungen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n Element</numerusform>
            <numerusform>%n Elemente</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CodeEditor</name>
    <message>
        <source>The text contains characters that the file&apos;s encoding can&apos;t represent.</source>
        <translation>Der Text enthält Zeichen, die sich in der Kodierung der Datei nicht darstellen lassen.</translation>
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
        <translation>Es konnte nicht alles wiederhergestellt werden. Die nicht gespeicherten Änderungen werden beim nächsten Start erneut angeboten.</translation>
    </message>
    <message>
        <source>%1 can&apos;t be opened.</source>
        <translation>%1 kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>These project changes conflict with changes that were already restored:</source>
        <translation>Diese Projektänderungen stehen im Konflikt mit bereits wiederhergestellten Änderungen:</translation>
    </message>
    <message>
        <source>%1 already has other unsaved changes.</source>
        <translation>%1 hat bereits andere nicht gespeicherte Änderungen.</translation>
    </message>
    <message>
        <source>%1 and its folder no longer exist. The unsaved changes will be offered again at the next start. You can also save copies of them in another folder now.</source>
        <translation>%1 und der zugehörige Ordner sind nicht mehr vorhanden. Die nicht gespeicherten Änderungen werden beim nächsten Start erneut angeboten. Sie können auch jetzt Kopien davon in einem anderen Ordner speichern.</translation>
    </message>
    <message>
        <source>&amp;Save copies...</source>
        <translation>&amp;Kopien speichern …</translation>
    </message>
    <message>
        <source>Folder for the copies</source>
        <translation>Ordner für die Kopien</translation>
    </message>
    <message>
        <source>Unsaved changes to %1</source>
        <translation>Nicht gespeicherte Änderungen an %1</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Saved as:</source>
        <translation>Gespeichert als:</translation>
    </message>
</context>
<context>
    <name>DamageNotice</name>
    <message numerus="yes">
        <source>%1, and %n more</source>
        <translation>
            <numerusform>%1 und %n weitere Stelle</numerusform>
            <numerusform>%1 und %n weitere Stellen</numerusform>
        </translation>
    </message>
    <message>
        <source>The project was only partially read: %1</source>
        <translation>Das Projekt wurde nur teilweise gelesen: %1</translation>
    </message>
    <message>
        <source>%1

Build or save it without the unread parts? Before a file is overwritten, it is copied to a file with .bak appended to its name.</source>
        <translation>%1

Ohne die nicht gelesenen Teile erstellen oder speichern? Bevor eine Datei überschrieben wird, wird sie in eine Datei mit angehängtem .bak kopiert.</translation>
    </message>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>%1

Save the project&apos;s changes without the unread parts?</source>
        <translation>%1

Die Änderungen am Projekt ohne die nicht gelesenen Teile speichern?</translation>
    </message>
</context>
<context>
    <name>DeclarationSearch</name>
    <message>
        <source>No identifier at the cursor</source>
        <translation>Kein Bezeichner an der Cursorposition</translation>
    </message>
    <message>
        <source>No global named %1 found</source>
        <translation>Kein globaler Name %1 gefunden</translation>
    </message>
    <message>
        <source>No global named %1 found; build the project first</source>
        <translation>Kein globaler Name %1 gefunden; erstellen Sie zuerst das Projekt</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Wieder&amp;holen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>A&amp;lles auswählen</translation>
    </message>
    <message>
        <source>Go to line</source>
        <translation>Gehe zu Zeile</translation>
    </message>
    <message>
        <source>Line (1 to %1):</source>
        <translation>Zeile (1 bis %1):</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Find...</source>
        <translation>&amp;Suchen …</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>&amp;Weitersuchen</translation>
    </message>
    <message>
        <source>Find pre&amp;vious</source>
        <translation>Rückwär&amp;ts suchen</translation>
    </message>
    <message>
        <source>R&amp;eplace...</source>
        <translation>Erset&amp;zen …</translation>
    </message>
    <message>
        <source>&amp;Go to line...</source>
        <translation>&amp;Gehe zu Zeile …</translation>
    </message>
    <message>
        <source>Go to &amp;declaration</source>
        <translation>Gehe zur &amp;Deklaration</translation>
    </message>
</context>
<context>
    <name>EditorArea</name>
    <message>
        <source>Reload project</source>
        <translation>Projekt neu laden</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Keep mine</source>
        <translation>Eigene Fassung behalten</translation>
    </message>
    <message>
        <source>%1 has been changed both here and by another program.</source>
        <translation>%1 wurde sowohl hier als auch von einem anderen Programm geändert.</translation>
    </message>
    <message>
        <source>Allow building and saving</source>
        <translation>Erstellen und Speichern erlauben</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Details...</source>
        <translation>Details …</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message numerus="yes">
        <source>%1 was not saved, because another program has changed it too.</source>
        <translation>
            <numerusform>%1 wurde nicht gespeichert, weil ein anderes Programm die Datei ebenfalls geändert hat.</numerusform>
            <numerusform>%1 wurden nicht gespeichert, weil ein anderes Programm die Dateien ebenfalls geändert hat.</numerusform>
        </translation>
    </message>
    <message>
        <source>Trust</source>
        <translation>Vertrauen</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Nicht jetzt</translation>
    </message>
</context>
<context>
    <name>EditorStatus</name>
    <message>
        <source>Line %1, column %2</source>
        <translation>Zeile %1, Spalte %2</translation>
    </message>
    <message>
        <source>8-bit</source>
        <translation>8 Bit</translation>
    </message>
    <message>
        <source>Tabs</source>
        <translation>Tabulatoren</translation>
    </message>
    <message>
        <source>%1 spaces</source>
        <translation>%1 Leerzeichen</translation>
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
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Save changes to %1?</source>
        <translation>Änderungen an %1 speichern?</translation>
    </message>
    <message>
        <source>Open files</source>
        <translation>Offene Dateien</translation>
    </message>
    <message numerus="yes">
        <source>%1 has unsaved changes. Build the version on disk?</source>
        <translation>
            <numerusform>%1 enthält nicht gespeicherte Änderungen. Mit der Fassung auf dem Datenträger erstellen?</numerusform>
            <numerusform>%1 enthalten nicht gespeicherte Änderungen. Mit den Fassungen auf dem Datenträger erstellen?</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Build</source>
        <translation>&amp;Erstellen</translation>
    </message>
    <message>
        <source>Another program has also changed this file. Saving overwrites its changes.</source>
        <translation>Ein anderes Programm hat diese Datei ebenfalls geändert. Beim Speichern werden dessen Änderungen überschrieben.</translation>
    </message>
</context>
<context>
    <name>EditorZoom</name>
    <message>
        <source>Zoom &amp;in</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>Reset &amp;zoom</source>
        <translation>&amp;Zoom zurücksetzen</translation>
    </message>
</context>
<context>
    <name>FindBar</name>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Zu suchender Text</translation>
    </message>
    <message>
        <source>Replace with</source>
        <translation>Ersetzen durch</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Groß- und Kleinschreibung beachten</translation>
    </message>
    <message>
        <source>Whole words only</source>
        <translation>Nur ganze Wörter</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Regulärer Ausdruck</translation>
    </message>
    <message>
        <source>Previous match</source>
        <translation>Vorheriger Treffer</translation>
    </message>
    <message>
        <source>Next match</source>
        <translation>Nächster Treffer</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>Replace &amp;all</source>
        <translation>Alle er&amp;setzen</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Nicht gefunden</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>%1 gefunden</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message numerus="yes">
        <source>%n replaced</source>
        <translation>
            <numerusform>%n ersetzt</numerusform>
            <numerusform>%n ersetzt</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Findings</name>
    <message>
        <source>Damage</source>
        <translation>Beschädigungen</translation>
    </message>
    <message>
        <source>Missing files</source>
        <translation>Fehlende Dateien</translation>
    </message>
    <message>
        <source>%1 is missing</source>
        <translation>%1 fehlt</translation>
    </message>
    <message>
        <source>Missing folders</source>
        <translation>Fehlende Ordner</translation>
    </message>
    <message>
        <source>Missing libraries</source>
        <translation>Fehlende Bibliotheken</translation>
    </message>
    <message>
        <source>the library %1 was found neither in the library folders nor among the compiler&apos;s libraries</source>
        <translation>Die Bibliothek %1 wurde weder in den Bibliotheksordnern noch unter den Bibliotheken des Compilers gefunden</translation>
    </message>
    <message>
        <source>Letter case</source>
        <translation>Groß- und Kleinschreibung</translation>
    </message>
    <message>
        <source>%1 is spelled %2 on disk</source>
        <translation>%1 heißt auf dem Datenträger %2</translation>
    </message>
    <message>
        <source>Duplicate files</source>
        <translation>Doppelte Dateien</translation>
    </message>
    <message>
        <source>%1 is listed more than once</source>
        <translation>%1 ist mehrfach aufgeführt</translation>
    </message>
    <message>
        <source>Duplicate outputs</source>
        <translation>Doppelte Ausgabedateien</translation>
    </message>
    <message>
        <source>%1 is also the output of %2</source>
        <translation>%1 wird auch aus %2 erzeugt</translation>
    </message>
    <message>
        <source>Unreachable drives</source>
        <translation>Nicht erreichbare Laufwerke</translation>
    </message>
    <message>
        <source>%1 is on a drive that is not mapped</source>
        <translation>%1 liegt auf einem Laufwerk, das nicht zugeordnet ist</translation>
    </message>
    <message>
        <source>Absolute paths</source>
        <translation>Absolute Pfade</translation>
    </message>
    <message>
        <source>%1 is an absolute path</source>
        <translation>%1 ist ein absoluter Pfad</translation>
    </message>
    <message>
        <source>Unknown options</source>
        <translation>Unbekannte Optionen</translation>
    </message>
    <message>
        <source>no definition contains the option %1</source>
        <translation>Keine Definition enthält die Option %1</translation>
    </message>
    <message>
        <source>Invalid values</source>
        <translation>Ungültige Werte</translation>
    </message>
    <message>
        <source>Unknown node types</source>
        <translation>Unbekannte Knotentypen</translation>
    </message>
    <message>
        <source>%1 is not a type in the configuration file, so %2 is not built</source>
        <translation>%1 ist kein Typ aus der Konfigurationsdatei, daher wird %2 nicht erstellt</translation>
    </message>
    <message>
        <source>Unknown tools</source>
        <translation>Unbekannte Werkzeuge</translation>
    </message>
    <message>
        <source>no definition contains the tool %1</source>
        <translation>Keine Definition enthält das Werkzeug %1</translation>
    </message>
    <message>
        <source>Missing programs</source>
        <translation>Fehlende Programme</translation>
    </message>
    <message>
        <source>%1 is not installed; it is needed by %2</source>
        <translation>%1 ist nicht installiert, wird aber von %2 benötigt</translation>
    </message>
    <message>
        <source>Errors in definitions</source>
        <translation>Fehler in Definitionen</translation>
    </message>
    <message>
        <source>Not a file</source>
        <translation>Keine Datei</translation>
    </message>
    <message>
        <source>%1 is not a file</source>
        <translation>%1 ist keine Datei</translation>
    </message>
    <message>
        <source>Not a folder</source>
        <translation>Kein Ordner</translation>
    </message>
    <message>
        <source>%1 is not a folder</source>
        <translation>%1 ist kein Ordner</translation>
    </message>
    <message>
        <source>Unreadable files</source>
        <translation>Nicht lesbare Dateien</translation>
    </message>
    <message>
        <source>%1 can&apos;t be read</source>
        <translation>%1 kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Duplicate labels</source>
        <translation>Doppelte Bezeichnungen</translation>
    </message>
    <message>
        <source>the labels of the applications %1 and %2 differ only in letter case</source>
        <translation>Die Bezeichnungen der Anwendungen %1 und %2 unterscheiden sich nur in der Groß- und Kleinschreibung</translation>
    </message>
    <message>
        <source>Dependency cycles</source>
        <translation>Zyklische Abhängigkeiten</translation>
    </message>
    <message>
        <source>applications that use each other&apos;s outputs can&apos;t be built: %1</source>
        <translation>Anwendungen, die gegenseitig ihre Ausgaben verwenden, können nicht erstellt werden: %1</translation>
    </message>
    <message>
        <source>Files with several names</source>
        <translation>Dateien mit mehreren Namen</translation>
    </message>
    <message>
        <source>%1 and %2 are the same file, which is built twice</source>
        <translation>%1 und %2 sind dieselbe Datei, die dadurch zweimal erstellt wird</translation>
    </message>
    <message>
        <source>Unknown configurations</source>
        <translation>Unbekannte Konfigurationen</translation>
    </message>
    <message>
        <source>options are stored for the configuration %1, which the application does not have</source>
        <translation>Es sind Optionen für die Konfiguration %1 gespeichert, die es in der Anwendung nicht gibt</translation>
    </message>
    <message>
        <source>Nodes without a file</source>
        <translation>Knoten ohne Datei</translation>
    </message>
    <message>
        <source>%1 does not name a file</source>
        <translation>%1 verweist auf keine Datei</translation>
    </message>
    <message>
        <source>Leftover applications</source>
        <translation>Übrig gebliebene Anwendungen</translation>
    </message>
    <message>
        <source>%1 is not part of the project, but may have changes that %2 lacks</source>
        <translation>%1 gehört nicht zum Projekt, kann aber Änderungen enthalten, die %2 fehlen</translation>
    </message>
</context>
<context>
    <name>FindingsPane</name>
    <message>
        <source>Finding</source>
        <translation>Befund</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Project check findings</source>
        <translation>Befunde der Projektprüfung</translation>
    </message>
    <message>
        <source>No project is open.</source>
        <translation>Es ist kein Projekt geöffnet.</translation>
    </message>
    <message>
        <source>Checking the project...</source>
        <translation>Das Projekt wird geprüft …</translation>
    </message>
    <message>
        <source>No findings.</source>
        <translation>Keine Befunde.</translation>
    </message>
    <message numerus="yes">
        <source>%n finding(s)</source>
        <translation>
            <numerusform>%n Befund</numerusform>
            <numerusform>%n Befunde</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>GeneratorDialog</name>
    <message>
        <source>Add generated file</source>
        <translation>Erzeugte Datei hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Made from:</source>
        <translation>&amp;Quelle:</translation>
    </message>
    <message>
        <source>&amp;Tool:</source>
        <translation>&amp;Werkzeug:</translation>
    </message>
    <message>
        <source>Command lines that make the file, separated by semicolons. They run in the application&apos;s folder, and only if the project is trusted.</source>
        <translation>Befehlszeilen, die die Datei erzeugen, durch Semikolon getrennt. Sie laufen im Ordner der Anwendung und nur, wenn dem Projekt vertraut wird.</translation>
    </message>
    <message>
        <source>&amp;Commands:</source>
        <translation>&amp;Befehle:</translation>
    </message>
    <message>
        <source>The file that is made, relative to the application&apos;s folder.</source>
        <translation>Die Datei, die erzeugt wird, relativ zum Ordner der Anwendung.</translation>
    </message>
    <message>
        <source>&amp;Output:</source>
        <translation>&amp;Ausgabe:</translation>
    </message>
    <message>
        <source>&amp;Add the output to the project, to compile it</source>
        <translation>Die Ausgabe zum Projekt &amp;hinzufügen, um sie zu übersetzen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>A picture, a table, a template ...</source>
        <translation>Ein Bild, eine Tabelle, eine Vorlage …</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Durchsuchen …</translation>
    </message>
    <message>
        <source>File to make another one from</source>
        <translation>Datei, aus der eine andere erzeugt wird</translation>
    </message>
    <message>
        <source>Choose the file that another one is made from.</source>
        <translation>Wählen Sie die Datei, aus der eine andere erzeugt wird.</translation>
    </message>
    <message>
        <source>%1 does not exist.</source>
        <translation>%1 existiert nicht.</translation>
    </message>
    <message>
        <source>%1 is a folder.</source>
        <translation>%1 ist ein Ordner.</translation>
    </message>
    <message>
        <source>A project can&apos;t store the name %1.</source>
        <translation>Ein Projekt kann den Namen %1 nicht speichern.</translation>
    </message>
    <message>
        <source>%1 is in the application already. Remove it there first.</source>
        <translation>%1 ist schon in der Anwendung. Entfernen Sie die Datei dort zuerst.</translation>
    </message>
    <message>
        <source>Enter the commands that make the output.</source>
        <translation>Geben Sie die Befehle ein, die die Ausgabe erzeugen.</translation>
    </message>
    <message>
        <source>The output can&apos;t be the file that it is made from.</source>
        <translation>Die Ausgabe kann nicht die Datei sein, aus der sie erzeugt wird.</translation>
    </message>
    <message>
        <source>%1 is made from another file already.</source>
        <translation>%1 wird schon aus einer anderen Datei erzeugt.</translation>
    </message>
    <message>
        <source>%1 exists. Only files in a subfolder of &quot;build&quot; are replaced.</source>
        <translation>%1 existiert. Nur Dateien in einem Unterordner von „build“ werden ersetzt.</translation>
    </message>
</context>
<context>
    <name>GroupBox</name>
    <message>
        <source>Drag a column header here to group by that column</source>
        <translation>Spaltenkopf hierher ziehen, um nach der Spalte zu gruppieren</translation>
    </message>
    <message>
        <source>Grouped by</source>
        <translation>Gruppiert nach</translation>
    </message>
    <message>
        <source>Stop grouping by %1</source>
        <translation>Nicht mehr nach %1 gruppieren</translation>
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
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;all</source>
        <translation>&amp;Alles speichern</translation>
    </message>
    <message>
        <source>&amp;Close file</source>
        <translation>Datei s&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Closing once the build has stopped...</source>
        <translation>Wird geschlossen, sobald der Build abgebrochen ist …</translation>
    </message>
    <message>
        <source>%1[*] - Tarn</source>
        <translation>%1[*] – Tarn</translation>
    </message>
    <message>
        <source>&amp;Navigate</source>
        <translation>&amp;Navigieren</translation>
    </message>
    <message numerus="yes">
        <source>File not found:
%1</source>
        <translation>
            <numerusform>Datei nicht gefunden:
%1</numerusform>
            <numerusform>Dateien nicht gefunden:
%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>The project is being built.</source>
        <translation>Das Projekt wird gerade erstellt.</translation>
    </message>
    <message>
        <source>Find in pro&amp;ject...</source>
        <translation>Im &amp;Projekt suchen …</translation>
    </message>
    <message>
        <source>This installation is incomplete: %1</source>
        <translation>Diese Installation ist unvollständig: %1</translation>
    </message>
    <message>
        <source>Project check</source>
        <translation>Projektprüfung</translation>
    </message>
    <message>
        <source>&amp;Check project</source>
        <translation>Projekt &amp;prüfen</translation>
    </message>
    <message>
        <source>Only groups and applications can be renamed here; files are shown under their names on disk.</source>
        <translation>Nur Gruppen und Anwendungen lassen sich hier umbenennen; Dateien erscheinen unter ihrem Namen auf dem Datenträger.</translation>
    </message>
    <message>
        <source>Program output</source>
        <translation>Programmausgabe</translation>
    </message>
    <message>
        <source>Local Settings</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>%1 Local Settings</source>
        <translation>Optionen von %1</translation>
    </message>
    <message>
        <source>A definition has to be corrected: %1</source>
        <translation>Eine Definition muss korrigiert werden: %1</translation>
    </message>
</context>
<context>
    <name>JournalManager</name>
    <message>
        <source>Unsaved changes would be lost in a crash: %1 can&apos;t be written (%2).</source>
        <translation>Nicht gespeicherte Änderungen gingen bei einem Absturz verloren: %1 kann nicht geschrieben werden (%2).</translation>
    </message>
    <message>
        <source>Too large for crash recovery: %1.</source>
        <translation>Zu groß für die Wiederherstellung nach einem Absturz: %1.</translation>
    </message>
</context>
<context>
    <name>NewProjectForm</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Lists the microcontrollers and boards with these words in their name, family, core or description</source>
        <translation>Listet die Mikrocontroller und Boards mit diesen Wörtern in Name, Familie, Kern oder Beschreibung auf</translation>
    </message>
    <message>
        <source>Choose a microcontroller.</source>
        <translation>Wählen Sie einen Mikrocontroller.</translation>
    </message>
    <message>
        <source>%1 already exists.</source>
        <translation>%1 existiert bereits.</translation>
    </message>
    <message>
        <source>%1 can&apos;t handle spaces or special characters in a name.</source>
        <translation>%1 verträgt keine Leerzeichen oder Sonderzeichen in einem Namen.</translation>
    </message>
</context>
<context>
    <name>OutputPane</name>
    <message>
        <source>Program output</source>
        <translation>Programmausgabe</translation>
    </message>
    <message>
        <source>What a simulator or another tool prints appears here while it runs.</source>
        <translation>Was ein Simulator oder ein anderes Werkzeug ausgibt, erscheint hier, während es läuft.</translation>
    </message>
</context>
<context>
    <name>PageView</name>
    <message>
        <source>This page can&apos;t be shown:
%1</source>
        <translation>Diese Seite kann nicht angezeigt werden:
%1</translation>
    </message>
</context>
<context>
    <name>PaneFocusCycle</name>
    <message>
        <source>&amp;Next pane</source>
        <translation>&amp;Nächster Bereich</translation>
    </message>
    <message>
        <source>&amp;Previous pane</source>
        <translation>&amp;Voriger Bereich</translation>
    </message>
</context>
<context>
    <name>ProblemNavigator</name>
    <message>
        <source>&amp;Next problem</source>
        <translation>&amp;Nächstes Problem</translation>
    </message>
    <message>
        <source>&amp;Previous problem</source>
        <translation>&amp;Vorheriges Problem</translation>
    </message>
    <message>
        <source>The last build had no errors or warnings</source>
        <translation>Der letzte Build ergab weder Fehler noch Warnungen</translation>
    </message>
    <message>
        <source>Error %1 of %2: %3</source>
        <translation>Fehler %1 von %2: %3</translation>
    </message>
    <message>
        <source>Warning %1 of %2: %3</source>
        <translation>Warnung %1 von %2: %3</translation>
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
        <translation>Die Projektdateien wurden von einem anderen Programm geändert.</translation>
    </message>
    <message>
        <source>You can open another project once the build has finished.</source>
        <translation>Sie können ein anderes Projekt öffnen, sobald der Build beendet ist.</translation>
    </message>
    <message>
        <source>%1 can&apos;t be opened.</source>
        <translation>%1 kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Open project</source>
        <translation>Projekt öffnen</translation>
    </message>
    <message>
        <source>Projects (*.tprj)</source>
        <translation>Projekte (*.tprj)</translation>
    </message>
    <message>
        <source>Choose a folder for the copy of %1</source>
        <translation>Ordner für die Kopie von %1 auswählen</translation>
    </message>
    <message>
        <source>%1 can&apos;t be copied: %2</source>
        <translation>%1 kann nicht kopiert werden: %2</translation>
    </message>
    <message>
        <source>&amp;New project...</source>
        <translation>&amp;Neues Projekt …</translation>
    </message>
    <message>
        <source>&amp;Open project...</source>
        <translation>Projekt ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>Undo project change</source>
        <translation>Projektänderung rückgängig machen</translation>
    </message>
    <message>
        <source>Redo project change</source>
        <translation>Projektänderung wiederholen</translation>
    </message>
    <message>
        <source>The project&apos;s changes could not be saved.</source>
        <translation>Die Änderungen am Projekt konnten nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>The project has unsaved changes.

Saving merges them with the other program&apos;s changes.</source>
        <translation>Das Projekt hat nicht gespeicherte Änderungen.

Beim Speichern werden sie mit denen des anderen Programms zusammengeführt.</translation>
    </message>
    <message>
        <source>Another program is changing the project.</source>
        <translation>Ein anderes Programm ändert gerade das Projekt.</translation>
    </message>
    <message>
        <source>&amp;Find moved files...</source>
        <translation>Verschobene Dateien &amp;suchen …</translation>
    </message>
    <message>
        <source>Find &amp;moved files...</source>
        <translation>&amp;Verschobene Dateien suchen …</translation>
    </message>
    <message>
        <source>%1 must be closed first. Save its changes?</source>
        <translation>%1 muss zuerst geschlossen werden. Änderungen speichern?</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>&amp;Save copies...</source>
        <translation>&amp;Kopien speichern …</translation>
    </message>
    <message>
        <source>Folder for the copies</source>
        <translation>Ordner für die Kopien</translation>
    </message>
    <message>
        <source>New file</source>
        <translation>Neue Datei</translation>
    </message>
    <message>
        <source>New &amp;file...</source>
        <translation>Neue &amp;Datei...</translation>
    </message>
    <message>
        <source>&amp;Create</source>
        <translation>&amp;Anlegen</translation>
    </message>
</context>
<context>
    <name>RecentMenu</name>
    <message>
        <source>&amp;Clear</source>
        <translation>Liste &amp;leeren</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
</context>
<context>
    <name>RecoveryDialog</name>
    <message>
        <source>Tarn closed unexpectedly on %1. These changes were not saved:</source>
        <translation>Tarn wurde am %1 unerwartet beendet. Diese Änderungen wurden nicht gespeichert:</translation>
    </message>
    <message>
        <source>Restore unsaved changes</source>
        <translation>Nicht gespeicherte Änderungen wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Discard</source>
        <translation>&amp;Verwerfen</translation>
    </message>
    <message>
        <source>&amp;Later</source>
        <translation>&amp;Später</translation>
    </message>
    <message>
        <source>Discard these changes? They can&apos;t be restored afterwards.</source>
        <translation>Diese Änderungen verwerfen? Sie können danach nicht mehr wiederhergestellt werden.</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Recoverable changes</source>
        <translation>Wiederherstellbare Änderungen</translation>
    </message>
    <message>
        <source>Project changes: files and options</source>
        <translation>Projektänderungen: Dateien und Optionen</translation>
    </message>
    <message>
        <source>None: the recovery data is damaged</source>
        <translation>Keine: Die Wiederherstellungsdaten sind beschädigt</translation>
    </message>
    <message>
        <source>Restored changes are not saved yet: review them, then save or undo them.</source>
        <translation>Wiederhergestellte Änderungen sind noch nicht gespeichert: Prüfen Sie sie, und speichern Sie sie oder machen Sie sie rückgängig.</translation>
    </message>
    <message>
        <source>Unsaved text; the file no longer exists</source>
        <translation>Nicht gespeicherter Text; die Datei existiert nicht mehr</translation>
    </message>
    <message>
        <source>Unsaved text; the file has changed since</source>
        <translation>Nicht gespeicherter Text; die Datei wurde seitdem geändert</translation>
    </message>
    <message>
        <source>Unsaved text</source>
        <translation>Nicht gespeicherter Text</translation>
    </message>
    <message>
        <source>Tarn closed unexpectedly, and the unsaved changes can&apos;t be restored: the journal is damaged.

%1: %2</source>
        <translation>Tarn wurde unerwartet beendet, und die nicht gespeicherten Änderungen können nicht wiederhergestellt werden: Das Journal ist beschädigt.

%1: %2</translation>
    </message>
    <message>
        <source>Another version of Tarn closed unexpectedly. Only that version can restore its unsaved changes.

%1</source>
        <translation>Eine andere Version von Tarn wurde unerwartet beendet. Nur diese Version kann ihre nicht gespeicherten Änderungen wiederherstellen.

%1</translation>
    </message>
    <message>
        <source>Project changes: files and options; the project no longer exists</source>
        <translation>Projektänderungen: Dateien und Optionen; das Projekt existiert nicht mehr</translation>
    </message>
</context>
<context>
    <name>RelocateDialog</name>
    <message>
        <source>Find moved files</source>
        <translation>Verschobene Dateien suchen</translation>
    </message>
    <message>
        <source>Search &amp;in:</source>
        <translation>Suchen &amp;in:</translation>
    </message>
    <message>
        <source>Choose &amp;folder...</source>
        <translation>&amp;Ordner wählen …</translation>
    </message>
    <message>
        <source>Folder to search</source>
        <translation>Zu durchsuchender Ordner</translation>
    </message>
    <message>
        <source>Missing</source>
        <translation>Fehlt</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>Gefunden</translation>
    </message>
    <message>
        <source>Used as</source>
        <translation>Verwendet als</translation>
    </message>
    <message>
        <source>&amp;Update project</source>
        <translation>Projekt &amp;anpassen</translation>
    </message>
    <message>
        <source>Searching...</source>
        <translation>Suche läuft …</translation>
    </message>
    <message>
        <source>Nothing is missing.</source>
        <translation>Es fehlt nichts.</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n missing files found</source>
        <translation>
            <numerusform>%1 von %n fehlenden Datei gefunden</numerusform>
            <numerusform>%1 von %n fehlenden Dateien gefunden</numerusform>
        </translation>
    </message>
    <message>
        <source>application of %1</source>
        <translation>Anwendung von %1</translation>
    </message>
    <message>
        <source>file of %1</source>
        <translation>Datei von %1</translation>
    </message>
    <message>
        <source>New location of %1</source>
        <translation>Neuer Ort von %1</translation>
    </message>
    <message numerus="yes">
        <source>one of %n matching files</source>
        <translation>
            <numerusform>eine von %n passenden Datei</numerusform>
            <numerusform>eine von %n passenden Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>option in %1; follows the files in its folder</source>
        <translation>Option in %1; folgt den Dateien ihres Ordners</translation>
    </message>
    <message>
        <source>not found in this folder</source>
        <translation>in diesem Ordner nicht gefunden</translation>
    </message>
    <message numerus="yes">
        <source>%n folders can&apos;t be read</source>
        <translation>
            <numerusform>%n Ordner kann nicht gelesen werden</numerusform>
            <numerusform>%n Ordner können nicht gelesen werden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ReportView</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>A&amp;lles auswählen</translation>
    </message>
    <message>
        <source>&amp;Sort by</source>
        <translation>&amp;Sortieren nach</translation>
    </message>
</context>
<context>
    <name>SaveNotice</name>
    <message numerus="yes">
        <source>%1 was also changed by another program. It now contains both changes.</source>
        <translation>
            <numerusform>%1 wurde auch von einem anderen Programm geändert. Die Datei enthält jetzt beide Änderungen.</numerusform>
            <numerusform>%1 wurden auch von einem anderen Programm geändert. Die Dateien enthalten jetzt beide Änderungen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Merged with another program&apos;s changes</source>
        <translation>Mit Änderungen eines anderen Programms zusammengeführt</translation>
    </message>
    <message>
        <source>&amp;Open the other version</source>
        <translation>Andere Fassung ö&amp;ffnen</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Änderung</translation>
    </message>
    <message>
        <source>Other version</source>
        <translation>Andere Fassung</translation>
    </message>
    <message>
        <source>Files changed on both sides</source>
        <translation>Auf beiden Seiten geänderte Dateien</translation>
    </message>
    <message>
        <source>removed here, changed there</source>
        <translation>hier entfernt, dort geändert</translation>
    </message>
    <message>
        <source>changed here, removed there</source>
        <translation>hier geändert, dort entfernt</translation>
    </message>
    <message>
        <source>%1 changed on both sides</source>
        <translation>%1 auf beiden Seiten geändert</translation>
    </message>
    <message>
        <source>the file itself</source>
        <translation>die Datei selbst</translation>
    </message>
    <message>
        <source>contains the changes from both sides</source>
        <translation>enthält die Änderungen beider Seiten</translation>
    </message>
    <message>
        <source>contained more than could be read</source>
        <translation>enthielt mehr, als gelesen werden konnte</translation>
    </message>
    <message>
        <source>replaced by your version</source>
        <translation>durch Ihre Fassung ersetzt</translation>
    </message>
    <message>
        <source>The other version:</source>
        <translation>Die andere Fassung:</translation>
    </message>
    <message numerus="yes">
        <source>%1 was changed here and by another program, with %n conflict(s).</source>
        <translation>
            <numerusform>%1 wurde hier und von einem anderen Programm geändert, mit einem Konflikt.</numerusform>
            <numerusform>%1 wurde hier und von einem anderen Programm geändert, mit %n Konflikten.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Project files were changed here and by another program, with %n conflict(s).</source>
        <translation>
            <numerusform>Projektdateien wurden hier und von einem anderen Programm geändert, mit einem Konflikt.</numerusform>
            <numerusform>Projektdateien wurden hier und von einem anderen Programm geändert, mit %n Konflikten.</numerusform>
        </translation>
    </message>
    <message>
        <source>Where both sides changed the same value, yours was saved. Whatever was removed on one side but changed on the other was kept.</source>
        <translation>Wo beide Seiten denselben Wert geändert haben, wurde Ihrer gespeichert. Was auf einer Seite entfernt und auf der anderen geändert wurde, ist erhalten geblieben.</translation>
    </message>
    <message numerus="yes">
        <source>%1 was replaced. Its previous content was saved as:</source>
        <translation>
            <numerusform>%1 wurde ersetzt. Der frühere Inhalt wurde gespeichert als:</numerusform>
            <numerusform>%1 wurden ersetzt. Der frühere Inhalt wurde gespeichert als:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source> and %n more</source>
        <translation>
            <numerusform> und %n weitere</numerusform>
            <numerusform> und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 was missing and has been re-created.</source>
        <translation>%1 fehlte und wurde neu angelegt.</translation>
    </message>
    <message>
        <source>was missing, re-created</source>
        <translation>fehlte, neu angelegt</translation>
    </message>
</context>
<context>
    <name>Server</name>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Add files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>New folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>Build all</source>
        <translation>Alles bauen</translation>
    </message>
    <message>
        <source>Build the active application</source>
        <translation>Aktive Anwendung bauen</translation>
    </message>
    <message>
        <source>Rebuild all</source>
        <translation>Alles neu bauen</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>&amp;Project</source>
        <translation>&amp;Projekt</translation>
    </message>
    <message>
        <source>Add files...</source>
        <translation>Dateien hinzufügen …</translation>
    </message>
    <message>
        <source>New application...</source>
        <translation>Neue Anwendung …</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Set as active application</source>
        <translation>Als aktive Anwendung festlegen</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Konfiguration</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Options...</source>
        <translation>Optionen …</translation>
    </message>
    <message>
        <source>Options of the active application...</source>
        <translation>Optionen der aktiven Anwendung …</translation>
    </message>
    <message>
        <source>Reset to defaults</source>
        <translation>Auf Vorgaben zurücksetzen</translation>
    </message>
    <message>
        <source>B&amp;uild</source>
        <translation>Ba&amp;uen</translation>
    </message>
    <message>
        <source>Clean all</source>
        <translation>Alles bereinigen</translation>
    </message>
    <message>
        <source>Build the selection</source>
        <translation>Auswahl bauen</translation>
    </message>
    <message>
        <source>Rebuild the selection</source>
        <translation>Auswahl neu bauen</translation>
    </message>
    <message>
        <source>Clean the selection</source>
        <translation>Auswahl bereinigen</translation>
    </message>
    <message>
        <source>Translate the file</source>
        <translation>Datei übersetzen</translation>
    </message>
    <message>
        <source>Listing of the selection</source>
        <translation>Listing der Auswahl</translation>
    </message>
    <message>
        <source>Listing of the active application</source>
        <translation>Listing der aktiven Anwendung</translation>
    </message>
    <message>
        <source>Add applications...</source>
        <translation>Anwendungen hinzufügen …</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>Bauen</translation>
    </message>
    <message>
        <source>Rebuild</source>
        <translation>Neu bauen</translation>
    </message>
    <message>
        <source>Clean</source>
        <translation>Bereinigen</translation>
    </message>
    <message>
        <source>Run tool</source>
        <translation>Werkzeug ausführen</translation>
    </message>
    <message>
        <source>Listing</source>
        <translation>Listing</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Translate</source>
        <translation>Übersetzen</translation>
    </message>
    <message>
        <source>Clear the log</source>
        <translation>Protokoll leeren</translation>
    </message>
    <message>
        <source>Run in simulator</source>
        <translation>Im Simulator ausführen</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Hochladen</translation>
    </message>
    <message>
        <source>Disassemble</source>
        <translation>Disassemblieren</translation>
    </message>
    <message>
        <source>List symbols</source>
        <translation>Symbole auflisten</translation>
    </message>
    <message>
        <source>Write a copy without debug information</source>
        <translation>Kopie ohne Debug-Informationen schreiben</translation>
    </message>
    <message>
        <source>Put the object files into an archive</source>
        <translation>Objektdateien in ein Archiv packen</translation>
    </message>
    <message>
        <source>Globals</source>
        <translation>Globale Symbole</translation>
    </message>
    <message>
        <source>Build Report</source>
        <translation>Build-Bericht</translation>
    </message>
    <message>
        <source>Build Log</source>
        <translation>Build-Protokoll</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>Build information</source>
        <translation>Build-Informationen</translation>
    </message>
    <message>
        <source>Dependencies</source>
        <translation>Abhängigkeiten</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Definition</source>
        <translation>Definition</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Arrange by</source>
        <translation>Anordnen nach</translation>
    </message>
    <message>
        <source>Sort &amp;Ascending</source>
        <translation>&amp;Aufsteigend sortieren</translation>
    </message>
    <message>
        <source>Sort &amp;Descending</source>
        <translation>A&amp;bsteigend sortieren</translation>
    </message>
    <message>
        <source>Group by Field</source>
        <translation>Nach Feld gruppieren</translation>
    </message>
    <message>
        <source>Group by box</source>
        <translation>Gruppierungsleiste</translation>
    </message>
    <message>
        <source>Remove Column</source>
        <translation>Spalte entfernen</translation>
    </message>
    <message>
        <source>Best Fit</source>
        <translation>Optimale Breite</translation>
    </message>
    <message>
        <source>Alignment</source>
        <translation>Ausrichtung</translation>
    </message>
    <message>
        <source>Align Left</source>
        <translation>Linksbündig</translation>
    </message>
    <message>
        <source>Align Right</source>
        <translation>Rechtsbündig</translation>
    </message>
    <message>
        <source>Align Center</source>
        <translation>Zentriert</translation>
    </message>
    <message>
        <source>Create a new project</source>
        <translation>Neues Projekt anlegen</translation>
    </message>
    <message>
        <source>Add an application to the open project</source>
        <translation>Anwendung zum geöffneten Projekt hinzufügen</translation>
    </message>
    <message>
        <source>Choose the microcontroller, the kind of application, its name and its folder.</source>
        <translation>Wählen Sie den Mikrocontroller, die Art der Anwendung, ihren Namen und ihren Ordner.</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>Typ:</translation>
    </message>
    <message>
        <source>Processor:</source>
        <translation>Prozessor:</translation>
    </message>
    <message>
        <source>Description:</source>
        <translation>Beschreibung:</translation>
    </message>
    <message>
        <source>DataSheet</source>
        <translation>Datenblatt</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Ort:</translation>
    </message>
    <message>
        <source>Launch Cobbler to generate source files</source>
        <translation>Cobbler starten, um Quelldateien zu erzeugen</translation>
    </message>
    <message>
        <source>Insert to the current project</source>
        <translation>In das aktuelle Projekt einfügen</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Anwendung</translation>
    </message>
    <message>
        <source>Debug session</source>
        <translation>Debug-Sitzung</translation>
    </message>
    <message>
        <source>Live debug session</source>
        <translation>Live-Debug-Sitzung</translation>
    </message>
    <message>
        <source>The application needs a name.</source>
        <translation>Die Anwendung braucht einen Namen.</translation>
    </message>
    <message>
        <source>A name can&apos;t contain a slash, a backslash or a control character, or start with a drive.</source>
        <translation>Ein Name kann keinen Schrägstrich, umgekehrten Schrägstrich oder Steuerzeichen enthalten und nicht mit einem Laufwerk beginnen.</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>Der Name ist zu lang.</translation>
    </message>
    <message>
        <source>The application needs a folder.</source>
        <translation>Die Anwendung braucht einen Ordner.</translation>
    </message>
    <message>
        <source>Enter the full path of the folder.</source>
        <translation>Geben Sie den vollständigen Pfad des Ordners ein.</translation>
    </message>
    <message>
        <source>Add generated file...</source>
        <translation>Erzeugte Datei hinzufügen …</translation>
    </message>
    <message>
        <source>Array of the file&apos;s bytes</source>
        <translation>Feld mit den Bytes der Datei</translation>
    </message>
    <message>
        <source>Template for the version of the sources</source>
        <translation>Vorlage für die Version der Quellen</translation>
    </message>
    <message>
        <source>Commands of the project</source>
        <translation>Befehle des Projekts</translation>
    </message>
</context>
<context>
    <name>ServerDocks</name>
    <message>
        <source>The commands of a build and their output appear here.</source>
        <translation>Die Befehle eines Builds und ihre Ausgaben erscheinen hier.</translation>
    </message>
    <message>
        <source>The errors and warnings of the last build appear here.</source>
        <translation>Die Fehler und Warnungen des letzten Builds erscheinen hier.</translation>
    </message>
    <message>
        <source>The functions, variables and types of the program appear here after a build.</source>
        <translation>Die Funktionen, Variablen und Typen des Programms erscheinen hier nach einem Build.</translation>
    </message>
</context>
<context>
    <name>ServerNotifications</name>
    <message>
        <source>Current selection</source>
        <translation>Aktuelle Auswahl</translation>
    </message>
    <message>
        <source>%1 is out of date</source>
        <translation>%1 ist veraltet</translation>
    </message>
    <message>
        <source>%1 has been created</source>
        <translation>%1 wurde erstellt</translation>
    </message>
    <message>
        <source>The new application is ready to be built</source>
        <translation>Die neue Anwendung kann erstellt werden</translation>
    </message>
    <message>
        <source>Time stamp %1</source>
        <translation>Zeitstempel %1</translation>
    </message>
    <message>
        <source>The help file %1 can&apos;t be shown</source>
        <translation>Die Hilfedatei %1 kann nicht angezeigt werden</translation>
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
        <translation>Fertigstellen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>StatusProgress</name>
    <message>
        <source>Cleaned</source>
        <translation>Bereinigt</translation>
    </message>
    <message>
        <source>Nothing to do</source>
        <translation>Nichts zu tun</translation>
    </message>
    <message>
        <source>Build succeeded</source>
        <translation>Build erfolgreich</translation>
    </message>
    <message>
        <source>Build stopped</source>
        <translation>Build abgebrochen</translation>
    </message>
    <message>
        <source>Build failed</source>
        <translation>Build fehlgeschlagen</translation>
    </message>
    <message numerus="yes">
        <source>%n error(s)</source>
        <translation>
            <numerusform>%n Fehler</numerusform>
            <numerusform>%n Fehler</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n warning(s)</source>
        <translation>
            <numerusform>%n Warnung</numerusform>
            <numerusform>%n Warnungen</numerusform>
        </translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Show the build log</source>
        <translation>Build-Protokoll anzeigen</translation>
    </message>
    <message>
        <source>Build progress</source>
        <translation>Build-Fortschritt</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stop the build</source>
        <translation>Build abbrechen</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>Stopping the build...</source>
        <translation>Build wird abgebrochen …</translation>
    </message>
    <message>
        <source>Building...</source>
        <translation>Wird erstellt …</translation>
    </message>
    <message>
        <source>Building %1 of %2</source>
        <translation>%1 von %2 wird erstellt</translation>
    </message>
    <message>
        <source>Building file %1</source>
        <translation>Datei %1 wird erstellt</translation>
    </message>
    <message>
        <source>Build not started</source>
        <translation>Build nicht gestartet</translation>
    </message>
    <message>
        <source>Waiting for the project&apos;s options...</source>
        <translation>Warten auf die Projektoptionen …</translation>
    </message>
    <message>
        <source>Waiting for another build of this project (%1)</source>
        <translation>Warten auf einen anderen Build dieses Projekts (%1)</translation>
    </message>
    <message>
        <source>, %1 running</source>
        <translation>, %1 laufen</translation>
    </message>
    <message>
        <source>%1, %2 left</source>
        <translation>%1, noch %2</translation>
    </message>
    <message>
        <source>%1 s  %2</source>
        <translation>%1 s  %2</translation>
    </message>
    <message>
        <source>%1: finished</source>
        <translation>%1: fertig</translation>
    </message>
    <message>
        <source>%1: stopped</source>
        <translation>%1: abgebrochen</translation>
    </message>
    <message>
        <source>%1: not started</source>
        <translation>%1: nicht gestartet</translation>
    </message>
    <message>
        <source>%1: failed</source>
        <translation>%1: fehlgeschlagen</translation>
    </message>
    <message>
        <source>%1: running...</source>
        <translation>%1 läuft …</translation>
    </message>
    <message>
        <source>Stopping...</source>
        <translation>Wird angehalten …</translation>
    </message>
</context>
<context>
    <name>TreeFilter</name>
    <message>
        <source>Find in project</source>
        <translation>Im Projekt suchen</translation>
    </message>
    <message>
        <source>Lists all nodes whose name or path contains this text (Ctrl+P)</source>
        <translation>Zeigt alle Knoten, deren Name oder Pfad diesen Text enthält (Strg+P)</translation>
    </message>
    <message>
        <source>Matching nodes</source>
        <translation>Gefundene Knoten</translation>
    </message>
    <message>
        <source>Nothing matches.</source>
        <translation>Keine Treffer.</translation>
    </message>
</context>
<context>
    <name>TrustNotice</name>
    <message>
        <source>This project wants to run the launcher %1.</source>
        <translation>Dieses Projekt möchte den Starter %1 ausführen.</translation>
    </message>
    <message>
        <source>This project wants to run the tool %1.</source>
        <translation>Dieses Projekt möchte das Werkzeug %1 ausführen.</translation>
    </message>
    <message>
        <source>This project wants to run the script %1.</source>
        <translation>Dieses Projekt möchte das Skript %1 ausführen.</translation>
    </message>
    <message>
        <source>This project wants to run its own code through the argument %1.</source>
        <translation>Dieses Projekt möchte über das Argument %1 eigenen Code ausführen.</translation>
    </message>
    <message>
        <source>This project wants to run %1.</source>
        <translation>Dieses Projekt möchte %1 ausführen.</translation>
    </message>
    <message>
        <source>This project wants to write %1.</source>
        <translation>Dieses Projekt möchte %1 schreiben.</translation>
    </message>
    <message>
        <source>This project wants to delete %1.</source>
        <translation>Dieses Projekt möchte %1 löschen.</translation>
    </message>
    <message numerus="yes">
        <source> %n more request(s) in the log.</source>
        <translation>
            <numerusform> %n weitere Anforderung steht im Protokoll.</numerusform>
            <numerusform> %n weitere Anforderungen stehen im Protokoll.</numerusform>
        </translation>
    </message>
    <message>
        <source>Do you trust the folder %1?</source>
        <translation>Vertrauen Sie dem Ordner %1?</translation>
    </message>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>The answer can&apos;t be saved: %1: %2</source>
        <translation>Die Antwort kann nicht gespeichert werden: %1: %2</translation>
    </message>
    <message>
        <source>This project wants to run a tool with the argument %1.</source>
        <translation>Dieses Projekt möchte ein Werkzeug mit dem Argument %1 ausführen.</translation>
    </message>
    <message>
        <source>This project wants to run a tool with the argument %1, which writes files of other names.</source>
        <translation>Dieses Projekt möchte ein Werkzeug mit dem Argument %1 ausführen, das Dateien mit anderen Namen schreibt.</translation>
    </message>
    <message>
        <source>This project wants to run a tool with the argument %1, which writes a file of an unknown name.</source>
        <translation>Dieses Projekt möchte ein Werkzeug mit dem Argument %1 ausführen, das eine Datei mit unbekanntem Namen schreibt.</translation>
    </message>
    <message>
        <source>This project wants to run commands from the file %1.</source>
        <translation>Dieses Projekt möchte Befehle aus der Datei %1 ausführen.</translation>
    </message>
    <message>
        <source>The definitions of this project are ignored: %1.</source>
        <translation>Die Definitionen dieses Projekts werden ignoriert: %1.</translation>
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
        <translation>Firmware-Projekte für Mikrocontroller</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Open a project...</source>
        <translation>Projekt öffnen …</translation>
    </message>
    <message>
        <source>From a folder on this computer</source>
        <translation>Aus einem Ordner auf diesem Computer</translation>
    </message>
    <message>
        <source>New project...</source>
        <translation>Neues Projekt …</translation>
    </message>
    <message>
        <source>For a microcontroller of your choice</source>
        <translation>Für einen Mikrocontroller Ihrer Wahl</translation>
    </message>
    <message>
        <source>Open a copy of an example</source>
        <translation>Kopie eines Beispiels öffnen</translation>
    </message>
    <message>
        <source>Recent</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Projects that you open will be listed here.</source>
        <translation>Hier erscheinen die Projekte, die Sie öffnen.</translation>
    </message>
</context>
<context>
    <name>WindowLayout</name>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Reset layout</source>
        <translation>&amp;Fensteranordnung zurücksetzen</translation>
    </message>
    <message>
        <source>Tool bar: %1</source>
        <translation>Werkzeugleiste: %1</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Opens a project and files to edit.</source>
        <translation>Öffnet ein Projekt und zu bearbeitende Dateien.</translation>
    </message>
    <message>
        <source>Project (.tprj) and source files.</source>
        <translation>Projekt (.tprj) und Quelldateien.</translation>
    </message>
</context>
<context>
    <name>tarn::host::ChoiceEditor</name>
    <message>
        <source>(inherited)</source>
        <translation>(geerbt)</translation>
    </message>
</context>
<context>
    <name>tarn::host::ListDialog</name>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Add &amp;folder...</source>
        <translation>O&amp;rdner hinzufügen …</translation>
    </message>
    <message>
        <source>Add &amp;inherited</source>
        <translation>&amp;Geerbtes hinzufügen</translation>
    </message>
    <message>
        <source>Insert the inherited value</source>
        <translation>Den geerbten Wert einfügen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Move &amp;up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Move &amp;down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>%1 stands for the inherited value.</source>
        <translation>%1 steht für den geerbten Wert.</translation>
    </message>
</context>
<context>
    <name>tarn::host::OptionsDelegate</name>
    <message>
        <source>Reset to the inherited value (Del)</source>
        <translation>Auf den geerbten Wert zurücksetzen (Entf)</translation>
    </message>
</context>
<context>
    <name>tarn::host::OptionsModel</name>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>As written: %1</source>
        <translation>Wie eingegeben: %1</translation>
    </message>
    <message>
        <source>Expands to: %1</source>
        <translation>Aufgelöst: %1</translation>
    </message>
    <message>
        <source>(empty)</source>
        <translation>(leer)</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>application</source>
        <translation>Anwendung</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>set here</source>
        <translation>hier gesetzt</translation>
    </message>
    <message>
        <source>from %1 %2</source>
        <translation>von %1 %2</translation>
    </message>
    <message>
        <source>same as %1 %2</source>
        <translation>wie %1 %2</translation>
    </message>
    <message>
        <source>default</source>
        <translation>Standardwert</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Option</source>
        <translation>Option</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Origin</source>
        <translation>Herkunft</translation>
    </message>
</context>
<context>
    <name>tarn::host::OptionsWindow</name>
    <message>
        <source>From %1 to %2.</source>
        <translation>Von %1 bis %2.</translation>
    </message>
    <message>
        <source>At least %1.</source>
        <translation>Mindestens %1.</translation>
    </message>
    <message>
        <source>At most %1.</source>
        <translation>Höchstens %1.</translation>
    </message>
    <message>
        <source>(empty)</source>
        <translation>(leer)</translation>
    </message>
    <message>
        <source>Set on %1 %2 for %3: %4</source>
        <translation>Gesetzt für %1 %2, Konfiguration %3: %4</translation>
    </message>
    <message>
        <source>Option description</source>
        <translation>Beschreibung der Option</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Search options</source>
        <translation>Optionen suchen</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Reset all options of this node...</source>
        <translation>Alle Optionen dieses Knotens zurücksetzen …</translation>
    </message>
    <message>
        <source>Copy name</source>
        <translation>Namen kopieren</translation>
    </message>
    <message>
        <source>Explain</source>
        <translation>Erklären</translation>
    </message>
    <message>
        <source>Confi&amp;guration:</source>
        <translation>&amp;Konfiguration:</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Konfiguration</translation>
    </message>
    <message>
        <source>Add a configuration...</source>
        <translation>Konfiguration hinzufügen …</translation>
    </message>
    <message>
        <source>Add a configuration</source>
        <translation>Konfiguration hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Options of:</source>
        <translation>&amp;Optionen von:</translation>
    </message>
    <message>
        <source>Options of</source>
        <translation>Optionen von</translation>
    </message>
    <message>
        <source>%1 in %2</source>
        <translation>%1 in %2</translation>
    </message>
    <message>
        <source>Options can&apos;t be changed while a build is running.</source>
        <translation>Während eines Builds können Optionen nicht geändert werden.</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>Select a node of the project.</source>
        <translation>Wählen Sie einen Knoten des Projekts.</translation>
    </message>
    <message>
        <source>Select an option to see its description.</source>
        <translation>Wählen Sie eine Option, um ihre Beschreibung zu sehen.</translation>
    </message>
    <message>
        <source>As written: %1</source>
        <translation>Wie eingegeben: %1</translation>
    </message>
    <message>
        <source>Expands to: %1</source>
        <translation>Aufgelöst: %1</translation>
    </message>
    <message>
        <source>Default: %1</source>
        <translation>Standardwert: %1</translation>
    </message>
    <message>
        <source>Reset options</source>
        <translation>Optionen zurücksetzen</translation>
    </message>
    <message>
        <source>Reset all options set on %1, in every configuration? This can&apos;t be undone.</source>
        <translation>Alle für %1 gesetzten Optionen in allen Konfigurationen zurücksetzen? Das kann nicht rückgängig gemacht werden.</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>The configuration %1 already exists.</source>
        <translation>Die Konfiguration %1 ist bereits vorhanden.</translation>
    </message>
    <message>
        <source>Unknown node type &quot;%1&quot;. Known types: %2.</source>
        <translation>Unbekannter Knotentyp „%1“. Bekannte Typen: %2.</translation>
    </message>
</context>
<context>
    <name>tarn::host::TextEditor</name>
    <message>
        <source>Edit the list (Alt+Down)</source>
        <translation>Liste bearbeiten (Alt+Ab)</translation>
    </message>
    <message>
        <source>Choose (Alt+Down)</source>
        <translation>Auswählen (Alt+Ab)</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
</context>
</TS>
