#pragma once

#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/paths.h>

#include "places.h"

namespace quillmate::codedb {

/// A new empty folder (its path holds an umlaut and a blank) that goes with the test. Names are UTF-8.
class ScratchFolder {
 public:
  explicit ScratchFolder(std::string_view name = "Prüf Ordner") {
    static const auto parent = std::filesystem::canonical(std::filesystem::temp_directory_path());
    root_ = parent / ("quillmate_" + std::to_string(std::random_device{}()));
    path_ = root_ / PathFromText(name);
    std::filesystem::create_directories(path_);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    RemoveFolder(root_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / PathFromText(name); }

  /// Writes a file, with the folders above it, and gives its path.
  std::filesystem::path Write(std::string_view name, std::string_view bytes) const {
    std::filesystem::path file = *this / name;
    std::filesystem::create_directories(file.parent_path());
    WriteWholeFile(file, bytes);
    return file;
  }

 private:
  std::filesystem::path root_;
  std::filesystem::path path_;
};

/// What is in a folder: the names, sorted, with blanks between them.
inline std::string Names(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.insert(PathText(entry.path().filename()));
  std::string joined;
  for (const std::string& name : names) joined += (joined.empty() ? "" : " ") + name;
  return joined;
}

/// The files directly in a folder by their names, with their bytes; none when there is no folder.
inline std::map<std::string, std::string> FilesIn(const std::filesystem::path& folder) {
  std::map<std::string, std::string> files;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
    if (entry.is_regular_file()) files[PathText(entry.path().filename())] = ReadWholeFile(entry.path());
  }
  return files;
}

inline std::filesystem::path TemplateFile() { return tests::ProgramFolder() / kTemplateFile; }

/// A fresh index, open.
struct FreshIndex {
  ScratchFolder folder;
  CodeDatabase database;

  FreshIndex() {
    if (!PrepareCodeDatabase(folder.Path(), TemplateFile()).ok) throw std::runtime_error("no template");
    database.Open(DatabasePath(folder.Path()));
  }

  /// The statements as the scanner issues them. Texts are Windows-1252.
  void AddModule(int number, const std::string& name, const std::string& kind, const std::string& lines = "10") {
    database.ExecuteSql("INSERT INTO td_mod(mod_num,mod_name,mod_typ,mod_zeilen) SELECT '" + std::to_string(number) +
                        "' AS AX1, '" + QuoteLiteral(name) + "' AS AX2, '" + kind + "' AS AX3, '" + lines + "' AS AX4");
  }
  void AddRoutine(int number, int module, const std::string& name, const std::string& kind = "1",
                  const std::string& visibility = "1", const std::string& headerLines = "1") {
    database.ExecuteSql("INSERT INTO td_rout(rou_typ,rou_open,anz_dec_zeilen,rou_name,rou_num,mod_num) SELECT '" +
                        kind + "' AS AX1, '" + visibility + "' AS AX2, '" + headerLines + "' AS AX3, '" +
                        QuoteLiteral(name) + "' AS AX4, '" + std::to_string(number) + "' AS AX5, '" +
                        std::to_string(module) + "' AS AX6");
  }
  void SetLine(const std::string& field, const std::string& line, int routine) {
    database.ExecuteSql("UPDATE td_rout SET td_rout." + field + " =" + line +
                        " WHERE (([rou_num]=" + std::to_string(routine) + "));");
  }
  void SetSpan(int routine, int start, int end) {
    SetLine("rou_start", std::to_string(start), routine);
    SetLine("rou_ende", std::to_string(end), routine);
  }

  /// All records of a query: fields joined by "|", records by ";". A missing value reads as empty.
  std::string Rows(const std::string& query, int fields) {
    std::string out;
    Recordset rows = database.OpenRecordset(query);
    while (rows.Next()) {
      if (!out.empty()) out += ';';
      for (int i = 0; i < fields; ++i) out += (i > 0 ? "|" : "") + rows.Text(i);
    }
    return out;
  }
};

/// The message of the exception that an action throws; empty when it throws none.
template <typename Error, typename Action>
std::string MessageOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error.what();
  }
  return {};
}

}  // namespace quillmate::codedb
