#include <algorithm>
#include <random>

#include <quillmate/codedb/codes.h>
#include <quillmate/navigation/callers.h>

#include "project_fixture.h"

namespace quillmate::navigation {
namespace {

TEST_F(Project, CallersScopeAndItsMessages) {
  constexpr std::string_view kProperty = "Property wird von der Routinensuche nicht unterst\303\274tzt";
  constexpr std::string_view kUnknown = "Infos zu Routine nicht gefunden";
  const struct {
    const char *name, *kind, *visibility;
    int view;
    const char* asked;
    CallerScope scope;
    std::string_view message;
  } cases[] = {
      {"A", "1", "1", 1, "A", CallerScope::kProject, ""},
      {"B", "2", "2", 1, "b", CallerScope::kModule, ""},
      {"C", "12", "3", 1, "C", CallerScope::kProject, ""},
      {"a'b", "11", "2", 1, "a'b", CallerScope::kModule, ""},
      {"D", "3", "1", 1, "D", CallerScope::kProperty, kProperty},
      {"E", "4", "2", 1, "E", CallerScope::kProperty, kProperty},
      {"F", "5", "1", 1, "F", CallerScope::kProperty, kProperty},
      {"G", "1", "1", 0, "G", CallerScope::kUnknown, kUnknown},
      {"H", "1", "1", 1, "", CallerScope::kUnknown, kUnknown},
  };
  for (int number = 1; const auto& c : cases) {
    AddRoutine(number++, 2, c.name, c.kind, c.visibility);
    const CallerScope scope = FindCallerScope(database, {c.view}, c.asked);
    EXPECT_EQ(scope, c.scope) << c.name;
    EXPECT_EQ(ScopeMessage(scope), c.message) << c.name;
  }
  database.CloseCodeDatabase();
  EXPECT_EQ(ScopeMessage(FindCallerScope(database, {1}, "A")), "Routine nicht gefunden");
}

TEST_F(Project, CallersOfARoutine) {
  AddModule(1, "Haupt", "2");
  AddModule(2, "Neben", "3");
  AddModule(3, "Stumm", "1");
  Add(1, 1, "Foo", 2, 4, "2");
  Add(2, 1, "Start", 5, 8, "1", "2");
  Add(3, 2, "Ruf", 2, 3, "1", "3");
  Add(4, 2, "Stille", 4, 7);
  Write(1,
        "|\237f|Option|n\237| |\237f|Explicit|n\237|\r\n"
        "|\237x||\237f|Function|n\237| Foo(a)|y\237|\r\n"
        "\tFoo = 2\r\n"
        "|\237x||\237f|End|n\237| |\237f|Function|n\237||y\237|\r\n"
        "|\237x||\237f|Private|n\237| |\237f|Sub|n\237| Start()|y\237|\r\n"
        "\tb = Foo(1): c = Mod1.Foo\r\n"
        "\tFoo c;Foo\r\n"
        "|\237x||\237f|End|n\237| |\237f|Sub|n\237||y\237|\r\n");
  Write(2,
        "|\237f|Const|n\237| x = Foo\r\n"
        "|\237x||\237f|Sub|n\237| Ruf()|y\237|\r\n"
        "Foo:|\237k|'|n\237||\237x||\237f|End|n\237| |\237f|Sub|n\237||y\237|\r\n"
        "|\237x||\237f|Sub|n\237| Stille()|y\237|\r\n"
        "\tMsgBox |\237s|\"Foo\"|n\237| |\237k|' Foo, _\r\n"
        "\t Foo|n\237|\r\n"
        "\tFooBar, BarFoo, \374Foo, Foo_, 1Foo, Foo2, foo, FOO |\237f|Foo|n\237|\r\n");
  Write(3, "Foo\r\n");
  ProjectTexts texts;
  texts.Load(folder.Path(), 3);
  const char* const expected =
      "M1 Haupt M2 -1\n"
      "R1 Foo R2O1 0\n"
      "R2 Start R1O2 0\n"
      "M2 Neben M3 -1\n"
      "R3 Ruf R1O3 3\n"
      "M3 Stumm M1 -1\n";
  const Callers callers = FindCallers(database, texts, {0}, "Foo");
  EXPECT_EQ(callers.scope, CallerScope::kProject);
  EXPECT_EQ(Describe(callers.tree), expected);
  EXPECT_EQ(callers.tree.moduleCount, 3);
  EXPECT_EQ(callers.tree.Find(codedb::RoutineNumber{3}), 4);
  // A private routine: in its own module, whatever the others hold.
  EXPECT_EQ(Describe(FindCallers(database, texts, {0}, "Start").tree), "M1 Haupt M2 -1\nR2 Start R1O2 0\n");
  EXPECT_EQ(Describe(FindCallers(database, texts, {1}, "Start").tree), "");
  EXPECT_EQ(Describe(ScanCallers(database, texts, "Nirgends", {1}, {3})), "");
  EXPECT_EQ(Describe(ScanCallers(database, texts, "", {1}, {3})), "");
  // The texts are those of the last load.
  Write(1, "Foo");
  EXPECT_EQ(Describe(ScanCallers(database, texts, "Foo", {1}, {3})), expected);
  std::filesystem::remove(codedb::ModuleTextPath(folder.Path(), {2}));
  texts.Load(folder.Path(), 3);
  EXPECT_THROW(ScanCallers(database, texts, "Foo", {1}, {3}), files::Failure);
}

std::string Blank(std::string text) {
  for (std::size_t start = text.find("|\237"); start != std::string::npos;) {
    const std::size_t closer = text.find("|n\237|", start + 2);
    const std::size_t end = closer == std::string::npos ? text.size() : closer + 4;
    text.replace(start, end - start, end - start, ' ');
    start = text.find("|\237", closer == std::string::npos ? text.size() : closer + 3);
  }
  return text;
}

bool IsLetterAt(const std::string& text, std::size_t at) {
  static const std::string kLetters =
      "abcdefghijklmnopqrstuvwxyz\344\366\374\337_0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ\304\326\334";
  return at < text.size() && kLetters.find(text[at]) != std::string::npos;
}

/// The scan step by step: blank out, look for the name, count carriage returns of the stored text, ask the database for
/// each occurrence.
class LiteralScan : public Project {
 protected:
  std::string Run(const std::string& name, int first, int last) {
    std::string lines;
    std::string lastRoutine;
    int nodes = 0;
    for (int module = first; module <= last; ++module) {
      const std::string stored = codedb::ReadModuleText(folder.Path(), {module});
      const std::string text = Blank(stored);
      int parent = -1;
      for (std::size_t q = text.find(name); q != std::string::npos; q = text.find(name, q + 1)) {
        if ((q > 0 && IsLetterAt(text, q - 1)) || IsLetterAt(text, q + name.size())) continue;
        const auto line = 1 + std::count(stored.begin(), stored.begin() + static_cast<std::ptrdiff_t>(q), '\r');
        if (parent < 0) {
          parent = nodes++;
          lines += Rows(
                       "SELECT 'M' & mod_num & ' ' & mod_name & ' M' & mod_typ & ' -1' AS node FROM td_Mod"
                       " Where td_mod.mod_num = " +
                           std::to_string(module),
                       1) +
                   "\n";
        }
        const std::string found = RoutineAt(module, std::to_string(line));
        if (found.empty() || found == lastRoutine) continue;
        lastRoutine = found;
        ++nodes;
        lines += found + " " + std::to_string(parent) + "\n";
      }
    }
    return lines;
  }

 private:
  std::string RoutineAt(int module, const std::string& line) {
    const std::string all = Rows(
        "SELECT 'R' & rou_num & ' ' & rou_name & ' R' & rou_typ & 'O' & rou_open AS node FROM td_rout"
        " WHERE (((td_rout.rou_start)<=" +
            line + ") AND ((td_rout.rou_ende)>=" + line + ") AND ((td_rout.mod_num)=" + std::to_string(module) + "));",
        1);
    return all.substr(0, all.find(';'));
  }
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

TEST_F(LiteralScan, AgreesWithTheScan) {
  std::mt19937 random(7);
  constexpr int kModules = 400;
  database.Begin();
  for (int module = 1, routine = 0; module <= kModules; ++module) {
    AddModule(module, "Mod" + std::to_string(module % 7), std::to_string(module % 3 + 1));
    Write(module, RandomModule(random));
    for (auto left = random() % 6; left > 0; --left) {
      // Ranges overlap, are within each other and end before they begin.
      const int start = static_cast<int>(random() % 20);
      const int end = start + static_cast<int>(random() % 12) - 2;
      ++routine;
      Add(routine, module, "R" + std::to_string(routine), start, end);
    }
  }
  database.Commit();
  ProjectTexts texts;
  texts.Load(folder.Path(), kModules);
  for (const char* name : {"Foo", "Foo$", "aa", "aaa", "n", "x", "FooFoo", "\344", "1"}) {
    const std::string expected = Run(name, 1, kModules);
    EXPECT_NE(expected, "") << name;
    ASSERT_EQ(Describe(ScanCallers(database, texts, name, {1}, {kModules})), expected) << name;
    EXPECT_EQ(Describe(ScanCallers(database, texts, name, {9}, {9})), Run(name, 9, 9)) << name;
  }
}

}  // namespace
}  // namespace quillmate::navigation
