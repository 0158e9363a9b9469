#include "symbol_text.h"

#include <QLocale>
#include <algorithm>

#include <quillmate/files/paths.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

using symbols::ReferenceIndex;
using symbols::SymbolId;

/// Nobody reads on in a list; a line of code may be of any length.
constexpr std::size_t kShownBytes = 400;
constexpr int kShownComments = 12;
constexpr std::uint32_t kShownLines = 6;

/// The start of a text, without half a character at its end.
std::string_view Beginning(std::string_view text) {
  if (text.size() <= kShownBytes) return text;
  std::size_t end = kShownBytes;
  while (end > 0 && (text[end] & 0xC0) == 0x80) --end;
  return text.substr(0, end);
}

/// First and last line of the statement that declares.
std::pair<std::uint32_t, std::uint32_t> HeaderLines(const language::Module& code, const symbols::Symbol& symbol) {
  if (symbol.declaration == symbols::kNone) return {symbol.line, symbol.line};
  const language::Declaration& declaration = code.declarations[symbol.declaration];
  if (symbols::IsRoutine(symbol.kind) && declaration.routine != symbols::kNone) {
    // Of headers doubled under #If the one that counts.
    const language::LogicalLine& line = code.logicalLines[code.LogicalLineAt(declaration.line)];
    return {line.firstLine, line.firstLine + line.lineCount - 1};
  }
  return {declaration.firstLine, std::min(declaration.lastLine, declaration.firstLine + kShownLines)};
}

QString CodeHtml(const language::Module& code, std::uint32_t first, std::uint32_t last) {
  QString html;
  for (std::uint32_t line = first; line <= last && line <= code.lines.size(); ++line) {
    const QString text = FromUtf8(Beginning(code.LineText(line)));
    html += (line == first ? text.trimmed() : QStringLiteral("\n    ") + text.trimmed()).toHtmlEscaped();
  }
  return html;
}

/// The lines of comment right above a line.
QString CommentAbove(const language::Module& code, std::uint32_t line) {
  std::uint32_t first = line;
  while (first > 1 && code.lines[first - 2].lineClass == language::LineClass::kComment &&
         line - first < static_cast<std::uint32_t>(kShownComments)) {
    --first;
  }
  QStringList comment;
  for (std::uint32_t at = first; at < line; ++at) {
    QString text = FromUtf8(Beginning(code.LineText(at))).trimmed();
    if (text.startsWith(QLatin1Char('\''))) text.remove(0, 1);
    comment << text.trimmed().toHtmlEscaped();
  }
  return comment.join(QStringLiteral("<br>"));
}

QString UsesText(std::size_t uses) {
  if (uses == 0) return QStringLiteral("keine Verwendung");
  return uses == 1 ? QStringLiteral("1 Verwendung") : QLocale().toString(uses) + QStringLiteral(" Verwendungen");
}

}  // namespace

QString KindText(const ReferenceIndex& index, SymbolId symbol) {
  return FromUtf8(symbols::GermanWord(index.SymbolAt(symbol).kind));
}

QString SymbolName(const ReferenceIndex& index, SymbolId symbol) {
  const std::string_view name = index.Name(symbol);
  return name.empty() ? QStringLiteral("(ohne Namen)") : FromUtf8(name);
}

QString ModuleText(const ReferenceIndex& index, symbols::Index module) {
  const symbols::ModuleInfo& info = index.Modules()[module];
  if (index.Projects().size() < 2) return FromUtf8(info.name);
  return FromUtf8(index.Projects()[info.project].name) + QLatin1Char('.') + FromUtf8(info.name);
}

QString FileText(const ReferenceIndex& index, symbols::Index module) {
  return FromPath(files::PathFromText(index.Modules()[module].file).filename());
}

QString QualifiedName(const ReferenceIndex& index, SymbolId symbol) {
  const symbols::Symbol& of = index.SymbolAt(symbol);
  if (symbols::IsModule(of.kind)) return ModuleText(index, of.module);
  QString name = SymbolName(index, symbol);
  if (of.parent != symbols::kNone) name = SymbolName(index, of.parent) + QLatin1Char('.') + name;
  return ModuleText(index, of.module) + QLatin1Char('.') + name;
}

QString LineText(const ReferenceIndex& index, symbols::Index module, std::uint32_t line) {
  const language::Module& code = index.Code(module);
  if (line == 0 || line > code.lines.size()) return {};
  return FromUtf8(Beginning(code.LineText(line))).simplified();
}

QString RoutineText(const ReferenceIndex& index, SymbolId routine) {
  return routine == symbols::kNone ? QStringLiteral("(Deklarationen)") : SymbolName(index, routine);
}

QString DescribeSymbol(const project::Understanding& known, SymbolId symbol) {
  const ReferenceIndex& index = known.Index();
  const symbols::Symbol& of = index.SymbolAt(symbol);
  const language::Module& code = index.Code(of.module);
  QString html;
  QString comment;
  if (of.line > 0) {
    const auto [first, last] = HeaderLines(code, of);
    html = QStringLiteral("<pre>") + CodeHtml(code, first, last) + QStringLiteral("</pre>");
    comment = CommentAbove(code, first);
  } else {
    const QString type = FromUtf8(index.DeclaredType(symbol));
    html = QStringLiteral("<p><b>%1</b>%2</p>")
               .arg(SymbolName(index, symbol).toHtmlEscaped(),
                    type.isEmpty() ? QString() : QStringLiteral(" As ") + type.toHtmlEscaped());
  }
  if (!comment.isEmpty()) html += QStringLiteral("<p><i>%1</i></p>").arg(comment);
  const QString place =
      symbols::IsModule(of.kind)
          ? QString()
          : QStringLiteral(" in ") + ModuleText(index, of.module) +
                (of.parent == symbols::kNone ? QString() : QLatin1Char('.') + SymbolName(index, of.parent));
  html += QStringLiteral("<p>%1%2, %3</p>")
              .arg(KindText(index, symbol), place.toHtmlEscaped(), UsesText(index.ReferencesTo(symbol).size()));
  return html;
}

}  // namespace quillmate::ui
