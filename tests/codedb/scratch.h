#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/index_files.h>

#include "files/scratch.h"
#include "places.h"

namespace quillmate::codedb {

using files::FilesIn;
using files::MessageOf;
using files::Names;
using files::ScratchFolder;

inline std::filesystem::path TemplateFile() { return tests::ProgramFolder() / kTemplateFile; }

/// A fresh index, open.
struct FreshIndex {
  ScratchFolder folder;
  CodeDatabase database;

  FreshIndex() {
    if (!PrepareCodeDatabase(folder.Path(), TemplateFile()).ok) throw std::runtime_error("no template");
    database.OpenCodeDatabase(folder.Path());
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

}  // namespace quillmate::codedb
