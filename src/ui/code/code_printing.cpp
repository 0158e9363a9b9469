#include "code_printing.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

using navigation::Span;
using navigation::StyleRun;

constexpr double kGap = 1.6;
/// A line as thin as that part of a row.
constexpr double kHairLine = 24;
/// What a line that is broken goes on behind, beside its own blanks: columns, and at most that part of the page.
constexpr double kFurtherIn = 4;
constexpr double kMostIn = 0.4;

/// One job on one device. The device's pages are what they are when it begins.
class Printing {
 public:
  Printing(QPagedPaintDevice& device, const PrintJob& job) : device_(device), job_(job) {}

  bool Run();

 private:
  void Measure();
  QStringList NoteRows(const PrintedPart& part, std::size_t line) const;
  int PagesOf(const PrintedPart& part);
  bool PrintContents();
  bool PrintPart(const PrintedPart& part);
  bool BeginPage(const QString& title);
  bool HasRoom() const { return job_.mostPages == 0 || printed_ < job_.mostPages; }
  void DrawHead(const QString& title);
  double IndentOf(const QString& line) const;
  void LayOut(QTextLayout& layout, const PrintedPart& part, std::size_t line) const;
  QList<QTextLayout::FormatRange> Formats(const PrintedPart& part, std::size_t line) const;
  double LineHeight() const { return height_; }
  double Top() const { return 2 * kGap * height_; }
  double Bottom() const { return page_.height() - kGap * height_; }

  QPagedPaintDevice& device_;
  const PrintJob& job_;
  QPainter painter_;
  QFont font_;
  QSizeF page_;
  double height_ = 0;
  double left_ = 0;
  double tab_ = 0;
  double tabStop_ = 0;
  double blank_ = 0;
  int printed_ = 0;
  int pages_ = 0;
  std::vector<std::pair<QString, int>> contents_;
};

std::string_view LineText(const navigation::CodeView& view, std::size_t line) {
  const std::size_t start = view.LineStart(line);
  const std::size_t end = line + 1 < view.LineCount() ? view.LineStart(line + 1) : view.Length();
  std::string_view text = std::string_view(view.Text()).substr(start, end - start);
  while (text.ends_with('\n') || text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

void Printing::Measure() {
  font_ = job_.style.font;
  const QFontMetricsF metrics(font_, &device_);
  height_ = metrics.lineSpacing();
  page_ = QSizeF(device_.width(), device_.height());
  left_ = job_.lineNumbers ? metrics.horizontalAdvance(QStringLiteral("999999 ")) : 0;
  blank_ = metrics.horizontalAdvance(QLatin1Char(' '));
  tab_ = 4 * blank_;
  // A layout takes tab stops in the desktop's points and scales them to the font's: what comes of them is tried.
  QTextLayout probe(QStringLiteral("\t."), font_, &device_);
  QTextOption option;
  option.setTabStopDistance(tab_);
  probe.setTextOption(option);
  probe.beginLayout();
  const QTextLine row = probe.createLine();
  probe.endLayout();
  const double reached = row.cursorToX(1);
  tabStop_ = reached > 0 ? tab_ * tab_ / reached : tab_;
}

QList<QTextLayout::FormatRange> Printing::Formats(const PrintedPart& part, std::size_t line) const {
  QList<QTextLayout::FormatRange> formats;
  const std::size_t start = part.view->LineStart(line);
  const std::size_t end = start + LineText(*part.view, line).size();
  auto run = std::lower_bound(part.runs->begin(), part.runs->end(), start,
                              [](const StyleRun& r, std::size_t offset) { return r.start + r.length <= offset; });
  for (; run != part.runs->end() && run->start < end; ++run) {
    const std::size_t from = std::max(run->start, start);
    const std::size_t to = std::min(run->start + run->length, end);
    QTextLayout::FormatRange range{static_cast<int>(from - start), static_cast<int>(to - from), {}};
    if (job_.colours && run->span != Span::kPlain) {
      range.format.setForeground(run->span == Span::kKeyword   ? job_.style.keyword
                                 : run->span == Span::kComment ? job_.style.comment
                                                               : job_.style.string);
    }
    if (run->headerLine && job_.style.look.boldRoutines) range.format.setFontWeight(QFont::Bold);
    formats.append(range);
  }
  return formats;
}

/// How far the blanks at the begin of a line reach.
double Printing::IndentOf(const QString& line) const {
  double reach = 0;
  for (const QChar character : line) {
    if (character == QLatin1Char('\t')) {
      reach = (std::floor(reach / tab_) + 1) * tab_;
    } else if (character == QLatin1Char(' ')) {
      reach += blank_;
    } else {
      break;
    }
  }
  return reach;
}

void Printing::LayOut(QTextLayout& layout, const PrintedPart& part, std::size_t line) const {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTabStopDistance(tabStop_);
  layout.setTextOption(option);
  layout.setFormats(Formats(part, line));
  layout.beginLayout();
  const double width = page_.width() - left_;
  double y = 0, in = 0;
  for (QTextLine row = layout.createLine(); row.isValid(); row = layout.createLine()) {
    row.setLineWidth(width - in);
    row.setPosition(QPointF(in, y));
    if (y == 0) in = std::min(IndentOf(layout.text()) + kFurtherIn * blank_, kMostIn * width);
    y += height_;
  }
  layout.endLayout();
}

/// What the user has noted beside a line, broken to the width of the page.
QStringList Printing::NoteRows(const PrintedPart& part, std::size_t line) const {
  const auto mark = std::ranges::lower_bound(part.notes, static_cast<int>(line), {}, &LineMark::line);
  if (mark == part.notes.end() || mark->line != static_cast<int>(line) || mark->note.isEmpty()) return {};
  QFont italic = font_;
  italic.setItalic(true);
  const double character = QFontMetricsF(italic, &device_).averageCharWidth();
  const auto width = static_cast<qsizetype>(std::max(20.0, (page_.width() - left_) / character - 6));
  QStringList rows;
  for (const QString& paragraph : mark->note.split(QLatin1Char('\n'))) {
    QString rest = paragraph;
    do {
      qsizetype end = rest.size();
      if (end > width) {
        const qsizetype blank = rest.lastIndexOf(QLatin1Char(' '), width);
        end = blank > 0 ? blank : width;
      }
      rows << (rows.isEmpty() ? QStringLiteral("Notiz: ") : QString()) + rest.left(end);
      rest = rest.mid(end).trimmed();
    } while (!rest.isEmpty());
  }
  return rows;
}

int Printing::PagesOf(const PrintedPart& part) {
  int pages = 1;
  double y = Top();
  const double width = QFontMetricsF(font_, &device_).averageCharWidth();
  for (std::size_t line = part.firstLine; line < part.endLine; ++line) {
    const std::string_view text = LineText(*part.view, line);
    // Short lines need no layout to be known to fit.
    int rows = 1;
    if (static_cast<double>(text.size()) * width * 2 > page_.width() - left_ || text.find('\t') != text.npos) {
      QTextLayout layout(FromCode(text), font_, &device_);
      LayOut(layout, part, line);
      rows = layout.lineCount();
    }
    rows += static_cast<int>(NoteRows(part, line).size());
    for (int row = 0; row < rows; ++row) {
      if (y + height_ > Bottom()) {
        ++pages;
        y = Top();
      }
      y += height_;
    }
  }
  return pages;
}

/// The name of what is printed, as far as there is room for it, and the date.
void Printing::DrawHead(const QString& title) {
  const QString date = QLocale(QLocale::German).toString(job_.time.date(), QStringLiteral("dd.MM.yyyy"));
  const QFontMetricsF metrics(font_, &device_);
  const QString name = title.isEmpty() ? job_.project : job_.project + QStringLiteral(" – ") + title;
  const QRectF head(0, 0, page_.width(), height_);
  const double room = page_.width() - metrics.horizontalAdvance(date) - 2 * blank_;
  painter_.drawText(head, Qt::AlignLeft | Qt::TextSingleLine, metrics.elidedText(name, Qt::ElideMiddle, room));
  painter_.drawText(head, Qt::AlignRight, date);
}

bool Printing::BeginPage(const QString& title) {
  if (!HasRoom()) return false;
  if (job_.progress && !job_.progress(printed_ + 1, pages_)) return false;
  if (printed_ > 0 && !device_.newPage()) return false;
  ++printed_;
  painter_.setFont(font_);
  painter_.setPen(Qt::black);
  DrawHead(title);
  painter_.setPen(QPen(Qt::gray, height_ / kHairLine));
  painter_.drawLine(QPointF(0, kGap * height_ * 0.8), QPointF(page_.width(), kGap * height_ * 0.8));
  painter_.setPen(Qt::black);
  painter_.drawText(QRectF(0, page_.height() - height_, page_.width(), height_), Qt::AlignHCenter,
                    QStringLiteral("Seite %1 von %2").arg(printed_).arg(pages_));
  return true;
}

bool Printing::PrintContents() {
  const QFontMetricsF metrics(font_, &device_);
  double y = page_.height();
  for (const auto& [title, page] : contents_) {
    if (y + height_ > Bottom()) {
      if (!BeginPage(QStringLiteral("Inhalt"))) return false;
      y = Top();
    }
    const QRectF row(0, y, page_.width(), height_);
    const QString number = QString::number(page);
    const double room = page_.width() - metrics.horizontalAdvance(number) - 2 * blank_;
    painter_.drawText(row, Qt::AlignLeft | Qt::TextSingleLine, metrics.elidedText(title, Qt::ElideMiddle, room));
    painter_.drawText(row, Qt::AlignRight, number);
    y += height_;
  }
  return true;
}

bool Printing::PrintPart(const PrintedPart& part) {
  if (!BeginPage(part.title)) return false;
  double y = Top();
  for (std::size_t line = part.firstLine; line < part.endLine; ++line) {
    QTextLayout layout(FromCode(LineText(*part.view, line)), font_, &device_);
    LayOut(layout, part, line);
    for (int row = 0; row < layout.lineCount(); ++row) {
      if (y + height_ > Bottom()) {
        if (!BeginPage(part.title)) return false;
        y = Top();
      }
      if (row == 0 && job_.lineNumbers) {
        painter_.setPen(Qt::gray);
        painter_.drawText(QRectF(0, y, left_ * 6 / 7, height_), Qt::AlignRight, QString::number(line + 1));
        painter_.setPen(Qt::black);
      }
      const QTextLine text = layout.lineAt(row);
      text.draw(&painter_, QPointF(left_, y - text.y()));
      y += height_;
    }
    for (const QString& row : NoteRows(part, line)) {
      if (y + height_ > Bottom()) {
        if (!BeginPage(part.title)) return false;
        y = Top();
      }
      QFont italic = font_;
      italic.setItalic(true);
      painter_.setFont(italic);
      painter_.drawText(QRectF(left_, y, page_.width() - left_, height_), Qt::AlignLeft | Qt::TextSingleLine, row);
      painter_.setFont(font_);
      y += height_;
    }
  }
  return true;
}

bool Printing::Run() {
  if (!painter_.begin(&device_)) return false;
  Measure();
  for (std::size_t i = 0; i < job_.parts; ++i) {
    const PrintedPart part = job_.part(i);
    contents_.emplace_back(part.title, pages_ + 1);
    pages_ += PagesOf(part);
    if (job_.counted && !job_.counted(i + 1)) return false;
  }
  if (job_.contents) {
    const int rows = std::max(1, static_cast<int>((Bottom() - Top()) / height_));
    const int front = (static_cast<int>(contents_.size()) + rows - 1) / rows;
    pages_ += front;
    for (auto& [title, page] : contents_) page += front;
    if (!PrintContents()) return false;
  }
  for (std::size_t i = 0; i < job_.parts; ++i) {
    if (!PrintPart(job_.part(i))) return false;
  }
  return painter_.end();
}

}  // namespace

bool PrintCode(QPagedPaintDevice& device, const PrintJob& job) { return Printing(device, job).Run(); }

}  // namespace quillmate::ui
