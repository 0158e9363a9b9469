#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include <quillmate/export/table.h>
#include <quillmate/project/session.h>
#include <quillmate/startup/app_globals.h>

#include "background_tasks.h"
#include "interaction.h"
#include "read_files.h"

namespace quillmate::ui {

/// What lists are handed on with: the clipboard and files, in the background where they are long. Everything must
/// outlive it.
struct ListDesk {
  Interaction& interaction;
  const startup::AppGlobals& globals;
  project::Session& session;
  const ReadFiles& readFiles;
  BackgroundTasks& tasks;
};

/// A list for other programs; its forms are made when they are asked for.
struct ListTexts {
  output::Table table;
  /// UTF-8, where it is not just the table's rows.
  std::function<std::string()> text{};
  /// Of rows that can be made in any thread, and after the list has gone from the screen; 0 of others.
  std::size_t rowsAnywhere = 0;
};

/// Puts the text on the clipboard and says so, if the user wants to hear it.
void CopyList(const ListDesk& desk, const ListTexts& list);
/// Asks for a file, proposing the project's name and the table's, and writes the list as its extension says: .csv,
/// .xlsx or text.
void SaveList(const ListDesk& desk, const ListTexts& list);

}  // namespace quillmate::ui
