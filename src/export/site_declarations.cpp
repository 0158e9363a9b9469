#include <algorithm>
#include <array>
#include <utility>

#include <quillmate/codedb/collation.h>
#include <quillmate/symbols/unused.h>
#include <quillmate/symbols/workers.h>
#include <quillmate/text/windows1252.h>

#include "declaration_text_p.h"
#include "site_declarations_p.h"
#include "site_page_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

using symbols::SymbolId;
using symbols::SymbolKind;
using symbols::Use;

/// More uses of one thing than this are only counted.
constexpr std::size_t kMostUses = 400;
/// A part of a list with more entries is reached by letters too.
constexpr std::size_t kLetters = 60;

struct Section {
  std::string_view file;
  std::string_view title;
};

constexpr Section kSections[] = {
    {"konstanten", "Konstanten"},
    {"aufzaehlungen", "Aufzählungen"},
    {"typen", "Typen"},
    {"variablen", "Variablen der Module"},
    {"ereignisse", "Ereignisse"},
    {"declares", "Declares"},
    {"routinen", "Routinen"},
    {"eigenschaften", "Eigenschaften"},
    {"steuerelemente", "Steuerelemente"},
    {"lokale-variablen", "Lokale Variablen"},
    {"parameter", "Parameter"},
    {"sprungmarken", "Sprungmarken"},
};
constexpr std::uint8_t kNoSection = 0xFF;

/// Number of the section, kNoSection for what is not listed.
std::uint8_t SectionOf(const symbols::ReferenceIndex& known, const symbols::Symbol& symbol) {
  switch (symbol.kind) {
    case SymbolKind::kConstant:
      return 0;
    case SymbolKind::kEnum:
    case SymbolKind::kEnumMember:
      return 1;
    case SymbolKind::kType:
    case SymbolKind::kTypeMember:
      return 2;
    case SymbolKind::kVariable:
      return symbol.visibility == symbols::Visibility::kLocal ? 9 : 3;
    case SymbolKind::kEvent:
      return 4;
    case SymbolKind::kDeclare:
      return 5;
    case SymbolKind::kSub:
    case SymbolKind::kFunction:
      return 6;
    case SymbolKind::kPropertyGet:
    case SymbolKind::kPropertyLet:
    case SymbolKind::kPropertySet:
      return 7;
    case SymbolKind::kControl:
      return 8;
    case SymbolKind::kParameter:
      return symbol.parent != symbols::kNone && symbols::IsRoutine(known.SymbolAt(symbol.parent).kind) ? 10
                                                                                                       : kNoSection;
    case SymbolKind::kLabel:
      return (symbol.flags & symbols::symbol_flag::kLineNumber) != 0 ? kNoSection : 11;
    default:
      return kNoSection;
  }
}

char LetterOf(std::string_view name) {
  const std::string ascii = AsciiName(text::CodeFromUtf8(name.substr(0, 4)));
  const char first = name.empty() || ascii == kNameless ? '#' : ascii.front();
  const char upper = first >= 'a' && first <= 'z' ? static_cast<char>(first - 32) : first;
  return upper >= 'A' && upper <= 'Z' ? upper : '#';
}

std::string LetterFile(char letter) {
  return letter == '#' ? "andere" : std::string(1, static_cast<char>(letter + 32));
}
std::string LetterTitle(char letter) { return letter == '#' ? "Andere" : std::string(1, letter); }

}  // namespace

SiteDeclarations::SiteDeclarations(const SiteModel& model, const SiteUses& uses)
    : model_(model), uses_(uses), item_(model.known.SymbolCount(), kNoItem), anchors_(model.known.SymbolCount()) {
  Collect();
  MakeAnchors();
  Divide();
}

void SiteDeclarations::Collect() {
  const symbols::ReferenceIndex& known = model_.known;
  for (SymbolId symbol = 0; symbol < known.SymbolCount(); ++symbol) {
    const symbols::Symbol& found = known.SymbolAt(symbol);
    const std::uint8_t section = SectionOf(known, found);
    if (section == kNoSection) continue;
    items_.push_back({symbol, known.Modules()[found.module].project, section, LetterOf(known.Name(symbol))});
  }
  const auto before = [](const Item& a, const Item& b) {
    return std::pair(a.project, a.section) < std::pair(b.project, b.section);
  };
  std::stable_sort(items_.begin(), items_.end(), before);
  std::vector<std::pair<std::size_t, std::size_t>> parts;
  for (std::size_t first = 0; first < items_.size(); first = parts.back().second) {
    std::size_t last = first;
    while (last < items_.size() && !before(items_[first], items_[last])) ++last;
    parts.emplace_back(first, last);
  }
  symbols::ForEachPiece(symbols::WorkerCount(0, parts.size()), parts.size(), [&](unsigned, std::size_t part) {
    const auto begin = items_.begin() + static_cast<std::ptrdiff_t>(parts[part].first);
    const auto end = items_.begin() + static_cast<std::ptrdiff_t>(parts[part].second);
    std::stable_sort(begin, end, [&](const Item& a, const Item& b) {
      if (a.letter != b.letter) return a.letter < b.letter;
      return codedb::CompareText(known.Name(a.symbol), known.Name(b.symbol)) < 0;
    });
  });
  for (std::size_t i = 0; i < items_.size(); ++i) item_[items_[i].symbol] = static_cast<std::uint32_t>(i);
}

void SiteDeclarations::MakeAnchors() {
  const symbols::ReferenceIndex& known = model_.known;
  FileNames stems;
  std::vector<std::string> modules;
  for (const symbols::ModuleInfo& module : known.Modules()) {
    modules.push_back(stems.Make(text::CodeFromUtf8(module.name)));
  }
  symbols::ForEachPiece(symbols::WorkerCount(0, modules.size()), modules.size(), [&](unsigned, std::size_t module) {
    FileNames names;
    const symbols::ModuleInfo& info = known.Modules()[module];
    for (SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
      if (!Has(symbol)) continue;
      const SymbolId parent = known.SymbolAt(symbol).parent;
      std::string name(known.Name(symbol));
      if (parent != symbols::kNone) name = std::string(known.Name(parent)) + "-" + name;
      anchors_[symbol] = modules[module] + "." + names.Make(text::CodeFromUtf8(name));
    }
  });
  FileNames projects;
  for (const symbols::ProjectInfo& project : known.Projects()) {
    projects_.push_back(projects.Make(text::CodeFromUtf8(project.name)));
  }
}

void SiteDeclarations::Divide() {
  constexpr std::size_t kEntry = 420, kUse = 48;
  std::vector<std::size_t> sizes;
  sizes.reserve(items_.size());
  for (const Item& item : items_) sizes.push_back(kEntry + kUse * std::min(uses_.Of(item.symbol).size(), kMostUses));
  const bool several = HasSeveralProjects();
  const auto project = [&](std::size_t i) {
    return ListKey{"-" + projects_[items_[i].project], EscapeUtf8(model_.known.Projects()[items_[i].project].name)};
  };
  const auto section = [&, several](std::size_t i) {
    const Section& found = kSections[items_[i].section];
    return ListKey{(several ? "." : "-") + std::string(found.file), std::string(found.title)};
  };
  const auto letter = [&](std::size_t i) {
    return ListKey{"-" + LetterFile(items_[i].letter), LetterTitle(items_[i].letter)};
  };
  pages_ = DivideList("deklarationen", "", sizes, {{project, true}, {section}, {letter}});
  files_.push_back(kDeclarationsFile);
  for (const ListPage& page : pages_) {
    if (page.file != kDeclarationsFile) files_.push_back(page.file);
  }
}

void SiteDeclarations::AppendAddress(std::string& html, SymbolId symbol) const {
  html.append(pages_[PageOfItem(pages_, item_[symbol])].file).append("#d-").append(anchors_[symbol]);
}

std::string SiteDeclarations::UseCount(SymbolId symbol) const {
  const std::span<const SiteUse> uses = uses_.Of(symbol);
  const auto sure = std::ranges::count_if(uses, &SiteUse::sure);
  std::string text = Counted(sure, "Verwendung", "Verwendungen");
  const std::int64_t possible = static_cast<std::int64_t>(uses.size()) - sure + uses_.Vague(symbol);
  if (possible > 0) text += ", " + Counted(possible, "mögliche", "mögliche");
  return text;
}

void SiteDeclarations::AppendModule(std::string& html, int module) const {
  const symbols::Index number = model_.Module(module).number;
  if (number == symbols::kNone) return;
  const symbols::ModuleInfo& info = model_.known.Modules()[number];
  bool isFirst = true;
  for (SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
    const symbols::Symbol& found = model_.known.SymbolAt(symbol);
    const bool inside = found.routine != symbols::kNone || IsCallable(found.kind) || found.line == 0;
    if (inside || !Has(symbol)) continue;
    if (std::exchange(isFirst, false)) {
      html +=
          "<h2 id=\"deklarationen\">Deklarationen</h2>\n<table class=\"declared\">\n<thead>\n<tr><th scope=\"col\">"
          "Name</th><th scope=\"col\">Deklaration</th><th scope=\"col\">Zeile</th><th scope=\"col\">Verwendungen</th>"
          "</tr>\n</thead>\n<tbody>\n";
    }
    const std::uint32_t line = model_.ShownLine(number, found.line);
    html += "<tr><th scope=\"row\">";
    html.append(FullName(symbol)).append("</th><td><code>").append(EscapeUtf8(DeclarationText(model_.known, symbol)));
    html += "</code></td><td>";
    if (line != 0) AppendLink(html, "#z" + std::to_string(line), std::to_string(line));
    html += "</td><td>";
    std::string address;
    AppendAddress(address, symbol);
    AppendLink(html, address, UseCount(symbol));
    html += "</td></tr>\n";
  }
  if (!isFirst) html += "</tbody>\n</table>\n";
}

std::string SiteDeclarations::Page(std::size_t page) const {
  const bool isWhole = pages_.size() == 1 && pages_.front().file == kDeclarationsFile;
  if (page == 0) {
    std::string html = PageHead(model_, "Deklarationen", kDeclarationsFile);
    if (items_.empty()) return html.append("<p>Es gibt keine.</p>\n").append(kPageEnd);
    AppendOverview(html);
    if (isWhole) AppendItems(html, pages_.front());
    return html.append(kPageEnd);
  }
  const ListPage& part = pages_[page - 1];
  std::string html = PageHead(model_, "Deklarationen: " + part.title, kDeclarationsFile, true);
  AppendListNavigation(html, pages_, page - 1, kDeclarationsFile, "Alle Deklarationen");
  AppendItems(html, part);
  return html.append(kPageEnd);
}

std::string SiteDeclarations::SectionAnchor(const Item& item) const {
  return (HasSeveralProjects() ? projects_[item.project] + "." : std::string()) +
         std::string(kSections[item.section].file);
}

void SiteDeclarations::AppendOverview(std::string& html) const {
  html +=
      "<p class=\"note\">Alles, was der Code deklariert, mit jeder Zeile, die es verwendet. Namen im Quelltext der "
      "Module führen zu ihrer Deklaration und diese hierher.</p>\n";
  const auto isSame = [&](std::size_t a, std::size_t b) {
    return items_[a].project == items_[b].project && items_[a].section == items_[b].section;
  };
  const bool several = HasSeveralProjects();
  html += "<table>\n<caption>Arten</caption>\n<thead>\n<tr>";
  if (several) html += "<th scope=\"col\">Projekt</th>";
  html +=
      "<th scope=\"col\">Art</th><th scope=\"col\" class=\"number\">Anzahl</th><th scope=\"col\">Buchstaben</th></tr>\n"
      "</thead>\n<tbody>\n";
  for (std::size_t first = 0; first < items_.size();) {
    std::size_t last = first;
    while (last < items_.size() && isSame(first, last)) ++last;
    const Item& item = items_[first];
    html += "<tr>";
    if (several) html.append("<td>").append(EscapeUtf8(model_.known.Projects()[item.project].name)).append("</td>");
    html += "<th scope=\"row\">";
    AppendLink(html, pages_[PageOfItem(pages_, first)].file + "#" + SectionAnchor(item), kSections[item.section].title);
    html.append("</th><td class=\"number\">").append(GroupedNumber(static_cast<std::int64_t>(last - first)));
    html += "</td><td>";
    if (last - first > kLetters) AppendLetters(html, first, last);
    html += "</td></tr>\n";
    first = last;
  }
  html += "</tbody>\n</table>\n";
}

void SiteDeclarations::AppendLetters(std::string& html, std::size_t first, std::size_t last) const {
  for (std::size_t i = first; i < last; ++i) {
    if (i > first && items_[i].letter == items_[i - 1].letter) continue;
    if (i > first) html += ' ';
    AppendLink(html,
               pages_[PageOfItem(pages_, i)].file + "#" + SectionAnchor(items_[i]) + "-" + LetterFile(items_[i].letter),
               items_[i].letter == '#' ? "#" : LetterTitle(items_[i].letter));
  }
}

void SiteDeclarations::AppendItems(std::string& html, const ListPage& page) const {
  for (std::size_t i = page.first; i < page.last; ++i) {
    const Item& item = items_[i];
    const bool isFirst =
        i == page.first || items_[i - 1].section != item.section || items_[i - 1].project != item.project;
    if (isFirst) {
      if (i > page.first) html += "</tbody>\n</table>\n";
      html.append("<h2 id=\"").append(SectionAnchor(item)).append("\">");
      if (HasSeveralProjects()) html += EscapeUtf8(model_.known.Projects()[item.project].name) + ": ";
      html += kSections[item.section].title;
      html +=
          "</h2>\n<table class=\"declared\">\n<thead>\n<tr><th scope=\"col\">Name</th><th "
          "scope=\"col\">Deklaration</th>"
          "<th scope=\"col\">Ort</th><th scope=\"col\">Verwendungen</th></tr>\n</thead>\n";
    }
    if (isFirst || items_[i - 1].letter != item.letter) {
      if (!isFirst) html += "</tbody>\n";
      html.append("<tbody id=\"").append(SectionAnchor(item)).append("-").append(LetterFile(item.letter));
      html += "\">\n";
    }
    AppendItem(html, item);
  }
  html += "</tbody>\n</table>\n";
}

/// Members with what they belong to.
std::string SiteDeclarations::FullName(SymbolId symbol) const {
  const symbols::Symbol& found = model_.known.SymbolAt(symbol);
  std::string name(model_.known.Name(symbol));
  const bool member = found.kind == SymbolKind::kTypeMember || found.kind == SymbolKind::kEnumMember;
  if (member && found.parent != symbols::kNone) name += " (" + std::string(model_.known.Name(found.parent)) + ")";
  return EscapeUtf8(name);
}

void SiteDeclarations::AppendItem(std::string& html, const Item& item) const {
  html.append("<tr id=\"d-").append(anchors_[item.symbol]).append("\"><th scope=\"row\">");
  html.append(FullName(item.symbol)).append("</th><td><code>");
  html.append(EscapeUtf8(DeclarationText(model_.known, item.symbol))).append("</code>");
  if ((model_.known.SymbolAt(item.symbol).flags & symbols::symbol_flag::kImplicit) != 0) {
    html += " <small>nicht deklariert</small>";
  }
  html += "</td><td>";
  AppendDeclarationPlace(html, model_, item.symbol);
  html += "</td><td>";
  AppendUses(html, item.symbol);
  html += "</td></tr>\n";
}

void SiteDeclarations::AppendUses(std::string& html, SymbolId symbol) const {
  const std::span<const SiteUse> uses = uses_.Of(symbol);
  std::size_t listed = 0;
  std::string_view between;
  for (const bool sure : {true, false}) {
    for (std::size_t kind = 0; kind < symbols::kUseCount; ++kind) {
      symbols::Index module = symbols::kNone;
      for (const SiteUse& use : uses) {
        if (use.sure != sure || static_cast<std::size_t>(use.use) != kind) continue;
        if (++listed > kMostUses) continue;
        if (module == symbols::kNone) {
          html.append(between).append(sure ? "" : "möglich: ").append(symbols::GermanWord(use.use)).append(" ");
          between = "; ";
        } else {
          html += ", ";
        }
        AppendUse(html, model_, use, use.module != std::exchange(module, use.module));
      }
    }
  }
  const auto more = [&](std::int64_t count, std::string_view what) {
    html.append(between).append(GroupedNumber(count)).append(what);
    between = "; ";
  };
  if (listed > kMostUses) more(static_cast<std::int64_t>(listed - kMostUses), " weitere Zeilen");
  if (uses_.Vague(symbol) > 0) more(uses_.Vague(symbol), " Verwendungen, die vieles meinen können");
  if (const auto unused = symbols::GradeUnused(model_.known, symbol)) {
    html.append(between);
    html += unused->grade == symbols::Grade::kCertain ? "nirgends verwendet" : EscapeUtf8(unused->reason);
    if (!unused->place.empty() && unused->place != unused->reason) html.append(", ").append(EscapeUtf8(unused->place));
  } else if (between.empty()) {
    html += "keine";
  }
}

}  // namespace quillmate::output
