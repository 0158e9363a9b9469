#include "compare_side.h"

#include <QGuiApplication>
#include <QMimeData>
#include <QPaintEvent>
#include <QPainter>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <algorithm>
#include <map>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

using symbols::CompareRow;
using symbols::Side;
using Kind = symbols::CompareRow::Kind;

constexpr int kMargin = 5;
constexpr int kLeastNumber = 999;
constexpr int kCurrentWidth = 3;
/// Longer lines are cut on screen: nobody reads them here, and they would hold up the window.
constexpr qsizetype kLongestLine = 4000;

/// Characters that would break the line in two, or turn its direction.
bool IsDisguise(QChar c) {
  const char16_t unit = c.unicode();
  return (unit < 0x20 && unit != u'\t') || unit == 0x7F || (unit >= 0x80 && unit < 0xA0) || unit == 0x2028 ||
         unit == 0x2029 || (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069) || unit == 0x200E ||
         unit == 0x200F || unit == 0xFDD0 || unit == 0xFDD1;
}

/// A line as it is shown: as many UTF-16 units as it has, up to the longest.
QString ShownLine(std::string_view text) {
  QString line = FromUtf8(text.substr(0, static_cast<std::size_t>(4 * kLongestLine)));
  for (QChar& c : line) {
    if (IsDisguise(c)) c = QChar::ReplacementCharacter;
  }
  if (line.size() > kLongestLine) line = line.left(kLongestLine) + QChar(0x2026);
  return line;
}

QString SkippedText(std::uint32_t count) {
  return count == 1 ? QStringLiteral("1 gleiche Zeile") : QStringLiteral("%1 gleiche Zeilen").arg(count);
}

/// Units of the first bytes of a text.
int UnitsOf(std::string_view text, std::size_t bytes) {
  const std::size_t most = static_cast<std::size_t>(4 * kLongestLine);
  const auto units = FromUtf8(text.substr(0, std::min({bytes, text.size(), most}))).size();
  return static_cast<int>(std::min(units, kLongestLine));
}

}  // namespace

/// Line numbers and signs at the left edge.
class CompareSide::Gutter : public QWidget {
 public:
  explicit Gutter(CompareSide& side) : QWidget(&side), side_(side) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    side_.PaintNumbers(painter, width());
  }

 private:
  CompareSide& side_;
};

/// Keywords, strings and comments, read from the modules that the rows are from.
class CompareSide::Colouring : public QSyntaxHighlighter {
 public:
  explicit Colouring(CompareSide& side) : QSyntaxHighlighter(side.document()), side_(side) {}

  void Forget() { spans_.clear(); }

 protected:
  void highlightBlock(const QString& text) override {
    const auto row = static_cast<std::size_t>(currentBlock().blockNumber());
    if (side_.content_.rows == nullptr || row >= side_.content_.rows->Rows().size()) return;
    const CompareRow& shown = side_.content_.rows->Rows()[row];
    const CompareColours& colours = *side_.colours_;
    if (!side_.HasCode(shown)) {
      QTextCharFormat format;
      format.setForeground(shown.kind == Kind::kSkipped ? colours.dim : colours.text);
      if (shown.kind == Kind::kHeading) format.setFontWeight(QFont::Bold);
      setFormat(0, static_cast<int>(text.size()), format);
      return;
    }
    ColourCode(side_.content_.rows->ModuleAt(row, side_.side_), side_.TextOf(shown), colours);
  }

 private:
  void ColourCode(symbols::Index module, std::string_view line, const CompareColours& colours) {
    if (module == symbols::kNone || line.empty()) return;
    const auto [entry, isNew] = spans_.try_emplace(module);
    const symbols::ReferenceIndex& index = *side_.content_.index;
    if (isNew) entry->second = symbols::SpansOf(index, module);
    const auto first = static_cast<std::uint32_t>(line.data() - index.Code(module).text.data());
    const auto last = first + static_cast<std::uint32_t>(line.size());
    auto span = std::ranges::lower_bound(entry->second, first, {}, &symbols::CodeSpan::offset);
    for (; span != entry->second.end() && span->offset < last; ++span) {
      using SpanKind = symbols::CodeSpan::Kind;
      const QColor& colour = span->kind == SpanKind::kKeyword  ? colours.keyword
                             : span->kind == SpanKind::kString ? colours.string
                                                               : colours.comment;
      const int from = UnitsOf(line, span->offset - first);
      setFormat(from, UnitsOf(line, span->offset - first + std::size_t{span->length}) - from, colour);
    }
  }

  CompareSide& side_;
  std::map<symbols::Index, std::vector<symbols::CodeSpan>> spans_;
};

CompareSide::CompareSide(Side side, QWidget* parent)
    : QPlainTextEdit(parent), side_(side), gutter_(new Gutter(*this)), colouring_(new Colouring(*this)) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setUndoRedoEnabled(false);
  setCenterOnScroll(false);
  setAcceptDrops(false);
  UsePalette();
  connect(this, &QPlainTextEdit::updateRequest, gutter_, [this](const QRect&, int) { gutter_->update(); });
}

void CompareSide::Show(const SideContent& content) {
  content_ = content;
  words_.clear();
  colouring_->Forget();
  currentCount_ = 0;
  QString text;
  if (content_.rows != nullptr) {
    for (const CompareRow& row : content_.rows->Rows()) {
      if (row.kind == Kind::kSkipped) {
        text += SkippedText(row.skipped);
      } else {
        text += ShownLine(TextOf(row));
      }
      text += QLatin1Char('\n');
    }
    text.chop(1);
  }
  setPlainText(text);
  PlaceGutter();
}

void CompareSide::SetCodeFont(const QFont& font, double tabStop) {
  setFont(font);
  setTabStopDistance(tabStop);
  PlaceGutter();
}

void CompareSide::PutCaret(std::size_t row) {
  const QTextBlock block = document()->findBlockByNumber(static_cast<int>(row));
  if (block.isValid()) setTextCursor(QTextCursor(block));
}

void CompareSide::SetCurrent(std::size_t first, std::size_t count) {
  currentFirst_ = first;
  currentCount_ = count;
  viewport()->update();
  gutter_->update();
}

std::pair<int, int> CompareSide::RowsOnScreen() const {
  const int height = std::max(1, fontMetrics().lineSpacing());
  return {firstVisibleBlock().blockNumber(), std::min(blockCount(), viewport()->height() / height)};
}

std::string_view CompareSide::TextOf(const CompareRow& row) const noexcept {
  return side_ == Side::kOld ? row.oldText : row.newText;
}

std::uint32_t CompareSide::NumberOf(const CompareRow& row) const noexcept {
  return side_ == Side::kOld ? row.oldNumber : row.newNumber;
}

void CompareSide::ForEachRowOnScreen(const std::function<void(std::size_t, const QRectF&)>& row) const {
  if (content_.rows == nullptr) return;
  const std::size_t rows = content_.rows->Rows().size();
  QTextBlock block = firstVisibleBlock();
  double top = blockBoundingGeometry(block).translated(contentOffset()).top();
  while (block.isValid() && top <= viewport()->height()) {
    const auto number = static_cast<std::size_t>(block.blockNumber());
    // Without the margin of the document, which belongs to the last block.
    if (number < rows) row(number, QRectF(0, top, viewport()->width(), block.layout()->boundingRect().height()));
    top += blockBoundingRect(block).height();
    block = block.next();
  }
}

QColor CompareSide::GroundOf(const CompareRow& row) const {
  const CompareColours& colours = *colours_;
  const bool isOld = side_ == Side::kOld;
  switch (row.kind) {
    case Kind::kHeading:
      return colours.heading;
    case Kind::kSkipped:
      return colours.soft;
    case Kind::kChanged:
      return isOld ? colours.gone : colours.fresh;
    case Kind::kGone:
      return isOld ? colours.gone : colours.filler;
    case Kind::kNew:
      return isOld ? colours.filler : colours.fresh;
    default:
      return {};
  }
}

const symbols::WordDifference& CompareSide::WordsOf(std::size_t row) const {
  const auto [entry, isNew] = words_.try_emplace(row);
  if (isNew) {
    const CompareRow& shown = content_.rows->Rows()[row];
    entry->second = symbols::DifferingWords(shown.oldText, shown.newText);
  }
  return entry->second;
}

void CompareSide::PaintWords(QPainter& painter, std::size_t row, const QRectF& place) const {
  const QTextBlock block = document()->findBlockByNumber(static_cast<int>(row));
  const QTextLine line = block.layout()->lineCount() > 0 ? block.layout()->lineAt(0) : QTextLine();
  if (!line.isValid()) return;
  const bool isOld = side_ == Side::kOld;
  const CompareColours& colours = *colours_;
  const std::string_view text = TextOf(content_.rows->Rows()[row]);
  const symbols::WordDifference& words = WordsOf(row);
  const double left = contentOffset().x();
  for (const symbols::ByteRange& range : isOld ? words.oldRanges : words.newRanges) {
    const double from = line.cursorToX(UnitsOf(text, range.offset));
    const double to = line.cursorToX(UnitsOf(text, range.offset + std::size_t{range.length}));
    painter.fillRect(QRectF(left + from, place.top(), to - from, place.height()),
                     isOld ? colours.goneWord : colours.freshWord);
  }
}

void CompareSide::PaintRows(QPainter& painter) const {
  ForEachRowOnScreen([&](std::size_t number, const QRectF& place) {
    const CompareRow& row = content_.rows->Rows()[number];
    if (const QColor ground = GroundOf(row); ground.isValid()) painter.fillRect(place, ground);
    if (row.kind == Kind::kChanged) PaintWords(painter, number, place);
  });
}

void CompareSide::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(viewport());
    painter.setClipRect(event->rect());
    PaintRows(painter);
  }
  QPlainTextEdit::paintEvent(event);
}

void CompareSide::PaintNumbers(QPainter& painter, int width) const {
  const CompareColours& colours = *colours_;
  painter.fillRect(0, 0, width, height(), colours.soft);
  painter.setFont(font());
  const int sign = fontMetrics().horizontalAdvance(QLatin1Char('+'));
  const bool isOld = side_ == Side::kOld;
  const double shift = viewport()->y() - gutter_->y();
  ForEachRowOnScreen([&](std::size_t number, const QRectF& place) {
    const CompareRow& row = content_.rows->Rows()[number];
    const QRectF line(0, place.top() + shift, width, place.height());
    if (const QColor ground = GroundOf(row); ground.isValid()) painter.fillRect(line, ground);
    if (number - currentFirst_ < currentCount_) {
      painter.fillRect(QRectF(0, line.top(), kCurrentWidth, line.height()), colours.current);
    }
    painter.setPen(colours.dim);
    if (HasCode(row)) {
      painter.drawText(line.adjusted(0, 0, -(2 * kMargin + sign), 0), Qt::AlignRight | Qt::AlignVCenter,
                       QString::number(NumberOf(row)));
    }
    // The colour alone would say nothing to some.
    const bool differs = row.kind == Kind::kChanged || row.kind == (isOld ? Kind::kGone : Kind::kNew);
    if (!differs) return;
    painter.setPen(colours.text);
    painter.drawText(line.adjusted(0, 0, -kMargin, 0), Qt::AlignRight | Qt::AlignVCenter,
                     isOld ? QStringLiteral("\u2212") : QStringLiteral("+"));
  });
}

int CompareSide::GutterWidth() const {
  std::uint32_t last = kLeastNumber;
  if (content_.rows != nullptr) {
    for (const CompareRow& row : content_.rows->Rows()) last = std::max(last, NumberOf(row));
  }
  const auto digits = static_cast<int>(QString::number(last).size());
  const QFontMetrics metrics(font());
  return kCurrentWidth + 4 * kMargin + metrics.horizontalAdvance(QLatin1Char('9')) * digits +
         metrics.horizontalAdvance(QLatin1Char('+'));
}

void CompareSide::PlaceGutter() {
  // Margins resize the viewport, and that places anew.
  if (placing_) return;
  placing_ = true;
  const int width = GutterWidth();
  setViewportMargins(width, 0, 0, 0);
  const QRect inside = contentsRect();
  gutter_->setGeometry(QRect(inside.left(), inside.top(), width, viewport()->height()));
  placing_ = false;
}

void CompareSide::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  const QRect inside = contentsRect();
  gutter_->setGeometry(QRect(inside.left(), inside.top(), gutter_->width(), viewport()->height()));
}

void CompareSide::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  // The own palette, too, comes as an event.
  if (colours_ == nullptr || colours_ == &ColoursFor(QGuiApplication::palette())) return;
  UsePalette();
  colouring_->rehighlight();
}

void CompareSide::UsePalette() {
  QPalette own = QGuiApplication::palette();
  const CompareColours& colours = ColoursFor(own);
  colours_ = &colours;
  own.setColor(QPalette::Base, colours.ground);
  own.setColor(QPalette::Text, colours.text);
  setPalette(own);
}

QMimeData* CompareSide::createMimeDataFromSelection() const {
  const QTextCursor cursor = textCursor();
  const int first = cursor.selectionStart(), last = cursor.selectionEnd();
  QString text;
  for (QTextBlock block = document()->findBlock(first); block.isValid() && block.position() <= last;
       block = block.next()) {
    const auto number = static_cast<std::size_t>(block.blockNumber());
    const bool isCode =
        content_.rows != nullptr && number < content_.rows->Rows().size() && HasCode(content_.rows->Rows()[number]);
    const int from = std::max(first - block.position(), 0);
    const int to = std::min(last - block.position(), block.length() - 1);
    // Nothing stands for the lines of the other side; headings are taken only where nothing else is selected.
    if (!isCode && document()->findBlock(first) != document()->findBlock(last)) continue;
    text += block.text().mid(from, to - from);
    if (block.position() + block.length() <= last) text += QLatin1Char('\n');
  }
  auto* copied = new QMimeData;
  copied->setText(text);
  return copied;
}

}  // namespace quillmate::ui
