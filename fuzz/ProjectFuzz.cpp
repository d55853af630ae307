// The input is a project file and, after a line of equal signs, an application file. They are
// loaded, published, changed by an option, saved and loaded again. For any contents, data that was
// on disk must not be lost unless it is stored elsewhere.

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
#include "project/ProjectFixture.h"

namespace {

using tarn::test::ProjectFixture;
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

Disk FilesOf(const ProjectFixture& world) {
  Disk files;
  for (const std::string& path : world.disk.AllFiles()) {
    if (path.starts_with("/p/")) files[path] = world.disk.BytesOf(path).value_or("");
  }
  return files;
}

// Returns only letters and digits, since reading and writing may change the quotes around them.
std::string BareText(std::string text) {
  for (const std::string_view reference : {"&quot;", "&slash;"}) {
    text = tarn::ReplaceAll(text, reference, "");
  }
  std::erase_if(text, [](unsigned char c) { return std::isalnum(c) == 0; });
  return text;
}

// Returns the length of the prefix in which quotes are used as in a well-formed file: an opening
// quote after an equals sign, a closing quote before white space or the end of the tag. The parser
// may interpret the rest in any way.
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

// Returns the markers Keep="..." in the start tags of a file, found without the parser that is
// under test. Files with parts that a save drops by design have no markers. A marker in the value
// of another attribute doesn't count, since it is lost when a change replaces that value.
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
    // After an even number of quotes none is open; after an equals sign there is always a value,
    // even an unquoted one.
    const std::string_view before = tarn::Trim(text.substr(0, at));
    const bool isInValue =
        before.ends_with('=') || std::count(before.begin(), before.end(), '"') % 2 != 0;
    if (isInTag && !isInValue && end != std::string_view::npos && text[end] == '"') {
      marks.insert(BareText(std::string(text.substr(at, end - at))));
    }
  }
  return marks;
}

// Checks that the contents of a file are still on disk: as the file itself, as a copy, or as all of
// its markers.
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

// Runs the sequence with a change. Returns false if the project didn't open.
bool Travel(ProjectFixture& world, const Disk& before) {
  if (world.OpenDemo() == 0) {
    world.model->SaveProject();
    world.model->CloseProject();
    Require(FilesOf(world) == before);
    return false;
  }
  world.model->PublishAll();
  for (int i = 0; tarn::CXmlNode* child = world.Application(i); ++i) {
    world.builder->ExamineNode(*child);
  }
  world.model->Options().StoreChangedProperty("C.General.Nothing");
  const bool isChanged = world.model->IsModified();
  world.model->SaveProject();
  const Disk after = FilesOf(world);
  if (!isChanged) Require(after == before);
  RequireAllKept(before, after);
  // A failed save is not repeated when the next project is opened.
  world.model->State().DropChanges();
  world.model->CloseProject();
  return true;
}

// Opens and closes the project. Only a project without an active application of its own is changed
// by that.
void Look(ProjectFixture& world) {
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
  ProjectFixture world;
  world.disk.AddFile(kProject, input.substr(0, cut));
  world.disk.AddFile(
      kApplication, cut == std::string::npos ? kPlainApplication : input.substr(cut + kCut.size()));
  world.disk.AddFile("/p/main.c", "");
  Look(world);
  // The saved project can be opened again.
  if (Travel(world, FilesOf(world))) Look(world);
  return 0;
}
