#include "code_sheet.h"

#include <QApplication>
#include <QFontInfo>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include <quillmate/ui/platform.h>

#include "code_clip.h"
#include "code_document.h"

namespace quillmate::ui {
namespace {

/// Documents kept for modules looked at before. A line of a document costs more than ten times its text.
constexpr std::size_t kKeptDocuments = 20;
constexpr std::size_t kKeptLines = 60000;

constexpr int kSmallestFont = 4;
constexpr int kLargestFont = 72;

/// The size that was asked for; what the screen makes of it may be another.
int PointsOf(const QFont& font) { return font.pointSize() > 0 ? font.pointSize() : QFontInfo(font).pointSize(); }

}  // namespace

CodeSheet::CodeSheet(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setContextMenuPolicy(Qt::CustomContextMenu);
  // Files dropped on the code are for the window.
  setAcceptDrops(false);
  viewport()->setAcceptDrops(false);
  setMinimumWidth(1);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { StoreSelection(); });
  connect(this, &QPlainTextEdit::selectionChanged, this, [this] { StoreSelection(); });
}

void CodeSheet::SetStyle(CodeStyle style) {
  style_ = std::move(style);
  setPalette(PaperPalette(QApplication::palette(), style_.screen));
  setFont(ShownFont());
  if (view_ == nullptr) return;
  const int index = pages_.front().index;
  navigation::CodeView* view = view_;
  const std::vector<navigation::StyleRun>* runs = runs_;
  CodePage before = std::move(pages_.front());
  std::vector<LineMark> marks = marks_;
  const int top = verticalScrollBar()->value();
  Forget();
  ShowView(index, *view, *runs);
  pages_.front().folded = std::move(before.folded);
  if (before.hasStructure) SetStructure(std::move(before.folds), std::move(before.routines));
  SetMarks(std::move(marks));
  verticalScrollBar()->setValue(top);
}

void CodeSheet::ShowView(int index, navigation::CodeView& view, const std::vector<navigation::StyleRun>& runs) {
  if (view_ == &view) return;
  StoreScroll();
  following_ = false;
  emit ModuleLeaves();
  marks_.clear();
  view_ = &view;
  runs_ = &runs;
  const CodePage& page = PageOf(index);
  setDocument(page.document.get());
  PlaceCursor();
  verticalScrollBar()->setValue(page.scrollY);
  horizontalScrollBar()->setValue(page.scrollX);
  following_ = true;
  emit SidesChanged();
  Trim();
}

void CodeSheet::ShowSelection() {
  if (view_ == nullptr) return;
  following_ = false;
  PlaceCursor();
  ScrollToLine(static_cast<int>(view_->LineFromChar(view_->SelStart())));
  horizontalScrollBar()->setValue(0);
  following_ = true;
}

void CodeSheet::RevealSelection() {
  if (view_ == nullptr) return;
  following_ = false;
  const int top = verticalScrollBar()->value();
  PlaceCursor();
  // A place that had to be scrolled to is shown with what is around it.
  if (verticalScrollBar()->value() != top) centerCursor();
  following_ = true;
}

void CodeSheet::Forget() {
  following_ = false;
  emit ModuleLeaves();
  marks_.clear();
  view_ = nullptr;
  runs_ = nullptr;
  setDocument(nullptr);
  pages_.clear();
  emit SidesChanged();
}

void CodeSheet::SetFontSteps(int steps) {
  fontSteps_ = steps;
  setFont(ShownFont());
  for (const CodePage& page : pages_) UseFont(*page.document);
  emit SidesChanged();
}

QFont CodeSheet::ShownFont() const {
  QFont font = style_.font;
  if (fontSteps_ != 0) font.setPointSize(std::clamp(PointsOf(font) + fontSteps_, kSmallestFont, kLargestFont));
  return font;
}

void CodeSheet::UseFont(QTextDocument& document) const {
  document.setDefaultFont(font());
  QTextOption option = document.defaultTextOption();
  option.setTabStopDistance(style_.tabStop * PointsOf(font()) / PointsOf(style_.font));
  document.setDefaultTextOption(option);
}

void CodeSheet::ForEachLineOnScreen(const std::function<void(int, int)>& line) const {
  QTextBlock block = firstVisibleBlock();
  double top = blockBoundingGeometry(block).translated(contentOffset()).top();
  for (; block.isValid() && top <= viewport()->height(); block = block.next()) {
    if (!block.isVisible()) continue;
    line(block.blockNumber(), qRound(top));
    top += blockBoundingRect(block).height();
  }
}

void CodeSheet::ScrollToLine(int line) {
  verticalScrollBar()->setValue(document()->findBlockByNumber(line).firstLineNumber());
}

double CodeSheet::CodeLeft() const {
  return viewport()->geometry().left() + contentOffset().x() + document()->documentMargin();
}

void CodeSheet::SetMarks(std::vector<LineMark> marks) {
  marks_ = std::move(marks);
  emit SidesChanged();
  viewport()->update();
}

const LineMark* CodeSheet::MarkAt(int line) const {
  const auto mark = std::ranges::lower_bound(marks_, line, {}, &LineMark::line);
  return mark == marks_.end() || mark->line != line ? nullptr : &*mark;
}

std::string_view CodeSheet::Code() const { return view_ == nullptr ? std::string_view() : view_->Text(); }

std::string_view CodeSheet::SelectedCode() const { return view_ == nullptr ? std::string_view() : view_->SelText(); }

CodePage& CodeSheet::PageOf(int index) {
  auto page = std::find_if(pages_.begin(), pages_.end(), [index](const CodePage& p) { return p.index == index; });
  if (page != pages_.end()) {
    pages_.splice(pages_.begin(), pages_, page);
    return pages_.front();
  }
  pages_.push_front({index, BuildDocument(*view_, *runs_, style_)});
  if (fontSteps_ != 0) UseFont(*pages_.front().document);
  return pages_.front();
}

void CodeSheet::Trim() {
  std::size_t kept = 0;
  std::size_t lines = 0;
  const auto fits = [&](const CodePage& page) {
    lines += static_cast<std::size_t>(page.document->blockCount());
    return ++kept == 1 || (kept <= kKeptDocuments && lines <= kKeptLines);
  };
  pages_.erase(std::find_if_not(pages_.begin(), pages_.end(), fits), pages_.end());
}

void CodeSheet::StoreScroll() {
  if (view_ == nullptr) return;
  pages_.front().scrollX = horizontalScrollBar()->value();
  pages_.front().scrollY = verticalScrollBar()->value();
}

void CodeSheet::StoreSelection() {
  if (!following_) return;
  const QTextCursor cursor = textCursor();
  const std::size_t start = OffsetOf(cursor.selectionStart());
  view_->Select(start, OffsetOf(cursor.selectionEnd()) - start, cursor.position() == cursor.selectionEnd());
}

void CodeSheet::PlaceCursor() {
  UnfoldAround(static_cast<int>(view_->LineFromChar(view_->SelStart())));
  UnfoldAround(static_cast<int>(view_->LineFromChar(view_->SelStart() + view_->SelLength())));
  QTextCursor cursor(document());
  cursor.setPosition(PositionOf(view_->SelStart()));
  cursor.setPosition(PositionOf(view_->SelStart() + view_->SelLength()), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

void CodeSheet::paintEvent(QPaintEvent* event) {
  QPlainTextEdit::paintEvent(event);
  PaintAfterLines(event->rect());
}

void CodeSheet::keyPressEvent(QKeyEvent* event) {
  const int before = textCursor().position();
  QPlainTextEdit::keyPressEvent(event);
  if (!textCursor().block().isVisible()) LeaveFold(textCursor().position() > before);
}

int CodeSheet::PositionOf(std::size_t offset) const {
  const std::size_t line = view_->LineFromChar(offset);
  const QTextBlock block = document()->findBlockByNumber(static_cast<int>(line));
  const int column = static_cast<int>(offset - view_->LineStart(line));
  return block.position() + std::min(column, block.length() - 1);
}

std::size_t CodeSheet::OffsetOf(int position) const {
  const QTextBlock block = document()->findBlock(position);
  return view_->LineStart(static_cast<std::size_t>(block.blockNumber())) +
         static_cast<std::size_t>(position - block.position());
}

QMimeData* CodeSheet::createMimeDataFromSelection() const {
  if (view_ == nullptr) return QPlainTextEdit::createMimeDataFromSelection();
  const QTextCursor cursor = textCursor();
  const std::size_t start = OffsetOf(cursor.selectionStart());
  const std::size_t length = OffsetOf(cursor.selectionEnd()) - start;
  return MakeMimeData(ClipOf({view_->Text(), *runs_, start, length}, style_)).release();
}

}  // namespace quillmate::ui
