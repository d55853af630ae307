// The input serves as project file and, behind a line of equal signs, as application file. They go
// the whole road: load, publish, change an option, save, load again. Whatever they hold, nothing
// that stood on the disk may be gone afterwards unless the system holds it itself.

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "platform/text/Text.h"
#include "project/ProjectWorld.h"

namespace {

using tarn::test::ProjectWorld;
using Disk = std::map<std::string, std::string>;

constexpr std::string_view kCut = "\n====\n";
constexpr const char* kProject = "/p/demo.tprj";
constexpr const char* kApplication = "/p/demo.tapp";
constexpr const char* kPlainApplication =
    "\r\n<Application Header=\"demo\" Extern=\".\\demo.tapp\" Path=\".\\demo.tapp\" Keep=\"1\" >"
    "\r\n\t<C Header=\"main.c\" Path=\".\\main.c\" Keep=\"2\" />\r\n</Application>";

void Require(bool holds) {
  if (!holds) std::abort();
}

Disk FilesOf(const ProjectWorld& world) {
  Disk files;
  for (const std::string& path : world.disk.AllFiles()) {
    if (path.starts_with("/p/")) files[path] = world.disk.BytesOf(path).value_or("");
  }
  return files;
}

// Letters and digits alone, since reading and writing again may change the quotes around them.
std::string BareText(std::string text) {
  for (const std::string_view reference : {"&quot;", "&slash;"}) {
    text = tarn::ReplaceAll(text, reference, "");
  }
  std::erase_if(text, [](unsigned char c) { return std::isalnum(c) == 0; });
  return text;
}

// How far quotes stand as in a whole text: behind an equals sign where one opens, and in front of a
// blank or the end of the tag where it closes. What comes then may be anything to the reader.
std::size_t LengthOfWellQuoted(std::string_view text) {
  bool isOpen = false;
  for (std::size_t at = text.find('"'); at != std::string_view::npos; at = text.find('"', at + 1)) {
    const bool fits =
        isOpen ? text.find_first_of(" \t\r\n/>", at) == at + 1 : at > 0 && text[at - 1] == '=';
    if (!fits) return at;
    isOpen = !isOpen;
  }
  return text.size();
}

// The marks Keep="..." in the start tags of a text, found without the reader whose losses are at
// stake. Texts with pieces that a save leaves out by its nature have none, and what stands in the
// value of another attribute is none: it goes when a change replaces that.
std::set<std::string> MarksOf(std::string_view text) {
  for (const std::string_view gone : {"<?", "<!", "'", "\\", "#CDATA", "PropState", "Info", "Desc",
                                      "Dependencies", "LastBuilt", "highlight"}) {
    if (text.find(gone) != std::string_view::npos) return {};
  }
  text = text.substr(0, LengthOfWellQuoted(text));
  constexpr std::string_view kStart = " Keep=\"";
  std::set<std::string> marks;
  for (std::size_t at = text.find(kStart); at != std::string_view::npos;
       at = text.find(kStart, at + 1)) {
    const std::size_t tag = text.find_last_of("<>", at);
    const std::size_t end = text.find_first_not_of("0123456789", at + kStart.size());
    const bool isInTag = tag != std::string_view::npos && text[tag] == '<' &&
                         std::isalpha(static_cast<unsigned char>(text[tag + 1])) != 0;
    // Behind an even number of quotes none is open, and behind an equals sign comes a value even
    // when it has none.
    const std::string_view before = tarn::Trim(text.substr(0, at));
    const bool isInValue =
        before.ends_with('=') || std::count(before.begin(), before.end(), '"') % 2 != 0;
    if (isInTag && !isInValue && end != std::string_view::npos && text[end] == '"') {
      marks.insert(BareText(std::string(text.substr(at, end - at))));
    }
  }
  return marks;
}

// What a file held is still on the disk: the file itself, a copy of it, or all its marks.
void RequireKept(const std::string& path, const std::string& bytes, const Disk& now) {
  std::string written;
  for (const auto& [name, text] : now) {
    if (name.starts_with(path) && text == bytes) return;
    written += text;
  }
  written = BareText(std::move(written));
  for (const std::string& mark : MarksOf(bytes)) {
    Require(written.find(mark) != std::string::npos);
  }
}

void RequireAllKept(const Disk& before, const Disk& now) {
  for (const auto& [path, bytes] : before) RequireKept(path, bytes, now);
}

// The road with a change on it; false when the project did not open.
bool Travel(ProjectWorld& world, const Disk& before) {
  if (world.OpenDemo() == 0) {
    world.model->SaveProject();
    world.model->CloseProject();
    Require(FilesOf(world) == before);
    return false;
  }
  world.model->PublishAll();
  for (int i = 0; tarn::CXmlNode* child = world.Application(i); ++i) {
    world.model->ExamineNode(*child);
  }
  world.model->StoreChangedProperty("C.General.Nothing");
  const bool isChanged = world.model->IsModified();
  world.model->SaveProject();
  const Disk after = FilesOf(world);
  if (!isChanged) Require(after == before);
  RequireAllKept(before, after);
  // What could not be saved is not tried again while the next one is opened.
  world.model->DropChanges();
  world.model->CloseProject();
  return true;
}

// Opened and closed again. Only a project that names no application of its own as the active one
// is changed by that.
void Look(ProjectWorld& world) {
  const Disk before = FilesOf(world);
  if (world.OpenDemo() == 0) return;
  world.model->PublishAll();
  const bool isChanged = world.model->IsModified();
  world.model->CloseProject();
  const Disk after = FilesOf(world);
  if (!isChanged) Require(after == before);
  RequireAllKept(before, after);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::size_t cut = input.find(kCut);
  ProjectWorld world;
  world.disk.AddFile(kProject, input.substr(0, cut));
  world.disk.AddFile(
      kApplication, cut == std::string::npos ? kPlainApplication : input.substr(cut + kCut.size()));
  world.disk.AddFile("/p/main.c", "");
  Look(world);
  // What was saved opens again.
  if (Travel(world, FilesOf(world))) Look(world);
  return 0;
}
