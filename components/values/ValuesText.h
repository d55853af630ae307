#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The text in which all option values of one node travel: the property manager writes it, the
// project model keeps it beside the node, tools and hosts read it.
//
//   <Values Set="C" Outer="Group;Application" Config="Debug" Applied="1f,2a">
//     <v s="C" k="General" Path="/p/main.c" Header="main.c"/>      own values
//     <i s="C" k="Compiler" Defines="F_CPU=1"/>                    inherited ones
//     <d s="C" k="Compiler" Optimize="s"/></Values>                defaults of the definitions
//
// (in one line without the blanks between elements). `s` and `k` are set and section, what follows
// are property names with their raw values. Wherever a byte could harm one of the texts that this
// one is put into it is written as &#n;, so there is no "]", no line end, no zero byte, no 0xA7 and
// no "<" in a value.
namespace tarn {

// Appends a value so that it can stand between double quotes in any text of the system.
void AppendEscaped(std::string& to, std::string_view value);
// The same for an attribute name, in which blanks, "=", ">", "/" and quotes may not stand either.
void AppendEscapedName(std::string& to, std::string_view name);
std::string Escape(std::string_view value);
// Undoes both; knows &quot; and &slash; besides, and leaves any other "&" as it stands.
std::string Unescape(std::string_view text);

// Where a value stands: the node itself, what it inherits, the definitions.
enum class ValueLayer : std::uint8_t { Own, Inherited, Default };

// What the start tag of a values text tells.
struct ValuesHeader {
  std::string ownSet;
  std::vector<std::string> outerSets;  // sets of the ancestors, from the inside out
  std::string config;
  std::vector<std::uint64_t> applied;  // marks of the stored options that the values came from

  // The node's own set is that of an ancestor too (a group in a group).
  bool OwnSetIsOuter() const;
};

// Takes what ReadValuesText finds. All texts are unescaped and live during the call only.
class ValuesSink {
 public:
  virtual ~ValuesSink() = default;
  virtual void OnHeader(const ValuesHeader& header) = 0;
  virtual void OnValue(ValueLayer layer, std::string_view set, std::string_view section,
                       std::string_view property, std::string value) = 0;
};

// True when the text's root element, behind white space, has this name.
bool HasRoot(std::string_view text, std::string_view name);

// Reads a values text. False when it is none or breaks off; what was read until then has been
// delivered. A byte 0xA7, which only a writer of another kind leaves, stands for "]".
bool ReadValuesText(std::string_view text, ValuesSink& sink);

// Writes a values text piece by piece.
class ValuesWriter {
 public:
  explicit ValuesWriter(std::string& target) : to(target) {}

  void Begin(const ValuesHeader& header);
  void Value(ValueLayer layer, std::string_view set, std::string_view section,
             std::string_view property, std::string_view value);
  // Elements that were made ready before.
  void Ready(std::string_view elements);
  void End();
  // Closes the element in hand; needed only when elements alone are written.
  void Flush();

 private:
  std::string& to;
  bool open = false;
  ValueLayer openLayer = ValueLayer::Own;
  std::string openSet;
  std::string openSection;
};

}  // namespace tarn
