#include "shell.h"

#include <QApplication>
#include <QVBoxLayout>

#include <quillmate/navigation/definition.h>
#include <quillmate/project/saved_projects.h>
#include <quillmate/startup/edition.h>

#include "accessible_names.h"
#include "desktop_look.h"
#include "icons.h"
#include "mouse_steps.h"
#include "qt_text.h"
#include "splitter.h"

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

Shell::Shell(QMainWindow& window, const Services& services)
    : window_(window),
      services_(services),
      interaction_(services.platform, FromUtf8(services.globals.AppTitle)),
      session_(services.globals.CodeDb, services.globals.TempFolder),
      readFiles_(services.documents, session_),
      tasks_(window, interaction_),
      staBar_(new StatusPanels(&window)),
      commands_(new CommandSet(window)),
      sources_(interaction_, ServicesOfSources(services)),
      projects_(services, interaction_, session_, sources_, readFiles_),
      placeBar_(new PlaceBar),
      code_(new CodeArea(session_)),
      knowledge_(session_, AssumedHost(services.globals.hostSelector)),
      txtSuche_(new SearchField),
      exports_(interaction_, session_, *code_, services.globals, readFiles_, tasks_),
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
      analysis_(window, Desk(), knowledge_, names_),
      reading_(interaction_, session_, *code_, knowledge_, *placeBar_),
      notePanel_(new NotePanel),
      notes_(window, interaction_, session_, *code_, knowledge_, *notePanel_),
      printing_(window, Desk(), *code_),
      comparing_(window, Desk(), AssumedHost(services.globals.hostSelector)),
      inventories_(window, Desk()),
      handOver_(window, Desk(), exports_, printing_),
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
  tasks_.GiveUp();
  // The run's folder is about to go.
  knowledge_.Drop();
  comparing_.CloseAll();
  inventories_.CloseAll();
  view_.SaveSplitterPlace(*container_);
}

bool Shell::MayClose() {
  bool may = true;
  interaction_.Attempt([&] { may = MayEndTasks() && projects_.ConfirmUnsaved(); });
  return may;
}

/// Asks about what is not made yet.
bool Shell::MayEndTasks() {
  const QStringList titles = tasks_.Titles();
  return titles.isEmpty() || interaction_.Show("Noch nicht fertig: " + ToUtf8(titles.join(QStringLiteral(", "))) +
                                                   ".\r\nAbbrechen und beenden ?",
                                               MessageIcon::kQuestion, Buttons::kYesNo) == Answer::kYes;
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

void Shell::TakeKnowledge() {
  const auto known = knowledge_.Get();
  project_->SetKnowledge(known);
  if (known != nullptr && !known->Differences().empty()) {
    const std::size_t modules = known->Differences().size();
    staBar_->SetText(
        StatusPanels::kProgress,
        modules == 1 ? FromUtf8(project::DifferenceText(known->Differences().front()))
                     : QStringLiteral("Gliederung abweichend in %1 Modulen: Ansicht – Genaue Gliederung").arg(modules));
  }
  analysis_.DoWaiting();
}

void Shell::HandProjectOver() {
  const auto known = names_.Known();
  if (known != nullptr) handOver_.Ask(known);
}

void Shell::WriteDocumentation() {
  const auto known = names_.Known();
  if (known != nullptr) exports_.WriteDocumentation(known);
}

void Shell::ApplyOptions() {
  const bool dark = IsDark(QApplication::palette());
  code_->SetStyle(StyleOf(services_.globals.Options, window_.logicalDpiX(), dark));
}

}  // namespace quillmate::ui
