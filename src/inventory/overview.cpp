#include <algorithm>
#include <array>
#include <functional>
#include <map>

#include "inventory_state_p.h"

namespace quillmate::inventory {
namespace {

/// Which questions a check answers, as bits.
std::uint32_t QuestionsOf(std::string_view group, std::string_view check) {
  const auto bit = [](Question question) { return 1U << static_cast<unsigned>(question); };
  if (group == "64 Bit") return bit(Question::k64Bit);
  if (check == "start-von-selbst") return bit(Question::kAutoRun);
  if (check == "aussen-datenbank") return bit(Question::kDatabase);
  if (check == "aussen-netz" || check == "aussen-mail") return bit(Question::kNetwork);
  if (check == "aussen-registrierung") return bit(Question::kRegistry);
  if (check == "aussen-programm" || check == "aussen-office" || check == "aussen-tasten") {
    return bit(Question::kPrograms);
  }
  return 0;
}

std::int64_t AskNumber(Database& database, const char* sql) {
  Statement ask(database, sql);
  return ask.Next() ? ask.Number() : 0;
}

struct CheckCount {
  std::string id, title;
  /// As bits.
  std::uint32_t questions = 0;
  std::int64_t files = 0, count = 0;
};

/// Two columns of numbers in the order of the first, to be walked beside another such query.
class Walk {
 public:
  Walk(Database& database, const char* sql) : statement_(database, sql) { Go(); }

  /// Goes to the first row that is not before a content; true when it is that content's.
  bool At(std::int64_t content) {
    while (more_ && content_ < content) Go();
    return more_ && content_ == content;
  }
  void Go() {
    more_ = statement_.Next();
    if (more_) content_ = statement_.Number();
  }
  /// The columns after the content, once each.
  Statement& Row() noexcept { return statement_; }

 private:
  Statement statement_;
  bool more_ = false;
  std::int64_t content_ = 0;
};

/// Looks at each content once, beside it at how often it is there and at its counted findings, all in the order of
/// its number.
class Counter {
 public:
  Counter(Database& database, Overview& overview, std::array<std::int64_t, kQuestionCount>& questions)
      : database_(database), overview_(overview), questions_(questions) {}

  void Run() {
    ReadChecks();
    Statement contents(
        database_, "SELECT nr, zustand, codezeilen, module, routinen, signiert, format, autor FROM inhalt ORDER BY nr");
    Walk files(database_,
               "SELECT inhalt, count(*) FROM datei WHERE inhalt IS NOT NULL AND verschwunden IS NULL GROUP BY inhalt "
               "ORDER BY inhalt");
    // Contents with a module that no other one has.
    Walk own(database_,
             "SELECT DISTINCT inhalt FROM (SELECT min(inhalt) AS inhalt, max(inhalt) AS letzter FROM modul WHERE "
             "pruefsumme IS NOT NULL GROUP BY pruefsumme) WHERE inhalt = letzter ORDER BY inhalt");
    Walk findings(database_, "SELECT inhalt, pruefung, anzahl FROM befundzahl ORDER BY inhalt, folge");
    while (contents.Next()) {
      const std::int64_t content = contents.Number();
      if (!files.At(content)) continue;
      const std::int64_t copies = files.Row().Number();
      TakeContent(contents, copies, own.At(content));
      TakeFindings(findings, content, copies);
    }
    TakeFilesWithoutContent();
    Finish();
  }

 private:
  struct Sum {
    std::int64_t files = 0, lines = 0;
  };
  using Sums = std::map<std::string, Sum, std::less<>>;

  static void Add(Sums& sums, std::string_view key, std::int64_t files, std::int64_t lines) {
    auto found = sums.find(key);
    if (found == sums.end()) found = sums.emplace(key, Sum{}).first;
    found->second.files += files;
    found->second.lines += lines;
  }
  std::int64_t& Files(Question question) { return questions_[static_cast<std::size_t>(question)]; }

  void ReadChecks() {
    Statement known(database_, "SELECT kennung, gruppe, titel FROM pruefung ORDER BY kennung");
    while (known.Next()) {
      CheckCount& check = checks_.emplace_back();
      check.id = known.Text();
      const std::string group = known.Text();
      check.title = known.Text();
      check.questions = QuestionsOf(group, check.id);
    }
  }

  void TakeContent(Statement& row, std::int64_t copies, bool isOwn) {
    const std::string_view state = row.TextView();
    const bool macros = state == Word(inventory::State::kMacros);
    const std::int64_t lines = row.Number();
    Add(states_, state, copies, lines * copies);
    const std::int64_t modules = row.Number(), routines = row.Number();
    if (row.Number() != 0) Files(Question::kSigned) += copies;
    if (!macros) return;
    ++overview_.contents;
    overview_.modules += modules;
    overview_.routines += routines;
    overview_.codeLines += lines;
    if (copies > 1) Files(Question::kCopies) += copies;
    if (lines > 0 && !isOwn) Files(Question::kOnlyCopies) += copies;
    Add(formats_, row.TextView(), copies, lines * copies);
    const std::string_view author = row.TextView();
    Add(authors_, author.empty() ? "(nicht genannt)" : author, copies, lines * copies);
  }

  void TakeFindings(Walk& findings, std::int64_t content, std::int64_t copies) {
    std::uint32_t met = 0;
    for (; findings.At(content); findings.Go()) {
      const std::string_view id = findings.Row().TextView();
      const auto check =
          std::lower_bound(checks_.begin(), checks_.end(), id,
                           [](const CheckCount& each, std::string_view wanted) { return each.id < wanted; });
      if (check == checks_.end() || check->id != id) continue;
      check->files += copies;
      check->count += copies * findings.Row().Number();
      met |= check->questions;
    }
    for (std::size_t i = 0; i < kQuestionCount; ++i) {
      if ((met >> i & 1U) != 0) questions_[i] += copies;
    }
  }

  void TakeFilesWithoutContent() {
    Statement ask(database_,
                  "SELECT zustand, count(*) FROM datei WHERE inhalt IS NULL AND verschwunden IS NULL AND zustand <> "
                  "'fremd' GROUP BY zustand");
    while (ask.Next()) {
      const std::string state = ask.Text();
      Add(states_, state, ask.Number(), 0);
    }
  }

  static std::vector<Overview::Line> LinesOf(const Sums& sums) {
    std::vector<Overview::Line> lines;
    for (const auto& [title, sum] : sums) lines.push_back({title, sum.files, sum.lines});
    std::ranges::stable_sort(lines, std::greater(), &Overview::Line::files);
    return lines;
  }

  void Finish() {
    constexpr std::size_t kMostAuthors = 50;
    states_.erase(std::string(Word(inventory::State::kForeign)));
    overview_.states = LinesOf(states_);
    overview_.formats = LinesOf(formats_);
    overview_.authors = LinesOf(authors_);
    if (overview_.authors.size() > kMostAuthors) overview_.authors.resize(kMostAuthors);
    for (const CheckCount& check : checks_) {
      if (check.files > 0) overview_.checks.push_back({check.title, check.files, check.count, check.id});
    }
    std::ranges::stable_sort(overview_.checks, std::greater(), &Overview::Line::count);
  }

  Database& database_;
  Overview& overview_;
  std::array<std::int64_t, kQuestionCount>& questions_;
  std::vector<CheckCount> checks_;
  Sums states_, formats_, authors_;
};

}  // namespace

Overview Inventory::Summarize() {
  Database& database = state_->database;
  Overview overview;
  std::array<std::int64_t, kQuestionCount> questions{};
  Counter(database, overview, questions).Run();
  std::ranges::sort(overview.states, {}, [](const Overview::Line& line) {
    return StateFromWord(line.title).value_or(inventory::State::kForeign);
  });
  for (const Overview::Line& line : overview.states) {
    overview.files += line.files;
    const auto state = StateFromWord(line.title);
    if (state == inventory::State::kMacros) questions[static_cast<std::size_t>(Question::kMacros)] = line.files;
    if (state && IsUnread(*state)) questions[static_cast<std::size_t>(Question::kUnread)] += line.files;
  }
  questions[static_cast<std::size_t>(Question::kDeadLinks)] = AskNumber(
      database, "SELECT count(DISTINCT datei) FROM zieldatei WHERE befund IN ('nicht da', 'nicht im Bestand')");
  questions[static_cast<std::size_t>(Question::kBroken)] =
      AskNumber(database,
                "SELECT count(*) FROM (SELECT datei FROM zieldatei WHERE art IN ('verweis', 'bibliothek') AND befund "
                "IN ('nicht da', 'nicht im Bestand') UNION SELECT d.nr FROM verweis r JOIN datei d ON d.inhalt = "
                "r.inhalt WHERE r.bruch <> '' AND d.verschwunden IS NULL)");
  for (std::size_t i = 1; i < kQuestionCount; ++i) {
    overview.questions.push_back({std::string(TitleOf(static_cast<Question>(i))), questions[i], 0});
  }
  return overview;
}

}  // namespace quillmate::inventory
