#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Macros in option values, expanded recursively with cycle detection:
//
//   $(Section.Property)        the value in the own set, else in the nearest enclosing set
//   $(Set.Section.Property)    the value in that set
//   $(Inherited)               the value that would be effective without the current one
//   $(Required)                no value: the property has to be set
//   $(Section.Property?a=x;b=y;*=z)   x if the property's value is a (ignoring case), y if it
//                              is b, z otherwise; x, y and z may contain macros
//   $(Unique:Section.Property) the path in the property, relative to the application's folder and
//                              written so that it stays inside any folder that it is appended
//                              to; different paths yield different results
//   $$                         a dollar sign
namespace tarn {

// A raw value in the resolver.
struct FoundValue {
  bool found = false;
  bool literal = false;   // used verbatim, including dollar signs
  std::uint64_t id = 0;   // identifies the value; a value that requires itself is a cycle
  std::string_view text;  // valid until the source changes
};

// Provides values to the resolver.
class MacroSource {
 public:
  virtual ~MacroSource() = default;
  // Returns the effective raw value of a property. An empty `set` means the own set, then outwards.
  virtual FoundValue FindRaw(std::string_view set, std::string_view section,
                             std::string_view property) const = 0;
  // Returns the value that would be effective without the one with this id.
  virtual FoundValue FindBelow(std::uint64_t id) const = 0;
};

// Expands the macros in `text`, which belongs to `value` if there is one. Every value in a cycle
// expands to nothing, and `error`, if not null, receives a description of the cycle. A result that
// would exceed the size limit is empty, too. `missing`, if not null, receives the name of the first
// value used that has to be set: one that is $(Required), or one that has no text but whitespace
// and would otherwise be $(Required).
std::string ResolveMacros(const MacroSource& source, const FoundValue& value,
                          std::string* error = nullptr, std::string* missing = nullptr);
// Same for a value that is split afterwards, as a list or into words: the content of literal values
// is protected from splitting. Pass each part through RestoreSeparators.
std::string ResolveForSplitting(const MacroSource& source, const FoundValue& value,
                                std::string* error = nullptr, std::string* missing = nullptr);

// Replaces the bytes at which lists and command lines are split with placeholders, and back.
std::string ProtectSeparators(std::string_view text);
std::string RestoreSeparators(std::string_view text);

// Value of $(Unique:...). ".." is written "__", and a path that can't be relative to the folder
// starts with "__root"; names that start with "__" get an additional "_".
std::string UniquePath(std::string_view path, std::string_view folder);

}  // namespace tarn
