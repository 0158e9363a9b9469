#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <map>
#include <numeric>
#include <optional>

#include <quillmate/export/cover_page.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/sha256.h>

#include "site_text_p.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kStyle =
    ":root{color-scheme:light dark}body{font:16px/1.5 \"Segoe UI\",\"DejaVu Sans\",Arial,sans-serif;max-width:70rem;"
    "margin:2rem auto;padding:0 1rem}h1{margin-bottom:0}table{border-collapse:collapse;margin:.5rem 0 "
    "1rem}th,td{border:"
    "1px solid #8886;padding:.2rem .6rem;text-align:left;vertical-align:top}td.n{text-align:right}code{font-size:.8em;"
    "word-break:break-all}";

/// When a file was last changed, in local time; empty for one that can't be looked at.
std::string DateOf(const std::string& file) {
  std::error_code error;
  const auto written = fs::last_write_time(files::PathFromText(file), error);
  if (error) return {};
  const auto since = written - fs::file_time_type::clock::now();
  const auto moment = std::chrono::system_clock::now() + std::chrono::duration_cast<std::chrono::seconds>(since);
  const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
  std::tm local{};
#ifdef _WIN32
  if (localtime_s(&local, &seconds) != 0) return {};
#else
  if (localtime_r(&seconds, &local) == nullptr) return {};
#endif
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%d.%m.%Y %H:%M", &local)};
}

class Writer {
 public:
  explicit Writer(const CoverPage& page) : page_(page) {}

  std::string Write() {
    const std::string title = EscapeUtf8(page_.title);
    html_ = "<!DOCTYPE html>\n<html lang=\"de\">\n<head>\n<meta charset=\"utf-8\">\n<title>Übergabe " + title +
            "</title>\n<style>" + std::string(kStyle) + "</style>\n</head>\n<body>\n<h1>" + title +
            "</h1>\n<p>Übergabe vom " + EscapeUtf8(page_.time) + "</p>\n";
    Parts();
    Files();
    ModuleFiles();
    Omissions();
    Counts();
    Findings();
    Notes();
    return html_.append("</body>\n</html>\n");
  }

 private:
  void Head(std::string_view title) { html_.append("<h2>").append(title).append("</h2>\n"); }
  void Table(std::initializer_list<std::string_view> heads) {
    html_ += "<table>\n<tr>";
    for (const std::string_view head : heads) html_.append("<th scope=\"col\">").append(head).append("</th>");
    html_ += "</tr>\n";
  }
  void EndTable() { html_ += "</table>\n"; }
  Writer& Row() {
    html_ += "<tr>";
    return *this;
  }
  Writer& Cell(std::string_view text) {
    html_.append("<td>");
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
      html_.append(EscapeUtf8(text.substr(0, end))).append("<br>");
      text.remove_prefix(end + 1);
    }
    html_.append(EscapeUtf8(text)).append("</td>");
    return *this;
  }
  Writer& Number(std::size_t number) {
    html_.append("<td class=\"n\">").append(GroupedNumber(static_cast<std::int64_t>(number))).append("</td>");
    return *this;
  }
  void EndRow() { html_ += "</tr>\n"; }

  void Parts() {
    if (page_.parts.empty()) return;
    Head("Inhalt");
    html_ += "<ul>\n";
    for (const CoverPart& part : page_.parts) {
      html_ += "<li><a href=\"" + EscapeUtf8(part.file) + "\">" + EscapeUtf8(part.text) + "</a></li>\n";
    }
    html_ += "</ul>\n";
  }

  void Files() {
    Head("Quellen");
    if (page_.facts == nullptr || page_.facts->projects.empty()) {
      html_ += "<p>Woher der Code kommt, ist nicht bekannt: Das Projekt wurde ohne diese Angaben gespeichert.</p>\n";
      return;
    }
    Table({"Projekt", "Datei", "Geändert", "SHA-256"});
    for (const codedb::ProjectFacts& project : page_.facts->projects) {
      Row().Cell(project.name).Cell(project.file.empty() ? "(nie gespeichert)" : project.file);
      Cell(project.file.empty() ? std::string() : DateOf(project.file));
      html_ += "<td><code>" + EscapeUtf8(project.hash) + "</code></td>";
      EndRow();
    }
    EndTable();
  }

  /// Where each module is a file of its own: what they are now.
  void ModuleFiles() {
    if (page_.facts == nullptr) return;
    const auto hasFile = [](const codedb::ModuleFacts& module) { return !module.file.empty(); };
    if (std::ranges::none_of(page_.facts->modules, hasFile)) return;
    Head("Moduldateien");
    Table({"Modul", "Datei", "Geändert", "SHA-256"});
    for (const codedb::ModuleFacts& module : page_.facts->modules) {
      if (!hasFile(module)) continue;
      Row().Cell(module.name).Cell(module.file).Cell(DateOf(module.file));
      html_ += "<td><code>" + files::FileHash(files::PathFromText(module.file)) + "</code></td>";
      EndRow();
    }
    EndTable();
  }

  void Omissions() {
    if (page_.facts == nullptr || page_.facts->omissions.empty()) return;
    Head("Nicht gelesen");
    Table({"Datei", "Projekt", "Modul", "Grund"});
    for (const codedb::OmissionFact& fact : page_.facts->omissions) {
      Row().Cell(fact.file).Cell(fact.project).Cell(fact.module).Cell(fact.reason).EndRow();
    }
    EndTable();
  }

  void Counts() {
    Head("Umfang");
    checks::ModuleNumbers sum;
    for (const checks::ModuleNumbers& numbers : page_.metrics.modules) {
      sum.lines += numbers.lines;
      sum.code += numbers.code;
      sum.comment += numbers.comment;
      sum.blank += numbers.blank;
    }
    Table({"Was", "Anzahl"});
    const std::pair<const char*, std::size_t> kRows[] = {{"Projekte", page_.index.Projects().size()},
                                                         {"Module", page_.index.Modules().size()},
                                                         {"Routinen", page_.metrics.routines.size()},
                                                         {"Zeilen", sum.lines},
                                                         {"davon Code", sum.code},
                                                         {"davon Kommentar", sum.comment},
                                                         {"davon leer", sum.blank}};
    for (const auto& [name, count] : kRows) Row().Cell(name).Number(count).EndRow();
    EndTable();
  }

  void Findings() {
    Head("Befunde");
    if (page_.findings.empty()) {
      html_ += "<p>Es gibt keine Befunde.</p>\n";
      return;
    }
    std::map<std::pair<checks::Severity, checks::CheckId>, std::size_t> counts;
    for (const checks::Finding& finding : page_.findings) {
      ++counts[{checks::InfoOf(finding.check).severity, finding.check}];
    }
    Table({"Stufe", "Befund", "Anzahl"});
    for (const auto& [key, count] : counts) {
      Row().Cell(checks::Word(key.first)).Cell(checks::InfoOf(key.second).title).Number(count).EndRow();
    }
    EndTable();
  }

  void Notes() {
    if (page_.notes.empty()) return;
    Head("Notizen");
    Table({"Stelle", "Notiz"});
    for (const CoverNote& note : page_.notes) Row().Cell(note.place).Cell(note.text).EndRow();
    EndTable();
  }

  const CoverPage& page_;
  std::string html_;
};

}  // namespace

std::string CoverHtml(const CoverPage& page) { return Writer(page).Write(); }

}  // namespace quillmate::output
