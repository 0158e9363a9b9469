#pragma once

#include <functional>
#include <string>

#include <quillmate/project/session.h>
#include <quillmate/startup/app_globals.h>

#include "interaction.h"
#include "read_files.h"

namespace quillmate::ui {

/// What lists are handed on with: the clipboard and files. Everything must outlive it.
struct ListDesk {
  Interaction& interaction;
  const startup::AppGlobals& globals;
  project::Session& session;
  const ReadFiles& readFiles;
};

/// A list in its two forms, UTF-8; each is made when it is asked for.
struct ListTexts {
  std::function<std::string()> text;
  std::function<std::string()> csv;
};

/// Puts the text on the clipboard and says so, if the user wants to hear it.
void CopyList(const ListDesk& desk, const ListTexts& list);
/// Asks for a file, proposing the project's name and `suffix`, and writes the list as its extension says.
void SaveList(const ListDesk& desk, const QString& suffix, const ListTexts& list);

}  // namespace quillmate::ui
