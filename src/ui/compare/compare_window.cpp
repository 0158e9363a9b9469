#include "compare_window.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <stdexcept>
#include <utility>

#include <quillmate/export/compare_html.h>
#include <quillmate/files/identity.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>

#include "code_style.h"
#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

using symbols::ChangeNode;
using symbols::ChangeState;
using symbols::kNone;
using symbols::Side;

constexpr QSize kStartSize(1280, 820);
constexpr int kTellEvery = 150;
/// A tree of more nodes is shown with its modules closed.
constexpr int kMostOpen = 3000;
/// The states in the order of the filter, with their names there.
struct StateBox {
  ChangeState state;
  const char* name;
  const char* caption;
};
constexpr std::array kBoxes = {
    StateBox{ChangeState::kNew, "chkNeu", "neu"},
    StateBox{ChangeState::kGone, "chkEntfallen", "entfallen"},
    StateBox{ChangeState::kChanged, "chkGeaendert", "geändert"},
    StateBox{ChangeState::kLayout, "chkNurForm", "nur Form"},
    StateBox{ChangeState::kMoved, "chkVerschoben", "verschoben"},
    StateBox{ChangeState::kRenamed, "chkUmbenannt", "umbenannt"},
};

bool HasChildren(const std::vector<ChangeNode>& outline, std::size_t node) {
  return node + 1 < outline.size() && outline[node + 1].parent == node;
}

QPushButton* MakeButton(const char* name, const char* caption) {
  auto* button = new QPushButton(QString::fromUtf8(caption));
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);
  return button;
}

}  // namespace

CompareWindow::CompareWindow(QWidget* parent, const ListDesk& desk, CompareSetup setup)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      setup_(std::move(setup)),
      pages_(new QStackedWidget),
      status_(new QLabel),
      bar_(new QProgressBar),
      summary_(new QLabel),
      problems_(MakeButton("cmdUnlesbar", "Nicht alles ist lesbar ...")),
      filter_(new QLineEdit),
      model_(new CompareTreeModel(this)),
      tree_(new QTreeView),
      view_(new CompareView),
      uses_(new CompareUseList),
      whole_(new QCheckBox(QStringLiteral("&Gleiches zeigen"))),
      place_(new QLabel),
      previous_(MakeButton("cmdVorige", "&Vorige Änderung")),
      next_(MakeButton("cmdNaechste", "&Nächste Änderung")),
      report_(MakeButton("cmdBericht", "&Bericht ...")),
      toMain_(MakeButton("cmdHauptfenster", "Im &Hauptfenster zeigen")),
      again_(MakeButton("cmdErneut", "N&eu vergleichen")),
      swap_(MakeButton("cmdTauschen", "&Tauschen")) {
  setObjectName(QStringLiteral("frmVergleich"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setWindowTitle(QStringLiteral("Vergleich: %1 mit %2").arg(setup_.newTitle, setup_.oldTitle));
  resize(kStartSize.boundedTo(screen()->availableSize() * 9 / 10));
  pages_->addWidget(MakeProgress());
  pages_->addWidget(MakeResult());
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(pages_, 1);
  layout->addWidget(MakeButtons());
  clock_.setInterval(kTellEvery);
  connect(&clock_, &QTimer::timeout, this, [this] { status_->setText(job_->StatusText()); });
  AddKey(Qt::Key_F8, &CompareWindow::NextChange);
  AddKey(Qt::ALT | Qt::Key_Down, &CompareWindow::NextChange);
  AddKey(Qt::SHIFT | Qt::Key_F8, &CompareWindow::PreviousChange);
  AddKey(Qt::ALT | Qt::Key_Up, &CompareWindow::PreviousChange);
  AddKey(Qt::Key_F5, &CompareWindow::Again);
  Begin();
}

CompareWindow::~CompareWindow() = default;

void CompareWindow::AddKey(const QKeySequence& key, void (CompareWindow::*run)()) {
  connect(new QShortcut(key, this), &QShortcut::activated, this, run);
}

QWidget* CompareWindow::MakeProgress() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  status_->setObjectName(QStringLiteral("lblVergleichStand"));
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  status_->setAlignment(Qt::AlignCenter);
  status_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  bar_->setRange(0, 0);
  bar_->setAccessibleName(QStringLiteral("Der Vergleich läuft"));
  bar_->setMaximumWidth(fontMetrics().averageCharWidth() * 60);
  layout->addStretch();
  layout->addWidget(status_);
  layout->addWidget(bar_, 0, Qt::AlignHCenter);
  layout->addStretch();
  return page;
}

QWidget* CompareWindow::MakeResult() {
  tree_->setObjectName(QStringLiteral("treAenderungen"));
  tree_->setAccessibleName(QStringLiteral("Was sich geändert hat"));
  tree_->setUniformRowHeights(true);
  tree_->setAllColumnsShowFocus(true);
  tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree_->setModel(model_);
  tree_->header()->resizeSection(0, fontMetrics().averageCharWidth() * 38);
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { ShowNode(current); });
  connect(tree_, &QTreeView::activated, this, [this] { view_->FocusSide().setFocus(); });
  auto* left = new QWidget;
  auto* leftLayout = new QVBoxLayout(left);
  leftLayout->setContentsMargins(0, 0, 0, 0);
  leftLayout->addWidget(MakeFilters());
  leftLayout->addWidget(tree_, 1);
  auto* right = new QWidget;
  auto* rightLayout = new QVBoxLayout(right);
  rightLayout->setContentsMargins(0, 0, 0, 0);
  rightLayout->addWidget(MakeSteps());
  auto* below = new QSplitter(Qt::Vertical);
  below->addWidget(view_);
  below->addWidget(uses_);
  below->setStretchFactor(0, 4);
  below->setStretchFactor(1, 1);
  below->setSizes({560, 150});
  below->setChildrenCollapsible(false);
  rightLayout->addWidget(below, 1);
  auto* sides = new QSplitter(Qt::Horizontal);
  sides->addWidget(left);
  sides->addWidget(right);
  sides->setStretchFactor(1, 1);
  sides->setSizes({420, 860});
  sides->setChildrenCollapsible(false);
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* top = new QHBoxLayout;
  summary_->setObjectName(QStringLiteral("lblZusammenfassung"));
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  top->addWidget(summary_, 1);
  top->addWidget(problems_);
  layout->addLayout(top);
  layout->addWidget(sides, 1);
  const CodeStyle style = StyleOf(desk_.globals.Options, logicalDpiX());
  view_->SetCodeFont(style.font, style.tabStop);
  connect(problems_, &QPushButton::clicked, this, &CompareWindow::ShowProblems);
  connect(view_, &CompareView::RowChanged, this, [this] {
    TellPlace();
    SelectNodeAtCaret();
  });
  connect(uses_, &CompareUseList::LineChosen, this, &CompareWindow::ShowLine);
  return page;
}

QWidget* CompareWindow::MakeFilters() {
  auto* box = new QWidget;
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins(0, 0, 0, 0);
  int place = 0;
  for (const StateBox& each : kBoxes) {
    auto* check = new QCheckBox(QString::fromUtf8(each.caption));
    check->setObjectName(QString::fromLatin1(each.name));
    check->setChecked(true);
    states_[static_cast<std::size_t>(each.state)] = check;
    grid->addWidget(check, place / 2, place % 2);
    ++place;
    connect(check, &QCheckBox::toggled, this, &CompareWindow::ApplyFilter);
  }
  filter_->setObjectName(QStringLiteral("txtVergleichFilter"));
  filter_->setAccessibleName(QStringLiteral("Filter der Änderungen"));
  filter_->setPlaceholderText(QStringLiteral("Nur Namen mit diesem Text"));
  filter_->setClearButtonEnabled(true);
  grid->addWidget(filter_, (place + 1) / 2, 0, 1, 2);
  connect(filter_, &QLineEdit::textChanged, this, &CompareWindow::ApplyFilter);
  connect(filter_, &QLineEdit::returnPressed, this, [this] { tree_->setFocus(); });
  return box;
}

QWidget* CompareWindow::MakeSteps() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  previous_->setToolTip(QStringLiteral("Umschalt+F8 oder Alt+Auf"));
  next_->setToolTip(QStringLiteral("F8 oder Alt+Ab"));
  whole_->setObjectName(QStringLiteral("chkGleiches"));
  place_->setObjectName(QStringLiteral("lblStelle"));
  place_->setTextFormat(Qt::PlainText);
  place_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  layout->addWidget(previous_);
  layout->addWidget(next_);
  layout->addWidget(whole_);
  layout->addWidget(place_, 1);
  connect(previous_, &QPushButton::clicked, this, &CompareWindow::PreviousChange);
  connect(next_, &QPushButton::clicked, this, &CompareWindow::NextChange);
  connect(whole_, &QCheckBox::toggled, this, &CompareWindow::SwitchWhole);
  return row;
}

QWidget* CompareWindow::MakeButtons() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  QPushButton* close = MakeButton("cmdSchliessen", "S&chließen");
  for (QPushButton* button : {again_, swap_}) layout->addWidget(button);
  layout->addStretch();
  for (QPushButton* button : {toMain_, report_, close}) layout->addWidget(button);
  again_->setToolTip(QStringLiteral("Liest beide Stände noch einmal (F5)"));
  connect(again_, &QPushButton::clicked, this, &CompareWindow::Again);
  connect(swap_, &QPushButton::clicked, this, &CompareWindow::Swap);
  connect(toMain_, &QPushButton::clicked, this, &CompareWindow::ShowInMain);
  connect(report_, &QPushButton::clicked, this, [this] { desk_.interaction.Guarded([this] { WriteReport(); }); });
  connect(close, &QPushButton::clicked, this, [this] { this->close(); });
  return row;
}

// ------------------------------------------------------------------------------------------------------ the comparison

void CompareWindow::Begin() {
  compared_ = nullptr;
  view_->Clear();
  uses_->Clear();
  model_->SetOutline({});
  places_ = nullptr;
  module_ = project_ = kNone;
  pages_->setCurrentIndex(0);
  bar_->show();
  for (QPushButton* button : {again_, swap_, report_, toMain_}) button->setEnabled(false);
  toMain_->setVisible(setup_.loaded.has_value());
  job_ = std::make_unique<CompareJob>(setup_.request);
  connect(job_.get(), &CompareJob::Finished, this, &CompareWindow::TakeResult);
  job_->Start();
  status_->setText(job_->StatusText());
  clock_.start();
}

void CompareWindow::TakeResult() {
  clock_.stop();
  again_->setEnabled(true);
  swap_->setEnabled(true);
  compared_ = job_->Result();
  if (compared_ == nullptr) {
    ShowFailure(job_->Error().empty() ? QStringLiteral("Abgebrochen.") : FromUtf8(job_->Error()));
    return;
  }
  const symbols::ComparedStates states = compared_->States();
  places_ = std::make_unique<symbols::ChangePlaces>(states);
  view_->SetTitles(QStringLiteral("Alt: ") + setup_.oldTitle, QStringLiteral("Neu: ") + setup_.newTitle);
  const bool isEqual = states.comparison.equal;
  summary_->setText(isEqual ? QStringLiteral("Keine Unterschiede.")
                            : FromUtf8(symbols::SummaryText(states.comparison)));
  const bool isWhole = compared_->oldSide.isWhole && compared_->newSide.isWhole;
  problems_->setVisible(!isWhole);
  model_->SetOutline(symbols::OutlineOf(states));
  ShowFilters();
  pages_->setCurrentIndex(1);
  report_->setEnabled(true);
  ApplyFilter();
  tree_->setFocus();
}

void CompareWindow::ShowFailure(const QString& reason) {
  bar_->hide();
  status_->setText(reason.trimmed());
}

void CompareWindow::ShowFilters() {
  std::array<std::size_t, symbols::kChangeStateCount> counts{};
  const auto& outline = model_->Outline();
  for (std::size_t node = 0; node < outline.size(); ++node) {
    if (!HasChildren(outline, node)) ++counts[static_cast<std::size_t>(outline[node].state)];
  }
  for (const StateBox& box : kBoxes) {
    const auto state = static_cast<std::size_t>(box.state);
    states_[state]->setText(QStringLiteral("%1 (%2)").arg(QString::fromUtf8(box.caption)).arg(counts[state]));
    states_[state]->setEnabled(counts[state] > 0);
    states_[state]->setIcon(StateIcon(box.state, QApplication::palette()));
  }
}

void CompareWindow::ApplyFilter() {
  if (compared_ == nullptr) return;
  const std::size_t before = tree_->currentIndex().isValid() ? model_->NumberOf(tree_->currentIndex()) : 0;
  symbols::OutlineFilter filter{.text = ToUtf8(filter_->text().trimmed())};
  for (const StateBox& box : kBoxes) {
    if (!states_[static_cast<std::size_t>(box.state)]->isChecked()) {
      filter.states = static_cast<std::uint8_t>(filter.states & ~symbols::Bit(box.state));
    }
  }
  model_->SetFilter(filter);
  ExpandTree();
  QModelIndex index = model_->IndexOf(before);
  // The first thing that has something to show.
  for (std::size_t node = 0; !index.isValid() && node < model_->Outline().size(); ++node) index = model_->IndexOf(node);
  if (index.isValid()) tree_->setCurrentIndex(index);
  TellPlace();
}

void CompareWindow::ExpandTree() {
  if (model_->Outline().size() <= kMostOpen) {
    tree_->expandAll();
  } else if (model_->rowCount() == 1) {
    tree_->expand(model_->index(0, 0));
  }
}

// --------------------------------------------------------------------------------------------------- what is looked at

void CompareWindow::ShowNode(const QModelIndex& index) {
  if (following_ || !index.isValid() || compared_ == nullptr) return;
  const ChangeNode& node = model_->NodeOf(index);
  ShowRows(node.module, node.project);
  ShowUses(node);
  if (node.module == kNone) return;
  const std::size_t line = view_->Rows().RowAt(node.place);
  const bool isInside = node.routine == kNone && node.place.line > 0 && line != symbols::CompareRows::kNoRow;
  const std::size_t row = isInside                                 ? line
                          : node.kind == ChangeNode::Kind::kModule ? 0
                          : node.kind == ChangeNode::Kind::kFact   ? 0
                                                                   : view_->Rows().RowOf(node.routine);
  following_ = true;
  view_->GoToRow(row, !isInside);
  following_ = false;
  TellPlace();
}

void CompareWindow::ShowRows(symbols::Index module, symbols::Index project) {
  if (module == module_ && project == project_) return;
  module_ = module;
  project_ = project;
  const symbols::ComparedStates states = compared_->States();
  following_ = true;
  if (module != kNone) {
    view_->Show(compared_, {states, states.comparison.modules[module], whole_->isChecked()});
  } else if (project != kNone) {
    view_->Show(compared_, {states, states.comparison.projects[project]});
  } else {
    view_->Clear();
  }
  following_ = false;
}

void CompareWindow::ShowUses(const ChangeNode& node) {
  if (node.symbol == kNone) return uses_->Clear();
  const bool isOld = node.place.side == Side::kOld;
  const QString name = QStringLiteral("%1 (%2 Stand)")
                           .arg(FromUtf8(node.text), isOld ? QStringLiteral("alter") : QStringLiteral("neuer"));
  uses_->Show(name, symbols::UsesOf(compared_->States(), *places_, node.place.side, node.symbol));
}

void CompareWindow::ShowLine(const symbols::ComparedLine& line) {
  const symbols::Index module = places_->ChangeAt(line);
  if (module == kNone) return;
  ShowRows(module, kNone);
  if (view_->Rows().RowAt(line) == symbols::CompareRows::kNoRow && !whole_->isChecked()) whole_->setChecked(true);
  const std::size_t row = view_->Rows().RowAt(line);
  if (row != symbols::CompareRows::kNoRow) view_->GoToRow(row);
}

/// The place stays: the same line, or the heading of its routine.
void CompareWindow::SwitchWhole() {
  if (module_ == kNone || compared_ == nullptr) return;
  const auto& rows = view_->Rows().Rows();
  const std::size_t at = view_->CurrentRow();
  const symbols::Index routine = view_->Rows().RoutineAt(at);
  symbols::ComparedLine line;
  if (at < rows.size()) {
    const bool isNew = rows[at].newNumber != 0;
    line.side = isNew ? Side::kNew : Side::kOld;
    line.module = view_->Rows().ModuleAt(at, line.side);
    line.line = isNew ? rows[at].newNumber : rows[at].oldNumber;
  }
  const symbols::Index module = std::exchange(module_, kNone);
  ShowRows(module, kNone);
  const std::size_t row = view_->Rows().RowAt(line);
  view_->GoToRow(row != symbols::CompareRows::kNoRow ? row : view_->Rows().RowOf(routine));
}

void CompareWindow::Step(int direction) {
  if (compared_ == nullptr) return;
  if (view_->StepChange(direction)) return;
  // On to the next module, or project, that the tree shows.
  const auto& outline = model_->Outline();
  std::vector<std::size_t> heads;
  std::size_t here = outline.size();
  for (std::size_t node = 0; node < outline.size(); ++node) {
    const bool isHead =
        outline[node].kind == ChangeNode::Kind::kModule || outline[node].kind == ChangeNode::Kind::kProject;
    if (!isHead || !model_->IsShown(node)) continue;
    if (outline[node].module == module_ && outline[node].project == project_) here = heads.size();
    heads.push_back(node);
  }
  if (here == outline.size()) here = direction > 0 ? static_cast<std::size_t>(-1) : heads.size();
  for (std::size_t at = here + static_cast<std::size_t>(direction); at < heads.size();
       at += static_cast<std::size_t>(direction)) {
    const ChangeNode& node = outline[heads[at]];
    ShowRows(node.module, node.project);
    if (!view_->StepChange(direction, true)) continue;
    SelectNodeAtCaret();
    return;
  }
  place_->setText(direction > 0 ? QStringLiteral("Das war die letzte Änderung.")
                                : QStringLiteral("Das war die erste Änderung."));
}

void CompareWindow::TellPlace() {
  const auto& changes = view_->Rows().Changes();
  const auto change = view_->CurrentChange();
  QString text;
  if (change) {
    text = QStringLiteral("Änderung %1 von %2").arg(*change + 1).arg(changes.size());
  } else if (!changes.empty()) {
    text = QStringLiteral("Änderungen hier: %1").arg(changes.size());
  }
  place_->setText(text);
  const bool canStep = compared_ != nullptr && !model_->Outline().empty();
  previous_->setEnabled(canStep);
  next_->setEnabled(canStep);
  toMain_->setEnabled(LoadedLineAtCaret().has_value());
}

void CompareWindow::SelectNodeAtCaret() {
  if (following_ || compared_ == nullptr) return;
  const symbols::Index routine = view_->Rows().RoutineAt(view_->CurrentRow());
  const auto& outline = model_->Outline();
  using Kind = ChangeNode::Kind;
  std::size_t best = outline.size();
  for (std::size_t node = 0; node < outline.size(); ++node) {
    if (outline[node].module != module_ || outline[node].project != project_ || !model_->IsShown(node)) continue;
    const Kind kind = outline[node].kind;
    const bool isHead = kind == Kind::kModule || kind == Kind::kProject;
    const bool isPiece =
        routine == kNone ? kind == Kind::kOutside : kind == Kind::kRoutine && outline[node].routine == routine;
    if (isPiece) best = node;
    if (isHead && best == outline.size()) best = node;
  }
  if (best == outline.size()) return;
  const QModelIndex index = model_->IndexOf(best);
  if (index == tree_->currentIndex()) return;
  following_ = true;
  tree_->setCurrentIndex(index);
  following_ = false;
  ShowUses(outline[best]);
}

// ------------------------------------------------------------------------------------------------------------ commands

void CompareWindow::Again() {
  if (job_->IsDone()) Begin();
}

void CompareWindow::Swap() {
  if (!job_->IsDone()) return;
  std::swap(setup_.request.oldPath, setup_.request.newPath);
  std::swap(setup_.oldTitle, setup_.newTitle);
  if (setup_.loaded) setup_.loaded = *setup_.loaded == Side::kOld ? Side::kNew : Side::kOld;
  setWindowTitle(QStringLiteral("Vergleich: %1 mit %2").arg(setup_.newTitle, setup_.oldTitle));
  Begin();
}

void CompareWindow::WriteReport() {
  const QString file = SaveFileDialog(desk_.interaction, QStringLiteral("html"), "HTML-Bericht:html,htm;",
                                      FromUtf8(desk_.globals.LastProjectFolder), QStringLiteral("Vergleich"));
  if (file.isEmpty()) return;
  const std::filesystem::path path = ToPath(file);
  files::IdentitySet read;
  for (const std::filesystem::path& each : compared_->files) read.Add(each);
  if (read.Contains(path)) {
    throw std::runtime_error("Aus dieser Datei wird gelesen, sie wird nicht überschrieben:\r\n" +
                             files::PathText(path));
  }
  desk_.readFiles.Check({path});
  {
    const Working working(desk_.interaction);
    std::string html;
    output::WriteCompareHtml(compared_->States(), {ToUtf8(setup_.oldTitle), ToUtf8(setup_.newTitle)},
                             [&html](std::string_view piece) { html += piece; });
    files::ReplaceFile(path, html);
  }
  desk_.interaction.Desktop().OpenInBrowser(file);
}

void CompareWindow::ShowProblems() {
  std::string list;
  const auto add = [&list](const char* title, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) list += std::string(title) + line + "\n";
  };
  add("Alt: ", compared_->oldProblems);
  add("Neu: ", compared_->newProblems);
  desk_.interaction.Show(
      "Nicht alles ist lesbar. Was ein Stand nicht hergab, zählt nicht als entfallen oder neu, sondern wurde nicht "
      "verglichen.",
      MessageIcon::kInformation, Buttons::kOk, {}, list);
}

std::optional<symbols::ComparedLine> CompareWindow::LoadedLineAtCaret() {
  if (!setup_.loaded || compared_ == nullptr) return std::nullopt;
  // With a module missing the others have other numbers than those of the project on screen.
  const bool isOld = *setup_.loaded == Side::kOld;
  if (!(isOld ? compared_->oldSide : compared_->newSide).hasAllModules) return std::nullopt;
  const std::size_t at = view_->CurrentRow();
  if (at >= view_->Rows().Rows().size()) return std::nullopt;
  const symbols::CompareRow& row = view_->Rows().Rows()[at];
  symbols::ComparedLine line{*setup_.loaded, view_->Rows().ModuleAt(at, *setup_.loaded), 0};
  if (line.module == kNone) return std::nullopt;
  line.line = line.side == Side::kNew ? row.newNumber : row.oldNumber;
  if (line.line != 0) return line;
  // A heading leads to the routine.
  const symbols::Index routine = view_->Rows().RoutineAt(at);
  const auto& change = compared_->comparison.modules[module_];
  if (routine == kNone) return std::nullopt;
  const symbols::RoutinePlace& place =
      line.side == Side::kNew ? change.routines[routine].newPlace : change.routines[routine].oldPlace;
  if (!place.IsKnown()) return std::nullopt;
  const symbols::ComparedStates states = compared_->States();
  line.line = symbols::LineOf(line.side == Side::kNew ? states.newIndex : states.oldIndex, place);
  return line;
}

void CompareWindow::ShowInMain() {
  const auto line = LoadedLineAtCaret();
  if (!line) return;
  const symbols::ComparedStates states = compared_->States();
  const symbols::ReferenceIndex& index = line->side == Side::kNew ? states.newIndex : states.oldIndex;
  emit PlaceWanted(line->module, index.Code(line->module).LineOfEditorLine(line->line));
}

void CompareWindow::ForgetLoaded() {
  if (!setup_.loaded) return;
  if (!job_->IsDone()) {
    job_->Cancel();
    job_->FinishReading();
  }
  setup_.loaded.reset();
  toMain_->hide();
  // Its files may hold something else the next time.
  again_->hide();
  swap_->hide();
}

void CompareWindow::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && compared_ != nullptr) ShowFilters();
}

}  // namespace quillmate::ui
