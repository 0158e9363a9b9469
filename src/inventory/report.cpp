#include <map>

#include <quillmate/export/spreadsheet.h>
#include <quillmate/inventory/report.h>

namespace quillmate::inventory {
namespace {

void AddLines(output::Spreadsheet& book, std::string_view section, const std::vector<Overview::Line>& lines) {
  for (const Overview::Line& line : lines) {
    book.Text(section).Text(line.title).Number(line.files).Number(line.count).EndRow();
  }
}

void AddOverview(output::Spreadsheet& book, const Overview& overview) {
  book.AddSheet("Übersicht", {"Abschnitt", "Was", "Dateien", "Anzahl"});
  book.Text("Gesamt").Text("Dateien").Number(overview.files).Empty().EndRow();
  book.Text("Gesamt").Text("Verschiedene Inhalte mit Makros").Empty().Number(overview.contents).EndRow();
  book.Text("Gesamt").Text("Module").Empty().Number(overview.modules).EndRow();
  book.Text("Gesamt").Text("Routinen").Empty().Number(overview.routines).EndRow();
  book.Text("Gesamt").Text("Codezeilen").Empty().Number(overview.codeLines).EndRow();
  AddLines(book, "Zustand", overview.states);
  AddLines(book, "Frage", overview.questions);
  AddLines(book, "Art", overview.formats);
  AddLines(book, "Prüfung", overview.checks);
  AddLines(book, "Autor", overview.authors);
}

std::size_t Characters(std::string_view utf8) {
  std::size_t count = 0;
  for (const char c : utf8) count += (static_cast<unsigned char>(c) & 0xC0U) != 0x80U ? 1 : 0;
  return count;
}

/// "  Titel ............ 12   34"
void AppendLine(std::string& text, const Overview::Line& line, std::string_view unit) {
  constexpr std::size_t kTitle = 46;
  constexpr std::size_t kNumber = 10;
  text.append("  ").append(line.title).append(" ");
  const std::size_t width = Characters(line.title) + 1;
  text.append(width < kTitle ? kTitle - width : 0, ' ');
  const std::string files = std::to_string(line.files);
  text.append(files.size() < kNumber ? kNumber - files.size() : 0, ' ').append(files);
  if (line.count > 0) text.append("  (").append(std::to_string(line.count)).append(unit).append(")");
  text += '\n';
}

void AppendSection(std::string& text, std::string_view title, const std::vector<Overview::Line>& lines,
                   std::string_view unit, std::size_t most) {
  if (lines.empty()) return;
  text.append("\n").append(title).append("\n");
  for (std::size_t i = 0; i < lines.size() && i < most; ++i) AppendLine(text, lines[i], unit);
  if (lines.size() > most) text.append("  ... und ").append(std::to_string(lines.size() - most)).append(" weitere\n");
}

std::string ChangesText(Inventory& inventory, std::int64_t since) {
  std::map<std::string, std::int64_t> counts;
  inventory.ForEachRow(0, since, [&](std::span<const Cell> row) { ++counts[std::string(row[0].text)]; });
  std::string text = "Seit Lauf " + std::to_string(since) + ":\n";
  if (counts.empty()) return text + "  keine Änderung\n";
  for (const auto& [change, files] : counts) AppendLine(text, {change, files, 0}, "");
  return text;
}

}  // namespace

void WriteReportWorkbook(Inventory& inventory, std::int64_t since, const std::filesystem::path& target) {
  output::Spreadsheet book;
  if (since == 0) AddOverview(book, inventory.Summarize());
  for (std::size_t table = 0; table < Inventory::TableCount(since); ++table) {
    const ReportTable head = inventory.TableAt(table, since);
    book.AddSheet(head.title, head.heads);
    inventory.ForEachRow(table, since, [&](std::span<const Cell> row) {
      for (const Cell& cell : row) {
        cell.isNumber ? book.Number(cell.number) : cell.text.empty() ? book.Empty() : book.Text(cell.text);
      }
      book.EndRow();
    });
  }
  book.Write(target);
}

std::string ReportText(Inventory& inventory, std::int64_t since) {
  if (since > 0) return ChangesText(inventory, since);
  constexpr std::size_t kMost = 15;
  const Overview overview = inventory.Summarize();
  std::string text = std::to_string(overview.files) + " Dateien; mit Makros " + std::to_string(overview.contents) +
                     " verschiedene Inhalte: " + std::to_string(overview.modules) + " Module, " +
                     std::to_string(overview.routines) + " Routinen, " + std::to_string(overview.codeLines) +
                     " Codezeilen\n";
  AppendSection(text, "Zustand", overview.states, " Codezeilen", kStateCount);
  AppendSection(text, "Fragen", overview.questions, "", kQuestionCount);
  AppendSection(text, "Art", overview.formats, " Codezeilen", kMost);
  AppendSection(text, "Befunde", overview.checks, "", kMost);
  AppendSection(text, "Autoren", overview.authors, " Codezeilen", kMost);
  return text;
}

}  // namespace quillmate::inventory
