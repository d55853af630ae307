<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Changes</name>
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
            <numerusform>%n file</numerusform>
            <numerusform>%n files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n groups</source>
        <translation>
            <numerusform>%n group</numerusform>
            <numerusform>%n groups</numerusform>
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
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DamageNotice</name>
    <message numerus="yes">
        <source>%1, and %n more</source>
        <translation>
            <numerusform>%1, and %n more</numerusform>
            <numerusform>%1, and %n more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>EditorArea</name>
    <message numerus="yes">
        <source>%1 was not saved, because another program has changed it too.</source>
        <translation>
            <numerusform>%1 was not saved, because another program has changed it too.</numerusform>
            <numerusform>%1 were not saved, because another program has changed them too.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>EditorTabs</name>
    <message numerus="yes">
        <source>%1 has unsaved changes. Build the version on disk?</source>
        <translation>
            <numerusform>%1 has unsaved changes. Build the version on disk?</numerusform>
            <numerusform>%1 have unsaved changes. Build the versions on disk?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FindBar</name>
    <message numerus="yes">
        <source>%n replaced</source>
        <translation>
            <numerusform>%n replaced</numerusform>
            <numerusform>%n replaced</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FindingsPane</name>
    <message numerus="yes">
        <source>%n finding(s)</source>
        <translation>
            <numerusform>%n finding</numerusform>
            <numerusform>%n findings</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>IdeWindow</name>
    <message numerus="yes">
        <source>File not found:
%1</source>
        <translation>
            <numerusform>File not found:
%1</numerusform>
            <numerusform>Files not found:
%1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RelocateDialog</name>
    <message numerus="yes">
        <source>%1 of %n missing files found</source>
        <translation>
            <numerusform>%1 of %n missing file found</numerusform>
            <numerusform>%1 of %n missing files found</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>one of %n matching files</source>
        <translation>
            <numerusform>one of %n matching file</numerusform>
            <numerusform>one of %n matching files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n folders can&apos;t be read</source>
        <translation>
            <numerusform>%n folder can&apos;t be read</numerusform>
            <numerusform>%n folders can&apos;t be read</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SaveNotice</name>
    <message numerus="yes">
        <source>%1 was changed here and by another program, with %n conflict(s).</source>
        <translation>
            <numerusform>%1 was changed here and by another program, with %n conflict.</numerusform>
            <numerusform>%1 was changed here and by another program, with %n conflicts.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Project files were changed here and by another program, with %n conflict(s).</source>
        <translation>
            <numerusform>Project files were changed here and by another program, with a conflict.</numerusform>
            <numerusform>Project files were changed here and by another program, with %n conflicts.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 was replaced. Its previous content was saved as:</source>
        <translation>
            <numerusform>%1 was replaced. Its previous content was saved as:</numerusform>
            <numerusform>%1 were replaced. Their previous content was saved as:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 was also changed by another program. It now contains both changes.</source>
        <translation>
            <numerusform>%1 was also changed by another program. It now contains both changes.</numerusform>
            <numerusform>%1 were also changed by another program. They now contain both changes.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source> and %n more</source>
        <translation>
            <numerusform> and %n more</numerusform>
            <numerusform> and %n more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StatusProgress</name>
    <message numerus="yes">
        <source>%n error(s)</source>
        <translation>
            <numerusform>%n error</numerusform>
            <numerusform>%n errors</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n warning(s)</source>
        <translation>
            <numerusform>%n warning</numerusform>
            <numerusform>%n warnings</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TrustNotice</name>
    <message numerus="yes">
        <source> %n more request(s) in the log.</source>
        <translation>
            <numerusform> %n more request is in the log.</numerusform>
            <numerusform> %n more requests are in the log.</numerusform>
        </translation>
    </message>
</context>
</TS>
