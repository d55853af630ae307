#include "builder/BuildRecordStore.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tarn {

namespace {

using Number = BuildRecord::Number;

constexpr Number kNoVersion = static_cast<Number>(-1);

void AppendNumber(std::string& line, std::int64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  line.push_back(' ');
  line.append(digits, end);
}

void AppendNumbers(std::string& body, char kind, const std::vector<Number>& numbers) {
  if (numbers.empty()) return;
  body.push_back(kind);
  for (const Number number : numbers) AppendNumber(body, number);
  body.push_back('\n');
}

void AppendText(std::string& body, std::string_view text) {
  body.append("T ");
  AppendLineText(body, text);
  body.push_back('\n');
}

void AppendVersion(std::string& body, const FileVersion& version, Number path) {
  body.push_back('F');
  AppendNumber(body, path);
  AppendNumber(body, version.status.modifiedSeconds);
  AppendNumber(body, version.status.modifiedNanoseconds);
  for (const std::uint64_t each :
       {version.status.size, version.status.device, version.status.inode}) {
    AppendNumber(body, static_cast<std::int64_t>(each));
  }
  AppendNumber(body, version.status.changed);
  AppendNumber(body, static_cast<std::int64_t>(version.hash));
  body.push_back('\n');
}

void AppendRecord(std::string& body, const BuildRecord& record) {
  body.push_back('R');
  for (const Number each : {record.output, record.infos, record.date, record.search, record.folders,
                            record.sources, record.programs}) {
    AppendNumber(body, each);
  }
  for (const std::uint64_t each : {record.signature, record.command}) {
    AppendNumber(body, static_cast<std::int64_t>(each));
  }
  body.push_back('\n');
  if (record.milliseconds != 0) AppendNumbers(body, 'D', {record.milliseconds});
  AppendNumbers(body, 'I', record.inputs);
  AppendNumbers(body, 'P', record.passedOver);
  AppendNumbers(body, 'B', record.byProducts);
}

void AppendApplication(std::string& body, Number application, Number& current) {
  if (application == current) return;
  current = application;
  AppendNumbers(body, 'A', {application});
}

}  // namespace

// Parses the lines of the blocks. Fails at the first malformed line.
class BuildRecordStore::Reader {
 public:
  explicit Reader(BuildRecordStore& target) : store_(target) {}

  bool Read(std::string_view body) {
    while (!body.empty()) {
      const auto* end = static_cast<const char*>(std::memchr(body.data(), '\n', body.size()));
      if (end == nullptr) return false;
      const auto length = static_cast<std::size_t>(end - body.data());
      if (!ReadLine(body.substr(0, length))) return false;
      body.remove_prefix(length + 1);
    }
    return Finish();
  }

 private:
  bool ReadLine(std::string_view line) {
    if (line.size() < 2 || line[1] != ' ') return false;
    line_ = line.substr(2);
    switch (line[0]) {
      case 'T':
        return ReadText();
      case 'F':
        return ReadVersion();
      case 'G':
        return ReadFolders();
      case 'A':
        return Finish() && (hasApplication_ = TakeText(application_) && line_.empty());
      case 'R':
        return Finish() && ReadRecord();
      case 'D':
        return hasRecord_ && Take(record_.milliseconds) && line_.empty();
      case 'I':
        return hasRecord_ && record_.inputs.empty() && ReadVersions(record_.inputs);
      case 'P':
        return hasRecord_ && record_.passedOver.empty() && ReadPassedOver();
      case 'B':
        return hasRecord_ && record_.byProducts.empty() && ReadVersions(record_.byProducts);
      case 'X':
        return Finish() && ReadDrop();
      case 'C':
        return Finish() && ReadRenewal();
      default:
        return false;
    }
  }

  bool ReadText() {
    if (std::memchr(line_.data(), '%', line_.size()) == nullptr) {
      store_.AddText(line_);
      return true;
    }
    std::string text;
    if (!ParseLineText(line_, text)) return false;
    store_.AddText(text);
    return true;
  }

  bool ReadVersion() {
    FileVersion version;
    FileStatus& status = version.status;
    if (!TakeText(version.path) || !Take(status.modifiedSeconds) ||
        !Take(status.modifiedNanoseconds) || !TakeUnsigned(status.size) ||
        !TakeUnsigned(status.device) || !TakeUnsigned(status.inode) || !Take(status.changed) ||
        !TakeUnsigned(version.hash) || !line_.empty()) {
      return false;
    }
    store_.latest_[version.path] = static_cast<Number>(store_.versions_.size());
    store_.versions_.push_back(version);
    return true;
  }

  bool ReadFolders() {
    std::vector<Number>& set = store_.folderSets_.emplace_back();
    while (!line_.empty()) {
      if (!TakeVersion(set.emplace_back())) return false;
    }
    return !set.empty();  // set 0 is empty and never written
  }

  bool ReadRecord() {
    record_ = {};
    record_.application = application_;
    hasRecord_ = hasApplication_ && TakeVersion(record_.output) && TakeText(record_.infos) &&
                 TakeText(record_.date) && TakeText(record_.search) && Take(record_.folders) &&
                 record_.folders < store_.folderSets_.size() && Take(record_.sources) &&
                 Take(record_.programs) && TakeUnsigned(record_.signature) &&
                 TakeUnsigned(record_.command) && line_.empty();
    return hasRecord_;
  }

  bool ReadVersions(std::vector<Number>& versions) {
    ReserveNumbers(versions);
    while (!line_.empty()) {
      Number number = 0;
      if (!TakeVersion(number)) return false;
      versions.push_back(number);
    }
    return true;
  }

  bool ReadPassedOver() {
    ReserveNumbers(record_.passedOver);
    while (!line_.empty()) {
      Number number = 0;
      if (!TakeText(number)) return false;
      record_.passedOver.push_back(number);
    }
    return true;
  }

  // Reserves memory for the numbers of the line.
  void ReserveNumbers(std::vector<Number>& numbers) const {
    const auto spaces = std::count(line_.begin(), line_.end(), ' ');
    numbers.reserve(static_cast<std::size_t>(spaces) + 1);
  }

  bool ReadDrop() {
    Number output = 0;
    if (!hasApplication_ || !TakeText(output) || !line_.empty()) return false;
    ++store_.writtenRecords_;
    store_.index_.erase({store_.texts_[application_], store_.texts_[output]});
    return true;
  }

  bool ReadRenewal() {
    Number version = 0;
    ++store_.writtenNumbers_;
    return TakeVersion(version) && Take(store_.versions_[version].status.changed) && line_.empty();
  }

  // Completes the record whose lines have been read.
  bool Finish() {
    if (!hasRecord_) return true;
    hasRecord_ = false;
    const std::size_t named = std::size_t{record_.sources} + record_.programs;
    if (named > record_.inputs.size()) return false;
    ++store_.writtenRecords_;
    store_.writtenNumbers_ += NumbersOf(record_);
    store_.Index(std::move(record_));
    return true;
  }

  bool TakeText(Number& number) { return Take(number) && number < store_.texts_.size(); }
  bool TakeVersion(Number& number) { return Take(number) && number < store_.versions_.size(); }
  // Stored as signed, so that all numbers have the same format.
  bool TakeUnsigned(std::uint64_t& number) {
    std::int64_t value = 0;
    if (!Take(value)) return false;
    number = static_cast<std::uint64_t>(value);
    return true;
  }

  // Parses a number and the space that follows it.
  template <class T>
  bool Take(T& number) {
    const char* const end = line_.data() + line_.size();
    const auto [parsed, error] = std::from_chars(line_.data(), end, number);
    if (error != std::errc()) return false;
    line_.remove_prefix(static_cast<std::size_t>(parsed - line_.data()));
    if (line_.empty()) return true;
    if (line_[0] != ' ' || line_.size() == 1) return false;
    line_.remove_prefix(1);
    return true;
  }

  BuildRecordStore& store_;
  std::string_view line_;
  Number application_ = 0;
  bool hasApplication_ = false;
  BuildRecord record_;
  bool hasRecord_ = false;
};

// Writes records, each preceded by the strings and versions that it uses first.
class BuildRecordStore::Writer {
 public:
  explicit Writer(const BuildRecordStore& source)
      : store_(source),
        texts_(source.texts_.size(), kNoVersion),
        versions_(source.versions_.size(), kNoVersion),
        folderSets_(source.folderSets_.size(), kNoVersion) {
    folderSets_[0] = 0;
  }

  void Write(const BuildRecord& original) {
    BuildRecord record = original;
    record.application = TextNumber(original.application);
    record.infos = TextNumber(original.infos);
    record.date = TextNumber(original.date);
    record.search = TextNumber(original.search);
    record.output = VersionNumber(original.output);
    record.folders = FolderSetNumber(original.folders);
    for (Number& input : record.inputs) input = VersionNumber(input);
    for (Number& text : record.passedOver) text = TextNumber(text);
    for (Number& version : record.byProducts) version = VersionNumber(version);
    AppendApplication(body_, record.application, application_);
    AppendRecord(body_, record);
  }

  std::string Take() { return std::move(body_); }

 private:
  Number TextNumber(Number text) {
    if (texts_[text] == kNoVersion) {
      texts_[text] = usedTexts_++;
      AppendText(body_, store_.texts_[text]);
    }
    return texts_[text];
  }

  Number VersionNumber(Number version) {
    if (versions_[version] == kNoVersion) {
      const Number path = TextNumber(store_.versions_[version].path);
      versions_[version] = usedVersions_++;
      AppendVersion(body_, store_.versions_[version], path);
    }
    return versions_[version];
  }

  Number FolderSetNumber(Number set) {
    if (folderSets_[set] == kNoVersion) {
      std::vector<Number> folders = store_.folderSets_[set];
      for (Number& folder : folders) folder = VersionNumber(folder);
      folderSets_[set] = usedFolderSets_++;
      AppendNumbers(body_, 'G', folders);
    }
    return folderSets_[set];
  }

  const BuildRecordStore& store_;
  std::vector<Number> texts_, versions_, folderSets_;
  Number usedTexts_ = 0, usedVersions_ = 0, usedFolderSets_ = 1;
  Number application_ = kNoVersion;
  std::string body_;
};

StateVerdict BuildRecordStore::Load(std::string_view bytes, std::string_view projectFileName) {
  Clear();
  StateReader blocks(bytes, projectFileName);
  if (blocks.GetVerdict() != StateVerdict::Good) return blocks.GetVerdict();
  journalLength_ = blocks.GetLength();
  chain_ = blocks.GetChain();
  constexpr std::size_t kUsualRecordLength = 512;
  index_.reserve(bytes.size() / kUsualRecordLength);
  records_.reserve(bytes.size() / kUsualRecordLength);
  Reader reader(*this);
  for (std::string_view body; blocks.Next(body);) {
    if (!reader.Read(body)) {
      // The block is intact but not in this format, so nothing in the file can be trusted.
      Clear();
      return StateVerdict::Damaged;
    }
    journalLength_ = blocks.GetLength();
    chain_ = blocks.GetChain();
  }
  writtenTexts_ = texts_.size();
  writtenVersions_ = versions_.size();
  writtenFolderSets_ = folderSets_.size();
  return StateVerdict::Good;
}

std::string BuildRecordStore::Save(std::string_view projectFileName) const {
  Writer writer(*this);
  std::vector<std::size_t> live;
  live.reserve(index_.size());
  for (const auto& [key, record] : index_) live.push_back(record);
  std::sort(live.begin(), live.end());  // makes the file independent of hashing order
  for (const std::size_t record : live) writer.Write(records_[record]);
  std::string bytes = StateHead(projectFileName);
  std::uint64_t chain = StateChecksum(bytes);
  return bytes + StateBlock(writer.Take(), chain);
}

std::string BuildRecordStore::RestartJournal(std::string_view projectFileName) {
  std::string head = StateHead(projectFileName);
  chain_ = StateChecksum(head);
  journalLength_ = head.size();
  writtenTexts_ = writtenVersions_ = writtenRecords_ = writtenNumbers_ = 0;
  writtenFolderSets_ = 1;
  news_.clear();
  dropped_.clear();
  renewed_.clear();
  for (const auto& [key, record] : index_) news_.push_back(record);
  return head + TakeNews();
}

std::string BuildRecordStore::TakeNews() {
  std::string body;
  for (; writtenTexts_ < texts_.size(); ++writtenTexts_) AppendText(body, texts_[writtenTexts_]);
  for (; writtenVersions_ < versions_.size(); ++writtenVersions_) {
    const FileVersion& version = versions_[writtenVersions_];
    AppendVersion(body, version, version.path);
  }
  for (; writtenFolderSets_ < folderSets_.size(); ++writtenFolderSets_) {
    AppendNumbers(body, 'G', folderSets_[writtenFolderSets_]);
  }
  std::sort(news_.begin(), news_.end());
  news_.erase(std::unique(news_.begin(), news_.end()), news_.end());
  Number application = kNoVersion;
  for (const auto& [owner, output] : dropped_) {
    AppendApplication(body, owner, application);
    AppendNumbers(body, 'X', {output});
  }
  for (const std::size_t each : news_) {
    AppendApplication(body, records_[each].application, application);
    AppendRecord(body, records_[each]);
  }
  for (const Number version : renewed_) {
    body.push_back('C');
    AppendNumber(body, version);
    AppendNumber(body, versions_[version].status.changed);
    body.push_back('\n');
  }
  writtenRecords_ += news_.size() + dropped_.size();
  writtenNumbers_ += renewed_.size();
  for (const std::size_t each : news_) writtenNumbers_ += NumbersOf(records_[each]);
  news_.clear();
  dropped_.clear();
  renewed_.clear();
  std::string block = StateBlock(body, chain_);
  journalLength_ += block.size();
  return block;
}

bool BuildRecordStore::IsWasteful() const {
  constexpr std::size_t kAllowance = 256;
  if (writtenRecords_ > 2 * GetCount() + kAllowance) return true;
  if (versions_.size() > 4 * (texts_.size() + kAllowance)) return true;
  // A linked program alone may list as many files as all others together, in each of its records.
  constexpr std::size_t kNumbersAllowance = 64 * kAllowance;
  std::size_t live = 0;
  for (const auto& [key, record] : index_) live += NumbersOf(records_[record]);
  return writtenNumbers_ > 2 * live + kNumbersAllowance;
}

std::size_t BuildRecordStore::NumbersOf(const BuildRecord& record) {
  return record.inputs.size() + record.passedOver.size() + record.byProducts.size();
}

void BuildRecordStore::FillInterned() {
  if (!interned_.empty()) return;
  interned_.reserve(texts_.size() + texts_.size() / 8);
  for (std::size_t i = 0; i < texts_.size(); ++i) interned_.emplace(texts_[i], Number(i));
}

Number BuildRecordStore::Intern(std::string_view text) {
  FillInterned();
  if (const auto known = interned_.find(text); known != interned_.end()) return known->second;
  const auto number = static_cast<Number>(texts_.size());
  AddText(text);
  interned_.emplace(texts_.back(), number);
  return number;
}

void BuildRecordStore::AddText(std::string_view text) {
  auto* const copy = static_cast<char*>(characters_.allocate(text.size(), 1));
  std::copy(text.begin(), text.end(), copy);
  texts_.emplace_back(copy, text.size());
  latest_.push_back(kNoVersion);
}

Number BuildRecordStore::AddVersion(std::string_view path, const FileStatus& status,
                                    std::uint64_t hash) {
  const Number name = Intern(path);
  const Number known = latest_[name];
  if (known != kNoVersion && IsSameVersion(versions_[known].status, status) &&
      versions_[known].status.changed == status.changed &&
      (hash == 0 || versions_[known].hash == hash)) {
    return known;
  }
  latest_[name] = static_cast<Number>(versions_.size());
  versions_.push_back({name, status, hash});
  return latest_[name];
}

Number BuildRecordStore::AddFolders(std::vector<Number> versions) {
  if (versions.empty()) return 0;
  std::sort(versions.begin(), versions.end());
  const auto [place, isNew] =
      folderSetNumbers_.try_emplace(versions, static_cast<Number>(folderSets_.size()));
  if (isNew) folderSets_.push_back(std::move(versions));
  return place->second;
}

void BuildRecordStore::SetFolders(std::size_t record, Number set) {
  if (records_[record].folders == set) return;
  records_[record].folders = set;
  news_.push_back(record);
}

void BuildRecordStore::RenewChanged(Number version, std::int64_t changed) {
  versions_[version].status.changed = changed;
  if (version < writtenVersions_) renewed_.push_back(version);
}

const FileVersion* BuildRecordStore::FindLatest(std::string_view path) {
  FillInterned();
  const auto known = interned_.find(path);
  if (known == interned_.end() || latest_[known->second] == kNoVersion) return nullptr;
  return &versions_[latest_[known->second]];
}

BuildRecordStore::Key BuildRecordStore::KeyOf(const BuildRecord& record) const {
  return {texts_[record.application], PathOf(record.output)};
}

std::size_t BuildRecordStore::Find(std::string_view application, std::string_view output) const {
  const auto found = index_.find({application, output});
  return found == index_.end() ? kNone : found->second;
}

std::size_t BuildRecordStore::Put(BuildRecord record) {
  news_.push_back(Index(std::move(record)));
  return news_.back();
}

void BuildRecordStore::Adopt(const BuildRecordStore& other) {
  const auto adoptText = [&](Number& text) { text = Intern(other.texts_[text]); };
  const auto adoptVersion = [&](Number& number) {
    const FileVersion& version = other.versions_[number];
    number = AddVersion(other.PathOf(number), version.status, version.hash);
  };
  for (const auto& [key, position] : other.index_) {
    if (Find(key.application, key.output) != kNone) continue;
    BuildRecord record = other.records_[position];
    for (Number* text : {&record.application, &record.infos, &record.date, &record.search}) {
      adoptText(*text);
    }
    for (Number& text : record.passedOver) adoptText(text);
    adoptVersion(record.output);
    for (Number& input : record.inputs) adoptVersion(input);
    for (Number& version : record.byProducts) adoptVersion(version);
    std::vector<Number> folders = other.folderSets_[record.folders];
    for (Number& folder : folders) adoptVersion(folder);
    record.folders = AddFolders(std::move(folders));
    Put(std::move(record));
  }
}

void BuildRecordStore::Drop(std::size_t record) {
  const auto found = index_.find(KeyOf(records_[record]));
  if (found == index_.end() || found->second != record) return;
  index_.erase(found);
  std::erase(news_, record);
  dropped_.emplace_back(records_[record].application, versions_[records_[record].output].path);
}

std::vector<std::size_t> BuildRecordStore::RecordsOf(std::string_view application) const {
  std::vector<std::size_t> found;
  for (const auto& [key, record] : index_) {
    if (key.application == application) found.push_back(record);
  }
  std::sort(found.begin(), found.end());
  return found;
}

void BuildRecordStore::SetSignature(std::size_t record, std::uint64_t signature) {
  if (records_[record].signature == signature) return;
  records_[record].signature = signature;
  news_.push_back(record);
}

// Reuses the position of the record it replaces, because a long session builds outputs many times.
std::size_t BuildRecordStore::Index(BuildRecord record) {
  const auto [place, isNew] = index_.try_emplace(KeyOf(record), records_.size());
  if (isNew) {
    records_.push_back(std::move(record));
  } else {
    records_[place->second] = std::move(record);
  }
  return place->second;
}

void BuildRecordStore::Clear() {
  ++loads_;
  index_.clear();
  records_.clear();
  versions_.clear();
  folderSets_.assign(1, {});
  folderSetNumbers_.clear();
  latest_.clear();
  interned_.clear();
  texts_.clear();
  characters_.release();
  news_.clear();
  dropped_.clear();
  renewed_.clear();
  writtenTexts_ = writtenVersions_ = writtenRecords_ = writtenNumbers_ = 0;
  writtenFolderSets_ = 1;
  chain_ = 0;
  journalLength_ = 0;
}

}  // namespace tarn
