#include <array>
#include <cstdint>
#include <cstring>
#include <exception>

#include <sqlite3.h>

#include <quillmate/analysis/unused.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>
#include <quillmate/export/html.h>
#include <quillmate/export/outline.h>
#include <quillmate/export/project_export.h>
#include <quillmate/export/site.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/navigation/callers.h>
#include <quillmate/navigation/code_views.h>
#include <quillmate/navigation/definition.h>
#include <quillmate/navigation/project_tree.h>
#include <quillmate/navigation/search.h>
#include <quillmate/navigation/zoom.h>

#include "fuzz.h"
#include "scratch.h"

/// A saved project from anywhere, through everything that can be asked of it. The input is a list of parts, each with
/// its length in front (four bytes, lowest first; what is missing at the end is missing). Of the first part the first
/// byte tells what follows: 0 a whole database file, else rows for an index without any checks. The other parts are the
/// texts of the modules.
namespace quillmate::fuzz {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLooseSchema =
    "CREATE TABLE td_mod (mod_num, mod_name, mod_typ, mod_zeilen);"
    "CREATE TABLE td_rout (rou_num, mod_num, rou_name, rou_typ, rou_open, anz_dec_zeilen, rou_start, rou_ende);";

constexpr std::array<std::int64_t, 12> kSpecialNumbers{INT64_MAX,
                                                       INT64_MIN,
                                                       INT32_MAX,
                                                       INT32_MIN,
                                                       std::int64_t{INT32_MAX} + 1,
                                                       std::int64_t{INT32_MIN} - 1,
                                                       INT16_MAX,
                                                       INT16_MIN,
                                                       1000000000,
                                                       0,
                                                       -1,
                                                       65536};

class Parts {
 public:
  explicit Parts(std::string_view bytes) : rest_(bytes) {}
  bool AtEnd() const noexcept { return rest_.empty(); }
  std::string_view Next() {
    std::uint32_t length = 0;
    const std::string_view number = Take(sizeof(length));
    if (!number.empty()) std::memcpy(&length, number.data(), number.size());
    return Take(length);
  }
  unsigned char Byte() {
    const std::string_view byte = Take(1);
    return byte.empty() ? 0 : static_cast<unsigned char>(byte[0]);
  }
  std::string_view Take(std::size_t length) {
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(taken.size());
    return taken;
  }

 private:
  std::string_view rest_;
};

/// A small number, a special one, nothing, or a text where a number should be.
void BindAny(sqlite3_stmt* insert, int column, Parts& input) {
  const unsigned char byte = input.Byte();
  if (byte < 200) {
    sqlite3_bind_int64(insert, column, byte);
  } else if (byte < 200 + kSpecialNumbers.size()) {
    sqlite3_bind_int64(insert, column, kSpecialNumbers[byte - 200]);
  } else if (byte < 220) {
    sqlite3_bind_double(insert, column, 1e300);
  } else if (byte < 230) {
    sqlite3_bind_null(insert, column);
  } else {
    const std::string_view text = input.Take(byte - 230);
    sqlite3_bind_text64(insert, column, text.data() == nullptr ? "" : text.data(), text.size(), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
  }
}

void WriteRows(const fs::path& file, Parts input) {
  sqlite3* db = nullptr;
  sqlite3_open(file.c_str(), &db);
  sqlite3_exec(db, "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN", nullptr, nullptr, nullptr);
  sqlite3_exec(db, kLooseSchema, nullptr, nullptr, nullptr);
  std::array<sqlite3_stmt*, 2> inserts{};
  sqlite3_prepare_v2(db, "INSERT INTO td_mod VALUES (?,?,?,?)", -1, &inserts[0], nullptr);
  sqlite3_prepare_v2(db, "INSERT INTO td_rout VALUES (?,?,?,?,?,?,?,?)", -1, &inserts[1], nullptr);
  for (int rows = 0; !input.AtEnd() && rows < 100; ++rows) {
    sqlite3_stmt* const insert = inserts[input.Byte() % 2];
    for (int column = 1; column <= sqlite3_bind_parameter_count(insert); ++column) BindAny(insert, column, input);
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }
  for (sqlite3_stmt* const insert : inserts) sqlite3_finalize(insert);
  sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_close(db);
}

/// A failure is a message to the user; what it promises is that nothing breaks.
template <typename Action>
void Try(Action action) {
  try {
    action();
  } catch (const std::exception&) {
  }
}

struct Project {
  fs::path folder;
  codedb::CodeDatabase database;
  std::vector<codedb::ModuleRecord> modules;
};

void Navigate(Project& project) {
  navigation::ProjectTree tree;
  navigation::FillModuleNodes(project.database, tree);
  navigation::FillRoutineNodes(project.database, tree);
  std::vector<output::OutlineNode> outline;
  for (const navigation::TreeNode& node : tree.nodes) outline.push_back({node.text, node.parent});
  output::BuildOutline(outline);
  const int count = static_cast<int>(project.modules.size());
  navigation::CodeViews views;
  views.Load(project.folder, count);
  navigation::AllHits(project.database, views, {"e"});
  for (codedb::ViewIndex i; i.value < count; ++i.value) {
    for (const std::int32_t line : {0, 1, 3, 100}) {
      navigation::BuildZoomView(project.database, views.View(i), views.Runs(i), i, {line});
    }
  }
}

void AskForRoutines(Project& project) {
  navigation::ProjectTexts texts;
  texts.Load(project.folder, static_cast<int>(project.modules.size()));
  int left = 20;
  for (std::size_t i = 0; i < project.modules.size(); ++i) {
    for (const codedb::RoutineRecord& routine : project.modules[i].routines) {
      if (left-- == 0) return;
      const codedb::ViewIndex view{static_cast<std::int32_t>(i)};
      Try([&] { navigation::FindCallers(project.database, texts, view, routine.name); });
      Try([&] { navigation::FindDefinition(project.database, view, routine.name); });
      Try([&] { project.database.StartOf(routine.number); });
    }
  }
}

void Export(Project& project, const fs::path& site) {
  const output::Sink nowhere = [](std::string_view) {};
  const auto entries = output::ReadModules(project.database);
  Try([&] { output::ProjectText(project.folder, entries, true, nowhere); });
  Try([&] { output::ProjectRtf(project.folder, entries, true, {}, nowhere); });
  Try([&] { output::ProjectHtml(project.folder, entries, true, {}, nowhere); });
  symbols::ProjectSources loaded = symbols::LoadSources(project.database, project.folder);
  const auto known = symbols::ReferenceIndex::Build(std::move(loaded.sources));
  const output::SiteProject pages{.title = "S",
                                  .indexFolder = project.folder,
                                  .modules = project.modules,
                                  .understanding = &known,
                                  .places = loaded.places};
  Try([&] { analysis::FindUnusedRoutines(project.database, project.folder); });
  output::WriteSite(pages, {}, site);
}

void WriteProject(const fs::path& folder, std::string_view bytes) {
  Parts parts(bytes);
  Parts index(parts.Next());
  const fs::path file = codedb::CodeDbPath(folder);
  if (index.Byte() == 0) {
    files::WriteWholeFile(file, index.Take(std::string_view::npos));
  } else {
    WriteRows(file, index);
  }
  for (int number = 1; number <= 20 && !parts.AtEnd(); ++number) {
    files::WriteWholeFile(codedb::ModuleTextPath(folder, {number}), parts.Next());
  }
}

}  // namespace

void Check(std::string_view bytes) {
  static const Scratch scratch;
  const fs::path folder = scratch.Path() / "p";
  const fs::path site = scratch.Path() / "s";
  for (const fs::path& path : {folder, site}) {
    fs::remove_all(path);
    fs::create_directory(path);
  }
  WriteProject(folder, bytes);
  Project project;
  project.folder = folder;
  Try([&] {
    project.database.OpenCodeDatabase(folder);
    project.modules = project.database.ReadIndex();
    Try([&] { Navigate(project); });
    Try([&] { AskForRoutines(project); });
    Try([&] { Export(project, site); });
  });
}

}  // namespace quillmate::fuzz
