#include "whereabouts.h"

#include <QApplication>
#include <QMouseEvent>
#include <stdexcept>
#include <utility>

#include <quillmate/codedb/index_files.h>

#include "caller_list.h"
#include "hit_panel.h"
#include "qt_text.h"
#include "shell.h"
#include "zoom_view.h"

namespace quillmate::ui {
namespace {

std::string ModuleKey(int view) { return "M" + std::to_string(view + 1); }

navigation::CodeView& CurrentView(Shell& shell) { return shell.views.View(shell.views.Current()); }

void TrackCaret(Shell& shell) {
  if (shell.mode == 0) return;
  const int current = shell.views.Current();
  const auto routine = shell.whereabouts.caret.Track(shell.Globals().CodeDb, CurrentView(shell), current);
  if (routine) shell.staBar->SetText(StatusPanels::kRoutine, FromCode(*routine));
}

/// The two extra buttons of a mouse, wherever in the window they are pressed.
class MouseSteps : public QObject {
 public:
  explicit MouseSteps(Shell& shell) : QObject(&shell.window), shell_(shell) { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The second of two quick presses comes as a double click.
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick) return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || widget->window() != &shell_.window) return false;
    const Qt::MouseButton button = static_cast<QMouseEvent*>(event)->button();
    if (button != Qt::BackButton && button != Qt::ForwardButton) return false;
    shell_.commands->Item(button == Qt::BackButton ? CommandId::kGoBack : CommandId::kGoNext).trigger();
    return true;
  }

 private:
  Shell& shell_;
};

}  // namespace

void WireWhereabouts(Shell& shell) {
  shell.rtbHaupt->onCaret = [&shell] { shell.Guarded([&shell] { TrackCaret(shell); }); };
  shell.staBar->onArrow = [&shell](int panel) { shell.Guarded([&shell, panel] { Step(shell, panel); }); };
  shell.staBar->onRoutine = [&shell] { shell.commands->Item(CommandId::kFindRoutineCallers).trigger(); };
  ShowSteps(shell);
  new MouseSteps(shell);
}

void StartWhereabouts(Shell& shell) {
  const int modules = shell.projectModel->Tree().moduleCount;
  shell.whereabouts.caret.Forget();
  shell.whereabouts.texts.Load(shell.Globals().TempFolder, modules);
  shell.hits->Clear();
  CloseCallers(shell);
  if (modules == 0) SetZoom(shell, false);
}

void ShowModule(Shell& shell, int view) {
  if (view < 0 || view >= shell.views.Count()) {
    throw std::runtime_error(codedb::BrokenProjectMessage(shell.Globals().TempFolder));
  }
  navigation::CodeView& code = shell.views.View(view);
  shell.views.SetCurrent(view);
  shell.rtbHaupt->ShowView(view, code, shell.views.Runs(view));
}

void ShowPlace(Shell& shell) {
  shell.rtbHaupt->ShowSelection();
  if (IsZoomed(shell)) BuildZoom(shell);
  shell.Editor().setFocus();
}

void RefreshStatus(Shell& shell) {
  const int current = shell.views.Current();
  shell.staBar->SetText(StatusPanels::kRoutine,
                        FromCode(shell.whereabouts.caret.Refresh(shell.Globals().CodeDb, CurrentView(shell), current)));
  const navigation::ProjectTree& tree = shell.projectModel->Tree();
  const int node = tree.Find(ModuleKey(current));
  if (node >= 0)
    shell.staBar->SetText(StatusPanels::kModule, FromCode(tree.nodes[static_cast<std::size_t>(node)].text));
  MarkVisibleModule(shell);
}

void MarkVisibleModule(Shell& shell) { shell.projectModel->Mark(ModuleKey(shell.views.Current())); }

void PushPlace(Shell& shell) {
  shell.whereabouts.history.Push({shell.views.Current(), CurrentView(shell).SelStart(),
                                  ToUtf8(shell.staBar->Text(StatusPanels::kModule)),
                                  ToUtf8(shell.staBar->Text(StatusPanels::kRoutine))});
  ShowSteps(shell);
}

void ShowSteps(Shell& shell) {
  const navigation::RoutineHistory& history = shell.whereabouts.history;
  shell.staBar->SetEnabled(StatusPanels::kBack, history.BackEnabled());
  shell.staBar->SetEnabled(StatusPanels::kNext, history.NextEnabled());
  shell.commands->Item(CommandId::kGoBack).setEnabled(history.BackEnabled());
  shell.commands->Item(CommandId::kGoNext).setEnabled(history.NextEnabled());
}

void Step(Shell& shell, int panel) {
  navigation::RoutineHistory& history = shell.whereabouts.history;
  const navigation::Place* place = panel == StatusPanels::kBack ? history.Back() : history.Next();
  ShowSteps(shell);
  // The place may belong to a project that is no longer there.
  if (place != nullptr && shell.mode != 0 && place->view < shell.views.Count()) {
    ShowModule(shell, place->view);
    navigation::CodeView& view = CurrentView(shell);
    view.Select(place->caret, 0);
    view.SelectFirstWordOfLine();
    shell.staBar->SetText(StatusPanels::kModule, FromUtf8(place->module));
    shell.staBar->SetText(StatusPanels::kRoutine, FromUtf8(place->routine));
    shell.whereabouts.caret.Forget();
    MarkVisibleModule(shell);
    ShowPlace(shell);
    return;
  }
  shell.Editor().setFocus();
}

}  // namespace quillmate::ui
