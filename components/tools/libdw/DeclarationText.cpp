#include "components/tools/libdw/DeclarationText.h"

#include <cstdint>
#include <string_view>

#include "components/tools/libdw/DebugEntry.h"

namespace tarn::tools {

namespace {

constexpr int kMaxTypes = 200;
constexpr std::size_t kMaxBody = 300;  // bytes, after which no further members are added

std::string Spaced(const std::string& front, const std::string& inner) {
  return front.empty() || inner.empty() ? front + inner : front + ' ' + inner;
}

const char* KeywordOf(Dwarf_Die& type) {
  switch (dwarf_tag(&type)) {
    case DW_TAG_structure_type:
      return "struct";
    case DW_TAG_class_type:
      return "class";
    case DW_TAG_union_type:
      return "union";
    case DW_TAG_enumeration_type:
      return "enum";
    default:
      return "";
  }
}

std::optional<Dwarf_Die> TypeOf(Dwarf_Die& entry) {
  return EntryOf(entry, DW_AT_type);
}

bool IsQualifier(int tag) {
  return tag == DW_TAG_const_type || tag == DW_TAG_volatile_type || tag == DW_TAG_restrict_type ||
         tag == DW_TAG_atomic_type;
}

// Returns the tag of the type without qualifiers such as const; 0 for void.
int BareTag(std::optional<Dwarf_Die> type) {
  for (int i = 0; type && i < kMaxTypes; ++i) {
    const int tag = dwarf_tag(&*type);
    if (!IsQualifier(tag)) return tag;
    type = TypeOf(*type);
  }
  return 0;
}

std::string Number(Dwarf_Die& entry, unsigned name, Dwarf_Word add) {
  Dwarf_Attribute attribute;
  Dwarf_Word value = 0;
  const bool isKnown = dwarf_attr_integrate(&entry, name, &attribute) != nullptr &&
                       dwarf_formudata(&attribute, &value) == 0;
  // An empty array has the upper bound -1.
  return isKnown ? std::to_string(static_cast<std::uint32_t>(value + add)) : std::string();
}

std::string Bounds(Dwarf_Die& array) {
  std::string text;
  ForEachChild(array, [&](Dwarf_Die& range) {
    if (dwarf_tag(&range) != DW_TAG_subrange_type) return;
    const std::string count = Number(range, DW_AT_count, 0);
    text += '[' + (count.empty() ? Number(range, DW_AT_upper_bound, 1) : count) + ']';
  });
  return text;
}

// Returns true for constructors and destructors, which have no return type.
bool IsStructor(std::string_view name) {
  const std::size_t end = name.rfind("::");
  if (end == std::string_view::npos) return false;
  const std::string_view own = name.substr(end + 2);
  std::string_view scope = name.substr(0, end);
  if (scope.ends_with('>')) scope = scope.substr(0, scope.find('<'));
  const std::size_t begin = scope.rfind("::");
  return own.starts_with('~') ||
         own == (begin == std::string_view::npos ? scope : scope.substr(begin + 2));
}

}  // namespace

std::string DeclarationText::OfFunction(Dwarf_Die& function, const std::string& name) {
  std::string text = HasFlag(function, DW_AT_external) ? "" : "static ";
  Dwarf_Attribute attribute;
  Dwarf_Word inlined = DW_INL_not_inlined;
  if (dwarf_attr(&function, DW_AT_inline, &attribute) != nullptr) {
    dwarf_formudata(&attribute, &inlined);
  }
  if (inlined == DW_INL_declared_inlined || inlined == DW_INL_declared_not_inlined) {
    text += "inline ";
  }
  const std::string call = name + Parameters(function);
  return text + (IsStructor(name) ? call : Declare(TypeOf(function), call));
}

std::string DeclarationText::OfVariable(Dwarf_Die& variable, const std::string& name) {
  return (HasFlag(variable, DW_AT_external) ? "" : "static ") + Declare(TypeOf(variable), name);
}

std::string DeclarationText::OfType(Dwarf_Die& type, const std::string& name) {
  if (dwarf_tag(&type) == DW_TAG_typedef) return "typedef " + Declare(TypeOf(type), name);
  return std::string(KeywordOf(type)) + ' ' + name + ' ' + Body(type);
}

// Renders a declaration inside out: `inner` is the declared name with the operators that bind more
// tightly than the type.
std::string DeclarationText::Declare(std::optional<Dwarf_Die> type, const std::string& inner) {
  if (!type) return Spaced("void", inner);
  if (++visited_ > kMaxTypes) return Spaced("...", inner);
  switch (dwarf_tag(&*type)) {
    case DW_TAG_pointer_type:
      return Point(*type, '*' + inner);
    case DW_TAG_reference_type:
      return Point(*type, '&' + inner);
    case DW_TAG_rvalue_reference_type:
      return Point(*type, "&&" + inner);
    case DW_TAG_const_type:
      return Qualify(*type, "const", inner);
    case DW_TAG_volatile_type:
      return Qualify(*type, "volatile", inner);
    case DW_TAG_restrict_type:
      return Qualify(*type, "restrict", inner);
    case DW_TAG_atomic_type:
      return Qualify(*type, "_Atomic", inner);
    case DW_TAG_array_type:
      return Declare(TypeOf(*type), inner + Bounds(*type));
    case DW_TAG_subroutine_type:
      return Declare(TypeOf(*type), inner + Parameters(*type));
    default:
      break;
  }
  const std::string keyword = KeywordOf(*type);
  const std::string name = NameOf(*type);
  if (name.empty()) {
    return Spaced(keyword.empty() ? "..." : keyword + ' ' + Body(*type), inner);
  }
  return Spaced(isC_ ? Spaced(keyword, name) : name, inner);
}

std::string DeclarationText::Point(Dwarf_Die& pointer, const std::string& inner) {
  const auto target = TypeOf(pointer);
  const int tag = BareTag(target);
  const bool bindsCloser = tag == DW_TAG_array_type || tag == DW_TAG_subroutine_type;
  return Declare(target, bindsCloser ? '(' + inner + ')' : inner);
}

std::string DeclarationText::Qualify(Dwarf_Die& qualified, const char* word,
                                     const std::string& inner) {
  const auto target = TypeOf(qualified);
  if (BareTag(target) == DW_TAG_pointer_type) return Declare(target, Spaced(word, inner));
  // Both an array and its elements may have the qualifier; writes it once.
  const std::string text = Declare(target, inner);
  return text.starts_with(word + std::string(" ")) ? text : Spaced(word, text);
}

std::string DeclarationText::Parameters(Dwarf_Die& function) {
  std::string list;
  const auto add = [&list](const std::string& text) { list += (list.empty() ? "" : ", ") + text; };
  ForEachChild(function, [&](Dwarf_Die& child) {
    const int tag = dwarf_tag(&child);
    if (tag == DW_TAG_unspecified_parameters) add("...");
    if (tag != DW_TAG_formal_parameter || HasFlag(child, DW_AT_artificial)) return;
    if (visited_ <= kMaxTypes) add(Declare(TypeOf(child), NameOf(child)));
  });
  if (list.empty() && isC_ && HasFlag(function, DW_AT_prototyped)) list = "void";
  return '(' + list + ')';
}

std::string DeclarationText::Member(Dwarf_Die& member) {
  const std::string bits = Number(member, DW_AT_bit_size, 0);
  return Declare(TypeOf(member), NameOf(member)) + (bits.empty() ? "" : " : " + bits) + ';';
}

std::string DeclarationText::Body(Dwarf_Die& type) {
  const bool isEnumeration = dwarf_tag(&type) == DW_TAG_enumeration_type;
  const int wanted = isEnumeration ? DW_TAG_enumerator : DW_TAG_member;
  const char* const separator = isEnumeration ? ", " : " ";
  std::string list;
  bool isCut = false;
  ForEachChild(type, [&](Dwarf_Die& child) {
    if (isCut || dwarf_tag(&child) != wanted) return;
    if (!list.empty()) list += separator;
    isCut = list.size() > kMaxBody || visited_ > kMaxTypes;
    list += isCut ? "..." : isEnumeration ? NameOf(child) : Member(child);
  });
  return list.empty() ? "{ }" : "{ " + list + " }";
}

}  // namespace tarn::tools
