#include <algorithm>
#include <random>

#include <quillmate/codedb/codes.h>
#include <quillmate/navigation/callers.h>

#include "project_fixture.h"

namespace quillmate::navigation {
namespace {

std::string Describe(const ProjectTree& tree) {
  std::string lines;
  for (const TreeNode& node : tree.nodes) {
    lines += node.key + " " + node.text + " " + node.image + " " + std::to_string(node.parent) + "\n";
  }
  return lines;
}

TEST_F(Project, CallersScopeAndItsMessages) {
  codedb::CodeDatabase& database = Database();
  const int kinds[] = {1, 2, 3, 4, 5, 11, 12};
  int number = 0;
  for (const int kind : kinds) {
    const int visibility = number % 3 + 1;
    AddRoutine(database, {++number, 2, "R" + std::to_string(kind), 1, 2, kind, visibility});
  }
  AddRoutine(database, {50, 2, "a'b", 1, 2, 1, 2});
  const struct {
    std::string_view name;
    int view;
    CallerScope scope;
    std::string_view message;
  } cases[] = {
      {"R1", 1, CallerScope::kProject, ""},
      {"r2", 1, CallerScope::kModule, ""},
      {"R3", 1, CallerScope::kProperty, "Property wird von der Routinensuche nicht unterst\303\274tzt"},
      {"R4", 1, CallerScope::kProperty, "Property wird von der Routinensuche nicht unterst\303\274tzt"},
      {"R5", 1, CallerScope::kProperty, "Property wird von der Routinensuche nicht unterst\303\274tzt"},
      {"R11", 1, CallerScope::kProject, ""},
      {"R12", 1, CallerScope::kProject, ""},
      {"a'b", 1, CallerScope::kModule, ""},
      {"R1", 0, CallerScope::kUnknown, "Infos zu Routine nicht gefunden"},
      {"R", 1, CallerScope::kUnknown, "Infos zu Routine nicht gefunden"},
  };
  for (const auto& c : cases) {
    const CallerScope scope = FindCallerScope(database, c.view, c.name);
    EXPECT_EQ(scope, c.scope) << c.name;
    EXPECT_EQ(ScopeMessage(scope), c.message) << c.name;
  }
  database.Close();
  EXPECT_EQ(ScopeMessage(FindCallerScope(database, 1, "R1")), "Routine nicht gefunden");
}

TEST_F(Project, CallersOfARoutine) {
  codedb::CodeDatabase& database = Database();
  AddModule(database, "1", "Haupt", "2");
  AddModule(database, "2", "Neben", "3");
  AddModule(database, "3", "Stumm", "1");
  AddRoutine(database, {1, 1, "Foo", 2, 4, 2});
  AddRoutine(database, {2, 1, "Start", 5, 8, 1, 2});
  AddRoutine(database, {3, 2, "Ruf", 2, 3, 1, 3});
  AddRoutine(database, {4, 2, "Stille", 4, 7});
  codedb::WriteModuleText(folder_, 1,
                          "|\237f|Option|n\237| |\237f|Explicit|n\237|\r\n"
                          "|\237x||\237f|Function|n\237| Foo(a)|y\237|\r\n"
                          "\tFoo = 2\r\n"
                          "|\237x||\237f|End|n\237| |\237f|Function|n\237||y\237|\r\n"
                          "|\237x||\237f|Private|n\237| |\237f|Sub|n\237| Start()|y\237|\r\n"
                          "\tb = Foo(1): c = Mod1.Foo\r\n"
                          "\tFoo c;Foo\r\n"
                          "|\237x||\237f|End|n\237| |\237f|Sub|n\237||y\237|\r\n");
  codedb::WriteModuleText(folder_, 2,
                          "|\237f|Const|n\237| x = Foo\r\n"
                          "|\237x||\237f|Sub|n\237| Ruf()|y\237|\r\n"
                          "Foo:|\237k|'|n\237||\237x||\237f|End|n\237| |\237f|Sub|n\237||y\237|\r\n"
                          "|\237x||\237f|Sub|n\237| Stille()|y\237|\r\n"
                          "\tMsgBox |\237s|\"Foo\"|n\237| |\237k|' Foo, _\r\n"
                          "\t Foo|n\237|\r\n"
                          "\tFooBar, BarFoo, \374Foo, Foo_, 1Foo, Foo2, foo, FOO |\237f|Foo|n\237|\r\n");
  codedb::WriteModuleText(folder_, 3, "Foo\r\n");
  ProjectTexts texts;
  texts.Load(folder_, 3);
  const char* const expected =
      "M1 Haupt M2 -1\n"
      "R1 Foo R2O1 0\n"
      "R2 Start R1O2 0\n"
      "M2 Neben M3 -1\n"
      "R3 Ruf R1O3 3\n"
      "M3 Stumm M1 -1\n";
  const Callers callers = FindCallers(database, texts, 0, "Foo");
  EXPECT_EQ(callers.scope, CallerScope::kProject);
  EXPECT_EQ(Describe(callers.tree), expected);
  EXPECT_EQ(callers.tree.moduleCount, 3);
  EXPECT_EQ(callers.tree.Find("R3"), 4);
  // A private routine: in its own module, whatever the others hold.
  EXPECT_EQ(Describe(FindCallers(database, texts, 0, "Start").tree), "M1 Haupt M2 -1\nR2 Start R1O2 0\n");
  EXPECT_EQ(Describe(FindCallers(database, texts, 1, "Start").tree), "");
  EXPECT_EQ(Describe(ScanCallers(database, texts, "Nirgends", 1, 3)), "");
  EXPECT_EQ(Describe(ScanCallers(database, texts, "", 1, 3)), "");
  // The texts are those of the last load.
  codedb::WriteModuleText(folder_, 1, "Foo");
  EXPECT_EQ(Describe(ScanCallers(database, texts, "Foo", 1, 3)), expected);
  std::filesystem::remove(folder_ / "M2.txt");
  texts.Load(folder_, 3);
  EXPECT_THROW(ScanCallers(database, texts, "Foo", 1, 3), std::runtime_error);
}

/// The scan step by step: blank out, look for the name, count carriage returns of the stored text, ask the database for
/// each occurrence.
class LiteralScan {
 public:
  LiteralScan(codedb::CodeDatabase& database, const std::filesystem::path& folder)
      : database_(database), folder_(folder) {}

  std::string Run(const std::string& name, int first, int last) {
    std::string lines;
    std::string lastRoutine;
    int nodes = 0;
    for (int module = first; module <= last; ++module) {
      const std::string stored = codedb::ReadModuleText(folder_, module);
      const std::string text = Blank(stored);
      int parent = -1;
      for (std::size_t q = text.find(name); q != std::string::npos; q = text.find(name, q + 1)) {
        const std::size_t behind = q + name.size();
        if ((q > 0 && IsLetter(text[q - 1])) || (behind < text.size() && IsLetter(text[behind]))) continue;
        const auto line = 1 + std::count(stored.begin(), stored.begin() + static_cast<std::ptrdiff_t>(q), '\r');
        if (parent < 0) {
          parent = nodes++;
          lines += ModuleLine(module);
        }
        const auto [number, rest] = RoutineLine(module, line);
        if (number.empty() || number == lastRoutine) continue;
        lastRoutine = number;
        ++nodes;
        lines += "R" + number + rest + std::to_string(parent) + "\n";
      }
    }
    return lines;
  }

 private:
  static std::string Blank(std::string text) {
    for (std::size_t start = text.find("|\237"); start != std::string::npos;) {
      const std::size_t closer = text.find("|n\237|", start + 2);
      const std::size_t end = closer == std::string::npos ? text.size() : closer + 4;
      text.replace(start, end - start, end - start, ' ');
      start = text.find("|\237", closer == std::string::npos ? text.size() : closer + 3);
    }
    return text;
  }

  static bool IsLetter(char c) {
    static const std::string kLetters =
        "abcdefghijklmnopqrstuvwxyz\344\366\374\337_0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ\304\326\334";
    return kLetters.find(c) != std::string::npos;
  }

  std::string ModuleLine(int module) {
    auto row = database_.OpenRecordset(
        "SELECT td_Mod.mod_typ,   td_Mod.mod_name,   td_Mod.mod_num FROM td_Mod Where td_mod.mod_num = " +
        std::to_string(module));
    row.Next();
    return "M" + row.Text(2) + " " + row.Text(1) + " M" + row.Text(0) + " -1\n";
  }

  std::pair<std::string, std::string> RoutineLine(int module, long line) {
    auto row = database_.OpenRecordset(
        "SELECT td_rout.rou_typ,   td_rout.rou_open,   td_rout.rou_name, td_rout.rou_num FROM td_rout"
        " WHERE (((td_rout.rou_start)<=" +
        std::to_string(line) + ") AND ((td_rout.rou_ende)>=" + std::to_string(line) +
        ") AND ((td_rout.mod_num)=" + std::to_string(module) + "));");
    if (!row.Next()) return {};
    return {row.Text(3), " " + row.Text(2) + " R" + row.Text(0) + "O" + row.Text(1) + " "};
  }

  codedb::CodeDatabase& database_;
  std::filesystem::path folder_;
};

std::string RandomModule(std::mt19937& random) {
  static constexpr std::string_view kFragments[] = {
      "\r\n",    "\r\n",    "\r\n",      "\r",        "\n",       " ",       "|\237f|Sub|n\237|",
      "|\237x|", "|y\237|", "|\237s|\"", "\"|n\237|", "|\237k|'", "|n\237|", "|\237",
      "\237|",   "n\237|",  "|",         "Foo",       "Foo",      "Foo",     ".Foo(",
      "Foo$",    "Foo,",    "FooFoo",    "aa",        "aaa",      "foo",     "_",
      "1",       "\344",    "\351",      "x",         ";"};
  std::string text;
  for (auto left = random() % 60; left > 0; --left) text += kFragments[random() % std::size(kFragments)];
  return text;
}

TEST_F(Project, CallersAgreeWithTheLiteralScan) {
  codedb::CodeDatabase& database = Database();
  database.Begin();
  std::mt19937 random(7);
  constexpr int kModules = 400;
  int routine = 0;
  for (int module = 1; module <= kModules; ++module) {
    AddModule(database, std::to_string(module), "Mod" + std::to_string(module % 7), std::to_string(module % 3 + 1));
    codedb::WriteModuleText(folder_, module, RandomModule(random));
    for (auto left = random() % 6; left > 0; --left) {
      // Ranges overlap, lie within each other and end before they begin.
      const int start = static_cast<int>(random() % 20);
      const int end = start + static_cast<int>(random() % 12) - 2;
      AddRoutine(database, {++routine, module, "R" + std::to_string(routine), start, end, 1 + routine % 2});
    }
  }
  database.Commit();
  ProjectTexts texts;
  texts.Load(folder_, kModules);
  LiteralScan literal(database, folder_);
  for (const char* name : {"Foo", "Foo$", "aa", "aaa", "n", "x", "FooFoo", "\344", "1"}) {
    const std::string expected = literal.Run(name, 1, kModules);
    EXPECT_NE(expected, "") << name;
    ASSERT_EQ(Describe(ScanCallers(database, texts, name, 1, kModules)), expected) << name;
    EXPECT_EQ(Describe(ScanCallers(database, texts, name, 9, 9)), literal.Run(name, 9, 9)) << name;
  }
}

}  // namespace
}  // namespace quillmate::navigation
