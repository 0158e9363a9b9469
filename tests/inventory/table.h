#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <quillmate/files/paths.h>

namespace quillmate::inventory {

/// What any tool would show: a row on each line, "|" between its values.
inline std::string Ask(const std::filesystem::path& file, const std::string& sql) {
  sqlite3* database = nullptr;
  std::string rows;
  EXPECT_EQ(sqlite3_open(files::PathText(file).c_str(), &database), SQLITE_OK);
  const auto take = [](void* to, int count, char** values, char**) {
    std::string& text = *static_cast<std::string*>(to);
    for (int i = 0; i < count; ++i) text.append(i == 0 ? "" : "|").append(values[i] == nullptr ? "-" : values[i]);
    text += "\n";
    return 0;
  };
  EXPECT_EQ(sqlite3_exec(database, sql.c_str(), take, &rows, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
  sqlite3_close(database);
  return rows;
}

}  // namespace quillmate::inventory
