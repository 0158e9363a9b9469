#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {

void Shell::ConnectSession() {
  connect(&session_, &ProjectSession::ProjectLeaves, this, [this] {
    window_.setUpdatesEnabled(false);
    tasks_.FinishReading();
    analysis_.CloseAll();
    comparing_.ForgetLoaded();
    knowledge_.Drop();
    uses_->Clear();
    hierarchy_->Clear();
    code_->Forget();
    hits_->Clear();
  });
  connect(&session_, &ProjectSession::ProjectChanged, this, [this] {
    interaction_.Attempt([this] { ShowProject(); });
    window_.setUpdatesEnabled(true);
    if (session_.IsLoaded()) knowledge_.Start();
  });
  connect(&session_, &ProjectSession::TitleChanged, this, &Shell::ShowTitle);
  connect(&session_, &ProjectSession::PlaceChanged, this, [this] {
    staBar_->SetText(StatusPanels::kModule, FromCode(session_.Module()));
    staBar_->SetText(StatusPanels::kRoutine, FromCode(session_.Routine()));
    project_->MarkModule();
  });
  connect(&session_, &ProjectSession::HistoryChanged, this, [this] {
    const navigation::RoutineHistory& history = session_.History();
    staBar_->SetEnabled(StatusPanels::kBack, history.BackEnabled());
    staBar_->SetEnabled(StatusPanels::kNext, history.NextEnabled());
    commands_->Item(CommandId::kGoBack).setEnabled(history.BackEnabled());
    commands_->Item(CommandId::kGoNext).setEnabled(history.NextEnabled());
  });
  connect(&session_, &ProjectSession::Moved, this, [this](project::Reveal reveal) {
    interaction_.Attempt([this, reveal] { code_->ShowPlace(reveal); });
    names_.CaretRests();
  });
}

void Shell::ConnectTrees() {
  connect(&sources_, &SourceList::StatusChanged, staBar_,
          [this](const QString& text) { staBar_->SetText(StatusPanels::kProgress, text); });
  connect(&sources_.Panel(), &SourcePanel::ReadAllWanted, this, [this] {
    sources_.TickAll(true);
    Run(CommandId::kReadCode);
  });
  connect(&sources_, &SourceList::MenuWanted, this,
          [this](const QPoint& place) { ShowReadingMenu(place, sources_.IsCurrentFromSource()); });
  connect(project_, &ProjectPanel::NodeChosen, this, [this](int node) {
    interaction_.Guarded([this, node] {
      if (!projects_.OfferReload()) session_.GoToNode(node);
    });
  });
  connect(project_, &ProjectPanel::RoutineChosen, this,
          [this](codedb::ModuleNumber module, codedb::Line line, const std::string& name) {
            interaction_.Guarded([this, module, line, &name] {
              if (!projects_.OfferReload()) session_.GoToRoutine(codedb::ViewOf(module), line, name);
            });
          });
  connect(project_, &ProjectPanel::DeclarationChosen, this, [this](symbols::SymbolId declaration) {
    interaction_.Guarded([this, declaration] {
      if (!projects_.OfferReload()) names_.GoToSymbol(declaration);
    });
  });
  connect(project_, &ProjectPanel::Rejected, this, [this] { code_->Editor().setFocus(); });
  connect(callers_, &CallerPanel::NodeChosen, this, [this](const navigation::TreeNode& caller) {
    interaction_.Guarded([this, caller] {
      const int node = session_.Tree()->Find(caller);
      if (node >= 0) session_.GoToNode(node);
    });
  });
}

void Shell::ConnectCode() {
  connect(code_, &CodeArea::CaretMoved, this, [this] { interaction_.Guarded([this] { session_.TrackCaret(); }); });
  connect(code_, &CodeArea::FontStepsTurned, this, [this](int steps) { view_.ChangeFont(steps); });
  connect(code_, &CodeArea::ZoomChanged, &commands_->Item(CommandId::kSwitchZoom), &QAction::setChecked);
  connect(code_, &CodeArea::MenuWanted, this, &Shell::ShowCodeMenu);
  connect(code_, &CodeArea::ZoomMenuWanted, this,
          [this](const QPoint& place) { commands_->ShowPopup(PopupId::kZoom, place); });
  connect(txtSuche_, &QLineEdit::returnPressed, &commands_->Item(CommandId::kSearchFromTop), &QAction::trigger);
  connect(txtSuche_, &SearchField::Left, this,
          [this] { (session_.IsLoaded() ? static_cast<QWidget&>(code_->Editor()) : sources_.Tree()).setFocus(); });
  connect(hits_, &HitPanel::CopyWanted, this,
          [this] { interaction_.Guarded([this] { CopyList(Desk(), {hits_->AsTable()}); }); });
  connect(hits_, &HitPanel::SaveWanted, this,
          [this] { interaction_.Guarded([this] { SaveList(Desk(), {hits_->AsTable()}); }); });
  QAction& wholeWord = commands_->Item(CommandId::kSwitchWholeWord);
  connect(&wholeWord, &QAction::toggled, hits_, &HitPanel::SetWholeWord);
  connect(hits_, &HitPanel::WholeWordWanted, &wholeWord, &QAction::trigger);
  connect(placeBar_, &PlaceBar::ProjectClicked, project_, &ProjectPanel::FocusModule);
  connect(hits_, &HitPanel::Left, this, [this] { code_->Editor().setFocus(); });
}

void Shell::ConnectNames() {
  knowledge_.setParent(&window_);
  connect(&knowledge_, &CodeKnowledge::StatusChanged, staBar_,
          [this](const QString& text) { staBar_->SetText(StatusPanels::kProgress, text); });
  connect(&knowledge_, &CodeKnowledge::Arrived, this, &Shell::TakeKnowledge);
  connect(uses_, &UsePanel::Left, this, [this] { code_->Editor().setFocus(); });
  connect(hierarchy_, &CallPanel::Left, this, [this] { code_->Editor().setFocus(); });
  connect(hierarchy_, &CallPanel::PictureWanted, this, [this](symbols::SymbolId routine) {
    interaction_.Guarded([this, routine] { analysis_.ShowCallPicture(routine); });
  });
  exports_.TakeNotes([this] { return notes_.NotesOfSite(); });
  printing_.TakeNotes([this](codedb::ViewIndex view) { return notes_.MarksOf(view); });
  connect(&projects_, &ProjectCommands::AboutToCopy, this, [this] {
    tasks_.FinishReading();
    knowledge_.FinishReading();
    analysis_.FinishReading();
    comparing_.FinishReading();
  });
  connect(&inventories_, &InventoryCommands::FileChosen, this, [this](const QString& path) {
    interaction_.Guarded([this, path] { projects_.ReadFile(path); });
    window_.activateWindow();
  });
  connect(&comparing_, &CompareCommands::PlaceWanted, this, [this](symbols::Index module, std::uint32_t line) {
    interaction_.Guarded([this, module, line] { names_.GoToStretch({{module, line, 1}, 0}); });
    window_.activateWindow();
  });
  handOver_.TakeNotes([this] { return notes_.Notes(); });
}

void Shell::ConnectStatusBar() {
  connect(&interaction_, &Interaction::Progress, staBar_, &StatusPanels::ShowProgress);
  connect(staBar_, &StatusPanels::BackClicked, this, [this] { Run(CommandId::kGoBack); });
  connect(staBar_, &StatusPanels::NextClicked, this, [this] { Run(CommandId::kGoNext); });
  connect(staBar_, &StatusPanels::RoutineActivated, &commands_->Item(CommandId::kFindRoutineCallers),
          &QAction::trigger);
}

void Shell::ConnectStartPage() {
  connect(startPage_, &StartPage::CommandWanted, this,
          [this](CommandId command) { commands_->Item(command).trigger(); });
  connect(startPage_, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& place) { ShowReadingMenu(startPage_->mapToGlobal(place), false); });
  connect(&projects_, &ProjectCommands::RecentChanged, this, &Shell::ShowRecent);
  projects_.ReadDocumentsAtOnce([this] { return commands_->Item(CommandId::kSwitchReadAtOnce).isChecked(); });
}

}  // namespace quillmate::ui
