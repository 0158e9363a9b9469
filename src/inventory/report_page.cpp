#include <algorithm>

#include <quillmate/inventory/report.h>

namespace quillmate::inventory {
namespace {

constexpr std::int64_t kMostRows = 5000;

constexpr std::string_view kHead = R"html(<!DOCTYPE html>
<html lang="de"><head><meta charset="utf-8"><title>Bestand</title>
<meta name="viewport" content="width=device-width, initial-scale=1">
<style>
:root { color-scheme: light dark; --bar: #5b8def; --line: #8884; }
body { font: 15px/1.45 system-ui, sans-serif; margin: 2rem auto; max-width: 80rem; padding: 0 1rem; }
h1 { font-size: 1.5rem; } h2 { font-size: 1.15rem; margin-top: 2rem; }
table { border-collapse: collapse; width: 100%; font-size: .9rem; }
th, td { text-align: left; padding: .2rem .6rem; border-bottom: 1px solid var(--line); vertical-align: top;
  overflow-wrap: anywhere; }
th { position: sticky; top: 0; background: Canvas; }
th button { all: unset; cursor: pointer; font-weight: 600; } th button:focus-visible { outline: 2px solid var(--bar); }
td.z { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
.b { display: block; height: .8rem; background: var(--bar); border-radius: 2px; min-width: 1px; }
.bars td:last-child { width: 40%; } .wide { overflow-x: auto; max-height: 40rem; overflow-y: auto; }
p.n { color: GrayText; }
</style></head><body>
)html";

constexpr std::string_view kScript = R"html(<script>
for (const table of document.querySelectorAll('table.s')) {
  table.querySelectorAll('th button').forEach((button, column) => button.addEventListener('click', () => {
    const head = button.parentElement, down = head.getAttribute('aria-sort') === 'ascending';
    table.querySelectorAll('th').forEach(each => each.removeAttribute('aria-sort'));
    head.setAttribute('aria-sort', down ? 'descending' : 'ascending');
    const value = row => row.cells[column].textContent, body = table.tBodies[0];
    const numbers = [...body.rows].every(row => row.cells[column].classList.contains('z') || value(row) === '');
    const order = new Intl.Collator('de', { numeric: true }).compare;
    const rows = [...body.rows].sort((a, b) =>
      numbers ? Number(value(a)) - Number(value(b)) : order(value(a), value(b)));
    body.append(...(down ? rows.reverse() : rows));
  }));
}
</script></body></html>
)html";

void AppendText(std::string& html, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '&':
        html += "&amp;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        // Other characters of control have no place in a page.
        html += static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t' ? ' ' : c;
    }
  }
}

void AppendNumber(std::string& html, std::int64_t number) {
  html.append("<td class=\"z\">").append(std::to_string(number)).append("</td>");
}

void AppendBars(std::string& html, std::string_view title, const std::vector<Overview::Line>& lines) {
  if (lines.empty()) return;
  const auto largest = std::ranges::max(lines, {}, &Overview::Line::files).files;
  html.append("<h2>").append(title).append("</h2>\n<table class=\"bars\"><tbody>\n");
  for (const Overview::Line& line : lines) {
    html += "<tr><td>";
    AppendText(html, line.title);
    html += "</td>";
    AppendNumber(html, line.files);
    const std::int64_t share = largest == 0 ? 0 : line.files * 100 / largest;
    html.append("<td><span class=\"b\" style=\"width:").append(std::to_string(share)).append("%\"></span></td></tr>\n");
  }
  html += "</tbody></table>\n";
}

std::string OverviewPart(const Overview& overview) {
  std::string html =
      "<h1>Bestand</h1>\n<p>" + std::to_string(overview.files) + " Dateien, " + std::to_string(overview.contents) +
      " verschiedene Inhalte mit Makros: " + std::to_string(overview.modules) + " Module, " +
      std::to_string(overview.routines) + " Routinen, " + std::to_string(overview.codeLines) + " Codezeilen.</p>\n";
  AppendBars(html, "Fragen", overview.questions);
  AppendBars(html, "Zustand", overview.states);
  AppendBars(html, "Art", overview.formats);
  AppendBars(html, "Befunde, nach Dateien", overview.checks);
  AppendBars(html, "Autoren", overview.authors);
  return html;
}

void WriteTable(Inventory& inventory, std::size_t number, std::int64_t since,
                const std::function<void(std::string_view)>& write) {
  const ReportTable table = inventory.TableAt(number, since);
  std::string html = "<h2>" + std::string(table.title) + "</h2>\n<div class=\"wide\"><table class=\"s\"><thead><tr>";
  for (const std::string& head : table.heads) {
    html += "<th><button type=\"button\">";
    AppendText(html, head);
    html += "</button></th>";
  }
  html += "</tr></thead><tbody>\n";
  std::int64_t rows = 0;
  inventory.ForEachRow(number, since, [&](std::span<const Cell> row) {
    if (++rows > kMostRows) return;
    html += "<tr>";
    for (const Cell& cell : row) {
      if (cell.isNumber) {
        AppendNumber(html, cell.number);
        continue;
      }
      html += "<td>";
      AppendText(html, cell.text);
      html += "</td>";
    }
    html += "</tr>\n";
    constexpr std::size_t kPiece = std::size_t{1} << 16U;
    if (html.size() > kPiece) {
      write(html);
      html.clear();
    }
  });
  html += "</tbody></table></div>\n<p class=\"n\">";
  html += rows > kMostRows ? "Die ersten " + std::to_string(kMostRows) + " von " + std::to_string(rows) +
                                 " Zeilen; alle stehen in der Arbeitsmappe."
                           : std::to_string(rows) + (rows == 1 ? " Zeile" : " Zeilen");
  write(html + "</p>\n");
}

}  // namespace

void WriteReportPage(Inventory& inventory, std::int64_t since, const std::function<void(std::string_view)>& write) {
  write(kHead);
  write(since == 0 ? OverviewPart(inventory.Summarize())
                   : "<h1>Bestand: Änderungen seit Lauf " + std::to_string(since) + "</h1>\n");
  for (std::size_t table = 0; table < Inventory::TableCount(since); ++table) WriteTable(inventory, table, since, write);
  write(kScript);
}

}  // namespace quillmate::inventory
