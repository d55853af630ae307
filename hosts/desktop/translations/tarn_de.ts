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
        <source>The text holds characters that the file&apos;s encoding can&apos;t write.</source>
        <translation>Der Text enthält Zeichen, die es in der Kodierung der Datei nicht gibt.</translation>
    </message>
</context>
<context>
    <name>CrashRecovery</name>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>What was not saved is offered again at the next start, as not all of it could be restored.</source>
        <translation>Was nicht gespeichert war, wird beim nächsten Start wieder angeboten, weil nicht alles davon wiederhergestellt werden konnte.</translation>
    </message>
    <message>
        <source>%1 can&apos;t be opened.</source>
        <translation>%1 kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>These changes of the project conflict with those that were restored before:</source>
        <translation>Diese Änderungen des Projekts widersprechen den vorher wiederhergestellten:</translation>
    </message>
    <message>
        <source>%1 has another text that is not saved.</source>
        <translation>%1 hat schon einen anderen, nicht gespeicherten Text.</translation>
    </message>
    <message>
        <source>%1 is gone, and its folder with it. What was not saved is offered again at the next start. It can also be saved in another folder now.</source>
        <translation>%1 ist samt Ordner nicht mehr da. Was nicht gespeichert war, wird beim nächsten Start wieder angeboten. Es kann auch jetzt in einem anderen Ordner gespeichert werden.</translation>
    </message>
    <message>
        <source>&amp;Save copies...</source>
        <translation>&amp;Kopien speichern...</translation>
    </message>
    <message>
        <source>Folder for the copies</source>
        <translation>Ordner für die Kopien</translation>
    </message>
    <message>
        <source>What was not saved of %1</source>
        <translation>Was von %1 nicht gespeichert war</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Kept as:</source>
        <translation>Aufbewahrt als:</translation>
    </message>
</context>
<context>
    <name>DamageNotice</name>
    <message numerus="yes">
        <source>%1, and %n more</source>
        <translation>
            <numerusform>%1, und %n weitere Stelle</numerusform>
            <numerusform>%1, und %n weitere Stellen</numerusform>
        </translation>
    </message>
    <message>
        <source>The project was read only in part: %1</source>
        <translation>Das Projekt wurde nur teilweise gelesen: %1</translation>
    </message>
    <message>
        <source>%1

Build or save it without what was not read? A file that is written is first copied to a file with .bak at the end of its name.</source>
        <translation>%1

Ohne das nicht Gelesene erstellen oder speichern? Eine Datei, die geschrieben wird, wird vorher in eine Datei mit .bak am Ende ihres Namens kopiert.</translation>
    </message>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>%1

Save the changes of the project without what was not read?</source>
        <translation>%1

Die Änderungen des Projekts ohne das nicht Gelesene speichern?</translation>
    </message>
</context>
<context>
    <name>DeclarationSearch</name>
    <message>
        <source>There is no name at the cursor</source>
        <translation>Am Cursor steht kein Name</translation>
    </message>
    <message>
        <source>No global named %1 is known</source>
        <translation>Kein globaler Name %1 ist bekannt</translation>
    </message>
    <message>
        <source>No global named %1 is known; build the project first</source>
        <translation>Kein globaler Name %1 ist bekannt; das Projekt muss erst erstellt werden</translation>
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
        <translation>Wieder&amp;herstellen</translation>
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
        <translation>Meine Fassung behalten</translation>
    </message>
    <message>
        <source>%1 has been changed by another program, and here as well.</source>
        <translation>%1 wurde von einem anderen Programm geändert und hier ebenfalls.</translation>
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
        <translation>Einzelheiten ...</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message numerus="yes">
        <source>%1 was not saved: it has been changed by another program as well.</source>
        <translation>
            <numerusform>%1 wurde nicht gespeichert: Ein anderes Programm hat die Datei ebenfalls geändert.</numerusform>
            <numerusform>%1 wurden nicht gespeichert: Ein anderes Programm hat die Dateien ebenfalls geändert.</numerusform>
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
        <source>8 bit</source>
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
        <source>Save the changes in %1?</source>
        <translation>Änderungen in %1 speichern?</translation>
    </message>
    <message>
        <source>Open files</source>
        <translation>Offene Dateien</translation>
    </message>
    <message numerus="yes">
        <source>%1 is not saved. Build what is on the disk?</source>
        <translation>
            <numerusform>%1 ist nicht gespeichert. Mit dem Inhalt auf der Festplatte erstellen?</numerusform>
            <numerusform>%1 sind nicht gespeichert. Mit dem Inhalt auf der Festplatte erstellen?</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Build</source>
        <translation>&amp;Erstellen</translation>
    </message>
    <message>
        <source>Another program has changed the file as well. Saving replaces what it wrote.</source>
        <translation>Ein anderes Programm hat die Datei ebenfalls geändert. Speichern ersetzt, was es geschrieben hat.</translation>
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
        <translation>Gesuchter Text</translation>
    </message>
    <message>
        <source>Replace with</source>
        <translation>Ersetzen durch</translation>
    </message>
    <message>
        <source>Text to put in its place</source>
        <translation>Text, der ihn ersetzt</translation>
    </message>
    <message>
        <source>Match upper and lower case</source>
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
        <source>Find the previous one</source>
        <translation>Vorherige Stelle</translation>
    </message>
    <message>
        <source>Find the next one</source>
        <translation>Nächste Stelle</translation>
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
        <translation>Schäden</translation>
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
        <source>The library %1 is neither in the library folders nor among those of the compiler</source>
        <translation>Die Bibliothek %1 liegt weder in den Bibliotheksordnern noch bei denen des Compilers</translation>
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
        <source>No definition has the option %1</source>
        <translation>Keine Definition kennt die Option %1</translation>
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
        <source>%1 is not a type of the configuration file, so %2 is not built</source>
        <translation>%1 ist kein Typ der Konfigurationsdatei, daher wird %2 nicht erstellt</translation>
    </message>
    <message>
        <source>Unknown tools</source>
        <translation>Unbekannte Werkzeuge</translation>
    </message>
    <message>
        <source>No definition has the tool %1</source>
        <translation>Keine Definition kennt das Werkzeug %1</translation>
    </message>
    <message>
        <source>Missing programs</source>
        <translation>Fehlende Programme</translation>
    </message>
    <message>
        <source>%1 is not installed; it is needed by %2</source>
        <translation>%1 ist nicht installiert; benötigt von %2</translation>
    </message>
    <message>
        <source>Errors in definitions</source>
        <translation>Fehler in Definitionen</translation>
    </message>
    <message>
        <source>Not files</source>
        <translation>Keine Dateien</translation>
    </message>
    <message>
        <source>%1 is not a file</source>
        <translation>%1 ist keine Datei</translation>
    </message>
    <message>
        <source>Not folders</source>
        <translation>Keine Ordner</translation>
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
        <source>The applications %1 and %2 have the same label, except for letter case</source>
        <translation>Die Anwendungen %1 und %2 haben bis auf Groß- und Kleinschreibung die gleiche Bezeichnung</translation>
    </message>
    <message>
        <source>Applications in a cycle</source>
        <translation>Anwendungen im Kreis</translation>
    </message>
    <message>
        <source>Applications that use each other&apos;s outputs can&apos;t be built: %1</source>
        <translation>Anwendungen, die ihre Ausgaben gegenseitig verwenden, können nicht gebaut werden: %1</translation>
    </message>
    <message>
        <source>Files under several names</source>
        <translation>Dateien mit mehreren Namen</translation>
    </message>
    <message>
        <source>%1 and %2 are the same file, which is built twice</source>
        <translation>%1 und %2 sind dieselbe Datei, die zweimal gebaut wird</translation>
    </message>
    <message>
        <source>Unknown configurations</source>
        <translation>Unbekannte Konfigurationen</translation>
    </message>
    <message>
        <source>Options are stored for the configuration %1, which the application does not have</source>
        <translation>Optionen sind für die Konfiguration %1 gespeichert, die die Anwendung nicht hat</translation>
    </message>
    <message>
        <source>Nodes without a file</source>
        <translation>Knoten ohne Datei</translation>
    </message>
    <message>
        <source>%1 names no file</source>
        <translation>%1 nennt keine Datei</translation>
    </message>
</context>
<context>
    <name>FindingsPane</name>
    <message>
        <source>Finding</source>
        <translation>Befund</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
    <message>
        <source>Findings of the project check</source>
        <translation>Befunde der Projektprüfung</translation>
    </message>
    <message>
        <source>No project is open.</source>
        <translation>Es ist kein Projekt geöffnet.</translation>
    </message>
    <message>
        <source>Checking the project...</source>
        <translation>Das Projekt wird geprüft ...</translation>
    </message>
    <message>
        <source>The project has no findings.</source>
        <translation>Das Projekt hat keine Befunde.</translation>
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
    <name>GroupBox</name>
    <message>
        <source>Drag a column header here to group by it</source>
        <translation>Spaltenkopf hierher ziehen, um danach zu gruppieren</translation>
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
        <source>Closing as soon as the build has stopped...</source>
        <translation>Wird geschlossen, sobald das Erstellen abgebrochen ist …</translation>
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
        <source>There is no such file:
%1</source>
        <translation>
            <numerusform>Diese Datei gibt es nicht:
%1</numerusform>
            <numerusform>Diese Dateien gibt es nicht:
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
        <source>Find in the pro&amp;ject...</source>
        <translation>Im &amp;Projekt suchen …</translation>
    </message>
    <message>
        <source>This installation isn&apos;t complete: %1</source>
        <translation>Diese Installation ist nicht vollständig: %1</translation>
    </message>
    <message>
        <source>Project check</source>
        <translation>Projektprüfung</translation>
    </message>
    <message>
        <source>&amp;Check the project</source>
        <translation>Projekt &amp;prüfen</translation>
    </message>
    <message>
        <source>Groups and applications can be renamed here; a file has its name from the disk.</source>
        <translation>Gruppen und Anwendungen lassen sich hier umbenennen; eine Datei hat ihren Namen von der Festplatte.</translation>
    </message>
</context>
<context>
    <name>JournalKeeper</name>
    <message>
        <source>What is not saved would be lost in a crash: %1 can&apos;t be written (%2).</source>
        <translation>Was nicht gespeichert ist, ginge bei einem Absturz verloren: %1 kann nicht geschrieben werden (%2).</translation>
    </message>
    <message>
        <source>%1 is too large to be kept for the case of a crash.</source>
        <translation>%1 ist zu groß, um für den Fall eines Absturzes aufbewahrt zu werden.</translation>
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
    <name>PaneCycle</name>
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
        <source>The last build has no errors and no warnings</source>
        <translation>Das letzte Erstellen ergab weder Fehler noch Warnungen</translation>
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
        <translation>Die Dateien des Projekts wurden von einem anderen Programm geändert.</translation>
    </message>
    <message>
        <source>Another project can be opened as soon as the build has ended.</source>
        <translation>Ein anderes Projekt kann geöffnet werden, sobald das Erstellen beendet ist.</translation>
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
        <source>Where to put a copy of %1</source>
        <translation>Ordner für die Kopie von %1</translation>
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
        <translation>Projektänderung wiederherstellen</translation>
    </message>
    <message>
        <source>The changes of the project could not be saved.</source>
        <translation>Die Änderungen am Projekt konnten nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>The project has changes that are not saved.

Saving puts them together with the changes of the other program.</source>
        <translation>Das Projekt hat Änderungen, die nicht gespeichert sind.

Beim Speichern werden sie mit denen des anderen Programms zusammengeführt.</translation>
    </message>
    <message>
        <source>Another program is changing the project.</source>
        <translation>Ein anderes Programm ändert gerade das Projekt.</translation>
    </message>
    <message>
        <source>&amp;Find moved files...</source>
        <translation>Verschobene Dateien &amp;suchen...</translation>
    </message>
    <message>
        <source>Find &amp;moved files...</source>
        <translation>&amp;Verschobene Dateien suchen...</translation>
    </message>
    <message>
        <source>%1 has to be closed first. Save its changes?</source>
        <translation>%1 muss zuerst geschlossen werden. Die Änderungen darin speichern?</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>Wiederherstellen: %1</translation>
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
        <source>Tarn ended unexpectedly on %1. This was not saved:</source>
        <translation>Tarn wurde am %1 unerwartet beendet. Nicht gespeichert war:</translation>
    </message>
    <message>
        <source>Restore unsaved changes</source>
        <translation>Ungespeicherte Änderungen wiederherstellen</translation>
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
        <source>What can be restored</source>
        <translation>Was wiederhergestellt werden kann</translation>
    </message>
    <message>
        <source>Changes of the project: files and options</source>
        <translation>Änderungen des Projekts: Dateien und Optionen</translation>
    </message>
    <message>
        <source>Nothing: what was kept of it is damaged</source>
        <translation>Nichts: Was davon aufbewahrt war, ist beschädigt</translation>
    </message>
    <message>
        <source>What is restored is not saved yet: look at it, then save it or undo it.</source>
        <translation>Was wiederhergestellt wird, ist noch nicht gespeichert: Sehen Sie es an, dann speichern Sie es oder machen es rückgängig.</translation>
    </message>
    <message>
        <source>Unsaved text; the file is gone</source>
        <translation>Ungespeicherter Text; die Datei ist nicht mehr da</translation>
    </message>
    <message>
        <source>Unsaved text; the file has changed since</source>
        <translation>Ungespeicherter Text; die Datei wurde seitdem geändert</translation>
    </message>
    <message>
        <source>Unsaved text</source>
        <translation>Ungespeicherter Text</translation>
    </message>
    <message>
        <source>Tarn ended unexpectedly, and what was not saved then can&apos;t be read: its journal is damaged.

%1: %2</source>
        <translation>Tarn wurde unerwartet beendet, und was dabei nicht gespeichert war, ist nicht lesbar: Die Sicherung davon ist beschädigt.

%1: %2</translation>
    </message>
    <message>
        <source>Another version of Tarn ended unexpectedly. What was not saved then can be restored only by that version.

%1</source>
        <translation>Eine andere Version von Tarn wurde unerwartet beendet. Was dabei nicht gespeichert war, kann nur jene Version wiederherstellen.

%1</translation>
    </message>
    <message>
        <source>Changes of the project: files and options; the project is gone</source>
        <translation>Änderungen des Projekts: Dateien und Optionen; das Projekt ist nicht mehr da</translation>
    </message>
</context>
<context>
    <name>RelocateDialog</name>
    <message>
        <source>Find moved files</source>
        <translation>Verschobene Dateien suchen</translation>
    </message>
    <message>
        <source>Search &amp;below:</source>
        <translation>Suchen &amp;unter:</translation>
    </message>
    <message>
        <source>Choose &amp;folder...</source>
        <translation>&amp;Ordner wählen...</translation>
    </message>
    <message>
        <source>Folder to search</source>
        <translation>Ordner, der durchsucht wird</translation>
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
        <source>Where it is used</source>
        <translation>Wo es verwendet wird</translation>
    </message>
    <message>
        <source>&amp;Correct the project</source>
        <translation>Projekt &amp;berichtigen</translation>
    </message>
    <message>
        <source>Searching...</source>
        <translation>Suche läuft...</translation>
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
        <source>Where %1 is</source>
        <translation>Wo %1 ist</translation>
    </message>
    <message numerus="yes">
        <source>one of %n files</source>
        <translation>
            <numerusform>eine von %n Datei</numerusform>
            <numerusform>eine von %n Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>option in %1; goes with the files of its folder</source>
        <translation>Option in %1; richtet sich nach den Dateien ihres Ordners</translation>
    </message>
    <message>
        <source>not found below this folder</source>
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
        <source>%1 was also changed by another program. It has both changes now.</source>
        <translation>
            <numerusform>%1 wurde auch von einem anderen Programm geändert. Die Datei enthält jetzt beide Änderungen.</numerusform>
            <numerusform>%1 wurden auch von einem anderen Programm geändert. Die Dateien enthalten jetzt beide Änderungen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Saved together with another program&apos;s changes</source>
        <translation>Zusammen mit Änderungen eines anderen Programms gespeichert</translation>
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
        <source>Place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>Other version</source>
        <translation>Andere Fassung</translation>
    </message>
    <message>
        <source>Files with changes of both sides</source>
        <translation>Dateien mit Änderungen beider Seiten</translation>
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
        <source>has the changes of both sides</source>
        <translation>enthält die Änderungen beider Seiten</translation>
    </message>
    <message>
        <source>held more than was read from it</source>
        <translation>enthielt mehr, als daraus gelesen wurde</translation>
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
        <source>Files of the project were changed here and by another program, with %n conflict(s).</source>
        <translation>
            <numerusform>Dateien des Projekts wurden hier und von einem anderen Programm geändert, mit einem Konflikt.</numerusform>
            <numerusform>Dateien des Projekts wurden hier und von einem anderen Programm geändert, mit %n Konflikten.</numerusform>
        </translation>
    </message>
    <message>
        <source>Where both sides changed the same value, yours was saved. What one side removed and the other one changed has stayed.</source>
        <translation>Wo beide Seiten denselben Wert geändert haben, wurde Ihrer gespeichert. Was eine Seite entfernt und die andere geändert hat, ist geblieben.</translation>
    </message>
    <message numerus="yes">
        <source>%1 was replaced. What it held before is kept as:</source>
        <translation>
            <numerusform>%1 wurde ersetzt. Der frühere Inhalt ist aufbewahrt als:</numerusform>
            <numerusform>%1 wurden ersetzt. Der frühere Inhalt ist aufbewahrt als:</numerusform>
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
        <source>%1 was missing. It has been written again.</source>
        <translation>%1 fehlte und wurde neu geschrieben.</translation>
    </message>
    <message>
        <source>was missing, written again</source>
        <translation>fehlte, neu geschrieben</translation>
    </message>
</context>
<context>
    <name>ServerNotices</name>
    <message>
        <source>What commands work on</source>
        <translation>Worauf Befehle wirken</translation>
    </message>
    <message>
        <source>%1 is out of date</source>
        <translation>%1 ist veraltet</translation>
    </message>
    <message>
        <source>%1 has been created</source>
        <translation>%1 wurde angelegt</translation>
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
        <translation>Erstellen erfolgreich</translation>
    </message>
    <message>
        <source>Build stopped</source>
        <translation>Erstellen abgebrochen</translation>
    </message>
    <message>
        <source>Build failed</source>
        <translation>Erstellen fehlgeschlagen</translation>
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
        <translation>Protokoll zeigen</translation>
    </message>
    <message>
        <source>Progress of the build</source>
        <translation>Fortschritt des Erstellens</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stop the build</source>
        <translation>Erstellen abbrechen</translation>
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
        <translation>Das Erstellen wird abgebrochen …</translation>
    </message>
    <message>
        <source>Building...</source>
        <translation>Wird erstellt …</translation>
    </message>
    <message>
        <source>Building %1 of %2</source>
        <translation>Erstellt wird %1 von %2</translation>
    </message>
    <message>
        <source>Building file %1</source>
        <translation>Erstellt wird Datei %1</translation>
    </message>
    <message>
        <source>Build not started</source>
        <translation>Erstellen nicht begonnen</translation>
    </message>
    <message>
        <source>Waiting for the options of the project...</source>
        <translation>Warten auf die Optionen des Projekts …</translation>
    </message>
    <message>
        <source>Waiting for another build of this project (%1)</source>
        <translation>Warten auf einen anderen Build dieses Projekts (%1)</translation>
    </message>
</context>
<context>
    <name>TreeFilter</name>
    <message>
        <source>Find in the project</source>
        <translation>Im Projekt suchen</translation>
    </message>
    <message>
        <source>Lists all nodes whose name or path contains this (Ctrl+P)</source>
        <translation>Zeigt alle Knoten, deren Name oder Pfad dies enthält (Strg+P)</translation>
    </message>
    <message>
        <source>Nodes that were found</source>
        <translation>Gefundene Knoten</translation>
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
        <source>This project wants to run code of its own, by the argument %1.</source>
        <translation>Dieses Projekt möchte eigenen Code ausführen, durch das Argument %1.</translation>
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
            <numerusform> %n weiterer Wunsch steht im Protokoll.</numerusform>
            <numerusform> %n weitere Wünsche stehen im Protokoll.</numerusform>
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
        <source>The answer can&apos;t be stored: %1: %2</source>
        <translation>Die Antwort kann nicht gespeichert werden: %1: %2</translation>
    </message>
</context>
<context>
    <name>WelcomePage</name>
    <message>
        <source>Tarn</source>
        <translation>Tarn</translation>
    </message>
    <message>
        <source>Firmware projects for microcontrollers</source>
        <translation>Firmwareprojekte für Mikrocontroller</translation>
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
        <source>From a folder of this machine</source>
        <translation>Aus einem Ordner dieses Rechners</translation>
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
        <translation>Hier stehen die Projekte, die Sie öffnen.</translation>
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
</context>
<context>
    <name>main</name>
    <message>
        <source>Opens a project and the files to edit.</source>
        <translation>Öffnet ein Projekt und die Dateien, die bearbeitet werden sollen.</translation>
    </message>
    <message>
        <source>Project (.tprj) and source files.</source>
        <translation>Projekt (.tprj) und Quelldateien.</translation>
    </message>
</context>
<context>
    <name>tarn::host::ChoiceEditor</name>
    <message>
        <source>(as inherited)</source>
        <translation>(wie geerbt)</translation>
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
        <source>What would hold without a list of one&apos;s own</source>
        <translation>Was ohne eigene Liste gälte</translation>
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
        <source>%1 stands for what would hold without this list.</source>
        <translation>%1 steht für das, was ohne diese Liste gälte.</translation>
    </message>
</context>
<context>
    <name>tarn::host::OptionsDelegate</name>
    <message>
        <source>Back to the inherited value (Del)</source>
        <translation>Zurück zum geerbten Wert (Entf)</translation>
    </message>
</context>
<context>
    <name>tarn::host::OptionsModel</name>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Written as: %1</source>
        <translation>Geschrieben als: %1</translation>
    </message>
    <message>
        <source>Gives: %1</source>
        <translation>Ergibt: %1</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
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
        <translation>von: %1 %2</translation>
    </message>
    <message>
        <source>as %1 %2</source>
        <translation>wie: %1 %2</translation>
    </message>
    <message>
        <source>default</source>
        <translation>Vorgabe</translation>
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
        <source>From</source>
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
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
    <message>
        <source>Set at %1 %2 for %3: %4</source>
        <translation>Gesetzt bei %1 %2 für %3: %4</translation>
    </message>
    <message>
        <source>What the option means</source>
        <translation>Bedeutung der Option</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederherstellen</translation>
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
        <source>Options can&apos;t be changed while a build runs.</source>
        <translation>Während des Erstellens können Optionen nicht geändert werden.</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>Wiederherstellen: %1</translation>
    </message>
    <message>
        <source>Select a node of the project.</source>
        <translation>Wählen Sie einen Knoten des Projekts.</translation>
    </message>
    <message>
        <source>Select an option to see what it means.</source>
        <translation>Wählen Sie eine Option, um ihre Bedeutung zu sehen.</translation>
    </message>
    <message>
        <source>Written as: %1</source>
        <translation>Geschrieben als: %1</translation>
    </message>
    <message>
        <source>Gives: %1</source>
        <translation>Ergibt: %1</translation>
    </message>
    <message>
        <source>Default: %1</source>
        <translation>Vorgabe: %1</translation>
    </message>
    <message>
        <source>Reset options</source>
        <translation>Optionen zurücksetzen</translation>
    </message>
    <message>
        <source>Take away all options that are set at %1, in every configuration? This can&apos;t be undone.</source>
        <translation>Alle Optionen entfernen, die bei %1 gesetzt sind, in jeder Konfiguration? Das kann nicht rückgängig gemacht werden.</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>There is a configuration %1 already.</source>
        <translation>Die Konfiguration %1 gibt es schon.</translation>
    </message>
    <message>
        <source>There is no kind of node &quot;%1&quot;. These are known: %2.</source>
        <translation>Es gibt keine Knotenart „%1“. Bekannt sind: %2.</translation>
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
