#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarn::host {

// An INI file whose values may continue on indented lines, with references ${section.key}.
class IniFile {
 public:
  explicit IniFile(const std::string& text);

  const std::vector<std::string>& GetSections() const { return order_; }
  bool Has(const std::string& section) const { return sections_.contains(section); }
  // Returns the keys of the section and of those that it extends.
  std::vector<std::string> GetKeys(const std::string& section) const;
  // Returns the value with references replaced, and lines joined by line breaks. Looks in the
  // sections that this one extends as well. Empty if there is none. References to nothing stay.
  std::string Get(const std::string& section, const std::string& key) const;
  // Lines without a section, a key or a value, as "LINE: text".
  const std::vector<std::string>& GetFaults() const { return faults_; }

 private:
  using Section = std::map<std::string, std::string>;
  std::optional<std::string> Find(const std::string& section, const std::string& key,
                                  int depth) const;
  void AddKeys(const std::string& section, std::set<std::string>& seen,
               std::vector<std::string>& keys) const;
  std::string Expand(const std::string& value, const std::string& section, int depth) const;

  std::map<std::string, Section> sections_;
  std::vector<std::string> order_;
  std::vector<std::string> faults_;
  mutable int references_ = 0;  // that were replaced for one value
};

}  // namespace tarn::host
