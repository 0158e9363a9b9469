#pragma once

#include <QString>
#include <string_view>

#include "interaction.h"

namespace quillmate::ui {

/// A save filter as it is written in this program: entries of a description, ":", extensions separated by commas, ";".
/// For instance "Text:txt,log;Alle Dateien:;".
struct SaveFilter {
  /// As the file dialog takes it; empty when something is wrong.
  QString filter;
  /// What is wrong, UTF-8; empty when nothing is.
  std::string_view problem;
};

SaveFilter ReadSaveFilter(std::string_view filter);

/// Asks where to save. The path, empty when the user cancels or the filter is wrong (which is told). Without a folder
/// the dialog starts in "C:\", or in the user's home where there is none.
QString SaveFileDialog(Interaction& interaction, const QString& extension, std::string_view filter,
                       const QString& folder, const QString& fileName);

}  // namespace quillmate::ui
