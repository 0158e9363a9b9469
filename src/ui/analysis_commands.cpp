#include "analysis_commands.h"

#include <utility>

#include <quillmate/analysis/unused.h>

#include "call_picture_window.h"
#include "form_window.h"
#include "list_window.h"
#include "matrix_window.h"
#include "qt_text.h"
#include "unused_window.h"

namespace quillmate::ui {

AnalysisCommands::AnalysisCommands(QWidget& window, const ListDesk& desk, CodeKnowledge& knowledge, NameCommands& names)
    : window_(window),
      desk_(desk),
      interaction_(desk.interaction),
      session_(desk.session),
      knowledge_(knowledge),
      names_(names),
      quickOpen_(new QuickOpen(&window)) {
  connect(quickOpen_, &QuickOpen::Chosen, this,
          [this](symbols::SymbolId symbol) { interaction_.Guarded([this, symbol] { names_.GoToSymbol(symbol); }); });
}

void AnalysisCommands::CloseAll() {
  delete window_.findChild<UnusedWindow*>();
  qDeleteAll(window_.findChildren<ListWindow*>());
  delete window_.findChild<CallPictureWindow*>();
  delete window_.findChild<MatrixWindow*>();
  delete window_.findChild<FormWindow*>();
  waiting_ = nullptr;
  quickOpen_->Forget();
}

void AnalysisCommands::DoWaiting() {
  if (waiting_) interaction_.GuardedInTurn(std::exchange(waiting_, nullptr));
}

void AnalysisCommands::WhenKnown(std::function<void()> work) {
  if (!knowledge_.IsOnTheWay()) {
    work();
    return;
  }
  waiting_ = std::move(work);
  interaction_.ShowProgress("Der Code wird noch untersucht. Die Liste kommt gleich.");
}

void AnalysisCommands::OpenName() {
  auto known = names_.Known();
  if (known != nullptr) quickOpen_->Open(std::move(known));
}

void AnalysisCommands::ShowUnusedRoutines() {
  std::vector<JudgedRoutine> judged;
  {
    const Working working(interaction_);
    interaction_.ShowProgress("Suche Routinen ohne Aufruf");
    std::vector<analysis::UnusedRoutine> routines = analysis::FindUnusedRoutines(session_.Index(), session_.Files());
    std::vector<codedb::Line> starts;
    for (const analysis::UnusedRoutine& routine : routines) {
      const int node = session_.Tree()->Find(routine.routineNumber);
      starts.push_back(node < 0 ? codedb::Line{} : session_.StartLines()[static_cast<std::size_t>(node)]);
    }
    judged = Judge(std::move(routines), starts, knowledge_.Get().get());
  }
  delete window_.findChild<UnusedWindow*>();
  (new UnusedWindow(&window_, desk_, std::move(judged)))->show();
}

void AnalysisCommands::ShowList(MakeList& make) {
  const auto known = names_.Known();
  if (known == nullptr) return;
  ListSource source = make(known);
  for (ListWindow* shown : window_.findChildren<ListWindow*>(source.name)) {
    if (shown->isVisible()) {
      shown->raise();
      shown->activateWindow();
      return;
    }
    delete shown;
  }
  auto* list = new ListWindow(&window_, desk_, std::move(source));
  connect(list, &ListWindow::PlaceChosen, this, [this](const project::TextStretch& place) {
    interaction_.Guarded([this, place] { names_.GoToStretch(place); });
  });
  list->show();
}

void AnalysisCommands::ShowCallPicture(symbols::SymbolId routine) {
  const auto known = knowledge_.Get();
  if (known == nullptr || routine == symbols::kNone) return;
  auto* picture = window_.findChild<CallPictureWindow*>();
  if (picture == nullptr) {
    picture = new CallPictureWindow(&window_, desk_, known, routine);
    connect(picture, &CallPictureWindow::RoutineChosen, this,
            [this](symbols::SymbolId chosen) { interaction_.Guarded([this, chosen] { names_.GoToSymbol(chosen); }); });
  } else {
    picture->ShowRoutine(routine);
  }
  picture->show();
  picture->raise();
  picture->activateWindow();
}

void AnalysisCommands::ShowDependencies() {
  const auto known = names_.Known();
  if (known == nullptr) return;
  delete window_.findChild<MatrixWindow*>();
  MatrixWindow* matrix = nullptr;
  {
    const Working working(interaction_);
    matrix = new MatrixWindow(&window_, desk_, known);
  }
  connect(matrix, &MatrixWindow::UsesWanted, this, [this](symbols::Index from, symbols::Index to) {
    interaction_.Guarded([this, from, to] { names_.ListUsesBetween(from, to); });
  });
  matrix->show();
}

void AnalysisCommands::ShowForm() {
  const auto known = names_.Known();
  if (known == nullptr) return;
  const symbols::Index module = known->ModuleOf(session_.Views().Current());
  std::optional<project::FormPicture> form;
  if (module != symbols::kNone) {
    const Working working(interaction_);
    form = project::ReadFormOf(*known, module, session_.Files());
  }
  if (!form) {
    interaction_.ShowProgress("Dieses Modul hat kein Formular und keine Steuerelemente.");
    return;
  }
  delete window_.findChild<FormWindow*>();
  auto* window = new FormWindow(&window_, desk_, known, std::move(*form));
  connect(window, &FormWindow::RoutineChosen, this,
          [this](symbols::SymbolId routine) { interaction_.Guarded([this, routine] { names_.GoToSymbol(routine); }); });
  window->show();
}

}  // namespace quillmate::ui
