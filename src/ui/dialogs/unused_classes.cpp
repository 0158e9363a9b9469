#include "unused_classes.h"

#include <utility>

#include <quillmate/symbols/index_symbols.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

using symbols::Grade;

QString ReasonOf(const symbols::RoutineGrade& unused) {
  const QString reason = FromUtf8(unused.reason);
  const bool hasPlace = !unused.place.empty() && unused.place != unused.reason;
  return hasPlace ? reason + QStringLiteral(", ") + FromUtf8(unused.place) : reason;
}

}  // namespace

QString GradeCaption(std::optional<Grade> grade) {
  if (!grade) return {};
  switch (*grade) {
    case Grade::kCertain:
      return QStringLiteral("sicher");
    case Grade::kHost:
      return QStringLiteral("vom Host");
    case Grade::kText:
      return QStringLiteral("per Text");
    case Grade::kPossible:
      return QStringLiteral("möglich");
    case Grade::kSelf:
      return QStringLiteral("nur selbst");
    case Grade::kInactive:
      return QStringLiteral("inaktiv");
    case Grade::kWritten:
      return QStringLiteral("geschrieben");
  }
  return {};
}

std::vector<JudgedRoutine> Judge(std::vector<analysis::UnusedRoutine> routines, const std::vector<codedb::Line>& starts,
                                 const project::Understanding* known) {
  std::optional<symbols::IndexSymbols> index;
  if (known != nullptr) index.emplace(known->Index(), known->Places());
  std::vector<JudgedRoutine> judged;
  for (std::size_t i = 0; i < routines.size(); ++i) {
    JudgedRoutine& one = judged.emplace_back();
    one.routine = std::move(routines[i]);
    if (!index) continue;
    const auto start = starts[i].value > 0 ? std::optional(starts[i]) : std::nullopt;
    const symbols::RoutineGrade found = index->GradeOf(one.routine.moduleNumber, one.routine.routineName, start);
    one.grade = found.grade;
    one.reason = ReasonOf(found);
  }
  return judged;
}

}  // namespace quillmate::ui
