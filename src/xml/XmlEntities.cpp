#include "xml/XmlEntities.h"

namespace tarn {
namespace {

constexpr CXmlEntity kRows[] = {{'"', "&quot;"}, {'|', "&slash;"}};

constexpr CXmlEntity kFullRows[] = {{'"', "&quot;"},      {'|', "&slash;"},     {'\'', "&apos;"},
                                    {'&', "&amp;"},       {'<', "&lt;"},        {'>', "&gt;"},
                                    {'\xB2', "&square;"}, {'\\', "&backslash;"}};

}  // namespace

constinit const CXmlEntityTable g_xmlEntities(kRows);
constinit const CXmlEntityTable g_xmlEntitiesFull(kFullRows);

std::string CXmlEntityTable::Encode(const char* text) const {
  std::string out;
  if (text) EncodeTo(out, text);
  return out;
}

void CXmlEntityTable::EncodeTo(std::string& out, std::string_view text) const {
  const char* const end = text.data() + text.size();
  for (const char* p = text.data();; ++p) {
    const char* const from = p;
    const CXmlEntity* row = nullptr;
    while (p != end && !(row = rowOfByte_[static_cast<unsigned char>(*p)])) ++p;
    out.append(from, static_cast<std::size_t>(p - from));
    if (!row) return;
    out.append(row->reference);
  }
}

std::string CXmlEntityTable::Decode(const char* text) const {
  std::string out(text ? text : "");
  out.resize(DecodeTo(out.data(), out));
  return out;
}

std::size_t CXmlEntityTable::DecodeTo(char* out, std::string_view text) const {
  char* const start = out;
  std::size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    if (startsReference_[static_cast<unsigned char>(c)]) {
      if (const CXmlEntity* row = MatchReference(text.substr(i))) {
        *out++ = row->character;
        i += row->reference.size();
        continue;
      }
      if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
        i += 2;
        continue;
      }
    }
    *out++ = c;
    ++i;
  }
  return static_cast<std::size_t>(out - start);
}

const CXmlEntity* CXmlEntityTable::MatchReference(std::string_view text) const {
  for (const CXmlEntity& row : rows_) {
    // Comparing the first byte rules out most rows without a call.
    if (row.reference.empty() || row.reference[0] != text[0]) continue;
    if (text.starts_with(row.reference)) return &row;
  }
  return nullptr;
}

}  // namespace tarn
