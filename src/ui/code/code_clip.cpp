#include "code_clip.h"

#include <algorithm>
#include <string_view>

#include <quillmate/export/rtf.h>
#include <quillmate/text/markers.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

using navigation::Span;
using navigation::StyleRun;

constexpr StyleRun kPlain{};

/// Calls `piece(text, run)` for each stretch of one look, in order.
template <typename Piece>
void ForEachPiece(const CodeStretch& stretch, Piece piece) {
  const std::string_view text(stretch.text);
  const std::size_t end = std::min(stretch.start + stretch.length, text.size());
  std::size_t at = stretch.start;
  auto run = std::lower_bound(stretch.runs.begin(), stretch.runs.end(), at,
                              [](const StyleRun& r, std::size_t offset) { return r.start + r.length <= offset; });
  while (at < end) {
    const std::size_t runStart = run == stretch.runs.end() ? end : std::min(run->start, end);
    if (at < runStart) {
      piece(text.substr(at, runStart - at), kPlain);
      at = runStart;
      continue;
    }
    const std::size_t runEnd = std::min(run->start + run->length, end);
    if (at < runEnd) piece(text.substr(at, runEnd - at), *run);
    at = std::max(at, runEnd);
    ++run;
  }
}

std::string_view Opener(Span span) {
  switch (span) {
    case Span::kKeyword:
      return text::KeywordOpen;
    case Span::kComment:
      return text::CommentOpen;
    case Span::kString:
      return text::StringOpen;
    case Span::kPlain:
      break;
  }
  return {};
}

const QColor* ColourOf(Span span, const CodeStyle& style) {
  switch (span) {
    case Span::kKeyword:
      return &style.keyword;
    case Span::kComment:
      return &style.comment;
    case Span::kString:
      return &style.string;
    case Span::kPlain:
      break;
  }
  return nullptr;
}

QString StyleText(const StyleRun& run, const CodeStyle& style) {
  QString css;
  if (const QColor* colour = ColourOf(run.span, style)) css += QStringLiteral("color:%1;").arg(colour->name());
  if (run.headerLine && style.look.boldRoutines) css += QStringLiteral("font-weight:bold;");
  return css;
}

}  // namespace

std::string MarkedUp(const CodeStretch& stretch) {
  std::string marked;
  ForEachPiece(stretch, [&marked](std::string_view piece, const StyleRun& run) {
    if (run.headerLine) marked += text::HeaderLineOpen;
    marked += Opener(run.span);
    marked += piece;
    if (run.span != Span::kPlain) marked += text::SpanClose;
    if (run.headerLine) marked += text::HeaderLineClose;
  });
  return marked;
}

QString ClipHtml(const CodeStretch& stretch, const CodeStyle& style) {
  QString html = QStringLiteral("<pre style=\"font-family:'%1',monospace;font-size:%2pt;\">")
                     .arg(FromCode(style.look.fontName).toHtmlEscaped().remove(QLatin1Char('\'')))
                     .arg(style.look.fontSize);
  ForEachPiece(stretch, [&](std::string_view piece, const StyleRun& run) {
    const QString text = ClipText(piece).toHtmlEscaped();
    const QString css = StyleText(run, style);
    html += css.isEmpty() ? text : QStringLiteral("<span style=\"%1\">%2</span>").arg(css, text);
  });
  return html + QStringLiteral("</pre>");
}

QString ClipText(std::string_view code) { return FromCode(code).replace(QStringLiteral("\r\n"), QStringLiteral("\n")); }

ClipboardContent ClipOf(const CodeStretch& stretch, const CodeStyle& style) {
  ClipboardContent content;
  content.text = ClipText(std::string_view(stretch.text).substr(stretch.start, stretch.length));
  content.rtf = QByteArray::fromStdString(output::RtfDocument(MarkedUp(stretch), style.look));
  content.html = ClipHtml(stretch, style);
  return content;
}

}  // namespace quillmate::ui
