#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tarn {

// One row of an entity table: a byte and the text that stands for it in a file.
struct CXmlEntity {
  static constexpr std::size_t kMaxReference = 11;

  char character;
  std::string_view reference;  // at most kMaxReference bytes, borrowed
  int referenceLength;

  constexpr CXmlEntity(char byte, std::string_view text)
      : character(byte), reference(text), referenceLength(static_cast<int>(text.size())) {}
};

// An ordered list of rows; the first row that fits wins, in both directions. The rows are borrowed
// and must outlive the table. A table never changes, so any number of threads may use it.
class CXmlEntityTable {
 public:
  constexpr explicit CXmlEntityTable(std::span<const CXmlEntity> tableRows) : rows(tableRows) {
    startsReference['\r'] = true;  // of CR LF, which decoding drops
    for (const CXmlEntity& row : rows) {
      const auto byte = static_cast<unsigned char>(row.character);
      if (!rowOfByte[byte]) rowOfByte[byte] = &row;
      if (!row.reference.empty()) {
        startsReference[static_cast<unsigned char>(row.reference[0])] = true;
      }
    }
  }

  std::span<const CXmlEntity> Rows() const { return rows; }
  // For each byte, whether decoding may change a text that holds it.
  const std::array<bool, 256>& Decodable() const { return startsReference; }

  // A new text with every byte of the table replaced by its reference. Null counts as empty.
  std::string Encode(const char* text) const;
  // The same, added to `out`.
  void EncodeTo(std::string& out, std::string_view text) const;

  // A new text with every reference replaced by its byte and every CR LF pair left out; one pass,
  // nothing decoded is looked at again. Null counts as empty.
  std::string Decode(const char* text) const;
  // The same into `out`, which has room for text.size() bytes and may be the text's own place.
  // Gives the number of bytes written; no terminator is added.
  std::size_t DecodeTo(char* out, std::string_view text) const;

 private:
  // The first row whose reference stands at the start of `text`, or null.
  const CXmlEntity* MatchReference(std::string_view text) const;

  std::span<const CXmlEntity> rows;
  std::array<const CXmlEntity*, 256> rowOfByte{};
  std::array<bool, 256> startsReference{};
};

// The table of all files of the system: the double quote and the vertical bar.
extern const CXmlEntityTable g_xmlEntities;
// Eight rows, for texts that must hold every byte in an attribute and in an element's text.
extern const CXmlEntityTable g_xmlEntitiesFull;

}  // namespace tarn
