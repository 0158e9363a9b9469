#include "use_panel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <array>
#include <utility>

#include "cut_label.h"
#include "qt_text.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

/// Widths of the columns in characters; the last one takes what is left.
constexpr int kPlaceWidth = 46;
constexpr int kTextWidth = 70;
constexpr int kUseWidth = 18;
/// So many rows are unfolded at once; nobody looks at more before he folds or filters them.
constexpr std::size_t kUnfolded = 200'000;

std::uint32_t LineOf(const project::Understanding& known, const symbols::Reference& use) {
  const std::uint32_t line = known.ShownLine(use.module, use.line);
  return line > 0 ? line : known.Index().EditorLine(use.module, use.line);
}

void WriteUse(const project::Understanding& known, const symbols::Reference& use, output::TableSink& sink) {
  const symbols::ReferenceIndex& index = known.Index();
  const symbols::ModuleInfo& module = index.Modules()[use.module];
  sink.Text(index.Projects()[module.project].name)
      .Text(module.name)
      .Text(ToUtf8(RoutineText(index, use.inRoutine)))
      .Number(LineOf(known, use))
      .Number(use.column)
      .Text(symbols::GermanWord(use.use))
      .Text(symbols::GermanWord(use.certainty))
      .Text(ToUtf8(LineText(index, use.module, use.line)))
      .EndRow();
}

std::string TextOf(const project::Understanding& known, const symbols::Reference& use) {
  const symbols::ReferenceIndex& index = known.Index();
  return ToUtf8(QStringList{ModuleText(index, use.module), RoutineText(index, use.inRoutine),
                            QString::number(LineOf(known, use)), FromUtf8(symbols::GermanWord(use.use)),
                            FromUtf8(symbols::GermanWord(use.certainty)), LineText(index, use.module, use.line)}
                    .join(QLatin1Char('\t')));
}

}  // namespace

UsePanel::UsePanel()
    : Panel("fraVerwendungen", QStringLiteral("Alle Verwendungen")),
      kinds_(new QComboBox),
      message_(new CutLabel),
      tree_(new QTreeView),
      model_(new UseModel(this)) {
  tree_->setObjectName(QStringLiteral("lstVerwendungen"));
  tree_->setAccessibleName(QStringLiteral("Verwendungen"));
  tree_->setUniformRowHeights(true);
  tree_->setAllColumnsShowFocus(true);
  tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree_->setModel(model_);
  const int character = tree_->fontMetrics().averageCharWidth();
  tree_->header()->resizeSection(UseModel::kPlace, kPlaceWidth * character);
  tree_->header()->resizeSection(UseModel::kText, kTextWidth * character);
  tree_->header()->resizeSection(UseModel::kUse, kUseWidth * character);
  Watch(*tree_);
  connect(tree_, &QTreeView::clicked, this, &UsePanel::Choose);
  Fill({BuildBar(), tree_});
}

QWidget* UsePanel::BuildBar() {
  kinds_->setObjectName(QStringLiteral("cboArt"));
  kinds_->setAccessibleName(QStringLiteral("Art der Verwendung"));
  connect(kinds_, &QComboBox::activated, this, [this] {
    const QVariant kind = kinds_->currentData();
    model_->SetFilter(kind.isValid() ? std::optional(static_cast<symbols::Use>(kind.toInt())) : std::nullopt);
    ShowCount();
    Unfold();
  });
  message_->setObjectName(QStringLiteral("lblVerwendungen"));
  auto* bar = new QWidget;
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(kinds_);
  layout->addWidget(message_, 1);
  AddListButtons(*layout, "cmdVerwendungenKopieren", "cmdVerwendungenSpeichern");
  return bar;
}

void UsePanel::ShowUses(std::shared_ptr<const project::Understanding> known, const QString& name,
                        std::vector<symbols::Reference> uses) {
  name_ = name;
  model_->SetUses(std::move(known), std::move(uses));
  FillKinds();
  ShowCount();
  Unfold();
  show();
  raise();
  tree_->setFocus();
}

void UsePanel::FillKinds() {
  std::array<std::size_t, symbols::kUseCount> counts{};
  for (const symbols::Reference& use : model_->Uses()) ++counts[static_cast<std::size_t>(use.use)];
  kinds_->clear();
  kinds_->addItem(QStringLiteral("Alle Arten"));
  for (std::size_t kind = 0; kind < counts.size(); ++kind) {
    if (counts[kind] == 0) continue;
    const QString word = FromUtf8(symbols::GermanWord(static_cast<symbols::Use>(kind)));
    kinds_->addItem(QStringLiteral("%1 (%2)").arg(word).arg(counts[kind]), static_cast<int>(kind));
  }
}

void UsePanel::ShowCount() {
  const std::size_t count = model_->Count();
  const QString number = QLocale().toString(count);
  setWindowTitle(QStringLiteral("Alle Verwendungen: %1 (%2)").arg(name_, number));
  message_->setText(count == 0   ? QStringLiteral("Dieser Name wird nirgends verwendet.")
                    : count == 1 ? QStringLiteral("1 Verwendung")
                                 : number + QStringLiteral(" Verwendungen"));
  EnableListButtons(count > 0);
}

void UsePanel::Unfold() {
  if (model_->Count() <= kUnfolded) tree_->expandAll();
  if (model_->Count() > 0) tree_->setCurrentIndex(model_->IndexOf(0));
}

void UsePanel::Clear() {
  model_->SetUses(nullptr, {});
  kinds_->clear();
  setWindowTitle(QStringLiteral("Alle Verwendungen"));
  hide();
}

void UsePanel::Choose(const QModelIndex& index) {
  if (model_->IsUse(index)) emit UseChosen(model_->Shown(*model_->PositionOf(index)));
}

const symbols::Reference* UsePanel::Step(int steps) {
  const auto count = static_cast<qint64>(model_->Count());
  if (count == 0) return nullptr;
  const QModelIndex current = tree_->currentIndex();
  const auto at = static_cast<qint64>(model_->PositionOf(current).value_or(0));
  const qint64 next = model_->IsUse(current) ? ((at + steps) % count + count) % count : at;
  tree_->setCurrentIndex(model_->IndexOf(static_cast<std::size_t>(next)));
  return &model_->Shown(static_cast<std::size_t>(next));
}

bool UsePanel::TakeKey(QObject&, int key) {
  if (!IsEnter(key) || !model_->IsUse(tree_->currentIndex())) return false;
  Choose(tree_->currentIndex());
  return true;
}

std::shared_ptr<const UsePanel::List> UsePanel::ShownUses() const {
  auto list = std::make_shared<List>();
  list->known = model_->Known();
  list->uses.reserve(Count());
  for (std::size_t i = 0; i < Count(); ++i) list->uses.push_back(model_->Shown(i));
  return list;
}

std::function<std::string()> UsePanel::AsText() const {
  return [list = ShownUses()] {
    std::string text;
    for (const symbols::Reference& use : list->uses) text += TextOf(*list->known, use) + '\n';
    return text;
  };
}

output::Table UsePanel::AsTable() const {
  return {"Verwendungen",
          {"Projekt", "Modul", "Routine", "Zeile", "Spalte", "Art", "Gewissheit", "Text"},
          [list = ShownUses()](output::TableSink& sink) {
            for (const symbols::Reference& use : list->uses) WriteUse(*list->known, use, sink);
          }};
}

}  // namespace quillmate::ui
