#pragma once

#include <atomic>
#include <string>

#include "xml/XmlEntities.h"

namespace tarn {

// The switches and the error record of a parse.
//
// Only the first error ever is recorded, and nothing clears it. Parses on several threads may share
// one record: one of them wins the right to write. The error fields are for the thread whose parse
// failed, after that parse, or for anybody once no parse with the record is under way.
struct CXmlParseInfo {
  bool decodeEntities = true;
  const CXmlEntityTable* entityTable = &g_xmlEntities;  // null: no decoding
  bool forceParse = false;                              // go on after a foreign close tag

  std::atomic<bool> errorOccurred = false;
  const char* errorPosition = nullptr;  // into the text that was parsed, which may be gone by now
  int errorCode = 0;                    // 1 to 4, see XmlError
  std::string errorText;

  // Fills the error fields unless an error stands in them already.
  void RecordError(const char* position, int code, std::string text);
};

// errorCode: an element's end tag mark "/" without ">", a close tag without end, a close tag of
// another element, an attribute name without end.
enum XmlError : int {
  kXmlErrorUnclosedElement = 1,
  kXmlErrorUnclosedTag = 2,
  kXmlErrorForeignTag = 3,
  kXmlErrorAttribute = 4
};

// The record that every parse of the system passes. Its switches are never changed.
extern CXmlParseInfo g_xmlParseInfo;

// The switches of a writing run.
struct CXmlDisplayOptions {
  bool newline = true;  // line breaks and indentation
  bool encodeEntities = true;
  char quoteChar = '"';                                 // around attribute values
  const CXmlEntityTable* entityTable = &g_xmlEntities;  // null: no encoding
  int tabDepth = 0;  // tabs in front of the first line; a run only reads it
};

// The options that every caller passes. Never changed.
extern const CXmlDisplayOptions g_xmlDisplayOptions;

}  // namespace tarn
