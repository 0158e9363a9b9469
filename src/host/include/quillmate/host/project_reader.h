#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <quillmate/analysis/scanner.h>
#include <quillmate/codedb/code_database.h>
#include <quillmate/host/host_automation.h>
#include <quillmate/host/host_tree.h>

namespace quillmate::host {

struct ReadRequest {
  /// The folder that gets the index; its scratch files are deleted first.
  std::filesystem::path folder;
  std::filesystem::path templateFile;
  analysis::ScanOptions options;
  /// Called with each status text (UTF-8): "Erzeuge Projekt", "Modul: " + name.
  std::function<void(const std::string&)> progress;
};

enum class ReadOutcome {
  kDone,            // message: empty, or the error text of a failed read when modules were left out
  kNothingChecked,  // message: "Bitte wählen Sie erst etwas aus"
  kNotAttached,     // no message
  kNoTemplate,      // message of codedb::PrepareCodeDatabase, an error; empty on another error of preparing, the
                    // detail tells it then
  kFailed           // message: the error text of a failed read; no half index is left
};

struct ReadReport {
  ReadOutcome outcome = ReadOutcome::kFailed;
  /// German text for the user, UTF-8 with CR LF.
  std::string message;
  /// What went wrong in detail, UTF-8, one line (file and reason); empty when unknown.
  std::string detail;
  /// The modules that could not be read, each in that form: they were left out, the others are in the index.
  std::vector<std::string> leftOut;
  /// The text of the last project node that is ticked or had a module read, Windows-1252, for the window's caption.
  std::string projectText;
  int modules = 0;
  /// A module each that lost characters to Windows-1252: German, UTF-8, one line, with their number.
  std::vector<std::string> replacedCharacters;
};

/// Reads the ticked modules through the host: closes the database, empties the folder, attaches, copies the template,
/// indexes each ticked module of each ticked project in tree order, closes the database. A ticked module of a project
/// that is not ticked is not read. A module that can't be read is left out and named. All rows are one transaction; a
/// read that fails, for instance because no module could be read, leaves a scratch folder empty.
///
/// Only with nothing ticked does an earlier index in the folder survive; the host is released in the end.
ReadReport ReadCheckedModules(HostAutomation& host, const HostTree& tree, codedb::CodeDatabase& database,
                              const ReadRequest& request);

/// The same for the ticked modules' own files ("VB Einlesen"), whether or not their project is ticked: the kind is the
/// digit of the node's image (6, a report module of Access, counts as a document), the name the node's text, the code
/// the file's text without its Attribute lines. A ticked module without a file can't be read.
ReadReport ReadModuleFiles(const HostTree& tree, codedb::CodeDatabase& database, const ReadRequest& request);

}  // namespace quillmate::host
