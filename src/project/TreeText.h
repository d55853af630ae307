#pragma once

#include <cstdint>
#include <string>

#include "project/FileDamage.h"
#include "xml/XmlNode.h"

namespace tarn {

// How much of a text became part of a tree.
enum class TreeRead : std::uint8_t {
  Whole,
  Partly,     // something stands before or after the root, or is left out
  Malformed,  // what was parsed before the fault
};

// Reads the text of a project or application file into `root`. A byte order mark, comments
// and an XML declaration before the root are passed over. Values of white space alone, the
// indentation that the parser keeps as the value of an element with children, are dropped, or they
// would grow with each save.
TreeRead ReadTree(const std::string& text, CXmlNode& root, DamageCollector& collector);

// The same for whoever only asks whether the tree holds all of the text.
bool ReadWholeTree(const std::string& text, CXmlNode& root);

// The text of such a file, with the line ends that most lines of `model` have, or of as many of
// each kind the first; CR LF if it has none.
std::string WriteTree(const CXmlNode& root, std::string_view model);

}  // namespace tarn
