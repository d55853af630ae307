#pragma once

#include <functional>
#include <optional>
#include <string_view>

namespace tarn::tools {

// Called with the name and the content of a section; nullopt for one that claims to have no content
// in the file, such as ".bss".
using SectionReader =
    std::function<void(std::string_view name, std::optional<std::string_view> content)>;

// Returns true for an archive, thin or not.
bool IsArchive(std::string_view bytes);

bool IsThinArchive(std::string_view bytes);

// Calls the reader for each section of an ELF file, or of all members of an archive, which must be
// ELF files. Returns false if the bytes are anything else, and for an archive with a symbol table
// that refers to anything but the start of a member, so that no section can hide. Linear.
bool ForEachSection(std::string_view bytes, const SectionReader& read);

// Returns true for an ELF file that lacks a part of its sections, for example because the disk was
// full. A file without a table of its sections is complete.
bool IsCutElf(std::string_view bytes);

}  // namespace tarn::tools
