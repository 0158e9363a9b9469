#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/index_files.h>

namespace quillmate::navigation {

/// A fresh project folder that goes away with the test.
class Project : public testing::Test {
 protected:
  Project() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::path(testing::TempDir()) / (std::string("quillmate_") + test->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  ~Project() override { std::filesystem::remove_all(folder_); }

  /// An empty index, open.
  codedb::CodeDatabase& Database() {
    codedb::PrepareCodeDatabase(folder_, std::filesystem::path(QUILLMATE_BIN_DIR) / codedb::kTemplateFile);
    database_.Open(codedb::DatabasePath(folder_));
    return database_;
  }

  std::filesystem::path folder_;
  codedb::CodeDatabase database_;
};

inline void AddModule(codedb::CodeDatabase& database, const std::string& number, const std::string& name,
                      const std::string& kind) {
  database.ExecuteSql("INSERT INTO td_mod(mod_num,mod_name,mod_typ,mod_zeilen) SELECT '" + number + "' AS AX1, '" +
                      name + "' AS AX2, '" + kind + "' AS AX3, '9' AS AX4");
}

/// `codes` are the first two values, kind and visibility, as the statement spells them.
inline void AddRoutine(codedb::CodeDatabase& database, const std::string& number, const std::string& module,
                       const std::string& name, const std::string& codes) {
  database.ExecuteSql(
      "INSERT INTO td_rout(rou_typ,rou_open,anz_dec_zeilen,rou_name,rou_num,mod_num) "
      "SELECT " +
      codes + "'1' AS AX3, '" + codedb::QuoteLiteral(name) + "' AS AX4, '" + number + "' AS AX5, '" + module +
      "' AS AX6");
}

struct RoutineRow {
  int number;
  int module;
  std::string name;
  int start;
  int end;
  int kind = 1;
  int visibility = 1;
};

inline void AddRoutine(codedb::CodeDatabase& database, const RoutineRow& row) {
  const std::string number = std::to_string(row.number);
  AddRoutine(database, number, std::to_string(row.module), row.name,
             "'" + std::to_string(row.kind) + "' AS AX1, '" + std::to_string(row.visibility) + "' AS AX2, ");
  const std::string where = " WHERE (([rou_num]=" + number + "));";
  database.ExecuteSql("UPDATE td_rout SET td_rout.rou_start =" + std::to_string(row.start) + where);
  database.ExecuteSql("UPDATE td_rout SET td_rout.rou_ende =" + std::to_string(row.end) + where);
}

}  // namespace quillmate::navigation
