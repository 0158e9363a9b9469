#include "code_editor.h"

#include <QApplication>
#include <QFontInfo>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

#include <quillmate/ui/platform.h>

#include "code_clip.h"
#include "code_document.h"
#include "code_page_p.h"
#include "match_strip.h"

namespace quillmate::ui {
namespace {

/// Documents kept for modules looked at before. A line of a document costs more than ten times its text.
constexpr std::size_t kKeptDocuments = 20;
constexpr std::size_t kKeptLines = 60000;

constexpr int kSmallestFont = 4;
constexpr int kLargestFont = 72;

/// The size that was asked for; what the screen makes of it may be another.
int PointsOf(const QFont& font) { return font.pointSize() > 0 ? font.pointSize() : QFontInfo(font).pointSize(); }

constexpr int kMargin = 5;
/// A module that grows by a few lines must not shift its code.
constexpr int kLeastNumber = 999;

}  // namespace

/// The column with the line numbers at the left edge of a code view. Numbers are 1-based, as the index counts lines.
class LineNumbers : public QWidget {
 public:
  explicit LineNumbers(CodeEditor& editor);

  /// Pixels that the numbers of the text on screen need; 0 while they are switched off.
  int Width() const;
  QSize sizeHint() const override { return {Width(), 0}; }

  bool isOn = false;
  /// Number of the first line on screen's text: a zoomed routine keeps the numbers it has in its module.
  int first = 1;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  CodeEditor& editor_;
};

LineNumbers::LineNumbers(CodeEditor& editor) : QWidget(&editor), editor_(editor) {
  setObjectName(QStringLiteral("picZeilen"));
}

int LineNumbers::Width() const {
  if (!isOn || !editor_.ShowsModule()) return 0;
  const int last = std::max(kLeastNumber, first + editor_.blockCount() - 1);
  const auto digits = QString::number(last).size();
  return 2 * kMargin + editor_.fontMetrics().horizontalAdvance(QLatin1Char('9')) * static_cast<int>(digits);
}

void LineNumbers::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), editor_.Colours().margin);
  painter.setFont(editor_.font());
  const int caret = editor_.textCursor().blockNumber();
  const int height = editor_.fontMetrics().height();
  editor_.ForEachLineOnScreen([&](int line, int top) {
    if (top + height < event->rect().top() || top > event->rect().bottom()) return;
    painter.setPen(line == caret ? editor_.Colours().caretNumber : editor_.Colours().number);
    painter.drawText(0, top, width() - kMargin, height, Qt::AlignRight, QString::number(first + line));
  });
}

CodeEditor::CodeEditor(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setContextMenuPolicy(Qt::CustomContextMenu);
  // Files dropped on the code are for the window.
  setAcceptDrops(false);
  viewport()->setAcceptDrops(false);
  setMinimumWidth(1);
  viewport()->setMouseTracking(true);
  numbers_ = new LineNumbers(*this);
  strip_ = new MatchStrip(this);
  connect(strip_, &MatchStrip::LineChosen, this, [this](int line) {
    const int onScreen = viewport()->height() / std::max(1, fontMetrics().height());
    verticalScrollBar()->setValue(std::max(0, document()->findBlockByNumber(line).firstLineNumber() - onScreen / 2));
  });
  margin_ = new CodeMargin(*this);
  header_ = new StickyHeader(*this);
  connect(margin_, &CodeMargin::MarkClicked, this, &CodeEditor::MarkClicked);
  connect(margin_, &CodeMargin::FoldClicked, this, [this](int line) { SetFolded(line, !IsFolded(line)); });
  connect(header_, &StickyHeader::Clicked, this, &CodeEditor::LineWanted);
  connect(this, &QPlainTextEdit::updateRequest, numbers_, [this](const QRect& area, int scrolled) {
    if (scrolled != 0) {
      numbers_->scroll(0, scrolled);
    } else {
      numbers_->update(0, area.y(), numbers_->width(), area.height());
    }
    margin_->update();
    header_->update();
  });
  // The number of the caret's line stands out.
  connect(this, &QPlainTextEdit::cursorPositionChanged, numbers_, [this] { numbers_->update(); });
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { StoreSelection(); });
  connect(this, &QPlainTextEdit::selectionChanged, this, [this] { StoreSelection(); });
}

CodeEditor::~CodeEditor() { Forget(); }

void CodeEditor::SetStyle(CodeStyle style) {
  style_ = std::move(style);
  setPalette(PaperPalette(QApplication::palette(), style_.screen));
  setFont(ShownFont());
  if (view_ == nullptr) return;
  const int index = pages_.front().index;
  navigation::CodeView* view = view_;
  const std::vector<navigation::StyleRun>* runs = runs_;
  Page before = std::move(pages_.front());
  std::vector<LineMark> marks = marks_;
  const int top = verticalScrollBar()->value();
  Forget();
  ShowView(index, *view, *runs);
  pages_.front().folded = std::move(before.folded);
  if (before.hasStructure) SetStructure(std::move(before.folds), std::move(before.routines));
  SetMarks(std::move(marks));
  verticalScrollBar()->setValue(top);
}

void CodeEditor::ShowView(int index, navigation::CodeView& view, const std::vector<navigation::StyleRun>& runs) {
  if (view_ == &view) return;
  StoreScroll();
  following_ = false;
  SetHighlights({});
  link_.reset();
  setExtraSelections({});
  marks_.clear();
  view_ = &view;
  runs_ = &runs;
  const Page& page = PageOf(index);
  setDocument(page.document.get());
  PlaceCursor();
  verticalScrollBar()->setValue(page.scrollY);
  horizontalScrollBar()->setValue(page.scrollX);
  following_ = true;
  PlaceNumbers();
  Trim();
}

void CodeEditor::ShowSelection() {
  if (view_ == nullptr) return;
  following_ = false;
  PlaceCursor();
  ScrollToLine(static_cast<int>(view_->LineFromChar(view_->SelStart())));
  horizontalScrollBar()->setValue(0);
  following_ = true;
}

void CodeEditor::RevealSelection() {
  if (view_ == nullptr) return;
  following_ = false;
  const int top = verticalScrollBar()->value();
  PlaceCursor();
  // A place that had to be scrolled to is shown with what is around it.
  if (verticalScrollBar()->value() != top) centerCursor();
  following_ = true;
}

void CodeEditor::Forget() {
  following_ = false;
  SetHighlights({});
  link_.reset();
  marks_.clear();
  view_ = nullptr;
  runs_ = nullptr;
  setDocument(nullptr);
  pages_.clear();
  PlaceNumbers();
}

void CodeEditor::SetFontSteps(int steps) {
  fontSteps_ = steps;
  setFont(ShownFont());
  for (const Page& page : pages_) UseFont(*page.document);
  PlaceNumbers();
}

QFont CodeEditor::ShownFont() const {
  QFont font = style_.font;
  if (fontSteps_ != 0) font.setPointSize(std::clamp(PointsOf(font) + fontSteps_, kSmallestFont, kLargestFont));
  return font;
}

void CodeEditor::UseFont(QTextDocument& document) const {
  document.setDefaultFont(font());
  QTextOption option = document.defaultTextOption();
  option.setTabStopDistance(style_.tabStop * PointsOf(font()) / PointsOf(style_.font));
  document.setDefaultTextOption(option);
}

void CodeEditor::ShowLineNumbers(bool on) {
  numbers_->isOn = on;
  PlaceNumbers();
}

void CodeEditor::NumberFrom(codedb::Line first) {
  numbers_->first = first.value;
  PlaceNumbers();
}

void CodeEditor::PlaceNumbers() {
  const int width = numbers_->Width();
  const int signs = margin_->Width();
  const int head = header_->Height();
  const int strip = strip_->IsEmpty() ? 0 : MatchStrip::kWidth;
  const QMargins margins(width + signs, head, strip, 0);
  if (viewportMargins() != margins) setViewportMargins(margins);
  const QRect area = contentsRect();
  const QRect code = viewport()->geometry();
  strip_->setGeometry(code.right() + 1, code.top(), strip, code.height());
  strip_->setVisible(strip > 0);
  numbers_->setGeometry(area.left(), code.top(), width, code.height());
  numbers_->setVisible(width > 0);
  numbers_->update();
  margin_->setGeometry(area.left() + width, code.top(), signs, code.height());
  margin_->setVisible(signs > 0);
  margin_->update();
  header_->setGeometry(area.left(), area.top(), code.right() + 1 - area.left(), head);
  header_->setVisible(head > 0);
  header_->update();
}

void CodeEditor::ForEachLineOnScreen(const std::function<void(int, int)>& line) const {
  QTextBlock block = firstVisibleBlock();
  double top = blockBoundingGeometry(block).translated(contentOffset()).top();
  for (; block.isValid() && top <= viewport()->height(); block = block.next()) {
    if (!block.isVisible()) continue;
    line(block.blockNumber(), qRound(top));
    top += blockBoundingRect(block).height();
  }
}

void CodeEditor::SetHighlights(std::vector<navigation::TextMatch> matches) {
  const bool wasEmpty = highlights_.empty();
  if (wasEmpty && matches.empty()) return;
  highlights_ = std::move(matches);
  std::vector<int> lines;
  for (const navigation::TextMatch& match : highlights_) {
    const int line = static_cast<int>(view_->LineFromChar(match.position));
    if (lines.empty() || lines.back() != line) lines.push_back(line);
  }
  strip_->SetLines(std::move(lines), blockCount());
  if (wasEmpty != highlights_.empty()) PlaceNumbers();
  viewport()->update();
}

/// Below the text of the lines that can be seen.
void CodeEditor::PaintHighlights(const QRect& area) {
  if (highlights_.empty() || view_ == nullptr) return;
  QPainter painter(viewport());
  QTextBlock block = firstVisibleBlock();
  double top = blockBoundingGeometry(block).translated(contentOffset()).top();
  for (; block.isValid() && top <= area.bottom(); block = block.next()) {
    if (!block.isVisible()) continue;
    const std::size_t start = view_->LineStart(static_cast<std::size_t>(block.blockNumber()));
    const std::size_t end = start + static_cast<std::size_t>(block.length());
    const QTextLine line = block.layout()->lineCount() > 0 ? block.layout()->lineAt(0) : QTextLine();
    auto match = std::lower_bound(highlights_.begin(), highlights_.end(), start,
                                  [](const navigation::TextMatch& m, std::size_t at) { return m.position < at; });
    for (; line.isValid() && match != highlights_.end() && match->position < end; ++match) {
      const int from = static_cast<int>(match->position - start);
      const double left = line.cursorToX(from);
      const double right = line.cursorToX(from + static_cast<int>(match->length));
      painter.fillRect(QRectF(contentOffset().x() + left, top, right - left, line.height()), style_.screen.occurrence);
    }
    top += blockBoundingRect(block).height();
  }
}

void CodeEditor::paintEvent(QPaintEvent* event) {
  PaintHighlights(event->rect());
  QPlainTextEdit::paintEvent(event);
  PaintBehindLines(event->rect());
}

std::optional<std::size_t> CodeEditor::OffsetAt(const QPoint& place) const {
  if (view_ == nullptr) return std::nullopt;
  const QTextCursor cursor = cursorForPosition(place);
  QTextCursor end = cursor;
  end.movePosition(QTextCursor::EndOfBlock);
  const QRect last = cursorRect(end);
  if (place.x() > last.right() || place.y() > last.bottom()) return std::nullopt;
  return OffsetOf(cursor.position());
}

bool CodeEditor::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !answers_.description) return QPlainTextEdit::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const auto offset = OffsetAt(help->pos());
  const QString text = offset ? answers_.description(*offset) : QString();
  if (text.isEmpty()) {
    QToolTip::hideText();
    event->ignore();
  } else {
    QToolTip::showText(help->globalPos(), text, viewport());
  }
  return true;
}

/// Underlines the name at a place and makes the mouse a hand, or takes that back.
void CodeEditor::ShowLink(const QPoint& place, bool wanted) {
  std::optional<navigation::TextMatch> link;
  if (wanted && answers_.link && viewport()->rect().contains(place)) {
    const auto offset = OffsetAt(place);
    if (offset) link = answers_.link(*offset);
  }
  const bool isSame = link.has_value() == link_.has_value() && (!link || (link->position == link_->position));
  if (isSame) return;
  link_ = link;
  viewport()->setCursor(link_ ? Qt::PointingHandCursor : Qt::IBeamCursor);
  QList<QTextEdit::ExtraSelection> marks;
  if (link_) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(document());
    mark.cursor.setPosition(PositionOf(link_->position));
    mark.cursor.setPosition(PositionOf(link_->position + link_->length), QTextCursor::KeepAnchor);
    mark.format.setFontUnderline(true);
    mark.format.setForeground(style_.screen.link);
    marks.append(mark);
  }
  setExtraSelections(marks);
}

void CodeEditor::mouseMoveEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseMoveEvent(event);
  ShowLink(event->position().toPoint(), event->buttons() == Qt::NoButton && event->modifiers() == Qt::ControlModifier);
}

void CodeEditor::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Control) ShowLink(viewport()->mapFromGlobal(QCursor::pos()), true);
  const int before = textCursor().position();
  QPlainTextEdit::keyPressEvent(event);
  if (!textCursor().block().isVisible()) LeaveFold(textCursor().position() > before);
}

void CodeEditor::keyReleaseEvent(QKeyEvent* event) {
  QPlainTextEdit::keyReleaseEvent(event);
  if (event->key() == Qt::Key_Control) ShowLink({}, false);
  emit CaretMoved();
}

void CodeEditor::mousePressEvent(QMouseEvent* event) {
  const bool isLink = event->button() == Qt::LeftButton && event->modifiers() == Qt::ControlModifier;
  if (isLink) ShowLink(event->position().toPoint(), true);
  if (isLink && link_) {
    setTextCursor(cursorForPosition(event->position().toPoint()));
    ShowLink({}, false);
    emit LinkFollowed();
    return;
  }
  QPlainTextEdit::mousePressEvent(event);
  if (event->button() == Qt::RightButton) TakeCaretTo(event->position().toPoint());
}

/// A menu is about what was clicked: the caret comes there, unless the click is for the selection.
void CodeEditor::TakeCaretTo(const QPoint& place) {
  const QTextCursor now = textCursor();
  const QTextCursor there = cursorForPosition(place);
  const bool isSelected = there.position() >= now.selectionStart() && there.position() <= now.selectionEnd();
  if (view_ == nullptr || (now.hasSelection() && isSelected)) return;
  setTextCursor(there);
  emit CaretMoved();
}

void CodeEditor::mouseReleaseEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseReleaseEvent(event);
  if (event->button() == Qt::LeftButton) emit CaretMoved();
}

void CodeEditor::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) {
    QPlainTextEdit::wheelEvent(event);
    return;
  }
  event->accept();
  // Fine wheels send fractions of a step.
  wheel_ += event->angleDelta().y();
  const int steps = wheel_ / QWheelEvent::DefaultDeltasPerStep;
  wheel_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  if (steps != 0) emit FontStepsTurned(steps);
}

void CodeEditor::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  PlaceNumbers();
}

std::string_view CodeEditor::Code() const { return view_ == nullptr ? std::string_view() : view_->Text(); }

std::string_view CodeEditor::SelectedCode() const { return view_ == nullptr ? std::string_view() : view_->SelText(); }

CodeEditor::Page& CodeEditor::PageOf(int index) {
  auto page = std::find_if(pages_.begin(), pages_.end(), [index](const Page& p) { return p.index == index; });
  if (page != pages_.end()) {
    pages_.splice(pages_.begin(), pages_, page);
    return pages_.front();
  }
  pages_.push_front({index, BuildDocument(*view_, *runs_, style_)});
  if (fontSteps_ != 0) UseFont(*pages_.front().document);
  return pages_.front();
}

void CodeEditor::Trim() {
  std::size_t kept = 0;
  std::size_t lines = 0;
  const auto fits = [&](const Page& page) {
    lines += static_cast<std::size_t>(page.document->blockCount());
    return ++kept == 1 || (kept <= kKeptDocuments && lines <= kKeptLines);
  };
  pages_.erase(std::find_if_not(pages_.begin(), pages_.end(), fits), pages_.end());
}

void CodeEditor::StoreScroll() {
  if (view_ == nullptr) return;
  pages_.front().scrollX = horizontalScrollBar()->value();
  pages_.front().scrollY = verticalScrollBar()->value();
}

void CodeEditor::StoreSelection() {
  if (!following_) return;
  const QTextCursor cursor = textCursor();
  const std::size_t start = OffsetOf(cursor.selectionStart());
  view_->Select(start, OffsetOf(cursor.selectionEnd()) - start, cursor.position() == cursor.selectionEnd());
}

void CodeEditor::PlaceCursor() {
  UnfoldAround(static_cast<int>(view_->LineFromChar(view_->SelStart())));
  UnfoldAround(static_cast<int>(view_->LineFromChar(view_->SelStart() + view_->SelLength())));
  QTextCursor cursor(document());
  cursor.setPosition(PositionOf(view_->SelStart()));
  cursor.setPosition(PositionOf(view_->SelStart() + view_->SelLength()), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

int CodeEditor::PositionOf(std::size_t offset) const {
  const std::size_t line = view_->LineFromChar(offset);
  const QTextBlock block = document()->findBlockByNumber(static_cast<int>(line));
  const int column = static_cast<int>(offset - view_->LineStart(line));
  return block.position() + std::min(column, block.length() - 1);
}

std::size_t CodeEditor::OffsetOf(int position) const {
  const QTextBlock block = document()->findBlock(position);
  return view_->LineStart(static_cast<std::size_t>(block.blockNumber())) +
         static_cast<std::size_t>(position - block.position());
}

QMimeData* CodeEditor::createMimeDataFromSelection() const {
  if (view_ == nullptr) return QPlainTextEdit::createMimeDataFromSelection();
  const QTextCursor cursor = textCursor();
  const std::size_t start = OffsetOf(cursor.selectionStart());
  const std::size_t length = OffsetOf(cursor.selectionEnd()) - start;
  return MakeMimeData(ClipOf({view_->Text(), *runs_, start, length}, style_)).release();
}

}  // namespace quillmate::ui
