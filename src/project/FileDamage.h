#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

// A position in a project or application file whose content is not, or not as it was meant, in the
// project.
struct FileDamage {
  std::string file;  // absolute
  int line = 0;      // from 1; 0 for the file as a whole
  std::string what;  // "stray text "x""
  // It is in the tree, in some form, and a save writes it back.
  bool isKept = false;
  // Reading the file broke off, so nothing of it is known.
  bool isUnread = false;

  // "/p/demo.tapp:12: incomplete tag <Group"
  std::string ToString() const;
};

// Collects the losses of one parse and turns those that matter in a project file into damage. Text
// and CDATA sections are none where they belong to the owner of an option. Comments and an XML
// declaration outside the root are no damage; they are just not written back.
//
// A line that a version control system leaves at a conflict is damage wherever it is, except in a
// comment.
//
// At most kMaxDamage positions of a file are listed; the last entry then says that there are more.
class DamageCollector : public XmlLossListener {
 public:
  static constexpr std::size_t kMaxDamage = 100;

  // `text` lives as long as the collector; only the bytes up to its first zero byte are parsed.
  explicit DamageCollector(std::string_view text);

  void OnLoss(XmlLoss loss, const char* position, std::string_view name,
              const CXmlNode* element) override;
  void OnElement(const char* position, const CXmlNode& element) override;

  // Damage that shows in the tree: `element` was read, with what it must not be. After the parse,
  // while the element exists.
  void Add(const CXmlNode& element, std::string what, bool isKept);
  // A CDATA section was read.
  bool HasCData() const { return hasCData; }
  // The damage, in the order of the file.
  std::vector<FileDamage> Collect(const std::string& file);

 private:
  struct Place {
    std::size_t offset;
    std::string what;
    bool isKept;
  };

  // Marks of a version control system also damage a file where they are part of a value.
  void AddConflictMarks();

  std::string_view text;
  std::vector<Place> places;
  std::vector<std::pair<const CXmlNode*, std::size_t>> elements;  // with the offset, as read
  std::unordered_map<const CXmlNode*, std::size_t> offsets;       // of `elements`, once needed
  bool hasCData = false;
};

}  // namespace tarn
