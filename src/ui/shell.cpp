#include "shell.h"

#include <QApplication>
#include <QLayout>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include <quillmate/analysis/unused.h>
#include <quillmate/navigation/identifier.h>
#include <quillmate/project/saved_projects.h>
#include <quillmate/startup/edition.h>

#include "about_box.h"
#include "accessible_names.h"
#include "call_picture_window.h"
#include "desktop_look.h"
#include "display_size.h"
#include "form_window.h"
#include "help.h"
#include "icons.h"
#include "list_window.h"
#include "matrix_window.h"
#include "options_dialog.h"
#include "qt_text.h"
#include "splitter.h"
#include "unused_window.h"

namespace quillmate::ui {
namespace {

constexpr int kTreeWidth = 300;
constexpr int kCodeWidth = 800;

static_assert(kRecentCommands == project::kRecentCount);

SourceServices ServicesOfSources(const Services& services) {
  return {services.settings, services.documents, services.host, services.globals.HostName,
          services.globals.hostSelector == startup::kAccess};
}

/// Where projects run that don't tell.
symbols::Host AssumedHost(int selector) {
  switch (selector) {
    case startup::kWord:
      return symbols::Host::kWord;
    case startup::kAccess:
      return symbols::Host::kAccess;
    case startup::kPowerPoint:
      return symbols::Host::kPowerPoint;
    case startup::kVisualBasic:
      return symbols::Host::kVb6;
    default:
      return symbols::Host::kExcel;
  }
}

/// The two extra buttons of a mouse, wherever in the window they are pressed.
class MouseSteps : public QObject {
 public:
  MouseSteps(QWidget& window, CommandSet& commands) : QObject(&window), window_(window), commands_(commands) {
    QCoreApplication::instance()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The second of two quick presses comes as a double click.
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick) return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || widget->window() != &window_) return false;
    const Qt::MouseButton button = static_cast<QMouseEvent*>(event)->button();
    if (button != Qt::BackButton && button != Qt::ForwardButton) return false;
    commands_.Item(button == Qt::BackButton ? CommandId::kGoBack : CommandId::kGoNext).trigger();
    return true;
  }

 private:
  QWidget& window_;
  CommandSet& commands_;
};

/// An entry of the menu of the code that needs a name: with it in the caption, or off.
struct NamedEntry {
  CommandId command;
  const char* plain;
  const char* before;
};

constexpr NamedEntry kDefinition = {CommandId::kShowDefinition, "&Definition ", "&Definition : "};
constexpr NamedEntry kCallers = {CommandId::kFindRoutineCallers, "Aufrufe", "Aufrufe: "};

void SetName(const CommandSet& commands, const NamedEntry& entry, QString name) {
  QAction& item = commands.PopupItem(PopupId::kCode, entry.command);
  item.setEnabled(!name.isEmpty());
  const QString plain = QString::fromLatin1(entry.plain);
  item.setText(name.isEmpty()
                   ? plain
                   : QString::fromLatin1(entry.before) + name.replace(QLatin1Char('&'), QStringLiteral("&&")));
}

}  // namespace

Shell::Shell(MainWindow& window, const Services& services)
    : window_(window),
      services_(services),
      interaction_(services.platform, FromUtf8(services.globals.AppTitle)),
      session_(services.globals.CodeDb, services.globals.TempFolder),
      readFiles_(services.documents, session_),
      staBar_(new StatusPanels(&window)),
      commands_(new CommandSet(window)),
      sources_(interaction_, ServicesOfSources(services)),
      projects_(services, interaction_, session_, sources_, readFiles_),
      placeBar_(new PlaceBar),
      code_(new CodeArea(session_)),
      knowledge_(session_, AssumedHost(services.globals.hostSelector)),
      txtSuche_(new SearchField),
      exports_(interaction_, session_, *code_, services.globals, readFiles_),
      navigation_(interaction_, session_, *code_, *txtSuche_, switches_),
      trees_(new QStackedWidget),
      project_(new ProjectPanel(session_)),
      callers_(new CallerPanel),
      tobSuche_(new QToolBar(QStringLiteral("Routinensuche"))),
      area_(new QStackedWidget),
      codePane_(new QWidget),
      startPage_(new StartPage(FromUtf8(services.globals.HostName))),
      hits_(new HitPanel(interaction_, session_, switches_)),
      uses_(new UsePanel),
      hierarchy_(new CallPanel),
      names_(Desk(), *code_, knowledge_, *uses_, *hierarchy_),
      reading_(interaction_, session_, *code_, knowledge_, *placeBar_),
      notePanel_(new NotePanel),
      notes_(window, interaction_, session_, *code_, knowledge_, *notePanel_),
      printing_(window, Desk(), *code_),
      comparing_(window, Desk(), AssumedHost(services.globals.hostSelector)),
      inventories_(window, Desk()),
      handOver_(window, Desk(), services.globals.CodeDb, exports_, printing_),
      quickOpen_(new QuickOpen(&window)),
      container_(new Splitter),
      view_(services.settings, *code_, *project_, *commands_) {
  window_.setStatusBar(staBar_);
  // Panels come with their commands; the toolkit's own menu would offer empty ones.
  window_.setContextMenuPolicy(Qt::NoContextMenu);
  BuildTrees();
  BuildCode();
  BuildSearch();
  ConnectSession();
  ConnectTrees();
  ConnectCode();
  ConnectNames();
  ConnectStatusBar();
  ConnectStartPage();
  connect(commands_, &CommandSet::Triggered, this, &Shell::Run);
  NameForScreenReaders(window_);
  new MouseSteps(window_, *commands_);
}

void Shell::BuildTrees() {
  trees_->setMinimumWidth(1);
  trees_->addWidget(&sources_.Panel());
  trees_->addWidget(project_);
  trees_->addWidget(callers_);
}

void Shell::BuildCode() {
  area_->setMinimumWidth(1);
  area_->addWidget(startPage_);
  area_->addWidget(codePane_);
  auto* column = new QVBoxLayout(codePane_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(placeBar_);
  column->addWidget(code_);
  container_->addWidget(trees_);
  container_->addWidget(area_);
  container_->handle(1)->setObjectName(QStringLiteral("fraTeiler"));
  container_->setStretchFactor(0, 0);
  container_->setStretchFactor(1, 1);
  container_->setSizes({kTreeWidth, kCodeWidth});
  window_.setCentralWidget(container_);
}

void Shell::BuildSearch() {
  commands_->ToolBar().insertWidget(&commands_->Button(ButtonId::kSearch), txtSuche_);
  window_.addToolBar(tobSuche_);
  tobSuche_->setObjectName(QStringLiteral("tobSuche"));
  tobSuche_->setMovable(false);
  tobSuche_->setContextMenuPolicy(Qt::PreventContextMenu);
  tobSuche_->setIconSize(commands_->ToolBar().iconSize());
  QAction* close =
      tobSuche_->addAction(LoadIcon(QStringLiteral("close")), QStringLiteral("Schliesst die Routinensuche"));
  close->setObjectName(QStringLiteral("close"));
  connect(close, &QAction::triggered, &commands_->Item(CommandId::kCloseCallerList), &QAction::trigger);
  tobSuche_->hide();
  window_.addDockWidget(Qt::BottomDockWidgetArea, hits_);
  hits_->hide();
  for (QDockWidget* panel : {static_cast<QDockWidget*>(uses_), static_cast<QDockWidget*>(hierarchy_),
                             static_cast<QDockWidget*>(notePanel_)}) {
    window_.addDockWidget(Qt::BottomDockWidgetArea, panel);
    window_.tabifyDockWidget(hits_, panel);
    panel->hide();
  }
}

void Shell::ConnectSession() {
  connect(&session_, &ProjectSession::ProjectLeaves, this, [this] {
    window_.setUpdatesEnabled(false);
    delete window_.findChild<UnusedWindow*>();
    qDeleteAll(window_.findChildren<ListWindow*>());
    delete window_.findChild<CallPictureWindow*>();
    delete window_.findChild<MatrixWindow*>();
    delete window_.findChild<FormWindow*>();
    comparing_.ForgetLoaded();
    waiting_ = nullptr;
    knowledge_.Drop();
    quickOpen_->Forget();
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
  connect(hierarchy_, &CallPanel::PictureWanted, this,
          [this](symbols::SymbolId routine) { interaction_.Guarded([this, routine] { ShowCallPicture(routine); }); });
  connect(quickOpen_, &QuickOpen::Chosen, this,
          [this](symbols::SymbolId symbol) { interaction_.Guarded([this, symbol] { names_.GoToSymbol(symbol); }); });
  exports_.TakeNotes([this] { return notes_.NotesOfSite(); });
  printing_.TakeNotes([this](codedb::ViewIndex view) { return notes_.MarksOf(view); });
  connect(&projects_, &ProjectCommands::AboutToCopy, this, [this] {
    knowledge_.FinishReading();
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
  connect(&handOver_, &HandOver::AboutToCopy, this, [this] { knowledge_.FinishReading(); });
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

void Shell::Load(bool mini) {
  const std::string& host = services_.globals.HostName;
  commands_->Item(CommandId::kRefreshProjects).setText(FromUtf8(startup::RefreshCaption(host)));
  QAction& refresh = commands_->Button(ButtonId::kRefresh);
  refresh.setToolTip(FromUtf8(startup::RefreshTooltip(host)));
  refresh.setIconText(refresh.toolTip());
  projects_.LoadRecentMenu();
  ApplyOptions();
  interaction_.Attempt([this] { view_.Load(*container_); });
  ShowTitle();
  SetMode(0);
  commands_->Item(CommandId::kGoBack).setEnabled(false);
  commands_->Item(CommandId::kGoNext).setEnabled(false);
  commands_->Item(CommandId::kCloseCallerList).setEnabled(false);
  sources_.LoadUserSources();
  interaction_.Guarded([this] { sources_.ListAtStart(); });
  sources_.Tree().setFocus();
  if (mini) {
    ShowMini();
    return;
  }
  if (services_.globals.Options.usb) Run(CommandId::kApplyStoredDisplaySize);
  window_.show();
}

void Shell::Unload() {
  // The run's folder is about to go.
  knowledge_.Drop();
  comparing_.CloseAll();
  inventories_.CloseAll();
  view_.SaveSplitterPlace(*container_);
}

void Shell::Run(CommandId command) {
  interaction_.Guarded([this, command] {
    projects_.OfferReload();
    Carry(command);
  });
}

bool Shell::MayClose() {
  bool may = true;
  interaction_.Attempt([&] { may = projects_.ConfirmUnsaved(); });
  return may;
}

void Shell::TakeDropped(const QStringList& files) {
  interaction_.GuardedInTurn([this, files] {
    if (!inventories_.TakeDropped(files) && !comparing_.TakeDropped(files)) projects_.TakeDropped(files);
  });
}

void Shell::LookForChanges() {
  interaction_.Guarded([this] { projects_.OfferReload(); });
}

void Shell::SetMode(int mode) {
  if (mode < 0 || mode > 2) return;
  commands_->SetMode(mode);
  area_->setCurrentWidget(mode == 0 ? static_cast<QWidget*>(startPage_) : codePane_);
  if (mode == 0) staBar_->ClearTexts();
}

void Shell::ShowProject() {
  const bool isLoaded = session_.IsLoaded();
  CloseCallers();
  if (session_.Tree()->moduleCount == 0) code_->SetZoom(false);
  SetMode(isLoaded ? 1 : 0);
  ShowTree(isLoaded ? static_cast<QWidget&>(*project_) : sources_.Panel());
  if (!isLoaded) sources_.Tree().setFocus();
  project_->ShowProject(services_.globals.Options.aufk);
}

void Shell::ShowTitle() {
  QString title = interaction_.Title();
  if (session_.IsLoaded()) {
    title += QStringLiteral(" Projekt: ") + FromUtf8(session_.Title());
    if (!session_.IsSaved()) title += QStringLiteral(" [nicht gespeichert !!!]");
  }
  window_.setWindowTitle(title);
}

void Shell::ShowRecent(const std::vector<std::string>& folders) {
  for (std::size_t position = 0; position < kRecentCommands; ++position) {
    QAction& item = commands_->Item(OpenRecentCommand(position));
    item.setVisible(position < folders.size());
    if (position >= folders.size()) continue;
    // A "&" in a name is no access key.
    const QString name =
        FromUtf8(project::ProjectNameOf(folders[position])).replace(QLatin1Char('&'), QStringLiteral("&&"));
    item.setText(QStringLiteral("&%1 - ").arg(position) + name);
    item.setToolTip(FromUtf8(folders[position]));
  }
  startPage_->ShowRecent(folders);
  comparing_.SetRecent(folders);
}

void Shell::ShowReadingMenu(const QPoint& place, bool ofSource) {
  commands_->Item(CommandId::kRemoveSource).setEnabled(ofSource);
  commands_->ShowPopup(PopupId::kReading, place);
}

void Shell::ShowCodeMenu(const QPoint& place) {
  if (!session_.IsLoaded()) {
    ShowReadingMenu(place, false);
    return;
  }
  const navigation::CodeView& view = session_.View();
  QMenu& menu = commands_->PreparePopup(PopupId::kCode);
  SetName(*commands_, kDefinition, FromCode(navigation::IdentifierAtCaret(view.Text(), view.Caret())));
  SetName(*commands_, kCallers, FromCode(session_.Routine()));
  menu.popup(place);
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

void Shell::OpenName() {
  auto known = knowledge_.Get();
  if (known == nullptr) {
    interaction_.ShowProgress(ToUtf8(knowledge_.MissingText()));
  } else {
    quickOpen_->Open(std::move(known));
  }
}

void Shell::Toggle(CommandId command, bool& on) {
  on = !on;
  commands_->Item(command).setChecked(on);
}

void Shell::TakeKnowledge() {
  const auto known = knowledge_.Get();
  project_->SetKnowledge(known);
  if (known != nullptr && !known->Differences().empty()) {
    const std::size_t modules = known->Differences().size();
    staBar_->SetText(StatusPanels::kProgress, modules == 1
                                                  ? FromUtf8(project::DifferenceText(known->Differences().front()))
                                                  : QStringLiteral("Gliederung abweichend in %1 Modulen").arg(modules));
  }
  if (waiting_) interaction_.GuardedInTurn(std::exchange(waiting_, nullptr));
}

void Shell::WhenKnown(std::function<void()> work) {
  if (!knowledge_.IsOnTheWay()) {
    work();
    return;
  }
  waiting_ = std::move(work);
  interaction_.ShowProgress("Der Code wird noch untersucht. Die Liste kommt gleich.");
}

void Shell::ShowUnusedRoutines() {
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
  (new UnusedWindow(&window_, Desk(), std::move(judged)))->show();
}

void Shell::ShowList(MakeList& make) {
  const auto known = knowledge_.Get();
  if (known == nullptr) {
    interaction_.ShowProgress(ToUtf8(knowledge_.MissingText()));
    return;
  }
  ListSource source = make(known);
  for (ListWindow* shown : window_.findChildren<ListWindow*>(source.name)) {
    if (shown->isVisible()) {
      shown->raise();
      shown->activateWindow();
      return;
    }
    delete shown;
  }
  auto* list = new ListWindow(&window_, Desk(), std::move(source));
  connect(list, &ListWindow::PlaceChosen, this, [this](const project::TextStretch& place) {
    interaction_.Guarded([this, place] { names_.GoToStretch(place); });
  });
  list->show();
}

void Shell::ShowCallPicture(symbols::SymbolId routine) {
  const auto known = knowledge_.Get();
  if (known == nullptr || routine == symbols::kNone) return;
  auto* picture = window_.findChild<CallPictureWindow*>();
  if (picture == nullptr) {
    picture = new CallPictureWindow(&window_, Desk(), known, routine);
    connect(picture, &CallPictureWindow::RoutineChosen, this,
            [this](symbols::SymbolId chosen) { interaction_.Guarded([this, chosen] { names_.GoToSymbol(chosen); }); });
  } else {
    picture->ShowRoutine(routine);
  }
  picture->show();
  picture->raise();
  picture->activateWindow();
}

void Shell::ShowDependencies() {
  const auto known = knowledge_.Get();
  if (known == nullptr) {
    interaction_.ShowProgress(ToUtf8(knowledge_.MissingText()));
    return;
  }
  delete window_.findChild<MatrixWindow*>();
  MatrixWindow* matrix = nullptr;
  {
    const Working working(interaction_);
    matrix = new MatrixWindow(&window_, Desk(), known);
  }
  connect(matrix, &MatrixWindow::UsesWanted, this, [this](symbols::Index from, symbols::Index to) {
    interaction_.Guarded([this, from, to] { names_.ListUsesBetween(from, to); });
  });
  matrix->show();
}

void Shell::ShowForm() {
  const auto known = knowledge_.Get();
  if (known == nullptr) {
    interaction_.ShowProgress(ToUtf8(knowledge_.MissingText()));
    return;
  }
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
  auto* window = new FormWindow(&window_, Desk(), known, std::move(*form));
  connect(window, &FormWindow::RoutineChosen, this,
          [this](symbols::SymbolId routine) { interaction_.Guarded([this, routine] { names_.GoToSymbol(routine); }); });
  window->show();
}

void Shell::HandProjectOver() {
  const auto known = knowledge_.Get();
  if (known == nullptr) {
    interaction_.ShowProgress(ToUtf8(knowledge_.MissingText()));
  } else {
    handOver_.Ask(known);
  }
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

void Shell::ApplyOptions() {
  const bool dark = IsDark(QApplication::palette());
  code_->SetStyle(StyleOf(services_.globals.Options, window_.logicalDpiX(), dark));
}

void Shell::ShowMini() {
  mini_ = std::make_unique<MiniWindow>();
  mini_->setWindowTitle(window_.windowTitle());
  mini_->setWindowIcon(window_.windowIcon());
  connect(mini_.get(), &MiniWindow::HtmlWanted, this, [this] { Run(CommandId::kExportClipboardHtml); });
  connect(mini_.get(), &MiniWindow::Returned, this, &Shell::ReturnFromMini);
  connect(mini_.get(), &MiniWindow::Closed, this, [this] {
    if (MayClose()) {
      window_.Unload();
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
  focused_ = window_.focusWidget();
  window_.hide();
  ShowMini();
}

void Shell::ReturnFromMini() {
  window_.show();
  window_.activateWindow();
  if (focused_ != nullptr) focused_->setFocus();
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
      return WhenKnown([this] { HandProjectOver(); });
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
      return OpenName();
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
      return exports_.WriteDocumentation(knowledge_.Get().get());
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
      return ShowCallPicture(names_.RoutineAtCaret());
    case kShowDependencies:
      return WhenKnown([this] { ShowDependencies(); });
    case kShowForm:
      return WhenKnown([this] { ShowForm(); });
    case kListFindings:
      return WhenKnown([this] { ShowList(FindingList); });
    case kListUnused:
      return WhenKnown([this] { ShowList(UnusedList); });
    case kListMetrics:
      return WhenKnown([this] { ShowList(MetricList); });
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
      return WhenKnown([this] { ShowUnusedRoutines(); });
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
