#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Serialization of all option values of a node: written by the property manager, stored with the
// node by the project model, and read by tools and hosts.
//
//   <Values Set="C" Outer="Group;Application" Config="Debug" Applied="1f,2a">
//     <v s="C" k="General" Path="/p/main.c" Header="main.c"/>      own values
//     <i s="C" k="Compiler" Defines="F_CPU=1"/>                    inherited values
//     <d s="C" k="Compiler" Optimize="s"/></Values>                defaults of the definitions
//
// (in one line, without whitespace between elements). `s` and `k` are set and section, the other
// attributes are property names with raw values. Any byte that could corrupt one of the formats
// that embed this one is written as &#n;, so a value contains no "]", line ending, zero byte, 0xA7
// or "<".
namespace tarn {

// Appends a value, escaped for use between double quotes in any of Tarn's formats.
void AppendEscaped(std::string& to, std::string_view value);
// Same for an attribute name, which must not contain whitespace, "=", ">", "/" or quotes either.
void AppendEscapedName(std::string& to, std::string_view name);
std::string Escape(std::string_view value);
// Reverses both; also decodes &quot; and &slash;, and leaves any other "&" unchanged.
std::string Unescape(std::string_view text);

// Source of a value: the node itself, its ancestors, the definitions.
enum class ValueLayer : std::uint8_t { Own, Inherited, Default };

// Content of the start tag of a values text.
struct ValuesHeader {
  std::string ownSet;
  std::vector<std::string> outerSets;  // sets of the ancestors, innermost first
  std::string config;
  std::vector<std::uint64_t> applied;  // marks of the stored options that the values came from

  // Returns true if an ancestor has the node's own set too (a group in a group).
  bool OwnSetIsOuter() const;
};

// Receives the content of a values text. All strings are unescaped and valid during the call only.
class ValuesSink {
 public:
  virtual ~ValuesSink() = default;
  virtual void OnHeader(const ValuesHeader& header) = 0;
  virtual void OnValue(ValueLayer layer, std::string_view set, std::string_view section,
                       std::string_view property, std::string value) = 0;
};

// Returns true if the root element of the text, after optional whitespace, has this name.
bool HasRoot(std::string_view text, std::string_view name);

// Parses a values text. Returns false if it is not one or is truncated; everything before that
// point has been delivered. Byte 0xA7, which only other writers produce, is read as "]".
bool ReadValuesXml(std::string_view text, ValuesSink& sink);

// Writes a values text incrementally.
class ValuesWriter {
 public:
  explicit ValuesWriter(std::string& target) : to_(target) {}

  // Calling sequence: Begin, any number of Value and Ready, End. Consecutive values of the same
  // layer, set and section share an element.
  void Begin(const ValuesHeader& header);
  void Value(ValueLayer layer, std::string_view set, std::string_view section,
             std::string_view property, std::string_view value);
  // Appends elements that were serialized before.
  void Ready(std::string_view elements);
  void End();
  // Closes the current element; only needed if elements are written without Begin and End.
  void Flush();

 private:
  std::string& to_;
  bool open_ = false;
  ValueLayer openLayer_ = ValueLayer::Own;
  std::string openSet_;
  std::string openSection_;
};

}  // namespace tarn
