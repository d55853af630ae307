// Reading project and application files, and resolving the paths in them. TreeSaver.cpp writes
// them.
//
// A tree is split into files at the direct children of a file's root: the content of a child with
// an `Extern` file is stored there, and the parent's file has only its attributes.

#include "project/TreeLoader.h"

#include <algorithm>
#include <utility>

#include "output/MessageTable.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"
#include "project/StructureCheck.h"
#include "project/TreeText.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// An element as it appears in the file that references its separate file. Attributes that the
// separate file omits are kept, or a damaged file would remove the reference to itself.
class BareElement {
 public:
  explicit BareElement(const CXmlNode& node) : name_(node.GetName()) {
    for (const CXmlAttr& each : node.Attributes()) {
      attributes_.emplace_back(each.GetName(), each.GetValue());
    }
  }

  void Complete(CXmlNode& node, bool isWhole, const NodeTypes& types) const {
    if (!isWhole && (types.FlagsOf(node) & kTypeExtern) == 0) node.SetName(name_);
    for (const auto& [attribute, value] : attributes_) {
      const bool isFile = attribute == "Extern";
      const char* present = node.GetAttrValue(attribute);
      const bool isMissing = present == nullptr || (isFile && *present == '\0');
      if (isMissing && (isFile || !isWhole)) node.SetAttrValue(attribute, value);
    }
  }

  // Reports an impossible root element and restores the node's name, unless the file may have that
  // root. A node that is being added, which has no parent yet, may become an application of a
  // different type. Returns true if the node has the name given in the file.
  bool CheckName(CXmlNode& node, bool isProject, const NodeTypes& types,
                 DamageCollector& found) const {
    CXmlNode named;
    named.SetName(name_);
    const std::uint32_t kind = isProject ? kTypeProject : kTypeExtern;
    const bool isOfKind = (types.FlagsOf(node) & kind) != 0;
    const bool isAdded = !isProject && node.GetParent() == nullptr;
    if (EqualNoCase(node.NameView(), name_) || (isOfKind && (isProject || isAdded))) return true;
    if ((types.FlagsOf(named) & kind) == 0) return true;
    const bool stays = isOfKind || (isProject && types.GetNodeType(node) == nullptr);
    found.Add(node,
              "the root is <" + node.GetName() + ">, " +
                  (isProject ? "not that of a project" : "the project names <" + name_ + ">"),
              stays);
    if (!stays) node.SetName(name_);
    return stays;
  }

 private:
  std::string name_;
  std::vector<std::pair<std::string, std::string>> attributes_;
};

// Removes cached values. They do not belong in a file, and a node that had some would never be
// published.
void DropStoredValues(CXmlNode& node) {
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = node.GetChild(i);
    if (child->GetType() == XmlCData) {
      node.RemoveChild(child);
    } else if (IsContentNode(*child)) {
      DropStoredValues(*child);
    }
  }
}

}  // namespace

std::int32_t TreeLoader::LoadProjectFile(const ReplacedFiles* replacedFiles) {
  const std::uint64_t opened = state_.projectGeneration;
  // A handler of a log message may open another project while this one is being read.
  std::vector<std::string> outer = std::exchange(loadingFiles_, {});
  const ReplacedFiles* const outerReplaced = std::exchange(replaced_, replacedFiles);
  const std::int32_t loaded = LoadTreeFile(*state_.projectRoot, state_.projectPath);
  if (loaded && state_.projectGeneration == opened) CheckActiveApplication();
  loadingFiles_ = std::move(outer);
  replaced_ = outerReplaced;
  return loaded;
}

std::int32_t TreeLoader::LoadTreeFile(CXmlNode& node, const std::string& fileName) {
  std::string absolute;
  if (!paths_.MakeAbsolutePath(fileName, absolute, nullptr)) return 0;
  // A file that references one of its ancestors would be read forever.
  if (std::find(loadingFiles_.begin(), loadingFiles_.end(), absolute) != loadingFiles_.end()) {
    services_.output->WriteMessage(kRowCannotRead, {absolute}, "it refers to itself");
    return 0;
  }
  if (loadingFiles_.empty()) repeatedReads_ = {};
  if (!repeatedReads_.Allows(files_.Canonical(absolute))) {
    if (repeatedReads_.IsFirstRefusal()) {
      services_.output->WriteMessage(kRowCannotRead, {absolute},
                                     "the project refers to its files too often");
    }
    return 0;
  }
  const std::uint64_t epoch = state_.treeGeneration;
  const bool isReplaced = replaced_ != nullptr && replaced_->Find(absolute) != nullptr;
  const bool isThere =
      isReplaced || CheckFileAccess(files_, absolute, kMustExist, *services_.output) != 0;
  if (!isThere || state_.treeGeneration != epoch) return 0;
  // A read-only project is opened anyway; the log says that it cannot be saved. A file that can't
  // be read is reported below.
  if (!isReplaced && !onlyReads_ && files_.CanRead(absolute)) {
    CheckFileAccess(files_, absolute, kMustBeWritable, *services_.output);
  }
  if (state_.treeGeneration != epoch) return 0;

  loadingFiles_.push_back(absolute);
  const std::int32_t done = LoadTreeText(node, absolute) ? LoadExternChildren(node, epoch) : 0;
  loadingFiles_.pop_back();
  return done;
}

std::int32_t TreeLoader::LoadTreeText(CXmlNode& node, const std::string& absolute) {
  const std::uint64_t epoch = state_.treeGeneration;
  const std::string* const own = replaced_ == nullptr ? nullptr : replaced_->Find(absolute);
  const Result<std::string> text =
      own == nullptr ? files_.ReadWholeFile(absolute) : Result<std::string>(*own);
  if (!text) {
    if (text.GetError().code == ErrorCode::Io) {
      guard_.RecordRead(absolute, {}, true);
      FileDamage unread{absolute, 0, "reading the file failed: " + text.GetError().text};
      unread.isUnread = true;
      protection_.SetDamageOf(absolute, {unread});
      // The root still has the attributes of the previous project.
      if (&node == state_.projectRoot.get()) node.Clear();
      return 1;
    }
    services_.output->WriteMessage(kRowCannotRead, {absolute}, text.GetError().text);
    return 0;
  }
  const BareElement bare(node);
  repeatedReads_.Add(text->size());
  node.SetValue("");
  DamageCollector collector(*text);
  const TreeRead read = ReadTree(*text, node, collector);
  const bool isWellFormed = read != TreeRead::Malformed;
  const bool holdsValues = collector.HasCData();
  const bool isWhole = read == TreeRead::Whole;
  // A parse that failed part-way may have put elements in wrong positions.
  bool hasName = true;
  if (isWellFormed) {
    hasName = bare.CheckName(node, &node == state_.projectRoot.get(), types_, collector);
    StructureCheck(types_, collector, [this](const std::string& fileName) {
      std::string file;
      return paths_.MakeAbsolutePath(fileName, file, nullptr) ? files_.Canonical(file) : fileName;
    }).CheckFile(node, loadingFiles_);
  }
  std::vector<FileDamage> found = collector.Collect(absolute);
  // Damage kept in the tree is not necessarily written back to the same position.
  guard_.RecordRead(absolute, *text, !isWhole || !found.empty());
  if (own != nullptr) guard_.TakeOver(replaced_->former, absolute);
  protection_.SetDamageOf(absolute, std::move(found));
  if (holdsValues) DropStoredValues(node);
  if (&node != state_.projectRoot.get()) bare.Complete(node, isWhole && hasName, types_);
  if (!isWellFormed) services_.output->WriteMessage(kRowMalformedXml, {absolute});
  return state_.treeGeneration == epoch ? 1 : 0;
}

// The project file lists its applications and names the active one by its label. If no listed
// application has that label, a line was lost. The label may be the one in the project file or the
// one in the application's own file.
void TreeLoader::CheckActiveApplication() {
  const std::string active = OrEmpty(state_.projectRoot->GetAttrValue("ActiveApp"));
  const std::string* const text = guard_.ContentOf(state_.projectPath);
  const auto isListedIn = [&](const CXmlNode& root) {
    const auto children = root.GetChildren();
    return std::any_of(children.begin(), children.end(), [&](const CXmlNode* child) {
      return (types_.FlagsOf(*child) & kTypeApplication) != 0 &&
             EqualNoCase(OrEmpty(child->GetAttrValue("Header")), active);
    });
  };
  if (active.empty() || text == nullptr || isListedIn(*state_.projectRoot)) return;
  CXmlNode written;
  DamageCollector collector(*text);
  ReadTree(*text, written, collector);
  if (isListedIn(written)) return;
  const std::size_t start = std::min(text->find('<' + written.GetName()), text->size());
  protection_.AddDamage({state_.projectPath, 1 + CountLineEnds(*text, 0, start),
                         "the application \"" + active + "\", which is the active one, is missing",
                         true});
  guard_.MarkDamaged(state_.projectPath);
}

// An application's path is where it was read from, whatever its file says: it may have been moved
// or be shared with a project in another folder.
void TreeLoader::SetReference(CXmlNode& node, const std::string& fileName) {
  node.SetAttrValue("Path", fileName);
  node.SetAttrValue("Extern", fileName);
}

std::int32_t TreeLoader::LoadExternChildren(CXmlNode& node, std::uint64_t epoch) {
  std::int32_t result = 1;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode& child = *node.GetChild(i);
    if ((types_.FlagsOf(child) & kTypeExtern) == 0) continue;
    const std::string fileName = OrEmpty(child.GetAttrValue("Extern"));
    if (fileName.empty()) {
      services_.output->WriteMessage(kRowFileMissing, {OrEmpty(child.GetAttrValue("Header"))},
                                     "the project file has no path for it");
    }
    const bool isLoaded = state_.treeGeneration == epoch && LoadTreeFile(child, fileName);
    if (state_.treeGeneration != epoch) return 0;
    if (isLoaded) {
      SetReference(child, fileName);
    } else {
      result = 0;
    }
  }
  return result;
}

}  // namespace tarn
