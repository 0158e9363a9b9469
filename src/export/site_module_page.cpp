#include <string>
#include <utility>
#include <vector>

#include <quillmate/codedb/codes.h>
#include <quillmate/symbols/calls.h>

#include "site_code_p.h"
#include "site_comments_p.h"
#include "site_findings_p.h"
#include "site_form_p.h"
#include "site_metrics_p.h"
#include "site_notes_p.h"
#include "site_pages_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"
#include "site_trees_p.h"

namespace quillmate::output {
namespace {

constexpr std::string_view kCodeAnchor = "#quelltext";
/// A name that many classes have may be called from everywhere.
constexpr std::size_t kMostEdges = 200;

/// Writes the page of one module.
class ModulePageWriter {
 public:
  ModulePageWriter(const SiteContents& site, int position, std::string_view markedText)
      : site_(site),
        model_(site.model),
        position_(position),
        module_(site.model.Module(position)),
        text_(markedText),
        comments_(markedText) {}

  std::string Run() {
    // The code grows about fourfold.
    html_.reserve(text_.size() * 4 + 4096);
    html_ = PageHead(model_, EscapeCode(module_.record->name), module_.page);
    AppendFacts();
    AppendRoutineNames();
    AppendControls(html_, site_, position_);
    site_.declarations.AppendModule(html_, position_);
    AppendNotes(html_, model_, position_);
    AppendFindings(html_, site_, position_);
    AppendMetrics(html_, site_, position_);
    if (module_.first != module_.last) html_ += "<h2>Die Routinen im Einzelnen</h2>\n";
    for (int i = module_.first; i < module_.last; ++i) AppendRoutine(i);
    html_ += "<h2 id=\"quelltext\">Quelltext</h2>\n<pre class=\"code\"><code>";
    AppendModuleCode(html_, text_, position_, site_);
    html_ += "</code></pre>\n";
    html_ += kPageEnd;
    return std::move(html_);
  }

 private:
  void AppendFacts() {
    html_.append("<p class=\"facts\">").append(ModuleKindText(module_.record->kind)).append(", ");
    html_.append(Counted(module_.record->lines, "Zeile", "Zeilen")).append(", ");
    html_.append(Counted(module_.last - module_.first, "Routine", "Routinen")).append(", ");
    AppendLink(html_, kCodeAnchor, "Quelltext");
    html_ += "</p>\n";
    const std::string origin = OriginText(model_, module_);
    if (!origin.empty()) html_.append("<p class=\"facts\">").append(origin).append("</p>\n");
    AppendComment(html_, module_.description);
  }

  void AppendRoutineNames() {
    if (module_.first == module_.last) return;
    html_ += "<h2>Routinen</h2>\n<ul class=\"names\">\n";
    for (int i = module_.first; i < module_.last; ++i) {
      const SiteRoutine& routine = model_.Routine(i);
      html_ += "<li>";
      AppendLink(html_, RoutineAddress(model_, routine, position_), NameOf(routine));
      html_ += "</li>\n";
    }
    html_ += "</ul>\n";
  }

  static std::string NameOf(const SiteRoutine& routine) {
    return EscapeCode(routine.record->name).append(PartText(routine.record->kind));
  }

  void AppendRoutine(int position) {
    const SiteRoutine& routine = model_.Routine(position);
    html_.append("<section class=\"routine\">\n<h3 id=\"r-").append(routine.anchor).append("\">");
    html_ += EscapeCode(routine.record->name);
    html_.append(" <small>").append(RoutineKindText(routine.record->kind));
    AppendPlace(routine);
    html_ += "</small></h3>\n";
    if (routine.record->start) AppendHeaderAndComment(*routine.record);
    AppendNeighbours(html_, site_, position);
    html_ += "<dl class=\"pairs\">\n";
    AppendCallers(routine);
    AppendCalls(routine);
    html_ += "</dl>\n</section>\n";
  }

  void AppendPlace(const SiteRoutine& routine) {
    if (!routine.hasCode) return;
    const std::int32_t start = routine.record->start->value;
    const std::int32_t end = routine.record->end.value_or(codedb::Line{start}).value;
    std::string place = (start == end ? "Zeile " : "Zeilen ") + std::to_string(start);
    if (start != end) place += "–" + std::to_string(end);
    html_ += ", ";
    AppendLink(html_, "#c-" + routine.anchor, place);
  }

  void AppendHeaderAndComment(const codedb::RoutineRecord& record) {
    html_ += "<pre class=\"head\"><code>";
    AppendPlainCode(html_, comments_.Lines(*record.start, record.headerLines));
    html_ += "</code></pre>\n";
    AppendComment(html_, comments_.OfRoutine(*record.start, record.headerLines));
  }

  void AppendCallers(const SiteRoutine& routine) {
    if (routine.symbol == symbols::kNone) return AppendPair("Aufgerufen von", "unbekannt");
    const std::vector<symbols::CallEdge> callers = symbols::CallersOf(model_.known, routine.symbol);
    std::string sure = EdgeList(callers, symbols::kNone, true);
    if (sure.empty()) sure = "keiner Routine";
    if (routine.unused) {
      sure += " (";
      AppendLink(sure, kUnusedFile, "Einstufung: " + GradeWithReason(*routine.unused));
      sure += ")";
    }
    AppendPair("Aufgerufen von", sure);
    AppendPair("Möglicherweise von", EdgeList(callers, symbols::kNone, false));
    AppendPair("Von außerhalb", HostList(callers));
  }

  void AppendCalls(const SiteRoutine& routine) {
    if (routine.symbol == symbols::kNone) return;
    const std::vector<symbols::CallEdge> calls = symbols::CalleesOf(model_.known, routine.symbol);
    AppendPair("Ruft auf", EdgeList(calls, module_.number, true));
    AppendPair("Ruft möglicherweise auf", EdgeList(calls, module_.number, false));
  }

  void AppendPair(std::string_view title, std::string_view text) {
    if (!text.empty()) html_.append("<dt>").append(title).append("</dt>\n<dd>").append(text).append("</dd>\n");
  }

  /// The routines of one kind of edges, each with the calling lines: those of `lineModule`, or of the routine's own.
  std::string EdgeList(const std::vector<symbols::CallEdge>& edges, symbols::Index lineModule, bool sure) const {
    std::string list;
    std::size_t count = 0;
    for (const symbols::CallEdge& edge : edges) {
      if (edge.routine == symbols::kNone || (edge.certainty == symbols::Certainty::kSure) != sure) continue;
      if (++count > kMostEdges) continue;
      if (!list.empty()) list += ", ";
      AppendEdge(list, edge, lineModule == symbols::kNone ? model_.known.SymbolAt(edge.routine).module : lineModule);
    }
    if (count > kMostEdges)
      list.append(" und ").append(GroupedNumber(static_cast<std::int64_t>(count - kMostEdges))).append(" weitere");
    return list;
  }

  void AppendEdge(std::string& list, const symbols::CallEdge& edge, symbols::Index lineModule) const {
    const int position = model_.RoutineOf(edge.routine);
    if (position != kNoRoutine) {
      const SiteRoutine& routine = model_.Routine(position);
      AppendLink(list, RoutineAddress(model_, routine, position_),
                 QualifiedName(routine).append(PartText(routine.record->kind)));
    } else {
      const symbols::Symbol& symbol = model_.known.SymbolAt(edge.routine);
      list +=
          EscapeUtf8(model_.known.Modules()[symbol.module].name + "." + std::string(model_.known.Name(edge.routine)));
    }
    list += " <small>";
    if (edge.certainty != symbols::Certainty::kSure) {
      list.append(symbols::GermanWord(edge.certainty)).append(edge.lines.empty() ? "" : ", ");
    }
    AppendLines(list, edge.lines, lineModule);
    list += "</small>";
  }

  /// "Zeile 4, 9", each a link to the line.
  void AppendLines(std::string& list, const std::vector<std::uint32_t>& lines, symbols::Index lineModule) const {
    const int page = model_.ModuleOf(lineModule);
    const std::string address = page < 0 || page == position_ ? std::string() : model_.Module(page).page;
    std::string_view separator = "Zeile ";
    for (const std::uint32_t line : lines) {
      const std::uint32_t shown = model_.ShownLine(lineModule, line);
      const std::string number = std::to_string(page < 0 ? line : shown);
      list += separator;
      page < 0 || shown == 0 ? void(list += number) : AppendLink(list, address + "#z" + number, number);
      separator = ", ";
    }
  }

  static std::string HostList(const std::vector<symbols::CallEdge>& edges) {
    std::string list;
    for (const symbols::CallEdge& edge : edges) {
      if (edge.routine == symbols::kNone) list.append(list.empty() ? "" : ", ").append(EscapeUtf8(edge.host));
    }
    return list;
  }

  /// With its module's name unless that is the page's own.
  std::string QualifiedName(const SiteRoutine& routine) const {
    std::string name;
    if (routine.module != position_) name = EscapeCode(model_.ModuleOf(routine).record->name) + ".";
    return name += EscapeCode(routine.record->name);
  }

  const SiteContents& site_;
  const SiteModel& model_;
  int position_;
  const SiteModule& module_;
  std::string_view text_;
  CommentLines comments_;
  std::string html_;
};

}  // namespace

std::string ModulePage(const SiteContents& site, int module, std::string_view markedText) {
  return ModulePageWriter(site, module, markedText).Run();
}

}  // namespace quillmate::output
