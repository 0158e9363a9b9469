#include <algorithm>
#include <array>
#include <map>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/export/compare_html.h>

#include "compare_style_p.h"

namespace quillmate::output {
namespace {

using symbols::ChangeState;
using symbols::Edit;
using symbols::Index;
using symbols::kNone;
using symbols::ModuleChange;
using symbols::PieceLines;
using symbols::ReferenceIndex;
using symbols::RoutineChange;

constexpr std::size_t kPiece = std::size_t{1} << 18U;
constexpr std::uint32_t kContext = 3;

/// Text as HTML; what controls a terminal or the direction of reading is shown by its number, so that code can't look
/// like other code.
void AppendEscaped(std::string& html, std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const auto byte = static_cast<unsigned char>(c);
    if (c == '&') {
      html += "&amp;";
    } else if (c == '<') {
      html += "&lt;";
    } else if (c == '>') {
      html += "&gt;";
    } else if (c == '"') {
      html += "&quot;";
    } else if (byte < 0x20 && c != '\t') {
      html += "\xEF\xBF\xBD";
    } else if (const std::string_view mark = text.substr(i, 3);
               mark == "\xE2\x80\xAA" || mark == "\xE2\x80\xAB" || mark == "\xE2\x80\xAC" || mark == "\xE2\x80\xAD" ||
               mark == "\xE2\x80\xAE" || mark == "\xE2\x81\xA6" || mark == "\xE2\x81\xA7" || mark == "\xE2\x81\xA8" ||
               mark == "\xE2\x81\xA9" || mark == "\xE2\x80\x8E" || mark == "\xE2\x80\x8F") {
      html += "\xEF\xBF\xBD";
      i += 2;
    } else {
      html += c;
    }
  }
}

std::string Escaped(std::string_view text) {
  std::string html;
  AppendEscaped(html, text);
  return html;
}

/// A line with its differing stretches in an element.
void AppendMarked(std::string& html, std::string_view line, std::span<const symbols::ByteRange> ranges,
                  std::string_view element) {
  std::size_t at = 0;
  for (const symbols::ByteRange& range : ranges) {
    AppendEscaped(html, line.substr(at, range.offset - at));
    html.append("<").append(element).append(">");
    AppendEscaped(html, line.substr(range.offset, range.length));
    html.append("</").append(element).append(">");
    at = range.offset + std::size_t{range.length};
  }
  AppendEscaped(html, line.substr(at));
}

/// One side of a table: the texts and the editor's numbers of a piece.
struct Side {
  std::vector<std::string_view> texts;
  std::vector<std::uint32_t> numbers;
};

Side SideOf(const ReferenceIndex& index, Index module, const PieceLines& lines) {
  Side side;
  if (module == kNone) return side;
  side.texts = symbols::TextsOf(index.Code(module), lines);
  for (const std::uint32_t line : lines) side.numbers.push_back(index.EditorLine(module, line));
  return side;
}

Side SideOf(const ReferenceIndex& index, const symbols::RoutinePlace& place) {
  if (!place.IsKnown()) return {};
  return SideOf(index, place.module, symbols::RoutineLines(index.Code(place.module), place.routine));
}

Side OutsideOf(const ReferenceIndex& index, Index module) {
  return module == kNone ? Side() : SideOf(index, module, symbols::OutsideLines(index.Code(module)));
}

class Report {
 public:
  Report(const symbols::ComparedStates& states, const Sink& sink) : states_(states), sink_(sink) {}

  void Write(const CompareTitles& titles) {
    NumberRoutines();
    WriteHead(titles);
    WriteNavigation();
    html_ += "<main>\n";
    for (const symbols::ProjectChange& project : states_.comparison.projects) WriteProject(project);
    for (const ModuleChange& module : states_.comparison.modules) {
      if (IsListed(module)) WriteModule(module);
    }
    WriteUnused(true, "Jetzt unbenutzt");
    WriteUnused(false, "Nicht mehr unbenutzt");
    WriteNotCompared();
    html_ += "</main>\n</body>\n</html>\n";
    sink_(html_);
  }

 private:
  void Flush() {
    if (html_.size() < kPiece) return;
    sink_(html_);
    html_.clear();
  }

  static bool IsShown(const RoutineChange& routine) { return routine.state != ChangeState::kSame; }

  /// Anchors in the order of the report, and by place in the new state for links to callers.
  void NumberRoutines() {
    std::size_t number = 0;
    for (const ModuleChange& module : states_.comparison.modules) {
      for (const RoutineChange& routine : module.routines) {
        if (!IsShown(routine)) continue;
        ++number;
        if (routine.newPlace.IsKnown()) anchors_[{routine.newPlace.module, routine.newPlace.routine}] = number;
      }
    }
  }

  void WriteHead(const CompareTitles& titles) {
    const symbols::ChangeCounts counts = CountChanges(states_.comparison);
    html_ += "<!DOCTYPE html>\n<html lang=\"de\">\n<head>\n<meta charset=\"utf-8\">\n";
    html_ += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>Vergleich: ";
    AppendEscaped(html_, titles.newState);
    html_ += "</title>\n<style>\n";
    html_ += CompareStyle();
    html_ += "</style>\n</head>\n<body>\n<header>\n<h1>Vergleich</h1>\n<dl>\n<dt>Alt</dt><dd>";
    AppendEscaped(html_, titles.oldState);
    html_ += "</dd>\n<dt>Neu</dt><dd>";
    AppendEscaped(html_, titles.newState);
    html_ += "</dd>\n</dl>\n<p>";
    AppendEscaped(html_, states_.comparison.equal ? "Keine Unterschiede" : SummaryText(states_.comparison));
    html_ += "</p>\n";
    WriteFilters(counts);
    html_ += "</header>\n";
  }

  void WriteFilters(const symbols::ChangeCounts& counts) {
    std::string boxes;
    for (std::size_t state = 1; state < symbols::kChangeStateCount; ++state) {
      const std::size_t count = counts.modules[state] + counts.routines[state];
      if (count == 0) continue;
      const auto which = static_cast<ChangeState>(state);
      boxes.append("<label><input type=\"checkbox\" id=\"f-").append(Word(which)).append("\" checked> ");
      boxes.append(GermanWord(which)).append("</label>\n");
    }
    if (boxes.empty()) return;
    html_.append("<fieldset>\n<legend>Anzeigen</legend>\n").append(boxes).append("</fieldset>\n");
  }

  void WriteNavigation() {
    html_ += "<nav aria-label=\"Änderungen\">\n<ul>\n";
    std::size_t routineNumber = 0, moduleNumber = 0;
    for (const ModuleChange& module : states_.comparison.modules) {
      if (!IsListed(module)) continue;
      html_.append("<li><a href=\"#m").append(std::to_string(++moduleNumber)).append("\">");
      AppendEscaped(html_, NameOf(states_, module));
      html_ += "</a> ";
      AppendBadge(module.state);
      html_ += "\n<ul>\n";
      for (const RoutineChange& routine : module.routines) {
        if (!IsShown(routine)) continue;
        html_.append("<li class=\"s-").append(Word(routine.state)).append("\"><a href=\"#r");
        html_.append(std::to_string(++routineNumber)).append("\">");
        AppendEscaped(html_, RoutineName(IndexOf(states_, routine), PlaceOf(routine)));
        html_ += "</a> ";
        AppendBadge(routine.state);
        html_ += "</li>\n";
        Flush();
      }
      html_ += "</ul>\n</li>\n";
    }
    html_ += "</ul>\n</nav>\n";
  }

  void AppendBadge(ChangeState state) {
    html_.append("<small class=\"b b-").append(Word(state)).append("\">").append(GermanWord(state)).append("</small>");
  }

  void WriteItems(const std::vector<std::string>& items) {
    if (items.empty()) return;
    html_ += "<ul class=\"facts\">\n";
    for (const std::string& item : items) {
      html_ += "<li>";
      AppendEscaped(html_, item);
      html_ += "</li>\n";
    }
    html_ += "</ul>\n";
  }

  void WriteProject(const symbols::ProjectChange& project) {
    if (!IsListed(project)) return;
    html_ += "<section>\n<h2>";
    AppendEscaped(html_, ProjectTitle(states_, project));
    html_ += " ";
    AppendBadge(project.state);
    html_ += "</h2>\n";
    std::vector<std::string> items;
    for (const symbols::FactChange& fact : project.facts) items.push_back(FactText(fact));
    WriteItems(items);
    html_ += "</section>\n";
  }

  void WriteModule(const ModuleChange& module) {
    html_.append("<section id=\"m").append(std::to_string(++moduleNumber_)).append("\">\n<h2>");
    AppendEscaped(html_, "Modul " + std::string(NameOf(states_, module)));
    html_ += " ";
    AppendBadge(module.state);
    html_ += "</h2>\n";
    std::vector<std::string> items;
    if (const std::string text = StateText(states_, module); text != GermanWord(module.state)) items.push_back(text);
    for (const symbols::FactChange& fact : module.facts) items.push_back(FactText(fact));
    for (const auto& declaration : module.declarations) items.push_back(DeclarationText(states_, declaration));
    for (const symbols::Departure& departure : module.departures) {
      items.push_back(std::string(GermanWord(RoutineKind(states_.oldIndex, departure.oldPlace))) + " " +
                      std::string(RoutineName(states_.oldIndex, departure.oldPlace)) + ": verschoben nach " +
                      states_.newIndex.Modules()[departure.newPlace.module].name);
    }
    WriteItems(items);
    if (!module.outside.edits.empty()) {
      const bool isOneSided = module.state == ChangeState::kNew || module.state == ChangeState::kGone;
      const ChangeState state = isOneSided               ? module.state
                                : module.outside.changed ? ChangeState::kChanged
                                                         : ChangeState::kLayout;
      html_.append("<article class=\"s-").append(Word(state)).append("\">\n<h3>Außerhalb der Routinen</h3>\n");
      WriteTable(OutsideOf(states_.oldIndex, module.oldModule), OutsideOf(states_.newIndex, module.newModule),
                 module.outside.edits);
      html_ += "</article>\n";
    }
    for (const RoutineChange& routine : module.routines) {
      if (IsShown(routine)) WriteRoutine(routine);
    }
    html_ += "</section>\n";
    Flush();
  }

  void WriteRoutine(const RoutineChange& routine) {
    html_.append("<article id=\"r").append(std::to_string(++routineNumber_)).append("\" class=\"s-");
    html_.append(Word(routine.state)).append("\">\n<h3>");
    AppendEscaped(html_, TitleOf(states_, routine));
    html_ += " ";
    AppendBadge(routine.state);
    html_ += "</h3>\n";
    if (const std::string text = StateText(states_, routine); text != GermanWord(routine.state)) {
      html_.append("<p class=\"note\">").append(Escaped(text)).append("</p>\n");
    }
    WriteCallers(routine);
    if (!routine.text.edits.empty()) {
      WriteTable(SideOf(states_.oldIndex, routine.oldPlace), SideOf(states_.newIndex, routine.newPlace),
                 routine.text.edits);
    }
    html_ += "</article>\n";
    Flush();
  }

  /// With a link where the caller is in the report.
  void WriteCallers(const RoutineChange& routine) {
    const ReferenceIndex& index = IndexOf(states_, routine);
    bool first = true;
    for (const symbols::CallEdge& edge : CallersOf(states_, routine)) {
      html_ += first ? "<p class=\"note\">Aufrufer: " : "; ";
      first = false;
      std::size_t anchor = 0;
      if (edge.routine != kNone && &index == &states_.newIndex) {
        const symbols::Symbol& symbol = index.SymbolAt(edge.routine);
        const auto found = anchors_.find({symbol.module, symbol.routine});
        if (found != anchors_.end()) anchor = found->second;
      }
      if (anchor != 0) html_.append("<a href=\"#r").append(std::to_string(anchor)).append("\">");
      AppendEscaped(html_, CallerText(index, edge));
      if (anchor != 0) html_ += "</a>";
    }
    if (!first) html_ += "</p>\n";
  }

  void WriteTable(const Side& olds, const Side& news, const std::vector<Edit>& edits) {
    html_ += "<table>\n<colgroup><col class=\"n\"><col><col class=\"n\"><col></colgroup>\n";
    html_ +=
        "<thead><tr><th colspan=\"2\" scope=\"colgroup\">Alt</th><th colspan=\"2\" scope=\"colgroup\">Neu</th>"
        "</tr></thead>\n<tbody>\n";
    std::uint32_t oldAt = 0, newAt = 0;
    for (std::size_t i = 0; i < edits.size(); ++i) {
      const Edit& edit = edits[i];
      WriteSame(olds, news, oldAt, newAt, edit.oldFirst - oldAt, i > 0, true);
      for (const symbols::LinePair& pair : symbols::PairLines(olds.texts, news.texts, edit)) {
        WriteChanged(olds, news, pair);
      }
      oldAt = edit.oldFirst + edit.oldCount;
      newAt = edit.newFirst + edit.newCount;
    }
    WriteSame(olds, news, oldAt, newAt, static_cast<std::uint32_t>(olds.texts.size()) - oldAt, true, false);
    html_ += "</tbody>\n</table>\n";
  }

  /// Lines that both sides have; of many only those near a change before or after them.
  void WriteSame(const Side& olds, const Side& news, std::uint32_t oldAt, std::uint32_t newAt, std::uint32_t count,
                 bool changeBefore, bool changeBehind) {
    const std::uint32_t head = std::min(changeBefore ? kContext : 0, count);
    const std::uint32_t tail = std::min(changeBehind ? kContext : 0, count - head);
    for (std::uint32_t n = 0; n < count; ++n) {
      if (n == head && head + tail < count) {
        const std::uint32_t left = count - head - tail;
        html_.append("<tr class=\"skip\"><td colspan=\"4\">").append(std::to_string(left));
        html_.append(left == 1 ? " gleiche Zeile" : " gleiche Zeilen").append("</td></tr>\n");
        n = count - tail;
        if (n == count) break;
      }
      html_ += "<tr>";
      AppendCell(olds, oldAt + n, {}, {}, {});
      AppendCell(news, newAt + n, {}, {}, {});
      html_ += "</tr>\n";
    }
  }

  void WriteChanged(const Side& olds, const Side& news, const symbols::LinePair& pair) {
    symbols::WordDifference words;
    const bool both = pair.oldLine != symbols::kNoLine && pair.newLine != symbols::kNoLine;
    if (both) words = symbols::DifferingWords(olds.texts[pair.oldLine], news.texts[pair.newLine]);
    html_ += "<tr>";
    AppendCell(olds, pair.oldLine, "d", words.oldRanges, "del");
    AppendCell(news, pair.newLine, "i", words.newRanges, "ins");
    html_ += "</tr>\n";
    Flush();
  }

  void AppendCell(const Side& side, std::uint32_t line, std::string_view kind,
                  std::span<const symbols::ByteRange> ranges, std::string_view element) {
    if (line == symbols::kNoLine) {
      html_ += "<td class=\"e\" colspan=\"2\"></td>";
      return;
    }
    html_.append("<td class=\"n ").append(kind).append("\">").append(std::to_string(side.numbers[line]));
    html_.append("</td><td class=\"").append(kind).append("\">");
    AppendMarked(html_, side.texts[line], ranges, element);
    html_ += "</td>";
  }

  void WriteUnused(bool made, std::string_view title) {
    std::vector<std::string> items;
    for (const symbols::UnusedChange& unused : states_.comparison.unused) {
      if (unused.made == made) items.push_back(UnusedText(states_, unused));
    }
    WriteList(title, items);
  }

  void WriteNotCompared() {
    std::vector<std::string> items;
    const symbols::NotCompared& gaps = states_.comparison.notCompared;
    for (const Index module : gaps.oldModules) items.push_back(states_.oldIndex.Modules()[module].name);
    for (const Index module : gaps.newModules) items.push_back(states_.newIndex.Modules()[module].name);
    WriteList("Nicht verglichen, weil ein Stand nicht ganz lesbar ist", items);
  }

  void WriteList(std::string_view title, const std::vector<std::string>& items) {
    if (items.empty()) return;
    html_.append("<section>\n<h2>").append(title).append("</h2>\n");
    WriteItems(items);
    html_ += "</section>\n";
  }

  const symbols::ComparedStates& states_;
  const Sink& sink_;
  std::string html_;
  std::map<std::pair<Index, Index>, std::size_t> anchors_;
  std::size_t moduleNumber_ = 0, routineNumber_ = 0;
};

}  // namespace

void WriteCompareHtml(const symbols::ComparedStates& states, const CompareTitles& titles, const Sink& sink) {
  Report(states, sink).Write(titles);
}

}  // namespace quillmate::output
