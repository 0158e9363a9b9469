#include <filesystem>
#include <string>
#include <system_error>

#include <quillmate/export/csv.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/inventory/report.h>

#include "inventory_command.h"
#include "json.h"
#include "messages.h"
#include "output.h"
#include "read_files.h"

namespace quillmate::cli {
namespace {

using inventory::Cell;
using inventory::Inventory;

constexpr std::size_t kPiece = std::size_t{1} << 16U;

void WritePieces(Output& output, std::string& text, bool last = false) {
  if (text.size() < kPiece && !last) return;
  output.Write(text);
  text.clear();
}

void WriteCsv(Inventory& stock, std::size_t table, std::int64_t since, Output& output) {
  std::string csv(output::kCsvStart);
  output::CsvRow head(csv);
  for (const std::string& each : stock.TableAt(table, since).heads) head.Text(each);
  head.End();
  stock.ForEachRow(table, since, [&](std::span<const Cell> cells) {
    output::CsvRow row(csv);
    for (const Cell& cell : cells) cell.isNumber ? row.Number(cell.number) : row.Text(cell.text);
    row.End();
    WritePieces(output, csv);
  });
  WritePieces(output, csv, true);
}

/// A folder that is there, or a name that ends like one.
bool IsFolder(const std::string& target) {
  std::error_code error;
  return target.ends_with('/') || target.ends_with(static_cast<char>(std::filesystem::path::preferred_separator)) ||
         std::filesystem::is_directory(files::PathFromText(target), error);
}

/// Every table in a file of its own, by its key.
void WriteCsvFolder(Inventory& stock, std::int64_t since, const std::string& folder) {
  const std::filesystem::path path = files::PathFromText(folder);
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) throw CommandFailure(folder + ": Ordner kann nicht angelegt werden: " + files::ReasonText(error));
  for (std::size_t table = 0; table < Inventory::TableCount(since); ++table) {
    const std::string name = std::string(stock.TableAt(table, since).key) + ".csv";
    Output output(files::PathText(path / name));
    WriteCsv(stock, table, since, output);
    output.Finish();
  }
}

void AppendLines(std::string& json, std::string_view key, const std::vector<inventory::Overview::Line>& lines) {
  json.append(",\n\"").append(key).append("\":");
  JsonLines rows(json);
  for (const inventory::Overview::Line& line : lines) {
    rows.Next();
    json += "{\"title\":";
    AppendJsonUtf8(json, line.title);
    if (!line.id.empty()) {
      json += ",\"id\":";
      AppendJsonUtf8(json, line.id);
    }
    json.append(",\"files\":").append(std::to_string(line.files));
    json.append(",\"count\":").append(std::to_string(line.count)).append("}");
  }
  rows.End();
}

std::string OverviewJson(const inventory::Overview& overview) {
  std::string json =
      "\"total\":{\"files\":" + std::to_string(overview.files) + ",\"contents\":" + std::to_string(overview.contents) +
      ",\"modules\":" + std::to_string(overview.modules) + ",\"routines\":" + std::to_string(overview.routines) +
      ",\"code_lines\":" + std::to_string(overview.codeLines) + "}";
  AppendLines(json, "states", overview.states);
  AppendLines(json, "questions", overview.questions);
  AppendLines(json, "formats", overview.formats);
  AppendLines(json, "checks", overview.checks);
  AppendLines(json, "authors", overview.authors);
  return json;
}

void WriteJson(Inventory& stock, std::int64_t since, Output& output) {
  std::string json = "{";
  json += since == 0 ? OverviewJson(stock.Summarize()) : "\"since\":" + std::to_string(since);
  for (std::size_t number = 0; number < Inventory::TableCount(since); ++number) {
    const inventory::ReportTable table = stock.TableAt(number, since);
    json.append(",\n\"").append(table.key).append("\":");
    JsonLines rows(json);
    stock.ForEachRow(number, since, [&](std::span<const Cell> cells) {
      rows.Next();
      for (std::size_t i = 0; i < cells.size(); ++i) {
        json.append(i == 0 ? "{\"" : ",\"").append(table.keys[i]).append("\":");
        if (cells[i].isNumber) {
          json += std::to_string(cells[i].number);
        } else {
          cells[i].text.empty() ? void(json += "null") : AppendJsonUtf8(json, cells[i].text);
        }
      }
      json += '}';
      WritePieces(output, json);
    });
    rows.End();
  }
  json += "}\n";
  WritePieces(output, json, true);
}

void CheckRun(Inventory& stock, std::int64_t since) {
  if (since == 0) return;
  std::string known;
  for (const inventory::RunLine& run : stock.Runs()) {
    if (run.number == since) return;
    known.append(known.empty() ? "" : ", ").append(std::to_string(run.number)).append(" (").append(run.began) += ')';
  }
  throw CommandFailure("Einen Lauf " + std::to_string(since) + " gibt es nicht; Läufe: " + known);
}

}  // namespace

void RunInventoryReport(const Invocation& invocation) {
  if (invocation.inputs.size() != 2) throw UsageError("report nimmt einen Bestand");
  if (invocation.json && invocation.csv) throw UsageError("--json und --csv schließen sich aus");
  NoteRead(files::PathFromText(invocation.inputs[1]));
  Inventory stock(files::PathFromText(invocation.inputs[1]));
  const std::int64_t since = invocation.since;
  CheckRun(stock, since);
  if (invocation.xlsxFile) {
    const std::filesystem::path workbook = files::PathFromText(*invocation.xlsxFile);
    CheckNotRead(*invocation.xlsxFile, {workbook});
    inventory::WriteReportWorkbook(stock, since, workbook);
  }
  if (invocation.htmlFile) {
    Output page(invocation.htmlFile);
    inventory::WriteReportPage(stock, since, [&](std::string_view html) { page.Write(html); });
    page.Finish();
  }
  const bool form = invocation.json || invocation.csv;
  // A report in a file needs nothing beside it.
  if ((invocation.xlsxFile || invocation.htmlFile) && !form && !invocation.output) return;
  if (invocation.csv && invocation.output && *invocation.output != "-" && IsFolder(*invocation.output)) {
    return WriteCsvFolder(stock, since, *invocation.output);
  }
  Output output(invocation.output);
  if (invocation.json) {
    WriteJson(stock, since, output);
  } else if (invocation.csv) {
    WriteCsv(stock, 0, since, output);
  } else {
    output.Write(inventory::ReportText(stock, since));
  }
  output.Finish();
}

}  // namespace quillmate::cli
