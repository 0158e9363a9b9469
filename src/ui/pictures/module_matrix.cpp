#include "module_matrix.h"

#include <QApplication>
#include <QFont>
#include <QLocale>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "qt_text.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

/// How tall the head of the columns gets, in heights of a line.
constexpr int kMostHeadLines = 9;
constexpr int kHeadMargin = 6;
constexpr double kPalestShade = 0.12;
/// Of the cells of a module with itself.
constexpr float kOwnShade = 0.3F;
constexpr double kShadeRange = 0.4;

bool IsPartOf(const symbols::ModuleUse& use, const std::vector<symbols::Index>& cycles) {
  return cycles[use.from] != symbols::kNone && cycles[use.from] == cycles[use.to];
}

bool IsDark() { return QApplication::palette().color(QPalette::Base).lightness() < 128; }

}  // namespace

ModuleMatrix::ModuleMatrix(std::shared_ptr<const project::Understanding> known, QObject* parent)
    : QAbstractTableModel(parent), known_(std::move(known)), uses_(symbols::ModuleUses(known_->Index())) {
  const std::size_t modules = known_->Index().Modules().size();
  cycles_ = symbols::ModuleCycles(known_->Index(), uses_);
  first_.assign(modules + 1, 0);
  for (const symbols::ModuleUse& use : uses_) {
    ++first_[use.from + 1];
    most_ = std::max(most_, use.count);
  }
  std::partial_sum(first_.begin(), first_.end(), first_.begin());
  for (const symbols::Index cycle : cycles_) {
    if (cycle != symbols::kNone) cycleCount_ = std::max<std::size_t>(cycleCount_, cycle + 1);
  }
  shown_.resize(modules);
  std::iota(shown_.begin(), shown_.end(), 0U);
}

const symbols::ModuleUse* ModuleMatrix::UseAt(const QModelIndex& index) const {
  if (!index.isValid()) return nullptr;
  const symbols::Index from = ModuleAt(index.row()), to = ModuleAt(index.column());
  const auto end = uses_.begin() + static_cast<std::ptrdiff_t>(first_[from + 1]);
  const auto found =
      std::lower_bound(uses_.begin() + static_cast<std::ptrdiff_t>(first_[from]), end, to,
                       [](const symbols::ModuleUse& use, symbols::Index module) { return use.to < module; });
  return found == end || found->to != to ? nullptr : &*found;
}

bool ModuleMatrix::IsInCycle(const symbols::ModuleUse& use) const { return IsPartOf(use, cycles_); }

QString ModuleMatrix::CellText(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const symbols::ReferenceIndex& symbols = known_->Index();
  const QString from = ModuleText(symbols, ModuleAt(index.row())), to = ModuleText(symbols, ModuleAt(index.column()));
  const symbols::ModuleUse* use = UseAt(index);
  if (index.row() == index.column()) return from;
  if (use == nullptr) return QStringLiteral("%1 benutzt %2 nicht").arg(from, to);
  return QStringLiteral("%1 benutzt %2 %3-mal%4")
      .arg(from, to, QLocale().toString(use->count),
           IsInCycle(*use) ? QStringLiteral(", Teil eines Kreises") : QString());
}

void ModuleMatrix::SetFilter(const QString& text, bool cyclesOnly) {
  beginResetModel();
  shown_.clear();
  for (symbols::Index module = 0; module < cycles_.size(); ++module) {
    if (cyclesOnly && cycles_[module] == symbols::kNone) continue;
    if (text.isEmpty() || ModuleText(known_->Index(), module).contains(text, Qt::CaseInsensitive)) {
      shown_.push_back(module);
    }
  }
  endResetModel();
}

output::Table ModuleMatrix::AsTable() const {
  return {"Abhängigkeiten",
          {"Modul", "benutzt", "Anzahl", "Kreis"},
          [known = known_, uses = uses_, cycles = cycles_](output::TableSink& sink) {
            for (const symbols::ModuleUse& use : uses) {
              sink.Text(ToUtf8(ModuleText(known->Index(), use.from)))
                  .Text(ToUtf8(ModuleText(known->Index(), use.to)))
                  .Number(use.count);
              IsPartOf(use, cycles) ? sink.Number(cycles[use.from] + 1) : sink.Text("");
              sink.EndRow();
            }
          }};
}

int ModuleMatrix::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int ModuleMatrix::columnCount(const QModelIndex& parent) const { return rowCount(parent); }

QVariant ModuleMatrix::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const symbols::ModuleUse* use = UseAt(index);
  switch (role) {
    case Qt::DisplayRole:
      if (use == nullptr) return {};
      return use->count < 10'000 ? QString::number(use->count)
                                 : QString::number(use->count / 1000) + QStringLiteral("T");
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
      return CellText(index);
    case Qt::TextAlignmentRole:
      return QVariant(Qt::AlignCenter);
    case Qt::FontRole: {
      QFont font;
      font.setBold(use != nullptr && IsInCycle(*use));
      return font;
    }
    case Qt::BackgroundRole: {
      if (index.row() == index.column()) {
        QColor grey = QApplication::palette().color(QPalette::Text);
        grey.setAlphaF(kOwnShade);
        return grey;
      }
      if (use == nullptr) return {};
      QColor colour = IsInCycle(*use) ? QColor(IsDark() ? 0xFF6E60 : 0xD93025) : QColor(IsDark() ? 0x8AB4F8 : 0x1F5FAE);
      colour.setAlphaF(static_cast<float>(kPalestShade + kShadeRange * std::log1p(use->count) / std::log1p(most_)));
      return colour;
    }
    default:
      return {};
  }
}

QVariant ModuleMatrix::headerData(int section, Qt::Orientation, int role) const {
  if (section < 0 || section >= rowCount()) return {};
  const symbols::Index module = ModuleAt(section);
  if (role == Qt::DisplayRole) return ModuleText(known_->Index(), module);
  if (role != Qt::ToolTipRole) return {};
  QString text = ModuleText(known_->Index(), module);
  const QString file = FromUtf8(known_->Index().Modules()[module].file);
  if (!file.isEmpty()) text += QLatin1Char('\n') + file;
  if (cycles_[module] != symbols::kNone) text += QStringLiteral("\nTeil des Kreises %1").arg(cycles_[module] + 1);
  return text;
}

UprightHeader::UprightHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setSectionsClickable(true);
  setHighlightSections(true);
}

QSize UprightHeader::sizeHint() const {
  int longest = 0;
  const int most = fontMetrics().height() * kMostHeadLines;
  for (int section = 0; section < count() && longest < most; ++section) {
    const QString text = model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    longest = std::max(longest, fontMetrics().horizontalAdvance(text));
  }
  return {QHeaderView::sizeHint().width(), std::min(longest, most) + 2 * kHeadMargin};
}

void UprightHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  const bool isCurrent = selectionModel() != nullptr && selectionModel()->currentIndex().column() == section;
  painter->save();
  painter->fillRect(rect, palette().color(isCurrent ? QPalette::Highlight : QPalette::Button));
  painter->setPen(palette().color(QPalette::Mid));
  painter->drawLine(rect.topRight(), rect.bottomRight());
  painter->setPen(palette().color(isCurrent ? QPalette::HighlightedText : QPalette::ButtonText));
  painter->setFont(font());
  painter->translate(rect.bottomLeft());
  painter->rotate(-90);
  const QRect room(kHeadMargin, 0, rect.height() - 2 * kHeadMargin, rect.width());
  const QString text = model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
  painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                    fontMetrics().elidedText(text, Qt::ElideRight, room.width()));
  painter->restore();
}

}  // namespace quillmate::ui
