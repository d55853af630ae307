#pragma once

#include <atomic>
#include <string>

#include "xml/XmlEntities.h"

namespace tarn {

// Options and error record of a parse.
//
// Only the first error is recorded, and it is never cleared. Parses on several threads may share
// one record; one of them then acquires the right to write it. The error fields may be read by the
// thread whose parse failed, after that parse, or by any thread once no parse that uses the record
// is running.
struct CXmlParseInfo {
  bool decodeEntities = true;
  const CXmlEntityTable* entityTable = &g_xmlEntities;  // null: no decoding
  bool forceParse = false;                              // continue after a mismatched close tag

  std::atomic<bool> errorOccurred = false;
  const char* errorPosition = nullptr;  // into the parsed string, which may have been freed
  int errorCode = 0;                    // 1 to 4, see XmlError
  std::string errorText;

  // Sets the error fields unless an error has been recorded already.
  void RecordError(const char* position, int code, std::string text);
};

// Values of errorCode: an empty-element tag "/" without ">", a close tag without end, a close tag
// of another element, an attribute name without end.
enum XmlError : int {
  kXmlErrorUnclosedElement = 1,
  kXmlErrorUnclosedTag = 2,
  kXmlErrorForeignTag = 3,
  kXmlErrorAttribute = 4
};

// Default options and error record, passed by all callers. Its options never change.
extern CXmlParseInfo g_xmlParseInfo;

// Options for writing a tree.
struct CXmlDisplayOptions {
  bool newline = true;  // line breaks and indentation
  bool encodeEntities = true;
  char quoteChar = '"';                                 // around attribute values
  const CXmlEntityTable* entityTable = &g_xmlEntities;  // null: no encoding
  int tabDepth = 0;                                     // indentation of the first line
};

// Default options, passed by all callers. Never changed.
extern const CXmlDisplayOptions g_xmlDisplayOptions;

}  // namespace tarn
