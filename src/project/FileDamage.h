#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "xml/XmlLoss.h"

namespace tarn {

class CXmlNode;

// A position in a project or application file whose content was lost when the file was read, or was
// read as something else than it was meant to be.
struct FileDamage {
  std::string file;  // absolute
  int line = 0;      // 1-based; 0 for the file as a whole
  std::string what;  // "stray text "x""
  // The content is in the tree in some form, and a save writes it back.
  bool isKept = false;
  // Reading the file failed part-way, so that nothing of its content is known.
  bool isUnread = false;

  // Returns a line for the log: "/p/demo.tapp:12: incomplete tag <Group".
  std::string ToString() const;
};

// Collects what one parse of a project file lost, and reports the relevant part of it as damage.
// Text and CDATA sections are legal inside elements that may own them, such as a stored option.
// Comments and an XML declaration outside the root are not damage; they are just not written back.
//
// A conflict marker line left by a version control system is damage anywhere except in a comment.
//
// At most kMaxDamage positions are listed per file; if there are more, the last entry says so.
class DamageCollector : public XmlLossListener {
 public:
  static constexpr std::size_t kMaxDamage = 100;

  // `text` is borrowed and must outlive the collector. Only the bytes before its first zero byte
  // are parsed.
  explicit DamageCollector(std::string_view text);

  void OnLoss(XmlLoss loss, const char* position, std::string_view name,
              const CXmlNode* element) override;
  void OnElement(const char* position, const CXmlNode& element) override;

  // Adds damage that is visible in the tree: `what` describes the fault of `element`. Call it after
  // the parse, while the element exists.
  void Add(const CXmlNode& element, std::string what, bool isKept);
  // Returns true if a CDATA section was read.
  bool HasCData() const { return hasCData_; }
  // Returns the damage found, in file order, labelled with the absolute path `file`.
  std::vector<FileDamage> Collect(const std::string& file);

 private:
  struct Place {
    std::size_t offset;
    std::string what;
    bool isKept;
  };

  // Adds every conflict marker line, including those that became part of a value.
  void AddConflictMarks();

  std::string_view text_;
  std::vector<Place> places_;
  std::vector<std::pair<const CXmlNode*, std::size_t>> elements_;  // with their offsets, as read
  std::unordered_map<const CXmlNode*, std::size_t> offsets_;       // built on first use
  bool hasCData_ = false;
};

}  // namespace tarn
