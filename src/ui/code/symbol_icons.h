#pragma once

#include <QHash>
#include <QIcon>

#include <quillmate/symbols/reference_index.h>

#include "icons.h"

namespace quillmate::ui {

/// The pictures of declarations: modules and routines as in the project tree, the others a letter in a coloured field.
class SymbolIcons {
 public:
  QIcon Of(const symbols::ReferenceIndex& index, symbols::SymbolId symbol);

 private:
  IconSet icons_;
  QHash<int, QIcon> letters_;
};

}  // namespace quillmate::ui
