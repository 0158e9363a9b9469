#include <quillmate/codedb/codes.h>

#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {

using symbols::Grade;

std::string_view ModuleKindText(int kind) noexcept {
  switch (kind) {
    case codedb::kForm:
      return "Userform";
    case codedb::kStandard:
      return "Allgemeines Modul";
    case codedb::kClass:
      return "Klassenmodul";
    case codedb::kDocument:
      return "Element der Mappe";
    default:
      return "Anderes Modul";
  }
}

std::string_view RoutineKindText(int kind) noexcept {
  switch (kind) {
    case codedb::kSub:
      return "Sub";
    case codedb::kFunction:
      return "Function";
    case codedb::kLet:
      return "Property Let";
    case codedb::kGet:
      return "Property Get";
    case codedb::kSet:
      return "Property Set";
    case codedb::kDeclareSub:
      return "Declare Sub";
    case codedb::kDeclareFunction:
      return "Declare Function";
    default:
      return "Routine";
  }
}

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

std::string_view GradeText(Grade grade) noexcept {
  switch (grade) {
    case Grade::kHost:
      return "vom Host";
    case Grade::kText:
      return "per Text";
    case Grade::kSelf:
      return "nur selbst";
    default:
      return GermanWord(grade);
  }
}

std::string_view GradeExplanation(Grade grade) noexcept {
  switch (grade) {
    case Grade::kCertain:
      return "Nichts verwendet die Routine.";
    case Grade::kHost:
      return "Der Host ruft sie auf: bei einem Ereignis, beim Start, aus einem Menü oder über eine Schaltfläche.";
    case Grade::kText:
      return "Der Name steht in einer Zeichenkette; ein Aufruf kann darüber gehen.";
    case Grade::kPossible:
      return "Ein Name kann sie meinen, oder ein Aufruf von außen ist möglich, zum Beispiel aus einer Zelle.";
    case Grade::kSelf:
      return "Sie ruft sich selbst auf, sonst verwendet sie nichts.";
    case Grade::kInactive:
      return "Nur Code verwendet sie, den die bedingte Kompilierung auslässt, oder sie steht selbst darin.";
    default:
      return {};
  }
}

std::string GradeWithReason(const symbols::RoutineGrade& grade) {
  std::string text(GradeText(grade.grade));
  if (grade.grade == Grade::kCertain || grade.grade == Grade::kSelf) return text;
  text.append(": ").append(EscapeUtf8(grade.reason));
  if (!grade.place.empty() && grade.place != grade.reason) text.append(", ").append(EscapeUtf8(grade.place));
  return text;
}

std::string OriginText(const SiteModel& model, const SiteModule& module) {
  if (module.number == symbols::kNone) return {};
  const symbols::ModuleInfo& info = model.known.Modules()[module.number];
  const symbols::ProjectInfo& project = model.known.Projects()[info.project];
  const std::string& path = info.file.empty() ? project.file : info.file;
  const std::string name = path.substr(path.find_last_of("/\\") + 1);
  std::string text;
  const auto add = [&text](std::string_view title, const std::string& value) {
    if (!value.empty()) text.append(text.empty() ? "" : ", ").append(title).append(EscapeUtf8(value));
  };
  add("Projekt ", project.name);
  add("Datei ", name);
  add("außen ", info.outsideName);
  return text;
}

std::string Counted(std::int64_t number, std::string_view one, std::string_view many) {
  return GroupedNumber(number).append(" ").append(number == 1 ? one : many);
}

std::string RoutineAddress(const SiteModel& model, const SiteRoutine& routine, int fromModule) {
  std::string address = routine.module == fromModule ? std::string() : model.ModuleOf(routine).page;
  return address.append("#r-").append(routine.anchor);
}

void AppendDeclarationPlace(std::string& html, const SiteModel& model, symbols::SymbolId symbol) {
  const symbols::Symbol& found = model.known.SymbolAt(symbol);
  const int page = model.ModuleOf(found.module);
  const bool local =
      found.kind != symbols::SymbolKind::kControl && found.routine != symbols::kNone && !symbols::IsRoutine(found.kind);
  const symbols::SymbolId around = local ? model.known.RoutineSymbol(found.module, found.routine) : symbols::kNone;
  std::string name = EscapeUtf8(model.known.Modules()[found.module].name);
  if (around != symbols::kNone) name.append(".").append(EscapeUtf8(model.known.Name(around)));
  const std::uint32_t shown = page < 0 || found.line == 0 ? 0 : model.ShownLine(found.module, found.line);
  if (shown == 0) {
    page < 0 ? void(html += name) : AppendLink(html, model.Module(page).page, name);
    return;
  }
  const std::string line = std::to_string(shown);
  AppendLink(html, model.Module(page).page + "#z" + line, name + ", Zeile " + line);
}

void AppendUse(std::string& html, const SiteModel& model, const SiteUse& use, bool withModule) {
  std::string text = std::to_string(use.line);
  if (!use.hasPlace) {
    html.append(withModule ? EscapeUtf8(model.known.Modules()[use.module].name) + " " : "").append(text);
    return;
  }
  const SiteModule& module = model.Module(model.ModuleOf(use.module));
  const std::string address = module.page + "#z" + text;
  AppendLink(html, address, withModule ? EscapeCode(module.record->name) + " " + text : text);
}

void AppendLink(std::string& html, std::string_view address, std::string_view text) {
  html.append("<a href=\"").append(address).append("\">").append(text).append("</a>");
}

}  // namespace quillmate::output
