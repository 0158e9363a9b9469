#include "reading_commands.h"

#include <QTextBlock>
#include <algorithm>

#include <quillmate/text/windows1252.h>

#include "qt_text.h"

namespace quillmate::ui {

ReadingCommands::ReadingCommands(Interaction& interaction, ProjectSession& session, CodeArea& code,
                                 CodeKnowledge& knowledge, PlaceBar& bar)
    : interaction_(interaction), session_(session), code_(code), knowledge_(knowledge), bar_(bar) {
  connect(&code_, &CodeArea::PlaceShown, this, &ReadingCommands::ShowStructure);
  connect(&session_, &ProjectSession::PlaceChanged, this, &ReadingCommands::ShowPlace);
  connect(&knowledge_, &CodeKnowledge::Arrived, this, [this] {
    ShowStructure();
    ShowPlace();
  });
  connect(&code_.Main(), &CodeEditor::LineWanted, this,
          [this](int line) { interaction_.Guarded([this, line] { GoToLine(line); }); });
  connect(&bar_, &PlaceBar::ModuleClicked, this, [this] { interaction_.Guarded([this] { GoToLine(0); }); });
  connect(&bar_, &PlaceBar::RoutineClicked, this, [this] {
    interaction_.Guarded([this] {
      const project::RoutineLines* routine = RoutineAtCaret();
      if (routine != nullptr) GoToRoutine(*routine);
    });
  });
}

/// Tells the view what its module is made of, as soon as that is known.
void ReadingCommands::ShowStructure() {
  CodeEditor& editor = code_.Main();
  if (!session_.IsLoaded() || !editor.ShowsModule() || editor.HasStructure() || knowledge_.IsOnTheWay()) return;
  const auto known = knowledge_.Get();
  if (known == nullptr) return;
  const symbols::Index module = known->ModuleOf(session_.Views().Current());
  if (module == symbols::kNone) return;
  editor.SetStructure(project::FoldsOf(*known, module), project::RoutinesOf(*known, module));
}

void ReadingCommands::ShowPlace() {
  if (!session_.IsLoaded()) return;
  QString project = FromUtf8(session_.Name());
  const auto known = knowledge_.IsOnTheWay() ? nullptr : knowledge_.Get();
  const symbols::Index module = known == nullptr ? symbols::kNone : known->ModuleOf(session_.Views().Current());
  if (module != symbols::kNone && known->Index().Projects().size() > 1) {
    project = FromUtf8(known->Index().Projects()[known->Index().Modules()[module].project].name);
  }
  bar_.Show(project, FromCode(session_.Module()), FromCode(session_.Routine()));
}

int ReadingCommands::CaretLine() const { return static_cast<int>(session_.View().LineFromChar(code_.Caret())); }

/// Those of the index where nothing better is known.
std::vector<project::RoutineLines> ReadingCommands::RoutinesOnScreen() const {
  if (code_.Main().HasStructure()) return code_.Main().Routines();
  std::vector<project::RoutineLines> routines;
  const navigation::ProjectTree& tree = *session_.Tree();
  const std::vector<codedb::Line>& lines = session_.StartLines();
  const codedb::ModuleNumber module = session_.VisibleModule();
  for (std::size_t node = 0; node < tree.nodes.size(); ++node) {
    if (tree.nodes[node].parent < 0 || tree.nodes[node].module != module || lines[node].value < 1) continue;
    const int line = lines[node].value - 1;
    routines.push_back({line, line, line, text::Utf8FromCode(tree.nodes[node].text)});
  }
  std::ranges::sort(routines, {}, &project::RoutineLines::first);
  return routines;
}

const project::RoutineLines* ReadingCommands::RoutineAtCaret() const {
  const std::vector<project::RoutineLines>& routines = code_.Main().Routines();
  const auto after = std::ranges::upper_bound(routines, CaretLine(), {}, &project::RoutineLines::first);
  return after == routines.begin() ? nullptr : &*std::prev(after);
}

void ReadingCommands::GoToRoutine(const project::RoutineLines& routine) { GoToLine(routine.first); }

void ReadingCommands::GoToLine(int line) {
  if (!session_.IsLoaded()) return;
  session_.JumpTo(session_.Views().Current(), {session_.View().LineStart(static_cast<std::size_t>(line)), 0});
}

void ReadingCommands::StepThroughRoutines(int steps) {
  const int line = CaretLine();
  const std::vector<project::RoutineLines> routines = RoutinesOnScreen();
  const project::RoutineLines* target = nullptr;
  for (const project::RoutineLines& routine : routines) {
    if (steps > 0 ? routine.first <= line : routine.first >= line) continue;
    target = &routine;
    if (steps > 0) break;
  }
  if (target == nullptr) {
    interaction_.ShowProgress(steps > 0 ? "Darunter steht keine Routine mehr." : "Darüber steht keine Routine mehr.");
  } else {
    GoToRoutine(*target);
  }
}

void ReadingCommands::ToggleFold() {
  if (code_.IsZoomed() || !code_.Main().ToggleFoldAtCaret()) {
    interaction_.ShowProgress(knowledge_.IsOnTheWay() ? ToUtf8(knowledge_.MissingText())
                                                      : "An der Schreibmarke lässt sich nichts einklappen.");
  }
}

void ReadingCommands::FoldAll(bool on) {
  if (!code_.IsZoomed()) code_.Main().FoldAll(on);
}

}  // namespace quillmate::ui
