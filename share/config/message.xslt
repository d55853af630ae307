<?xml version="1.0"?>
<!-- Two things in one file. The texts that the system writes into its log and shows in its boxes
     stand in Messages: Id is 131072 plus the number of the text, and each %s takes the next
     argument. The rest turns a log file into a page.

     The texts are read with the rules of project files, which know no other character reference
     than the one for the quote; so there are no bars, backslashes or angle brackets in them. -->
<xsl:stylesheet version="1.0"
    xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:m="urn:tarn:messages"
    exclude-result-prefixes="m">

  <Messages xmlns="urn:tarn:messages" Tab="Build Log">
    <Message Id="131072" String="Project" />
    <Message Id="131073" String="Application:" />
    <Message Id="131074" String="Add an application to the open project" />
    <Message Id="131075" String="Choose the microcontroller, the kind of application, its name and its folder." />
    <Message Id="131076" String="Files" />
    <Message Id="131077" String="Applications" />
    <Message Id="131078" String="The file '%s' does not exist." />
    <Message Id="131079" String="The folder of '%s' does not exist." />
    <Message Id="131080" String="The file '%s' can't be opened for reading." />
    <Message Id="131081" String="The file '%s' could not be saved." />
    <Message Id="131082" String="%s: %s (%s)" />
    <Message Id="131083" String="Finished." />
    <Message Id="131084" String="Not completed; see the messages above." />
    <Message Id="131085" String="Building %s" />
    <Message Id="131086" String="Linking" />
    <Message Id="131087" String="Loading" />
    <Message Id="131088" String="A tool failed." />
    <Message Id="131089" String="'%s' or its folder is read-only." />
    <Message Id="131090" String="The folder of '%s' can't be created." />
    <Message Id="131091" String="Rebuild" />
    <Message Id="131092" String="Clean" />
    <Message Id="131093" String="Build" />
    <Message Id="131094" String="The operation failed." />
    <Message Id="131095" String="The file '%s' is damaged; only the part before the damage was read." />
    <Message Id="131096" String="%s is still running. Stop it?" />
    <Message Id="131097" String="The file '%s' already exists. Replace it?" />
    <Message Id="131098" String="Create a new project" />
    <Message Id="131099" String="Ready" />
    <Message Id="131100" String="Information:" />
    <Message Id="131101" String="Built:" />
    <Message Id="131102" String="Configuration:" />
    <Message Id="131103" String="File:" />
    <Message Id="131104" String="Output:" />
    <Message Id="131105" String="Projects in the old format" />
    <Message Id="131106" String="The project '%s' in the old format can't be read." />
    <Message Id="131107" String="The project '%s' has a format that can't be converted." />
    <Message Id="131108" String="The project converted from '%s' can't be written." />
    <Message Id="131109" String="Workspaces in the old format" />
    <Message Id="131110" String="The project '%s' in the old format was only partly converted." />
  </Messages>

  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat" />

  <!-- Of a tool that reports too many one message stands for all beyond a limit: its Count. -->
  <xsl:variable name="errors" select="count(/*/message[@Icon = '2'][not(@Count)]) + sum(/*/message[@Icon = '2']/@Count)" />
  <xsl:variable name="warnings" select="count(/*/message[@Icon = '1'][not(@Count)]) + sum(/*/message[@Icon = '1']/@Count)" />

  <!-- A log's root is Messages until the log is reset for the first time, and output from then on;
       the page is the same. -->
  <xsl:template match="/">
    <xsl:apply-templates select="Messages" mode="page" />
    <xsl:apply-templates select="output" mode="page" />
  </xsl:template>

  <xsl:template match="*" mode="page">
    <html lang="en">
      <head>
        <meta name="viewport" content="width=device-width, initial-scale=1" />
        <title>Build log: <xsl:call-template name="summary" /></title>
        <style>
          :root { color-scheme: light dark; --text: #1c2126; --back: #ffffff; --line: #d8dde2;
            --dim: #5a646e; --link: #0b57b0; --error: #a51616; --error-back: #fcebea;
            --warning: #7a4b00; --warning-back: #fdf3dc; }
          @media (prefers-color-scheme: dark) {
            :root { --text: #e2e6ea; --back: #16191d; --line: #343b43; --dim: #9aa5b0;
              --link: #82b7ff; --error: #ff9a92; --error-back: #3a1d1c; --warning: #f2c76a;
              --warning-back: #352a12; } }
          body { margin: 2rem auto; max-width: 70rem; padding: 0 1rem; color: var(--text);
            background: var(--back); font: 1rem/1.5 system-ui, sans-serif; }
          h1 { margin: 0; font-size: 1.4rem; }
          .summary { margin: 0 0 1.5rem; color: var(--dim); }
          ol { margin: 0; padding: 0; list-style: none; font: 0.9rem/1.5 ui-monospace, monospace; }
          li { display: flex; gap: 0.75rem; padding: 0.1rem 0.5rem; overflow-wrap: anywhere;
            white-space: pre-wrap; }
          .kind { flex: 0 0 5rem; font-weight: 600; }
          .text { flex: 1 1 auto; min-width: 0; }
          .place { flex: 0 1 auto; text-align: right; }
          .heading { margin-top: 0.75rem; border-top: 1px solid var(--line); padding-top: 0.4rem;
            font-weight: 600; }
          .error { border-left: 0.3rem solid; color: var(--error); background: var(--error-back); }
          .warning { border-left: 0.3rem double; color: var(--warning);
            background: var(--warning-back); }
          a { color: var(--link); }
        </style>
      </head>
      <body>
        <h1>Build log</h1>
        <p class="summary"><xsl:call-template name="summary" /></p>
        <ol>
          <xsl:apply-templates select="*" />
        </ol>
      </body>
    </html>
  </xsl:template>

  <xsl:template name="summary">
    <xsl:call-template name="count">
      <xsl:with-param name="number" select="$errors" />
      <xsl:with-param name="noun" select="'error'" />
    </xsl:call-template>
    <xsl:text>, </xsl:text>
    <xsl:call-template name="count">
      <xsl:with-param name="number" select="$warnings" />
      <xsl:with-param name="noun" select="'warning'" />
    </xsl:call-template>
  </xsl:template>

  <xsl:template name="count">
    <xsl:param name="number" />
    <xsl:param name="noun" />
    <xsl:choose>
      <xsl:when test="$number = 0">no</xsl:when>
      <xsl:otherwise><xsl:value-of select="$number" /></xsl:otherwise>
    </xsl:choose>
    <xsl:text> </xsl:text>
    <xsl:value-of select="$noun" />
    <xsl:if test="$number != 1">s</xsl:if>
  </xsl:template>

  <xsl:template match="Output">
    <li><span class="kind"></span><span class="text"><xsl:value-of select="." /></span></li>
  </xsl:template>

  <xsl:template match="message">
    <xsl:variable name="kind">
      <xsl:choose>
        <xsl:when test="@Icon = '2'">error</xsl:when>
        <xsl:when test="@Icon = '1'">warning</xsl:when>
        <xsl:when test="@Icon = '5'">heading</xsl:when>
        <xsl:otherwise>plain</xsl:otherwise>
      </xsl:choose>
    </xsl:variable>
    <li class="{$kind}">
      <span class="kind">
        <xsl:if test="$kind = 'error' or $kind = 'warning'">
          <xsl:value-of select="$kind" />
        </xsl:if>
      </span>
      <span class="text">
        <xsl:choose>
          <xsl:when test="@Description"><xsl:value-of select="@Description" /></xsl:when>
          <xsl:otherwise><xsl:value-of select="header" /></xsl:otherwise>
        </xsl:choose>
      </span>
      <xsl:if test="string(@File) != ''"><xsl:call-template name="place" /></xsl:if>
    </li>
  </xsl:template>

  <!-- File and line. Only a whole path can be a link, since the log lies elsewhere than the
       sources; and only one of a sane length, since escaping it takes a call for each character.
       -->
  <xsl:template name="place">
    <xsl:variable name="path" select="translate(@File, '&#92;', '/')" />
    <xsl:variable name="label">
      <xsl:value-of select="@File" />
      <xsl:if test="string(@Line) != ''">:<xsl:value-of select="@Line" /></xsl:if>
    </xsl:variable>
    <span class="place">
      <xsl:choose>
        <xsl:when test="string-length($path) > 1000">
          <xsl:value-of select="$label" />
        </xsl:when>
        <xsl:when test="starts-with($path, '/')">
          <xsl:call-template name="link">
            <xsl:with-param name="start" select="'file://'" />
            <xsl:with-param name="path" select="$path" />
            <xsl:with-param name="label" select="$label" />
          </xsl:call-template>
        </xsl:when>
        <xsl:when test="substring($path, 2, 2) = ':/'">
          <xsl:call-template name="link">
            <xsl:with-param name="start" select="'file:///'" />
            <xsl:with-param name="path" select="$path" />
            <xsl:with-param name="label" select="$label" />
          </xsl:call-template>
        </xsl:when>
        <xsl:otherwise><xsl:value-of select="$label" /></xsl:otherwise>
      </xsl:choose>
    </span>
  </xsl:template>

  <xsl:template name="link">
    <xsl:param name="start" />
    <xsl:param name="path" />
    <xsl:param name="label" />
    <a>
      <xsl:attribute name="href">
        <xsl:value-of select="$start" />
        <xsl:call-template name="address"><xsl:with-param name="rest" select="$path" /></xsl:call-template>
      </xsl:attribute>
      <xsl:value-of select="$label" />
    </a>
  </xsl:template>

  <!-- A path with the characters escaped that mean something else in an address. -->
  <xsl:template name="address">
    <xsl:param name="rest" />
    <xsl:if test="$rest != ''">
      <xsl:variable name="first" select="substring($rest, 1, 1)" />
      <xsl:choose>
        <xsl:when test="$first = '%'">%25</xsl:when>
        <xsl:when test="$first = '#'">%23</xsl:when>
        <xsl:when test="$first = '?'">%3F</xsl:when>
        <xsl:when test="$first = ' '">%20</xsl:when>
        <xsl:otherwise><xsl:value-of select="$first" /></xsl:otherwise>
      </xsl:choose>
      <xsl:call-template name="address">
        <xsl:with-param name="rest" select="substring($rest, 2)" />
      </xsl:call-template>
    </xsl:if>
  </xsl:template>

</xsl:stylesheet>
