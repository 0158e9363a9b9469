#pragma once

#include <QRegularExpression>
#include <QString>
#include <vector>

#include <quillmate/navigation/search.h>

/// Search in the whole project by regular expressions, for the list of all hits.
namespace quillmate::ui {

struct Pattern {
  QRegularExpression expression;
  /// What is wrong with the pattern, for the user; empty when it can be used.
  QString error;
};

/// As in the other searches a whole word has no identifier character beside it. "^" and "$" are
/// the limits of a line, "." is no line break.
Pattern MakePattern(const QString& pattern, bool wholeWord, bool matchCase);

struct PatternHits {
  std::vector<navigation::ModuleHits> modules;
  /// Set when the search had to be given up.
  QString error;
};

/// Every match of the project that is not empty, by view and position. Only one module at a time is turned into the
/// form that the expression needs. Throws like navigation::AllHits.
PatternHits AllPatternHits(codedb::CodeDatabase& database, navigation::CodeViews& views, const Pattern& pattern,
                           navigation::MatchWithin within);

}  // namespace quillmate::ui
