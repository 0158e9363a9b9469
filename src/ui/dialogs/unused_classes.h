#pragma once

#include <QString>
#include <optional>
#include <vector>

#include <quillmate/analysis/unused.h>
#include <quillmate/project/understanding.h>

/// The classes of the routines that nothing calls.
namespace quillmate::ui {

struct JudgedRoutine {
  analysis::UnusedRoutine routine;
  /// Nothing as long as the code is not understood.
  std::optional<symbols::Grade> grade{};
  /// For people: "Ereignis Click von cmdOk".
  QString reason;
};

/// "sicher", "vom Host", "per Text", "möglich", "nur selbst", "inaktiv"; empty without one.
QString GradeCaption(std::optional<symbols::Grade> grade);

/// The fixed list with the classes of the understanding; without one none. Starts: the first line of each routine.
std::vector<JudgedRoutine> Judge(std::vector<analysis::UnusedRoutine> routines, const std::vector<codedb::Line>& starts,
                                 const project::Understanding* known);

}  // namespace quillmate::ui
