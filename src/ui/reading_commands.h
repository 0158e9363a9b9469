#pragma once

#include <QObject>

#include <quillmate/project/understanding.h>

#include "code_area.h"
#include "code_knowledge.h"
#include "interaction.h"
#include "place_bar.h"
#include "project_session.h"

namespace quillmate::ui {

/// What helps to read the module on screen: folding, steps from routine to routine, the line that tells the place.
class ReadingCommands : public QObject {
  Q_OBJECT

 public:
  /// Everything must outlive it.
  ReadingCommands(Interaction& interaction, ProjectSession& session, CodeArea& code, CodeKnowledge& knowledge,
                  PlaceBar& bar);

  /// The routine below the caret, or above it: `steps` 1 or -1.
  void StepThroughRoutines(int steps);
  void ToggleFold();
  void FoldAll(bool on);

 private:
  void ShowStructure();
  void ShowPlace();
  void GoToLine(int line);
  /// 0-based.
  int CaretLine() const;
  const project::RoutineLines* RoutineAtCaret() const;
  std::vector<project::RoutineLines> RoutinesOnScreen() const;
  void GoToRoutine(const project::RoutineLines& routine);

  Interaction& interaction_;
  ProjectSession& session_;
  CodeArea& code_;
  CodeKnowledge& knowledge_;
  PlaceBar& bar_;
};

}  // namespace quillmate::ui
