#pragma once

#include <QTextDocument>
#include <memory>
#include <vector>

#include <quillmate/navigation/code_view.h>

#include "code_style.h"

namespace quillmate::ui {

/// A module's text in colour, for a QPlainTextEdit: one block for each line. The colours are formats of the blocks'
/// layouts; formats of the document itself would cost several times as much.
std::unique_ptr<QTextDocument> BuildDocument(const navigation::CodeView& view,
                                             const std::vector<navigation::StyleRun>& runs, const CodeStyle& style);

}  // namespace quillmate::ui
