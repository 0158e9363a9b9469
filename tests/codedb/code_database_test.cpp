#include <gtest/gtest.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>

namespace quillmate::codedb {
namespace {
TEST(CodeDatabase, Smoke) {
  const std::filesystem::path folder = std::filesystem::path(testing::TempDir());
  ASSERT_TRUE(PrepareCodeDatabase(folder, std::filesystem::path(QUILLMATE_BIN_DIR) / kTemplateFile).ok);
  CodeDatabase db;
  db.Open(DatabasePath(folder));
  db.Begin();
  db.ExecuteSql(
      "INSERT INTO td_mod(mod_num,mod_name,mod_typ,mod_zeilen) SELECT '1' AS AX1, 'O''Brien;[?]' AS AX2, '2' AS AX3, "
      "'10' AS AX4");
  db.ExecuteSql(
      "INSERT INTO td_rout(rou_typ,rou_open,anz_dec_zeilen,rou_name,rou_num,mod_num) SELECT '11' AS AX1, '1' AS AX2, "
      "'3' AS AX3, '\304pfel' AS AX4, '1' AS AX5, '1' AS AX6");
  db.ExecuteSql("UPDATE td_rout SET td_rout.rou_start =5 WHERE (([rou_num]=1));");
  db.ExecuteSql(
      "UPDATE td_rout SET td_rout.rou_ende = [rou_start]+([anz_dec_zeilen]-1) WHERE (([rou_typ]>10) And (mod_num=1));");
  db.Commit();
  auto index = ReadIndex(db);
  ASSERT_EQ(index.size(), 1u);
  EXPECT_EQ(index[0].name, "O'Brien;[?]");
  EXPECT_EQ(index[0].routines[0].end, 7);
  Recordset r = db.OpenRecordset(
      "SELECT 'M' & [mod_num] AS mnum,   'R' & [rou_num] AS rnum,   td_rout.rou_name,   'R' & [rou_typ] & 'O' & "
      "[rou_open] AS iflag FROM td_rout ORDER BY td_rout.mod_num,   td_rout.rou_name;");
  ASSERT_TRUE(r.Next());
  EXPECT_EQ(r.Text("iflag"), "R11O1");
  EXPECT_EQ(r.Text("ROU_NAME"), "\304pfel");
  EXPECT_FALSE(r.Next());
  Recordset a = db.OpenRecordset("SELECT rou_num from td_rout where rou_name='\344PFEL'");
  EXPECT_TRUE(a.Next());
}
}  // namespace
}  // namespace quillmate::codedb
