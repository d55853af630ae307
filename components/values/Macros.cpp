#include "components/values/Macros.h"

#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

constexpr int kMaxDepth = 64;
constexpr int kMaxNesting = 200;
constexpr int kMaxExpansions = 20000;
constexpr std::size_t kMaxLength = 1 << 20;

constexpr std::string_view kUnique = "Unique:";

// Bytes at which values are split, and the control bytes that replace them and are not used in
// names.
constexpr std::string_view kSeparators = "; \t\"'\\";
constexpr std::string_view kStandIns = "\x01\x02\x03\x04\x05\x06";

std::string Exchange(std::string_view text, std::string_view from, std::string_view to) {
  std::string result(text);
  for (char& c : result) {
    const std::size_t at = from.find(c);
    if (at != std::string_view::npos) c = to[at];
  }
  return result;
}

// A value being resolved; frames form a linked list on the call stack.
struct Frame {
  const Frame* outer = nullptr;
  std::uint64_t id = 0;
  bool isValue = false;
  std::string_view name;
  int depth = 0;
};

// Returns the position of the ")" that matches the macro starting at `begin`, or npos.
std::size_t FindEnd(std::string_view text, std::size_t begin) {
  int depth = 0;
  std::size_t open = text.find("$(", begin);
  for (std::size_t close = text.find(')', begin); close != text.npos;
       close = text.find(')', close + 1)) {
    for (; open < close; open = text.find("$(", open + 2)) ++depth;
    if (depth-- == 0) return close;
  }
  return std::string_view::npos;
}

// Removes and returns the part of `list` before the next ";" that is outside all macros.
std::string_view TakeCase(std::string_view& list) {
  std::size_t end = list.find(';');
  std::size_t open = list.find("$(");
  while (end != list.npos && open < end) {
    const std::size_t close = FindEnd(list, open + 2);
    if (end < close) end = close == list.npos ? close : list.find(';', close);
    open = list.find("$(", std::min(close, list.size()));
  }
  const std::string_view part = list.substr(0, end);
  list.remove_prefix(part.size());
  if (!list.empty()) list.remove_prefix(1);
  return part;
}

// Recursive expansion with cycle detection: each value on the way has a frame in a chain. A value
// found again in the chain is a cycle; the recursion then unwinds to its frame, and all values in
// between expand to nothing. Depth, number of expansions and length of the result are limited, so
// that the cost is bounded for any input.
class Resolver {
 public:
  Resolver(const MacroSource& from, std::string* errorText, std::string* missingName, bool isSplit)
      : source_(from), error_(errorText), missing_(missingName), protects_(isSplit) {}

  // Appends the expanded text. If it requires a value that an outer frame is resolving, returns
  // that value's frame, and all values in between expand to nothing.
  const Frame* Append(std::string_view text, const Frame& frame, std::string& to) {
    if (nesting_ >= kMaxNesting) return Report("macros are nested too deeply"), nullptr;
    ++nesting_;
    const Frame* circle = AppendPieces(text, frame, to);
    --nesting_;
    return circle;
  }

  const Frame* AppendValue(const FoundValue& value, std::string_view name, const Frame& outer,
                           std::string& to) {
    if (!value.found) return nullptr;
    if (to.size() > kMaxLength || ++expansions_ > kMaxExpansions || outer.depth >= kMaxDepth) {
      return Report("$(" + CleanName(name) + ") expands too far"), nullptr;
    }
    if (value.literal || value.text.find('$') == std::string_view::npos) {
      if (value.literal && protects_) {
        to += ProtectSeparators(value.text);
      } else {
        to += value.text;
      }
      if (!value.literal) CheckBlank(value, name, outer);
      return nullptr;
    }
    if (const Frame* circle = FindCircle(value.id, outer)) {
      Report("cycle: " + Names(*circle, outer) + CleanName(name));
      return circle;
    }
    const Frame frame{&outer, value.id, true, name, outer.depth + 1};
    const std::size_t length = to.size();
    const Frame* circle = Append(value.text, frame, to);
    if (circle == nullptr) return nullptr;
    to.resize(length);
    return circle == &frame ? nullptr : circle;
  }

  // An empty value is not sufficient if a value is required.
  void CheckBlank(const FoundValue& value, std::string_view name, const Frame& outer) {
    if (missing_ == nullptr || value.id == 0 || !Trim(value.text).empty()) return;
    std::string unused;
    AppendValue(source_.FindBelow(value.id), name, outer, unused);
  }

 private:
  const Frame* AppendPieces(std::string_view text, const Frame& frame, std::string& to) {
    std::size_t begin = 0;
    for (;;) {
      const std::size_t dollar = text.find('$', begin);
      to.append(text, begin, dollar - begin);
      if (dollar == std::string_view::npos) return nullptr;
      const char next = dollar + 1 < text.size() ? text[dollar + 1] : '\0';
      const std::size_t end = next == '(' ? FindEnd(text, dollar + 2) : std::string_view::npos;
      if (end == std::string_view::npos) {
        to += '$';
        begin = dollar + (next == '$' ? 2 : 1);
        continue;
      }
      if (const Frame* circle = Expand(text.substr(dollar + 2, end - dollar - 2), frame, to)) {
        return circle;
      }
      begin = end + 1;
    }
  }

  const Frame* Expand(std::string_view macro, const Frame& frame, std::string& to) {
    if (macro.starts_with(kUnique)) return ExpandUnique(macro, frame, to);
    const std::size_t question = macro.find('?');
    if (question != std::string_view::npos) {
      return ExpandCases(macro.substr(0, question), macro.substr(question + 1), frame, to);
    }
    return ExpandName(macro, frame, to);
  }

  const Frame* ExpandName(std::string_view name, const Frame& frame, std::string& to) {
    if (EqualNoCase(name, "Inherited")) {
      if (!frame.isValue) return nullptr;
      return AppendValue(source_.FindBelow(frame.id), frame.name, frame, to);
    }
    if (EqualNoCase(name, "Required")) {
      if (missing_ != nullptr && missing_->empty()) *missing_ = CleanName(frame.name);
      return nullptr;
    }
    const std::size_t first = name.find('.');
    if (first == std::string_view::npos) return nullptr;
    const std::size_t second = name.find('.', first + 1);
    if (second == std::string_view::npos) {
      return AppendValue(source_.FindRaw({}, name.substr(0, first), name.substr(first + 1)), name,
                         frame, to);
    }
    return AppendValue(
        source_.FindRaw(name.substr(0, first), name.substr(first + 1, second - first - 1),
                        name.substr(second + 1)),
        name, frame, to);
  }

  const Frame* ExpandCases(std::string_view name, std::string_view cases, const Frame& frame,
                           std::string& to) {
    std::string value;
    if (const Frame* circle = ExpandName(name, frame, value)) return circle;
    while (!cases.empty()) {
      const std::string_view part = TakeCase(cases);
      const std::size_t equal = part.find('=');
      if (equal == std::string_view::npos) continue;
      const std::string_view wanted = part.substr(0, equal);
      if (wanted == "*" || EqualNoCase(wanted, value)) {
        return Append(part.substr(equal + 1), frame, to);
      }
    }
    return nullptr;
  }

  const Frame* ExpandUnique(std::string_view macro, const Frame& frame, std::string& to) {
    macro.remove_prefix(kUnique.size());
    std::string path;
    if (const Frame* circle = ExpandName(macro, frame, path)) return circle;
    std::string folder;
    if (const Frame* circle = ExpandName("General.ApplicationDir", frame, folder)) return circle;
    to += UniquePath(path, folder);
    return nullptr;
  }

  static const Frame* FindCircle(std::uint64_t id, const Frame& from) {
    for (const Frame* frame = &from; frame != nullptr; frame = frame->outer) {
      if (frame->isValue && frame->id == id) return frame;
    }
    return nullptr;
  }

  static std::string CleanName(std::string_view name) {
    return name.empty() ? "the value itself" : std::string(name);
  }

  static std::string Names(const Frame& circle, const Frame& innermost) {
    std::string names;
    for (const Frame* frame = &innermost;; frame = frame->outer) {
      names.insert(0, CleanName(frame->name) + " -> ");
      if (frame == &circle) return names;
    }
  }

  void Report(std::string text) {
    if (error_ != nullptr && error_->empty()) *error_ = std::move(text);
  }

  const MacroSource& source_;
  std::string* error_;
  std::string* missing_;
  const bool protects_;
  int expansions_ = 0;
  int nesting_ = 0;
};

// Removes and returns the first component of a path; an empty one after the last. A ".." that
// remains in a canonical path follows a symbolic link, so it is kept as a name.
std::string_view TakeComponent(std::string_view& path) {
  while (!path.empty()) {
    const auto end = static_cast<std::size_t>(std::find_if(path.begin(), path.end(), IsSeparator) -
                                              path.begin());
    const std::string_view part = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (!part.empty() && part != ".") return part;
  }
  return {};
}

// Removes the components that both paths begin with, except for the last one of `path`.
void SkipCommon(std::string_view& path, std::string_view& folder) {
  for (;;) {
    std::string_view pathRest = path;
    std::string_view folderRest = folder;
    const std::string_view part = TakeComponent(pathRest);
    std::string_view after = pathRest;
    if (part.empty() || part != TakeComponent(folderRest) || TakeComponent(after).empty()) return;
    path = pathRest;
    folder = folderRest;
  }
}

std::string ResolveValue(const MacroSource& source, const FoundValue& value, std::string* error,
                         std::string* missing, bool isSplit) {
  std::string text;
  if (!value.found) return text;
  Resolver resolver(source, error, missing, isSplit);
  const Frame root{nullptr, value.id, value.id != 0, {}, 0};
  if (value.literal || value.text.find('$') == std::string_view::npos) {
    text = value.text;
    if (!value.literal) resolver.CheckBlank(value, {}, root);
    return text;
  }
  if (resolver.Append(value.text, root, text) != nullptr) text.clear();
  return text;
}

}  // namespace

std::string ResolveMacros(const MacroSource& source, const FoundValue& value, std::string* error,
                          std::string* missing) {
  return ResolveValue(source, value, error, missing, false);
}

std::string ResolveForSplitting(const MacroSource& source, const FoundValue& value,
                                std::string* error, std::string* missing) {
  return ResolveValue(source, value, error, missing, true);
}

std::string ProtectSeparators(std::string_view text) {
  return Exchange(text, kSeparators, kStandIns);
}

std::string RestoreSeparators(std::string_view text) {
  return Exchange(text, kStandIns, kSeparators);
}

std::string UniquePath(std::string_view path, std::string_view folder) {
  std::string_view target = path;
  std::string text;
  if (!IsRelativePath(path)) {
    const bool sameRoot = !IsRelativePath(folder) && HasDrive(path) == HasDrive(folder) &&
                          (!HasDrive(path) || EqualNoCase(path.substr(0, 1), folder.substr(0, 1)));
    if (sameRoot) {
      std::string_view base = folder;
      SkipCommon(target, base);
      while (!TakeComponent(base).empty()) text += "__/";
    } else {
      text = "__root/";
    }
  }
  bool isDrive = target.size() == path.size() && HasDrive(path);
  for (std::string_view part = TakeComponent(target); !part.empty();) {
    if (part == "..") {
      text += "__";
    } else {
      if (part.starts_with("__")) text += '_';
      text += part;
      if (isDrive) text.pop_back();
    }
    isDrive = false;
    part = TakeComponent(target);
    if (!part.empty()) text += '/';
  }
  return text;
}

}  // namespace tarn
