#include "analysis_commands.h"

#include <unordered_map>
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
  // Gives its search up.
  delete window_.findChild<UnusedWindow*>();
  FinishReading();
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

void AnalysisCommands::FinishReading() { UnusedWindow::FinishReading(window_); }

void AnalysisCommands::ShowUnusedRoutines() {
  if (auto* shown = window_.findChild<UnusedWindow*>(); shown != nullptr && shown->isVisible()) {
    shown->raise();
    shown->activateWindow();
    return;
  }
  interaction_.ShowProgress("Suche Routinen ohne Aufruf");
  std::unordered_map<int, codedb::Line> starts;
  const std::vector<navigation::TreeNode>& nodes = session_.Tree()->nodes;
  for (std::size_t node = 0; node < nodes.size(); ++node) {
    if (nodes[node].routine.value > 0) starts.emplace(nodes[node].routine.value, session_.StartLines()[node]);
  }
  auto* window = new UnusedWindow(&window_, desk_,
                                  [folder = session_.Files(), known = knowledge_.Get(),
                                   starts = std::move(starts)](const std::atomic<bool>& cancelled) {
                                    // A connection of its own: that of the session belongs to the window's thread.
                                    codedb::CodeDatabase index;
                                    index.OpenCodeDatabase(folder);
                                    auto routines = analysis::FindUnusedRoutines(index, folder, &cancelled);
                                    std::vector<codedb::Line> lines;
                                    for (const analysis::UnusedRoutine& routine : routines) {
                                      const auto start = starts.find(routine.routineNumber.value);
                                      lines.push_back(start == starts.end() ? codedb::Line{} : start->second);
                                    }
                                    return Judge(std::move(routines), lines, known.get());
                                  });
  window->show();
  interaction_.ShowProgress({});
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
