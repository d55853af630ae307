#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/tools/ElementReader.h"

namespace tarn::tools {

struct GivenArguments;

// How closely a list of flags describes an argument.
enum class FlagFit {
  None,
  Start,  // an entry with a "*" describes its beginning
  Whole,  // an entry describes all of it
};

// Flags with which a program neither runs code chosen by the caller nor writes files other than
// those that other rules of the definition name. Immutable once it is read; copies share the
// entries, of which there are hundreds.
class HarmlessFlags {
 public:
  // Adds entries separated by ";": "-c", "-O*", "-x c" (with the value in the next argument),
  // "-f[no-]common" (the text in brackets may be missing) and "!-Wl,*" (an exception). The receiver
  // is the program that interprets the flag, as in GivenArguments.
  void Add(char receiver, std::string_view entries);
  void Add(const HarmlessFlags& other);
  bool IsEmpty() const { return lists_.empty(); }

  FlagFit Find(const GivenArguments& given, std::size_t at) const;

 private:
  struct Entry {
    bool isException;
    bool isStart;
    std::string text;
  };
  struct List {
    char receiver;
    std::vector<Entry> entries;
    void Add(Entry entry);
  };

  std::vector<std::shared_ptr<const List>> lists_;
};

// Reads an element `Harmless`. If there is an error, the result must be discarded.
class HarmlessFlagsReader : public ElementReader {
 public:
  HarmlessFlags ReadList(const CXmlNode& node);
};

}  // namespace tarn::tools
