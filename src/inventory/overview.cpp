#include <algorithm>
#include <array>

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

void TakeLines(Database& database, const char* sql, std::vector<Overview::Line>& lines) {
  Statement ask(database, sql);
  while (ask.Next()) {
    Overview::Line& line = lines.emplace_back();
    line.title = ask.Text();
    line.files = ask.Number();
    line.count = ask.Number();
  }
}

/// Walks the counted findings and the files of each content side by side, both by the content's number: one look at
/// each row answers for all checks.
void CountChecks(Database& database, Overview& overview, std::array<std::int64_t, kQuestionCount>& questions) {
  struct Check {
    std::string id, title;
    std::uint32_t questions = 0;
    std::int64_t files = 0, count = 0;
  };
  std::vector<Check> checks;
  Statement known(database, "SELECT kennung, gruppe, titel FROM pruefung ORDER BY kennung");
  while (known.Next()) {
    Check& check = checks.emplace_back();
    check.id = known.Text();
    const std::string group = known.Text();
    check.title = known.Text();
    check.questions = QuestionsOf(group, check.id);
  }
  Statement files(
      database,
      "SELECT inhalt, count(*) FROM datei WHERE inhalt IS NOT NULL AND verschwunden IS NULL GROUP BY inhalt "
      "ORDER BY inhalt");
  Statement counts(database, "SELECT inhalt, pruefung, anzahl FROM befundzahl ORDER BY inhalt, folge");
  bool more = counts.Next();
  std::int64_t at = more ? counts.Number() : 0;
  while (more && files.Next()) {
    const std::int64_t content = files.Number();
    const std::int64_t copies = files.Number();
    std::uint32_t met = 0;
    while (more && at <= content) {
      const std::string_view id = counts.TextView();
      const auto check = std::lower_bound(checks.begin(), checks.end(), id,
                                          [](const Check& each, std::string_view wanted) { return each.id < wanted; });
      if (at == content && check != checks.end() && check->id == id) {
        check->files += copies;
        check->count += copies * counts.Number();
        met |= check->questions;
      }
      more = counts.Next();
      if (more) at = counts.Number();
    }
    for (std::size_t i = 0; i < kQuestionCount; ++i) {
      if ((met >> i & 1U) != 0) questions[i] += copies;
    }
  }
  for (Check& check : checks) {
    if (check.files > 0) overview.checks.push_back({check.title, check.files, check.count, check.id});
  }
  std::ranges::stable_sort(overview.checks, [](const auto& a, const auto& b) { return a.count > b.count; });
}

}  // namespace

Overview Inventory::Summarize() {
  Database& database = state_->database;
  Overview overview;
  TakeLines(database,
            "SELECT d.zustand, count(*), total(i.codezeilen) FROM datei d LEFT JOIN inhalt i ON i.nr = d.inhalt WHERE "
            "d.verschwunden IS NULL AND d.zustand <> 'fremd' GROUP BY d.zustand",
            overview.states);
  std::ranges::sort(overview.states, {}, [](const Overview::Line& line) {
    return StateFromWord(line.title).value_or(inventory::State::kForeign);
  });
  std::array<std::int64_t, kQuestionCount> questions{};
  for (const Overview::Line& line : overview.states) {
    overview.files += line.files;
    const auto state = StateFromWord(line.title);
    if (state == inventory::State::kMacros) questions[static_cast<std::size_t>(Question::kMacros)] = line.files;
    if (state && IsUnread(*state)) questions[static_cast<std::size_t>(Question::kUnread)] += line.files;
  }
  Statement totals(database,
                   "SELECT count(*), total(module), total(routinen), total(codezeilen) FROM inhalt WHERE "
                   "zustand = 'makros'");
  if (totals.Next()) {
    overview.contents = totals.Number();
    overview.modules = totals.Number();
    overview.routines = totals.Number();
    overview.codeLines = totals.Number();
  }
  CountChecks(database, overview, questions);
  questions[static_cast<std::size_t>(Question::kCopies)] = AskNumber(database, "SELECT count(*) FROM v_kopie");
  questions[static_cast<std::size_t>(Question::kOnlyCopies)] = AskNumber(database, "SELECT count(*) FROM v_nur_kopien");
  questions[static_cast<std::size_t>(Question::kDeadLinks)] =
      AskNumber(database, "SELECT count(DISTINCT nr) FROM v_tote_verknuepfung");
  questions[static_cast<std::size_t>(Question::kBroken)] =
      AskNumber(database, "SELECT count(DISTINCT nr) FROM v_kaputter_verweis");
  questions[static_cast<std::size_t>(Question::kSigned)] = AskNumber(
      database,
      "SELECT count(*) FROM datei d JOIN inhalt i ON i.nr = d.inhalt WHERE i.signiert <> 0 AND d.verschwunden IS NULL");
  for (std::size_t i = 1; i < kQuestionCount; ++i) {
    overview.questions.push_back({std::string(TitleOf(static_cast<Question>(i))), questions[i], 0});
  }
  TakeLines(database,
            "SELECT i.format, count(*), total(i.codezeilen) FROM datei d JOIN inhalt i ON i.nr = d.inhalt WHERE "
            "d.verschwunden IS NULL AND d.zustand = 'makros' GROUP BY i.format ORDER BY 2 DESC, 1",
            overview.formats);
  TakeLines(database,
            "SELECT CASE i.autor WHEN '' THEN '(nicht genannt)' ELSE i.autor END, count(*), total(i.codezeilen) FROM "
            "datei d JOIN inhalt i ON i.nr = d.inhalt WHERE d.verschwunden IS NULL AND d.zustand = 'makros' GROUP BY "
            "i.autor ORDER BY 2 DESC, 1 LIMIT 50",
            overview.authors);
  return overview;
}

}  // namespace quillmate::inventory
