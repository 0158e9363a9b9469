#include <utility>

#include <quillmate/codedb/codes.h>

#include "site_code_p.h"
#include "site_comments_p.h"
#include "site_pages_p.h"
#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

constexpr std::string_view kCodeAnchor = "#quelltext";

/// What a property's part is called behind the property's name.
std::string_view PartText(int kind) noexcept {
  switch (kind) {
    case codedb::kLet:
      return " (Let)";
    case codedb::kGet:
      return " (Get)";
    case codedb::kSet:
      return " (Set)";
    default:
      return {};
  }
}

/// Writes the page of one module.
class ModulePageWriter {
 public:
  ModulePageWriter(const SiteModel& model, int position, std::string_view markedText)
      : model_(model), position_(position), module_(model.Module(position)), text_(markedText), comments_(markedText) {}

  std::string Run(ReferenceFinder& finder) {
    // The code grows about fourfold.
    html_.reserve(text_.size() * 4 + 4096);
    html_ = PageHead(model_, EscapeCode(module_.record->name), module_.page);
    AppendFacts();
    AppendRoutineNames();
    for (int i = module_.first; i < module_.last; ++i) AppendRoutine(model_.Routine(i));
    html_ += "<h2 id=\"quelltext\">Quelltext</h2>\n<pre class=\"code\"><code>";
    AppendModuleCode(html_, text_, position_, model_, finder);
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
    if (!module_.description.empty()) html_.append("<p class=\"note\">").append(module_.description).append("</p>\n");
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

  void AppendRoutine(const SiteRoutine& routine) {
    html_.append("<section class=\"routine\">\n<h3 id=\"r-").append(routine.anchor).append("\">");
    html_ += EscapeCode(routine.record->name);
    html_.append(" <small>").append(RoutineKindText(routine.record->kind));
    AppendPlace(routine);
    html_ += "</small></h3>\n";
    if (routine.record->start) AppendHeaderAndComment(*routine.record);
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
    const std::string comment = comments_.OfRoutine(*record.start, record.headerLines);
    if (!comment.empty()) html_.append("<p class=\"note\">").append(comment).append("</p>\n");
  }

  void AppendCallers(const SiteRoutine& routine) {
    html_ += "<dt>Aufgerufen von</dt>\n<dd>";
    const auto group = static_cast<std::size_t>(routine.group);
    const SiteRoutine& first = model_.Routine(model_.firstOfGroup[group]);
    if (&first != &routine) {
      html_ += "wie ";
      AppendLink(html_, RoutineAddress(model_, first, position_), NameOf(first));
    } else {
      AppendCallerList(model_.callers[group]);
    }
    if (routine.unused) {
      html_ += " (";
      AppendLink(html_, kUnusedFile, std::string("Einstufung: ").append(JudgementText(*routine.unused)));
      html_ += ")";
    }
    html_ += "</dd>\n";
  }

  void AppendCallerList(const std::vector<SiteSource>& callers) {
    std::string_view separator;
    for (const SiteSource& caller : callers) {
      html_ += separator;
      AppendCaller(caller);
      separator = ", ";
    }
    if (callers.empty()) html_ += "keiner Routine";
  }

  void AppendCaller(const SiteSource& caller) {
    if (caller.routine != kNoRoutine) {
      const SiteRoutine& routine = model_.Routine(caller.routine);
      AppendLink(html_, RoutineAddress(model_, routine, position_), QualifiedName(routine) + PartOf(routine));
    } else {
      const SiteModule& module = model_.Module(caller.module);
      const std::string page = caller.module == position_ ? std::string() : module.page;
      AppendLink(html_, page + std::string(kCodeAnchor), EscapeCode(module.record->name) + " (Deklarationen)");
    }
  }

  static std::string PartOf(const SiteRoutine& routine) { return std::string(PartText(routine.record->kind)); }

  void AppendCalls(const SiteRoutine& routine) {
    if (routine.calls.empty()) return;
    html_ += "<dt>Ruft auf</dt>\n<dd>";
    std::string_view separator;
    for (const int called : routine.calls) {
      html_ += separator;
      AppendLink(html_, RoutineAddress(model_, model_.Routine(called), position_),
                 QualifiedName(model_.Routine(called)));
      separator = ", ";
    }
    html_ += "</dd>\n";
  }

  /// With its module's name unless that is the page's own.
  std::string QualifiedName(const SiteRoutine& routine) const {
    std::string name;
    if (routine.module != position_) name = EscapeCode(model_.ModuleOf(routine).record->name) + ".";
    return name += EscapeCode(routine.record->name);
  }

  const SiteModel& model_;
  int position_;
  const SiteModule& module_;
  std::string_view text_;
  CommentLines comments_;
  std::string html_;
};

}  // namespace

std::string ModulePage(const SiteModel& model, int module, std::string_view markedText, ReferenceFinder& finder) {
  return ModulePageWriter(model, module, markedText).Run(finder);
}

}  // namespace quillmate::output
