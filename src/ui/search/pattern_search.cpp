#include "pattern_search.h"

#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Code breaks its lines with CR LF.
const QString kLineBreaks = QStringLiteral("(*ANYCRLF)");

constexpr QRegularExpression::PatternOptions kOptions =
    QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption;

/// Windows-1252 has a UTF-16 unit for each byte: positions are the same in both.
bool FindAllIn(const QString& text, const QRegularExpression& expression, std::vector<navigation::TextMatch>& matches) {
  qsizetype at = 0;
  while (at <= text.size()) {
    const QRegularExpressionMatch match = expression.match(text, at, QRegularExpression::NormalMatch,
                                                           QRegularExpression::DontCheckSubjectStringMatchOption);
    if (!match.isValid()) return false;
    if (!match.hasMatch()) break;
    if (match.capturedLength() > 0) {
      matches.push_back(
          {static_cast<std::size_t>(match.capturedStart()), static_cast<std::size_t>(match.capturedLength())});
    }
    at = match.capturedLength() > 0 ? match.capturedEnd() : match.capturedEnd() + 1;
  }
  return true;
}

}  // namespace

Pattern MakePattern(const QString& pattern, bool wholeWord, bool matchCase) {
  QRegularExpression::PatternOptions options = kOptions;
  if (!matchCase) options |= QRegularExpression::CaseInsensitiveOption;
  // The user's own text is looked at alone first, so that the place of a mistake is the one he sees.
  const QRegularExpression plain(pattern, options);
  if (!plain.isValid()) {
    return {plain, QStringLiteral("Der reguläre Ausdruck ist an Stelle %1 fehlerhaft").arg(plain.patternErrorOffset())};
  }
  Pattern made;
  made.expression.setPatternOptions(options);
  made.expression.setPattern(kLineBreaks +
                             (wholeWord ? QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(pattern) : pattern));
  if (!made.expression.isValid()) made.error = QStringLiteral("Der reguläre Ausdruck ist fehlerhaft");
  made.expression.optimize();
  return made;
}

PatternHits AllPatternHits(codedb::CodeDatabase& database, navigation::CodeViews& views, const Pattern& pattern,
                           navigation::MatchWithin within) {
  PatternHits hits;
  for (codedb::ViewIndex i; i.value < views.Count(); ++i.value) {
    const navigation::CodeView& view = views.View(i);
    std::vector<navigation::TextMatch> matches;
    if (!FindAllIn(FromCode(view.Text()), pattern.expression, matches)) {
      hits.error = QStringLiteral("Der reguläre Ausdruck ist zu aufwendig");
      return hits;
    }
    if (!matches.empty() && within != navigation::MatchWithin::kEverything) {
      navigation::KeepMatchesWithin(matches, views.Runs(i), within);
    }
    if (!matches.empty()) hits.modules.push_back(navigation::DescribeHits(database, view, i, matches));
  }
  return hits;
}

}  // namespace quillmate::ui
