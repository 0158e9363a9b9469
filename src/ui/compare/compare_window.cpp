#include "compare_window.h"

#include <QHBoxLayout>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>
#include <utility>

#include <quillmate/export/compare_html.h>
#include <quillmate/files/replacement.h>

#include "button_row.h"
#include "code_style.h"
#include "cut_label.h"
#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

using symbols::ChangeNode;
using symbols::ChangeState;
using symbols::kNone;
using symbols::Side;

constexpr QSize kStartSize(1280, 820);
}  // namespace

CompareWindow::CompareWindow(QWidget* parent, const ListDesk& desk, CompareSetup setup)
    : QDialog(parent, Qt::Window),
      desk_(desk),
      setup_(std::move(setup)),
      pages_(new QStackedWidget),
      progress_(new CompareProgress),
      summary_(new QLabel),
      problems_(MakeButton("cmdUnlesbar", "Nicht alles ist lesbar ...")),
      tree_(new CompareTree),
      view_(new CompareView),
      uses_(new CompareUseList),
      whole_(new QCheckBox(QStringLiteral("&Gleiches zeigen"))),
      place_(new CutLabel),
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
  pages_->addWidget(progress_);
  pages_->addWidget(MakeResult());
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(pages_, 1);
  layout->addWidget(MakeButtons());
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

QWidget* CompareWindow::MakeResult() {
  connect(tree_, &CompareTree::NodeReached, this, &CompareWindow::ShowNode);
  connect(tree_, &CompareTree::Activated, this, [this] { view_->FocusSide().setFocus(); });
  connect(tree_, &CompareTree::Filtered, this, &CompareWindow::TellPlace);
  auto* below = new QSplitter(Qt::Vertical);
  below->addWidget(view_);
  below->addWidget(uses_);
  below->setStretchFactor(0, 4);
  below->setStretchFactor(1, 1);
  below->setSizes({560, 150});
  below->setChildrenCollapsible(false);
  auto* sides = new QSplitter(Qt::Horizontal);
  sides->addWidget(tree_);
  sides->addWidget(below);
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
  // Above both, so that a narrow window need not be as wide as tree and buttons side by side.
  layout->addWidget(MakeSteps());
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

QWidget* CompareWindow::MakeSteps() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  previous_->setToolTip(QStringLiteral("Umschalt+F8 oder Alt+Auf"));
  next_->setToolTip(QStringLiteral("F8 oder Alt+Ab"));
  whole_->setObjectName(QStringLiteral("chkGleiches"));
  place_->setObjectName(QStringLiteral("lblStelle"));
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
  tree_->Clear();
  places_ = nullptr;
  module_ = project_ = kNone;
  pages_->setCurrentIndex(0);
  for (QPushButton* button : {again_, swap_, report_, toMain_}) button->setEnabled(false);
  toMain_->setVisible(setup_.loaded.has_value());
  job_ = std::make_unique<CompareJob>(setup_.request);
  connect(job_.get(), &CompareJob::Finished, this, &CompareWindow::TakeResult);
  job_->Start();
  progress_->Follow(*job_);
}

void CompareWindow::TakeResult() {
  again_->setEnabled(true);
  swap_->setEnabled(true);
  progress_->Stop();
  compared_ = job_->Result();
  if (compared_ == nullptr) {
    progress_->ShowFailure(job_->Error().empty() ? QStringLiteral("Abgebrochen.") : FromUtf8(job_->Error()));
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
  pages_->setCurrentIndex(1);
  report_->setEnabled(true);
  tree_->SetOutline(symbols::OutlineOf(states));
  tree_->setFocus();
}

// --------------------------------------------------------------------------------------------------- what is looked at

void CompareWindow::ShowNode(const ChangeNode& node) {
  if (following_ || compared_ == nullptr) return;
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
  for (const ChangeNode& head : tree_->HeadsFrom(module_, project_, direction)) {
    ShowRows(head.module, head.project);
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
  const bool canStep = compared_ != nullptr && !tree_->IsEmpty();
  previous_->setEnabled(canStep);
  next_->setEnabled(canStep);
  toMain_->setEnabled(LoadedLineAtCaret().has_value());
}

void CompareWindow::SelectNodeAtCaret() {
  if (following_ || compared_ == nullptr) return;
  following_ = true;
  const ChangeNode* reached = tree_->Select(module_, project_, view_->Rows().RoutineAt(view_->CurrentRow()));
  following_ = false;
  if (reached != nullptr) ShowUses(*reached);
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
  desk_.readFiles.Check({ToPath(file)}, compared_->files);
  {
    const Working working(desk_.interaction);
    std::string html;
    output::WriteCompareHtml(compared_->States(), {ToUtf8(setup_.oldTitle), ToUtf8(setup_.newTitle)},
                             [&html](std::string_view piece) { html += piece; });
    files::ReplaceFile(ToPath(file), html);
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

}  // namespace quillmate::ui
