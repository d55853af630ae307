#include "hosts/frame/BuildInformationStore.h"

#include <charconv>
#include <cstring>
#include <span>

namespace tarn::host {

namespace {

// The value of an attribute as the reader of build information takes it.
void AppendAttribute(std::string& xml, std::string_view name, std::string_view value) {
  xml.append(name).append("=\"");
  for (std::string_view rest = value;;) {
    const std::size_t special = rest.find_first_of("\"|");
    xml.append(rest.substr(0, special));
    if (special == std::string_view::npos) break;
    xml.append(rest[special] == '"' ? "&quot;" : "&slash;");
    rest.remove_prefix(special + 1);
  }
  // An odd backslash at the end would take the closing quote along.
  const std::size_t last = value.find_last_not_of('\\');
  const std::size_t run = value.size() - (last == std::string_view::npos ? 0 : last + 1);
  if (run % 2 == 1) xml.push_back('\\');
  xml.append("\" ");
}

}  // namespace

// Takes the lines of a body apart; says no at the first thing that is not as it should be.
class BuildInformationStore::Reader {
 public:
  explicit Reader(BuildInformationStore& target) : store(target) {}

  bool Read(std::string_view body) {
    while (!body.empty()) {
      const auto* end = static_cast<const char*>(std::memchr(body.data(), '\n', body.size()));
      if (end == nullptr) return false;
      const auto length = static_cast<std::size_t>(end - body.data());
      if (!ReadLine(body.substr(0, length))) return false;
      body.remove_prefix(length + 1);
    }
    for (std::size_t record = 0; record < store.records.size(); ++record) store.Index(record);
    return true;
  }

 private:
  bool ReadLine(std::string_view line) {
    if (line.size() < 2 || line[1] != ' ') return false;
    const std::string_view rest = line.substr(2);
    switch (line[0]) {
      case 'T':
        return ReadText(rest);
      case 'A':
        return ReadApplication(rest);
      case 'R':
        return ReadRecord(rest);
      case 'D':
        return ReadDependencies(rest);
      case 'C':
        return ReadCommand(rest);
      default:
        return false;
    }
  }

  bool ReadText(std::string_view line) {
    if (std::memchr(line.data(), '%', line.size()) == nullptr) {
      store.texts.push_back(line);
      return true;
    }
    std::string text;
    if (!ParseLineText(line, text)) return false;
    store.texts.emplace_back(store.ownTexts.emplace_back(std::move(text)));
    return true;
  }

  bool ReadApplication(std::string_view line) {
    hasApplication = TakeNumber(line, application) && line.empty();
    return hasApplication;
  }

  bool ReadRecord(std::string_view line) {
    Record record;
    record.application = application;
    if (!hasApplication || !TakeNumber(line, record.output) || !TakeNumber(line, record.infos) ||
        !TakeNumber(line, record.date) || !FromHex(line, record.signature)) {
      return false;
    }
    store.records.push_back(record);
    return true;
  }

  bool ReadDependencies(std::string_view line) {
    if (store.records.empty()) return false;
    Record& record = store.records.back();
    // In front of the commands, which have to lie behind one another.
    if (record.dependencyCount != 0 || record.commandCount != 0) return false;
    record.dependencies = store.numbers.size();
    if (!TakeNumbers(line)) return false;
    record.dependencyCount = store.numbers.size() - record.dependencies;
    return true;
  }

  bool ReadCommand(std::string_view line) {
    if (store.records.empty()) return false;
    Record& record = store.records.back();
    const std::size_t start = store.numbers.size();
    if (record.commandCount == 0) record.commands = start;
    store.numbers.push_back(0);
    if (!TakeNumbers(line)) return false;
    const std::size_t count = store.numbers.size() - start - 1;
    store.numbers[start] = static_cast<Number>(count);
    ++record.commandCount;
    return count >= 2;
  }

  bool TakeNumbers(std::string_view line) {
    while (!line.empty()) {
      Number number = 0;
      if (!TakeNumber(line, number)) return false;
      store.numbers.push_back(number);
    }
    return true;
  }

  // A number of the table and the blank behind it.
  bool TakeNumber(std::string_view& line, Number& number) {
    const char* const end = line.data() + line.size();
    const auto [parsed, error] = std::from_chars(line.data(), end, number);
    if (error != std::errc() || number >= store.texts.size()) return false;
    line.remove_prefix(static_cast<std::size_t>(parsed - line.data()));
    if (line.empty()) return true;
    if (line[0] != ' ') return false;
    line.remove_prefix(1);
    return true;
  }

  BuildInformationStore& store;
  Number application = 0;
  bool hasApplication = false;
};

// Writes records and, in front of the first use, the texts that they need.
class BuildInformationStore::Writer {
 public:
  explicit Writer(const BuildInformationStore& source)
      : store(source), places(source.texts.size(), kNoPlace) {}

  void Write(const Record& record) {
    line.clear();
    if (!hasApplication || record.application != application) {
      Start('A', {&record.application, 1});
      application = record.application;
      hasApplication = true;
    }
    const Number head[] = {record.output, record.infos, record.date};
    Start('R', head);
    line.back() = ' ';
    line.append(ToHex(record.signature)).push_back('\n');
    const std::span<const Number> all(store.numbers);
    if (record.dependencyCount != 0) {
      Start('D', all.subspan(record.dependencies, record.dependencyCount));
    }
    std::size_t at = record.commands;
    for (std::size_t i = 0; i < record.commandCount; ++i) {
      const std::size_t count = store.numbers[at];
      Start('C', all.subspan(at + 1, count));
      at += count + 1;
    }
    body.append(line);
  }

  std::string Take() { return std::move(body); }

 private:
  static constexpr Number kNoPlace = static_cast<Number>(-1);

  void Start(char kind, std::span<const Number> items) {
    line.push_back(kind);
    for (const Number item : items) line.append(" ").append(std::to_string(PlaceOf(item)));
    line.push_back('\n');
  }

  Number PlaceOf(Number text) {
    if (places[text] == kNoPlace) {
      places[text] = used++;
      body.append("T ");
      AppendLineText(body, store.texts[text]);
      body.push_back('\n');
    }
    return places[text];
  }

  const BuildInformationStore& store;
  std::vector<Number> places;
  Number used = 0;
  Number application = 0;
  bool hasApplication = false;
  std::string line;
  std::string body;
};

StateVerdict BuildInformationStore::Load(std::string bytes, std::string_view projectFileName) {
  Clear();
  file = std::move(bytes);
  const StateBody body = UnwrapState(file, projectFileName);
  if (body.verdict != StateVerdict::Good) return body.verdict;
  if (Reader(*this).Read(body.text)) return StateVerdict::Good;
  Clear();
  return StateVerdict::Damaged;
}

std::string BuildInformationStore::Save(std::string_view projectFileName) const {
  Writer writer(*this);
  for (const Record& record : records) writer.Write(record);
  return WrapState(projectFileName, writer.Take());
}

std::size_t BuildInformationStore::Find(std::string_view application,
                                        std::string_view output) const {
  const auto found = index.find({application, output});
  return found == index.end() ? kNone : found->second;
}

void BuildInformationStore::SetSignature(std::size_t record, std::uint64_t signature) {
  changed |= records[record].signature != signature;
  records[record].signature = signature;
}

std::vector<ToolCommand> BuildInformationStore::GetCommands(std::size_t record) const {
  std::vector<ToolCommand> commands;
  std::size_t at = records[record].commands;
  for (std::size_t i = 0; i < records[record].commandCount; ++i) {
    const std::size_t end = at + 1 + numbers[at];
    ToolCommand& command = commands.emplace_back();
    command.program = texts[numbers[at + 1]];
    command.folder = texts[numbers[at + 2]];
    for (at += 3; at < end; ++at) command.arguments.emplace_back(texts[numbers[at]]);
  }
  return commands;
}

void BuildInformationStore::AppendXml(std::size_t position, std::string& xml) {
  const Record& record = records[position];
  xml.append("<F ");
  AppendAttribute(xml, "Header", texts[record.output]);
  AppendAttribute(xml, "Infos", texts[record.infos]);
  AppendAttribute(xml, "Date", texts[record.date]);
  if (record.dependencyCount == 0) {
    xml.append("/>");
    return;
  }
  xml.append(">");
  if (dependencyXml.size() < texts.size()) dependencyXml.resize(texts.size());
  for (std::size_t i = 0; i < record.dependencyCount; ++i) {
    const Number text = numbers[record.dependencies + i];
    std::string& element = dependencyXml[text];
    if (element.empty()) {
      element = "<D ";
      AppendAttribute(element, "Header", texts[text]);
      element.append("/>");
    }
    xml.append(element);
  }
  xml.append("</F>");
}

void BuildInformationStore::Put(std::string_view application, const BuildRecord& record) {
  Record entry;
  entry.application = Intern(application);
  entry.output = Intern(record.output);
  entry.infos = Intern(record.infos);
  entry.date = Intern(record.date);
  entry.signature = record.signature;
  entry.dependencies = numbers.size();
  entry.dependencyCount = record.dependencies.size();
  for (const std::string& path : record.dependencies) numbers.push_back(Intern(path));
  entry.commands = numbers.size();
  entry.commandCount = record.commands.size();
  for (const ToolCommand& command : record.commands) {
    numbers.push_back(static_cast<Number>(command.arguments.size() + 2));
    numbers.push_back(Intern(command.program));
    numbers.push_back(Intern(command.folder));
    for (const std::string& argument : command.arguments) numbers.push_back(Intern(argument));
  }
  changed = true;
  const std::size_t known = Find(application, record.output);
  if (known != kNone) {
    records[known] = entry;
    return;
  }
  records.push_back(entry);
  Index(records.size() - 1);
}

void BuildInformationStore::Keep(
    const std::function<bool(std::string_view application, std::string_view output)>& wanted) {
  const std::size_t before = records.size();
  std::erase_if(records, [&](const Record& record) {
    return !wanted(texts[record.application], texts[record.output]);
  });
  if (records.size() == before) return;
  changed = true;
  index.clear();
  for (std::size_t record = 0; record < records.size(); ++record) Index(record);
}

void BuildInformationStore::Clear() {
  index.clear();
  records.clear();
  numbers.clear();
  interned.clear();
  texts.clear();
  dependencyXml.clear();
  ownTexts.clear();
  file.clear();
  changed = false;
}

BuildInformationStore::Number BuildInformationStore::Intern(std::string_view text) {
  if (interned.empty()) {
    for (std::size_t i = 0; i < texts.size(); ++i) interned.emplace(texts[i], Number(i));
  }
  if (const auto known = interned.find(text); known != interned.end()) return known->second;
  const auto number = static_cast<Number>(texts.size());
  texts.emplace_back(ownTexts.emplace_back(text));
  interned.emplace(texts.back(), number);
  return number;
}

void BuildInformationStore::Index(std::size_t record) {
  index.insert_or_assign({texts[records[record].application], texts[records[record].output]},
                         record);
}

}  // namespace tarn::host
