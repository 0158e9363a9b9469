#include "code_document.h"

#include <QPlainTextDocumentLayout>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>
#include <array>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

using navigation::Span;
using navigation::StyleRun;

/// A format for each kind of span, plain and bold.
class Formats {
 public:
  explicit Formats(const CodeStyle& style) {
    const QColor colours[] = {QColor(), style.screen.keyword, style.screen.comment, style.screen.string};
    for (std::size_t span = 0; span < 4; ++span) {
      for (std::size_t bold = 0; bold < 2; ++bold) {
        QTextCharFormat& format = formats_[span * 2 + bold];
        if (colours[span].isValid()) format.setForeground(colours[span]);
        if (bold != 0 && style.look.boldRoutines) format.setFontWeight(QFont::Bold);
      }
    }
  }

  const QTextCharFormat& Of(const StyleRun& run) const {
    return formats_[static_cast<std::size_t>(run.span) * 2 + (run.headerLine ? 1 : 0)];
  }

 private:
  std::array<QTextCharFormat, 8> formats_;
};

/// A line break is one character in Qt. A break character that is alone must not make a line of its own, or the
/// lines of screen and index would part.
QString DocumentText(const std::string& code) {
  QString text = FromCode(code);
  text.replace(QStringLiteral("\r\n"), QString(QChar::ParagraphSeparator));
  text.replace(QLatin1Char('\r'), QLatin1Char(' '));
  text.replace(QLatin1Char('\n'), QLatin1Char(' '));
  return text;
}

std::size_t LineEnd(const navigation::CodeView& view, std::size_t line) {
  return line + 1 < view.LineCount() ? view.LineStart(line + 1) : view.Length();
}

void ColourBlocks(QTextDocument& document, const navigation::CodeView& view, const std::vector<StyleRun>& runs,
                  const Formats& formats) {
  auto run = runs.begin();
  QTextBlock block = document.begin();
  for (std::size_t line = 0; line < view.LineCount() && block.isValid(); ++line, block = block.next()) {
    const std::size_t start = view.LineStart(line);
    const std::size_t end = LineEnd(view, line);
    while (run != runs.end() && run->start + run->length <= start) ++run;
    QList<QTextLayout::FormatRange> ranges;
    for (auto in = run; in != runs.end() && in->start < end; ++in) {
      const std::size_t from = std::max(in->start, start);
      const std::size_t to = std::min(in->start + in->length, end);
      ranges.append({static_cast<int>(from - start), static_cast<int>(to - from), formats.Of(*in)});
    }
    if (!ranges.isEmpty()) block.layout()->setFormats(ranges);
  }
}

}  // namespace

std::unique_ptr<QTextDocument> BuildDocument(const navigation::CodeView& view, const std::vector<StyleRun>& runs,
                                             const CodeStyle& style) {
  auto document = std::make_unique<QTextDocument>();
  document->setUndoRedoEnabled(false);
  document->setDefaultFont(style.font);
  QTextOption option = document->defaultTextOption();
  option.setTabStopDistance(style.tabStop);
  option.setWrapMode(QTextOption::NoWrap);
  document->setDefaultTextOption(option);
  document->setDocumentLayout(new QPlainTextDocumentLayout(document.get()));
  document->setPlainText(DocumentText(view.Text()));
  ColourBlocks(*document, view, runs, Formats(style));
  return document;
}

}  // namespace quillmate::ui
