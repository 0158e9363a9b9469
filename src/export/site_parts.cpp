#include <quillmate/codedb/codes.h>

#include "site_parts_p.h"
#include "site_text_p.h"

namespace quillmate::output {

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

std::string_view JudgementText(SiteJudgement judgement) noexcept {
  switch (judgement) {
    case SiteJudgement::kCertain:
      return "sicher";
    case SiteJudgement::kHost:
      return "vom Host";
    case SiteJudgement::kText:
      return "per Text";
  }
  return {};
}

std::string_view JudgementExplanation(SiteJudgement judgement) noexcept {
  switch (judgement) {
    case SiteJudgement::kCertain:
      return "Nichts im Code nennt den Namen.";
    case SiteJudgement::kHost:
      return "Der Host ruft die Routine selbst auf: bei einem Ereignis, beim Start oder aus einem Menü.";
    case SiteJudgement::kText:
      return "Der Name steht in einer Zeichenkette oder in anderer Schreibweise im Code; ein Aufruf kann darüber "
             "gehen.";
  }
  return {};
}

std::string Counted(std::int64_t number, std::string_view one, std::string_view many) {
  return GroupedNumber(number).append(" ").append(number == 1 ? one : many);
}

std::string RoutineAddress(const SiteModel& model, const SiteRoutine& routine, int fromModule) {
  std::string address = routine.module == fromModule ? std::string() : model.ModuleOf(routine).page;
  return address.append("#r-").append(routine.anchor);
}

void AppendLink(std::string& html, std::string_view address, std::string_view text) {
  html.append("<a href=\"").append(address).append("\">").append(text).append("</a>");
}

}  // namespace quillmate::output
