#pragma once

// The editor component. Its headers use two identifiers that the toolkit defines as macros.
#include <QObject>
#define signals Q_SIGNALS
#define slots Q_SLOTS
#include <Qsci/qscilexercpp.h>
#include <Qsci/qscilexercustom.h>
#include <Qsci/qscilexerlua.h>
#include <Qsci/qscilexermakefile.h>
#include <Qsci/qscilexerxml.h>
#include <Qsci/qsciscintilla.h>
#undef signals
#undef slots
