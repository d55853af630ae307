#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Macros in option values.
//
//   $(Section.Property)        the value of the own set, else of the nearest set outwards
//   $(Set.Section.Property)    the value of that set
//   $(Inherited)               the value that would hold without the one that this stands in
//   $(Required)                no value: one has to be set where this stands in
//   $(Section.Property?a=x;b=y;*=z)   x when the property's value is a (without regard to case),
//                              y when it is b, z otherwise; the texts may hold macros themselves
//   $(Unique:Section.Property) the path that the property holds, relative to the application's
//                              folder and written so that it stays inside any folder that is put
//                              in front of it; two paths never give the same text
//   $$                         a dollar sign
namespace tarn {

// A raw value on its way through the resolver.
struct FoundValue {
  bool found = false;
  bool literal = false;   // taken as it stands, dollar signs included
  std::uint64_t id = 0;   // tells values apart: one that needs itself is a circle
  std::string_view text;  // lives as long as the source is not changed
};

// Where the resolver finds values.
class MacroSource {
 public:
  virtual ~MacroSource() = default;
  virtual FoundValue FindRaw(std::string_view set, std::string_view section,
                             std::string_view property) const = 0;
  // The value that would hold without the one of that id.
  virtual FoundValue FindBelow(std::uint64_t id) const = 0;
};

// The text with its macros resolved; `value` is the value that the text belongs to, if any. Every
// value that takes part in a circle gives nothing, and `error`, when given, names the circle. A
// text that would grow beyond all bounds gives nothing as well. `missing`, if given, receives the
// name of the first value that takes part and has to be set: its text is $(Required), or it is
// blank and would be $(Required) if it weren't there.
std::string ResolveMacros(const MacroSource& source, const FoundValue& value,
                          std::string* error = nullptr, std::string* missing = nullptr);
// The same for a text that is split afterwards, as a list or into words: what literal values hold
// is never split. Each piece then goes through RestoreSeparators.
std::string ResolveForSplitting(const MacroSource& source, const FoundValue& value,
                                std::string* error = nullptr, std::string* missing = nullptr);

// The text with stand-ins for the bytes at which lists and command lines are split, and back.
std::string ProtectSeparators(std::string_view text);
std::string RestoreSeparators(std::string_view text);

// What $(Unique:...) gives. A step up is written "__", a path with no way from the folder starts
// with "__root"; names that start with "__" themselves get one "_" more.
std::string UniquePath(std::string_view path, std::string_view folder);

}  // namespace tarn
