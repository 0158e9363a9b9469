#include "hit_list.h"

#include <QApplication>
#include <QPainter>
#include <QPoint>
#include <QTextLayout>
#include <algorithm>
#include <exception>
#include <limits>
#include <numeric>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Nobody reads on in a list; a line of code may be of any length.
constexpr std::size_t kShownCharacters = 300;
/// By so many characters of their lines rows are sorted.
constexpr std::size_t kSortedCharacters = 40;

constexpr const char* kHeaders[] = {"Modul", "Routine", "Zeile", "Text"};

/// Blanks drawn together, none at the beginning unless something is in front.
QString Simplified(const QString& text, bool keepsFirst) {
  QString simple = text.simplified();
  if (simple.isEmpty()) return keepsFirst && !text.isEmpty() ? QStringLiteral(" ") : QString();
  if (keepsFirst && text.front().isSpace()) simple.prepend(QLatin1Char(' '));
  if (text.back().isSpace()) simple.append(QLatin1Char(' '));
  return simple;
}

}  // namespace

void HitList::SetHits(std::vector<navigation::ModuleHits> modules, std::vector<QString> names,
                      navigation::CodeViews* views) {
  beginResetModel();
  modules_ = std::move(modules);
  names_ = std::move(names);
  views_ = views;
  order_.clear();
  firstRows_.assign(1, 0);
  for (const navigation::ModuleHits& module : modules_) {
    const std::size_t rows = static_cast<std::size_t>(firstRows_.back()) + module.hits.size();
    firstRows_.push_back(static_cast<int>(std::min<std::size_t>(rows, std::numeric_limits<int>::max())));
  }
  endResetModel();
}

HitList::Found HitList::FoundAt(int row) const {
  const int hit = HitAt(row);
  const auto next = std::upper_bound(firstRows_.begin(), firstRows_.end(), hit);
  const auto module = static_cast<std::size_t>(next - firstRows_.begin()) - 1;
  return {modules_[module], modules_[module].hits[static_cast<std::size_t>(hit - firstRows_[module])]};
}

HitList::Place HitList::At(int row) const {
  const Found found = FoundAt(row);
  return {found.module.view, found.hit};
}

int HitList::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : firstRows_.back(); }

int HitList::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumns; }

QString HitList::RoutineOf(const Found& found) const {
  const int routine = found.hit.routine;
  return routine < 0 ? QString() : FromCode(found.module.routines[static_cast<std::size_t>(routine)].name);
}

HitList::Line HitList::LineOf(const Found& found, std::size_t most) const {
  try {
    const navigation::CodeView& view = views_->View(found.module.view);
    const navigation::LinePiece piece = navigation::LineAround(view, found.hit.match, most);
    // A match may go on in the next line.
    const std::size_t start = static_cast<std::size_t>(piece.text.data() - view.Text().data());
    const std::size_t first = std::clamp(found.hit.match.position, start, start + piece.text.size()) - start;
    const std::size_t length = std::min(found.hit.match.length, piece.text.size() - first);
    const QString cut(QChar(0x2026));
    Line line;
    line.text = (piece.cutBefore ? cut : QString()) + Simplified(FromCode(piece.text.substr(0, first)), false);
    line.first = static_cast<int>(line.text.size());
    line.text += Simplified(FromCode(piece.text.substr(first, length)), !line.text.isEmpty());
    line.length = static_cast<int>(line.text.size()) - line.first;
    line.text += Simplified(FromCode(piece.text.substr(first + length)), true);
    while (line.text.endsWith(QLatin1Char(' '))) line.text.chop(1);
    if (piece.cutBehind) line.text += cut;
    return line;
  } catch (const std::exception&) {
    // The file of the view is gone; a click on the row will say so.
    return {};
  }
}

QVariant HitList::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::TextAlignmentRole && index.column() == kLine) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  const Found found = FoundAt(index.row());
  if (role == kMatchRole && index.column() == kText) {
    const Line line = LineOf(found, kShownCharacters);
    return QPoint(line.first, line.length);
  }
  if (role != Qt::DisplayRole) return {};
  switch (index.column()) {
    case kModule:
      return names_[static_cast<std::size_t>(found.module.view.value)];
    case kRoutine:
      return RoutineOf(found);
    case kLine:
      return found.hit.line.value;
    default:
      return LineOf(found, kShownCharacters).text;
  }
}

QVariant HitList::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= kColumns) return {};
  return FromUtf8(kHeaders[section]);
}

void HitList::sort(int column, Qt::SortOrder direction) {
  if (column < 0 && order_.empty()) return;
  emit layoutAboutToBeChanged();
  const QModelIndexList before = persistentIndexList();
  std::vector<int> hits;
  for (const QModelIndex& index : before) hits.push_back(HitAt(index.row()));
  order_.clear();
  if (column >= 0) {
    const int rows = rowCount();
    std::vector<QString> texts;
    std::vector<int> numbers;
    for (int row = 0; row < rows; ++row) {
      const Found found = FoundAt(row);
      if (column == kLine) {
        numbers.push_back(found.hit.line.value);
      } else if (column == kText) {
        texts.push_back(LineOf(found, kSortedCharacters).text.toCaseFolded());
      } else {
        // Equal names share their text.
        texts.push_back(column == kModule ? names_[static_cast<std::size_t>(found.module.view.value)]
                                          : RoutineOf(found).toCaseFolded());
      }
    }
    order_.resize(static_cast<std::size_t>(rows));
    std::iota(order_.begin(), order_.end(), 0);
    const auto less = [&](int a, int b) {
      const auto i = static_cast<std::size_t>(a), j = static_cast<std::size_t>(b);
      return column == kLine ? numbers[i] < numbers[j] : texts[i].localeAwareCompare(texts[j]) < 0;
    };
    std::stable_sort(order_.begin(), order_.end(),
                     [&](int a, int b) { return direction == Qt::AscendingOrder ? less(a, b) : less(b, a); });
  }
  QModelIndexList after;
  for (qsizetype i = 0; i < before.size(); ++i) {
    const int hit = hits[static_cast<std::size_t>(i)];
    const auto found = std::find(order_.begin(), order_.end(), hit);
    after.append(index(order_.empty() ? hit : static_cast<int>(found - order_.begin()), before[i].column()));
  }
  changePersistentIndexList(before, after);
  emit layoutChanged();
}

output::Table HitList::AsTable() const {
  return {"Treffer", {"Modul", "Routine", "Zeile", "Spalte", "Text"}, [this](output::TableSink& sink) {
            for (int row = 0; row < rowCount(); ++row) {
              const Found found = FoundAt(row);
              const navigation::CodeView& view = views_->View(found.module.view);
              const std::size_t start = view.LineStart(view.LineFromChar(found.hit.match.position));
              sink.Text(ToUtf8(names_[static_cast<std::size_t>(found.module.view.value)]))
                  .Text(ToUtf8(RoutineOf(found)))
                  .Number(found.hit.line.value)
                  .Number(static_cast<std::int64_t>(found.hit.match.position - start) + 1)
                  .Text(ToUtf8(LineOf(found, kShownCharacters).text))
                  .EndRow();
            }
          }};
}

void HitDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QStyleOptionViewItem item = option;
  initStyleOption(&item, index);
  const QString text = std::exchange(item.text, {});
  const QStyle* style = item.widget != nullptr ? item.widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
  const QPoint match = index.data(HitList::kMatchRole).toPoint();
  const bool isSelected = (item.state & QStyle::State_Selected) != 0;
  QTextLayout layout(text, item.font);
  QTextLayout::FormatRange mark;
  mark.start = match.x();
  mark.length = match.y();
  mark.format.setFontWeight(QFont::Bold);
  if (!isSelected) {
    QColor ground = item.palette.color(QPalette::Highlight);
    ground.setAlphaF(0.3F);
    mark.format.setBackground(ground);
  }
  layout.setFormats({mark});
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();
  const QRect room = style->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget).adjusted(2, 0, -2, 0);
  painter->save();
  painter->setClipRect(room);
  painter->setPen(item.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
  layout.draw(painter, QPointF(room.left(), room.top() + (room.height() - line.height()) / 2));
  painter->restore();
}

}  // namespace quillmate::ui
