#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tarn {

// One row of an entity table: a byte and the reference that represents it in a file.
struct CXmlEntity {
  static constexpr std::size_t kMaxReference = 11;

  char character;
  std::string_view reference;  // at most kMaxReference bytes, borrowed
  int referenceLength;

  constexpr CXmlEntity(char byte, std::string_view text)
      : character(byte), reference(text), referenceLength(static_cast<int>(text.size())) {}
};

// Ordered list of rows; the first row that matches wins, both in encoding and in decoding. The rows
// are borrowed and must outlive the table. A table is immutable, so any number of threads may use
// it.
class CXmlEntityTable {
 public:
  constexpr explicit CXmlEntityTable(std::span<const CXmlEntity> tableRows) : rows_(tableRows) {
    startsReference_['\r'] = true;  // first byte of CR LF, which decoding drops
    for (const CXmlEntity& row : rows_) {
      const auto byte = static_cast<unsigned char>(row.character);
      if (!rowOfByte_[byte]) rowOfByte_[byte] = &row;
      if (!row.reference.empty()) {
        startsReference_[static_cast<unsigned char>(row.reference[0])] = true;
      }
    }
  }

  std::span<const CXmlEntity> Rows() const { return rows_; }
  // Flag for each byte: true if decoding may change a string that contains the byte.
  const std::array<bool, 256>& Decodable() const { return startsReference_; }

  // Returns `text` with every byte of the table replaced by its reference. A null pointer is
  // treated as an empty string.
  std::string Encode(const char* text) const;
  // Like `Encode()`, but appends to `out`.
  void EncodeTo(std::string& out, std::string_view text) const;

  // Returns `text` with every reference replaced by its byte and every CR LF pair removed, in one
  // pass: decoded bytes aren't decoded again. A null pointer is treated as an empty string.
  std::string Decode(const char* text) const;
  // Like `Decode()`, but writes to `out`, which must have room for text.size() bytes and may be
  // text.data() itself. Returns the number of bytes written; no terminator is added.
  std::size_t DecodeTo(char* out, std::string_view text) const;

 private:
  // Returns the first row whose reference is a prefix of `text`, or nullptr if there is none.
  const CXmlEntity* MatchReference(std::string_view text) const;

  std::span<const CXmlEntity> rows_;
  std::array<const CXmlEntity*, 256> rowOfByte_{};
  std::array<bool, 256> startsReference_{};
};

// Default table of all files: the double quote and the vertical bar.
extern const CXmlEntityTable g_xmlEntities;
// Table of eight rows, for strings that must be able to contain any byte in an attribute value and
// in an element's text.
extern const CXmlEntityTable g_xmlEntitiesFull;

}  // namespace tarn
