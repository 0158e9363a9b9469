#pragma once

#include <QString>
#include <QTextDocument>
#include <memory>
#include <set>
#include <vector>

#include <quillmate/project/folding.h>

namespace quillmate::ui {

/// What is built for the screen of one module.
struct CodePage {
  int index = -1;
  std::unique_ptr<QTextDocument> document;
  int scrollX = 0;
  int scrollY = 0;
  /// By place; empty until they are known.
  std::vector<project::Fold> folds{};
  std::vector<project::RoutineLines> routines{};
  bool hasStructure = false;
  /// First lines of what is folded.
  std::set<int> folded{};
};

/// What the user has put beside a line: 0-based.
struct LineMark {
  int line = 0;
  bool isBookmark = false;
  /// Empty for none.
  QString note;
};

}  // namespace quillmate::ui
