#include <QLayout>
#include <QWindow>

#include "about_box.h"
#include "display_size.h"
#include "help.h"
#include "options_dialog.h"
#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {

void Shell::Run(CommandId command) {
  interaction_.Guarded([this, command] {
    projects_.OfferReload();
    Carry(command);
  });
}

void Shell::EnterSearchText() {
  // The list of callers hides the toolbar, and a narrow window its end.
  QToolBar& bar = commands_->ToolBar();
  bar.show();
  if (bar.width() < bar.sizeHint().width() && !txtSuche_->isVisible()) {
    window_.resize(bar.sizeHint().width(), window_.height());
  }
  window_.layout()->activate();
  txtSuche_->setFocus();
  txtSuche_->selectAll();
}

void Shell::ListHits() {
  const std::string chosen = code_->ChosenSelection();
  const bool isOneLine = !chosen.empty() && chosen.find('\n') == std::string::npos;
  hits_->Open(isOneLine ? FromCode(chosen) : txtSuche_->text());
}

void Shell::Toggle(CommandId command, bool& on) {
  on = !on;
  commands_->Item(command).setChecked(on);
}

void Shell::ShowCallers() {
  const QString routine = FromCode(session_.Routine());
  std::optional<navigation::ProjectTree> found = navigation_.FindRoutineCallers();
  if (!found.has_value()) return;
  if (found->moduleCount == 0) {
    CloseCallers();
    return;
  }
  const UpdateLock lock(window_);
  callers_->ShowCallers(std::move(*found), routine);
  SetCallersShown(true);
  callers_->setFocus();
}

void Shell::CloseCallers() {
  const UpdateLock lock(window_);
  const bool hadFocus = callers_->hasFocus();
  SetCallersShown(false);
  if (hadFocus) code_->Editor().setFocus();
  callers_->Clear();
}

void Shell::SetCallersShown(bool shown) {
  ShowTree(shown ? static_cast<QWidget&>(*callers_) : *project_);
  tobSuche_->setVisible(shown);
  commands_->ToolBar().setVisible(!shown);
  commands_->Item(CommandId::kCloseCallerList).setEnabled(shown);
}

void Shell::ShowOptions() {
  auto* dialog = new OptionsDialog(&window_, interaction_, services_.globals, services_.settings);
  connect(dialog, &QDialog::accepted, this, &Shell::ApplyOptions);
  connect(dialog, &QDialog::accepted, this, [this] {
    if (!session_.IsLoaded()) sources_.TakeReadingOptions();
  });
  dialog->open();
}

void Shell::ShowAbout() {
  auto* box = new AboutBox(&window_, interaction_, services_.globals);
  connect(box, &AboutBox::ManualWanted, this, [this] { Run(CommandId::kShowHelp); });
  box->open();
}

void Shell::ShowMini() {
  mini_ = std::make_unique<MiniWindow>();
  mini_->setWindowTitle(window_.windowTitle());
  mini_->setWindowIcon(window_.windowIcon());
  connect(mini_.get(), &MiniWindow::HtmlWanted, this, [this] { Run(CommandId::kExportClipboardHtml); });
  connect(mini_.get(), &MiniWindow::Returned, this, &Shell::ReturnFromMini);
  connect(mini_.get(), &MiniWindow::Closed, this, [this] {
    if (MayClose()) {
      emit EndWanted();
    } else {
      ReturnFromMini();
    }
  });
  mini_->show();
}

void Shell::ShowSpecialView() {
  // Given as a wish, the place is kept: the window comes back where it was, not where the desktop puts a new one.
  QWindow& main = *window_.windowHandle();
  main.setGeometry(main.geometry());
  window_.hide();
  ShowMini();
}

void Shell::ReturnFromMini() {
  window_.show();
  // Active again, it gives the focus to the widget that had it.
  window_.activateWindow();
}

void Shell::Carry(CommandId command) {
  switch (command) {
    using enum CommandId;
    case kOpenSavedProject:
      return projects_.OpenSavedProject();
    case kStartAnew:
      return projects_.StartAnew();
    case kSaveProjectAs:
      projects_.SaveProject();
      return;
    case kAddFiles:
      return projects_.AddFiles();
    case kAddFolder:
      return projects_.AddFolder();
    case kSwitchReadAtOnce:
      return view_.SwitchReadAtOnce();
    case kPrint:
      return printing_.Print();
    case kPreviewPrint:
      return printing_.Preview();
    case kSavePdf:
      return printing_.SavePdf();
    case kHandOver:
      return analysis_.WhenKnown([this] { HandProjectOver(); });
    case kOpenRecent0:
    case kOpenRecent1:
    case kOpenRecent2:
    case kOpenRecent3:
    case kOpenRecent4:
    case kOpenRecent5:
    case kOpenRecent6:
    case kOpenRecent7:
    case kOpenRecent8:
    case kOpenRecent9:
      return projects_.OpenRecent(static_cast<std::size_t>(command) - static_cast<std::size_t>(kOpenRecent0));
    case kEndProgram:
      window_.close();
      return;
    case kReadCode:
      return projects_.ReadCode();
    case kSearchFromTop:
      return navigation_.SearchFromTop();
    case kSearchOn:
      return navigation_.SearchOn();
    case kSwitchProjectSearch:
      return Toggle(command, switches_.project);
    case kSwitchWholeWord:
      return Toggle(command, switches_.wholeWord);
    case kTakeSearchText:
      return navigation_.TakeSearchText();
    case kEnterSearchText:
      return EnterSearchText();
    case kListAllHits:
      return ListHits();
    case kFindRoutineCallers:
      return ShowCallers();
    case kShowDefinition:
      return navigation_.ShowDefinition();
    case kShowDeclaration:
      return names_.ShowDeclaration();
    case kListUses:
      return names_.ShowUses();
    case kNextUse:
      return names_.StepThroughUses(1);
    case kPreviousUse:
      return names_.StepThroughUses(-1);
    case kGoToName:
      return analysis_.OpenName();
    case kGoToLine:
      return names_.GoToLine();
    case kGoBack:
      return navigation_.GoBack();
    case kGoNext:
      return navigation_.GoNext();
    case kCopyModule:
      return navigation_.CopyModule();
    case kCopySelection:
      return navigation_.CopySelection();
    case kRefreshProjects:
      return projects_.RefreshProjects();
    case kSwitchZoom:
      return code_->SetZoom(!code_->IsZoomed());
    case kCloseCallerList:
      return CloseCallers();
    case kFilterTree:
      CloseCallers();
      return project_->FocusFilter();
    case kSwitchSourceOrder:
      return view_.SwitchSourceOrder();
    case kSwitchExactOutline:
      return view_.SwitchExactOutline();
    case kSwitchDeclarations:
      return view_.SwitchDeclarations();
    case kSwitchLineNumbers:
      return view_.SwitchLineNumbers();
    case kEnlargeFont:
      return view_.ChangeFont(1);
    case kReduceFont:
      return view_.ChangeFont(-1);
    case kResetFont:
      return view_.ChangeFont(0);
    case kShowSpecialView:
      return ShowSpecialView();
    case kExportClipboardHtml:
      return exports_.ExportClipboardHtml();
    case kExportSelectionHtml:
      return exports_.ExportSelectionHtml();
    case kExportModuleHtml:
      return exports_.ExportModuleHtml();
    case kExportProjectHtml:
      return exports_.ExportProjectHtml();
    case kWriteDocumentation:
      return analysis_.WhenKnown([this] { WriteDocumentation(); });
    case kExportZoomHtml:
      return exports_.ExportZoomHtml();
    case kExportProjectRtf:
      return exports_.ExportProjectRtf();
    case kExportModuleRtf:
      return exports_.ExportModuleRtf();
    case kCopySelectionText:
      return exports_.CopySelectionText();
    case kCopyModuleText:
      return exports_.CopyModuleText();
    case kNextRoutine:
      return reading_.StepThroughRoutines(1);
    case kPreviousRoutine:
      return reading_.StepThroughRoutines(-1);
    case kToggleFold:
      return reading_.ToggleFold();
    case kFoldAll:
      return reading_.FoldAll(true);
    case kUnfoldAll:
      return reading_.FoldAll(false);
    case kSwitchHeader:
      return view_.SwitchHeader();
    case kToggleBookmark:
      return notes_.ToggleBookmark();
    case kNextBookmark:
      return notes_.StepThroughBookmarks(1);
    case kPreviousBookmark:
      return notes_.StepThroughBookmarks(-1);
    case kEditNote:
      return notes_.EditNote();
    case kListNotes:
      return notes_.ShowList();
    case kShowHierarchy:
      return names_.ShowHierarchy();
    case kShowCallPicture:
      return analysis_.ShowCallPicture(names_.RoutineAtCaret());
    case kShowDependencies:
      return analysis_.WhenKnown([this] { analysis_.ShowDependencies(); });
    case kShowForm:
      return analysis_.WhenKnown([this] { analysis_.ShowForm(); });
    case kListFindings:
      return analysis_.WhenKnown([this] { analysis_.ShowList(FindingList); });
    case kListUnused:
      return analysis_.WhenKnown([this] { analysis_.ShowList(UnusedList); });
    case kListMetrics:
      return analysis_.WhenKnown([this] { analysis_.ShowList(MetricList); });
    case kReadVbFiles:
      return projects_.ReadVbFiles();
    case kCompareStates:
      return comparing_.Choose();
    case kShowInventory:
      inventories_.Show();
      return;
    case kCopyOutline:
      return exports_.CopyOutline();
    case kShowUnusedRoutines:
      return analysis_.WhenKnown([this] { analysis_.ShowUnusedRoutines(); });
    case kShowOptions:
      return ShowOptions();
    case kStoreDisplaySize:
      return StoreDisplaySize(window_, interaction_, services_.globals.Options, services_.settings);
    case kApplyStoredDisplaySize:
      return ApplyStoredDisplaySize(window_, interaction_, services_.globals.Options);
    case kClearClipboard:
      return services_.platform.ClearClipboard();
    case kReadSample:
      return projects_.ReadSample();
    case kShowHelp:
      return ShowHelp(interaction_, services_.globals);
    case kShowAbout:
      return ShowAbout();
    case kTickAll:
      return sources_.TickAll(true);
    case kTickNone:
      return sources_.TickAll(false);
    case kRemoveSource:
      return sources_.RemoveCurrentSource();
  }
}

}  // namespace quillmate::ui
