// Random patterns on random subjects, compared with a reference library. Intentional differences
// between the two languages are listed in the tables below, with the reason.
#define PCRE2_CODE_UNIT_WIDTH 8
#include <gtest/gtest.h>
#include <pcre2.h>

#include <map>
#include <memory>
#include <random>
#include <string>

#include "patterns/CompiledPattern.h"
#include "patterns/PikeVm.h"

namespace tarn {
namespace {

constexpr int kPairs = 200'000;
constexpr int kSubjectsOfAPattern = 10;

struct Atom {
  const char* own;
  const char* peer;  // nullptr: same as `own`
  const char* reason;
};

constexpr Atom kAtoms[] = {
    {"a", nullptr, ""},
    {"b", nullptr, ""},
    {"ab", nullptr, ""},
    {"bca", nullptr, ""},
    {".", nullptr, ""},
    {"^", "(?:^)", "a bound may be optional"},
    {"$", "(?:$)", "a bound may be optional"},
    {"\n", nullptr, ""},
    {"[ab]", nullptr, ""},
    {"[^a]", nullptr, ""},
    {"[b-d]", nullptr, ""},
    {"[]a]", nullptr, ""},
    {"[^-a]", nullptr, ""},
    {"\\*", nullptr, ""},
    {"a\\.", nullptr, ""},
    {"\\\\", nullptr, ""},
    {"\\d", "d", "only \\< and \\> are special"},
    {"a{2}", "a\\{2\\}", "no counted repeats"},
    {"[a\\]", "[a\\\\]", "a backslash in a set is a member"},
    {"[a-b-d]", "[a-d]", "a range's upper bound can be the lower one of the next"},
    {"[[:a]", "[\\[:a]", "no names of classes"},
    {"[\xFE-\x02]", "[\\xFE\\xFF\\x01\\x02]", "bounds are signed, and zero is in no subject"},
    {"\\<", "(?:\\b(?=\\w))", "bounds of words"},
    {"\\>", "(?:(?!\\w))", "bounds of words; also where no word ends"},
};

// Errors that only this engine reports.
const std::map<std::string, const char*> kRefusals = {
    {PatternErrorText(PatternError::EmptyOperand), "a repeat has to take something each time"},
    {PatternErrorText(PatternError::NestedRepeat), "neither lazy nor possessive repeats"},
    {PatternErrorText(PatternError::TooManyGroups), "groups have one digit"},
};

// A pattern in both languages.
struct Pattern {
  std::string own;
  std::string peer;

  void Add(const std::string& text) {
    own += text;
    peer += text;
  }
};

class Generator {
 public:
  Pattern MakePattern() {
    Pattern pattern;
    AddAlternatives(pattern, 0);
    // Occasionally adds a character that may be misplaced.
    if (Below(16) == 0) pattern.Add(std::string(1, "()*+?[\\|"[Below(8)]));
    return pattern;
  }

  std::string MakeSubject() {
    static constexpr char kBytes[] = "aaaaabbbbcccdd *.\n\\-]{2}_\x01\xFE";
    std::string subject;
    for (std::size_t i = Below(14); i > 0; --i) subject += kBytes[Below(sizeof kBytes - 1)];
    return subject;
  }

 private:
  std::size_t Below(std::size_t count) { return random_() % count; }

  void AddAlternatives(Pattern& pattern, int depth) {
    do {
      for (std::size_t pieces = Below(8) == 0 ? 0 : 1 + Below(4); pieces > 0; --pieces) {
        AddPiece(pattern, depth);
      }
    } while (Below(3) == 0 && (pattern.Add("|"), true));
  }

  void AddPiece(Pattern& pattern, int depth) {
    if (depth < 3 && Below(3) == 0) {
      pattern.Add("(");
      AddAlternatives(pattern, depth + 1);
      pattern.Add(")");
    } else {
      // Prefers the simple atoms.
      const Atom& atom = kAtoms[Below(2) == 0 ? Below(5) : Below(std::size(kAtoms))];
      pattern.own += atom.own;
      pattern.peer += atom.peer ? atom.peer : atom.own;
    }
    if (Below(3) == 0) pattern.Add(std::string(1, "*+?"[Below(3)]));
  }

  std::minstd_rand random_{20};
};

class Peer {
 public:
  explicit Peer(const std::string& pattern) {
    int error = 0;
    std::size_t place = 0;
    code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
                              PCRE2_DOTALL | PCRE2_DOLLAR_ENDONLY, &error, &place, nullptr));
    if (code_) data_.reset(pcre2_match_data_create_from_pattern(code_.get(), nullptr));
  }
  bool IsCompiled() const { return code_ != nullptr; }

  std::string Match(const std::string& subject) {
    const int count = pcre2_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(subject.data()),
                                  subject.size(), 0, 0, data_.get(), nullptr);
    if (count == PCRE2_ERROR_NOMATCH) return "none";
    if (count < 0) return "gave up";
    const std::size_t* places = pcre2_get_ovector_pointer(data_.get());
    std::string groups;
    for (int i = 0; i < count; ++i) {
      if (places[2 * i] == PCRE2_UNSET) continue;
      groups += std::to_string(i) + ":" + std::to_string(places[2 * i]) + "-" +
                std::to_string(places[2 * i + 1]) + " ";
    }
    return groups;
  }

 private:
  struct Free {
    void operator()(pcre2_code* freed) const { pcre2_code_free(freed); }
    void operator()(pcre2_match_data* freed) const { pcre2_match_data_free(freed); }
  };
  std::unique_ptr<pcre2_code, Free> code_;
  std::unique_ptr<pcre2_match_data, Free> data_;
};

std::string Describe(const CCompiledPattern& pattern, const char* subject) {
  std::string groups;
  for (std::size_t i = 0; i < kPatternGroups; ++i) {
    if (!pattern.groupStart[i]) continue;
    groups += std::to_string(i) + ":" + std::to_string(pattern.groupStart[i] - subject) + "-" +
              std::to_string(pattern.groupEnd[i] - subject) + " ";
  }
  return groups;
}

std::string Match(CCompiledPattern& pattern, const std::string& subject) {
  if (!pattern.regexec(subject.c_str())) return "none";
  return Describe(pattern, subject.c_str());
}

// Like Match(), but uses the Pike VM, which normally runs only for expensive matches.
std::string MatchAllAtOnce(CCompiledPattern& pattern, const std::string& subject) {
  const char* text = subject.c_str();
  PikeVm matcher(*pattern.prepared, pattern.code.get(), text, text + subject.size());
  PatternSlots slots{};
  if (!matcher.Search(text, pattern.anchored, slots)) return "none";
  for (std::size_t i = 0; i < kPatternGroups; ++i) {
    pattern.groupStart[i] = slots[2 * i];
    pattern.groupEnd[i] = slots[2 * i + 1];
  }
  return Describe(pattern, text);
}

TEST(PatternOracle, RandomPatternsMatchAsThePeersDo) {
  Generator generator;
  int matches = 0;
  for (int pairs = 0; pairs < kPairs;) {
    const Pattern text = generator.MakePattern();
    CCompiledPattern pattern;
    Peer peer(text.peer);
    if (!pattern.regcomp(text.own.c_str())) {
      const bool isRefused = kRefusals.contains(pattern.error) || !peer.IsCompiled();
      ASSERT_TRUE(isRefused) << text.own << ": " << pattern.error;
      continue;
    }
    ASSERT_TRUE(peer.IsCompiled()) << text.own << " / " << text.peer;
    for (int i = 0; i < kSubjectsOfAPattern; ++i, ++pairs) {
      const std::string subject = generator.MakeSubject();
      const std::string expected = peer.Match(subject);
      matches += expected != "none";
      ASSERT_EQ(Match(pattern, subject), expected) << text.own << "\non " << subject;
      if (!pattern.prepared) continue;  // the required string never occurred
      ASSERT_EQ(MatchAllAtOnce(pattern, subject), expected) << text.own << "\non " << subject;
    }
  }
  // Otherwise the generator is useless.
  EXPECT_GT(matches, kPairs / 4);
  EXPECT_LT(matches, kPairs * 3 / 4);
}

}  // namespace
}  // namespace tarn
