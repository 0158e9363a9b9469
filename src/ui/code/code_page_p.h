#pragma once

#include <QTextDocument>
#include <memory>
#include <set>
#include <vector>

#include "code_editor.h"

namespace quillmate::ui {

/// What is built for the screen of one module.
struct CodeEditor::Page {
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

}  // namespace quillmate::ui
