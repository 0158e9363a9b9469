#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include <quillmate/analysis/unused.h>

#include "codedb/scratch.h"

namespace quillmate::analysis {
namespace {

using codedb::FreshIndex;

std::string Describe(const std::vector<UnusedRoutine>& unused) {
  std::string lines;
  for (const UnusedRoutine& routine : unused) {
    lines += std::to_string(routine.moduleNumber.value) + " " + routine.routineName + "\n";
  }
  return lines;
}

/// The scan word for word: everything on one text that is changed on the way.
class LiteralScan {
 public:
  explicit LiteralScan(FreshIndex& index) : index_(index) {}

  std::string Run(int modules) {
    std::vector<Name> publics = Names(
        "SELECT td_rout.rou_name,   Count(td_rout.rou_name) AS Anzahlvonrou_name FROM td_rout"
        " WHERE (((td_rout.rou_typ)<3 Or (td_rout.rou_typ)>10) AND ((td_rout.rou_open)=1))"
        " GROUP BY td_rout.rou_name HAVING (((Count(td_rout.rou_name))<2));");
    std::vector<std::vector<Name>> privates;
    for (int module = 1; module <= modules; ++module) {
      privates.push_back(
          Names("SELECT td_rout.rou_name FROM td_rout"
                " WHERE (((td_rout.rou_typ)<3 Or (td_rout.rou_typ)>10) AND ((td_rout.rou_open)>1) AND "
                "((td_rout.mod_num)=" +
                std::to_string(module) + "));"));
      std::string text = codedb::ReadModuleText(index_.folder.Path(), {module});
      Blank(text, "|\237x|", "|y\237|");
      Blank(text, "|\237", "\237|");
      for (Name& name : publics) CountReferences(text, name);
      for (Name& name : privates.back()) CountReferences(text, name);
    }
    return Report(publics, privates);
  }

 private:
  struct Name {
    std::string text;
    int references = 0;
  };

  std::vector<Name> Names(const std::string& query) {
    std::vector<Name> names;
    codedb::Recordset rows = index_.database.OpenRecordset(query);
    while (rows.Next()) names.push_back({rows.Text(0)});
    return names;
  }

  static void Blank(std::string& text, const std::string& opener, const std::string& closer) {
    for (std::size_t start = text.find(opener); start != std::string::npos; start = text.find(opener, start)) {
      const std::size_t end = std::min(text.find(closer, start + opener.size()), text.size() - 1);
      for (; start <= end; ++start) text[start] = ' ';
    }
  }

  static bool IsLetter(char c) {
    const int code = static_cast<unsigned char>(c);
    return (code >= 65 && code <= 89) || code == 95 || (code >= 97 && code <= 122) || code == 196 || code == 214 ||
           code == 220 || code == 223 || code == 228 || code == 246 || code == 252;
  }

  static void CountReferences(std::string& text, Name& name) {
    for (std::size_t at = text.size(); at-- > 0;) {
      if (text.compare(at, name.text.size(), name.text) != 0) continue;
      const std::size_t behind = at + name.text.size();
      if (at > 0 && IsLetter(text[at - 1])) continue;
      if (behind < text.size() && (IsLetter(text[behind]) || (text[behind] >= '0' && text[behind] <= '9'))) continue;
      ++name.references;
      text.insert(behind, "|w\237|");
      text.insert(at, "|\237v|");
    }
  }

  std::string Report(const std::vector<Name>& publics, const std::vector<std::vector<Name>>& privates) {
    std::string lines;
    for (std::size_t module = 1; module <= privates.size(); ++module) {
      const std::string number = std::to_string(module);
      for (const Name& name : publics) {
        if (name.references == 0 && ModuleOf(name.text) == number) lines += number + " " + name.text + "\n";
      }
      for (const Name& name : privates[module - 1]) {
        if (name.references == 0) lines += number + " " + name.text + "\n";
      }
    }
    return lines;
  }

  std::string ModuleOf(const std::string& publicName) {
    return index_.Rows("SELECT mod_num FROM td_rout WHERE ((rou_typ<3 Or rou_typ>10) AND rou_open=1 AND rou_name='" +
                           codedb::QuoteLiteral(publicName) + "');",
                       1);
  }

  FreshIndex& index_;
};

/// Names full of what the limits treat oddly, and prefixes of each other. Few of them in one project, so that they
/// meet.
class ProjectGenerator {
 public:
  explicit ProjectGenerator(unsigned seed) : random_(seed) {
    static constexpr std::string_view kNames[] = {
        "Name", "xZName", "Name2", "3Name", "Foo",  "Foo3", "Foo3Name", "FooZ",   "Zbar",      "ZZ",  "Z",     "v",
        "w",    "y",      "\237v", "w\237", "\237", "\344", "\304b",    "Foo$",   "Foo$3Name", "A1",  "1",     "Z1Z",
        "foo",  "NAME",   "y\237", "$Foo",  "bar",  "n",    "Foo$$",    "FooFoo", "3",         "3Z3", "b\337", "x'y"};
    for (auto& name : names_) name = kNames[random_() % std::size(kNames)];
  }

  void Fill(FreshIndex& index, int modules) {
    index.database.Begin();
    index.database.ExecuteSql("DELETE FROM td_rout;");
    index.database.ExecuteSql("DELETE FROM td_mod;");
    for (int module = 1; module <= modules; ++module) {
      index.AddModule(module, "M" + std::to_string(module), "2");
      // A new file each time: some file systems take their time when one is written over.
      std::filesystem::remove(codedb::ModuleTextPath(index.folder.Path(), {module}));
      codedb::WriteModuleText(index.folder.Path(), {module}, Text());
    }
    const char* const kinds[] = {"1", "2", "2", "4", "11", "12"};
    const char* const visibilities[] = {"1", "1", "2", "3"};
    for (int routine = 1; routine <= 8; ++routine) {
      index.AddRoutine(routine, static_cast<int>(random_() % static_cast<unsigned>(modules)) + 1, Pick(names_),
                       Pick(kinds), Pick(visibilities));
    }
    index.database.Commit();
  }

 private:
  template <typename List>
  std::string Pick(const List& list) {
    return std::string(list[random_() % std::size(list)]);
  }

  std::string Text() {
    static constexpr std::string_view kFragments[] = {
        "|\237x|", "|y\237|", "|\237f|", "|n\237|", "|n\237|", "|\237s|\"", "|\237k|", "|\237", "\237|",
        "|",       "\r\n",    " ",       "Z",       "3",       "a",         "A",       ".",     "_"};
    std::string text;
    for (auto left = random_() % 30; left > 0; --left) text += random_() % 3 == 0 ? Pick(kFragments) : Pick(names_);
    return text;
  }

  std::mt19937 random_;
  std::string names_[6];
};

TEST(UnusedRoutines, AgreeWithTheLiteralScan) {
  int found = 0;
  FreshIndex index;
  for (unsigned seed = 0; seed < 2000; ++seed) {
    ProjectGenerator(seed).Fill(index, 3);
    const std::string expected = LiteralScan(index).Run(3);
    found += expected.empty() ? 0 : 1;
    ASSERT_EQ(Describe(FindUnusedRoutines(index.database, index.folder.Path())), expected) << seed;
  }
  EXPECT_GT(found, 1000);
}

/// One module with the routines named, all public, over a text.
std::string UnusedIn(const std::string& text, const std::vector<std::string>& names) {
  FreshIndex index;
  index.AddModule(1, "M", "2");
  codedb::WriteModuleText(index.folder.Path(), {1}, text);
  for (std::size_t i = 0; i < names.size(); ++i) index.AddRoutine(static_cast<int>(i) + 1, 1, names[i]);
  return Describe(FindUnusedRoutines(index.database, index.folder.Path()));
}

TEST(UnusedRoutines, WhatIsAReference) {
  const struct {
    const char* text;
    std::vector<std::string> names;
    const char* unused;
  } cases[] = {
      {"Name", {"Name"}, ""},  // nothing stands before the first character
      {"|\237x||\237f|Sub|n\237| Name()|y\237|\r\n|\237k|'Name|n\237| |\237s|\"Name\"|n\237|", {"Name"}, "1 Name\n"},
      {"|\237x||\237f|Sub|n\237| A()|y\237|\r\n\tName\r\n|\237x||\237f|End|n\237||y\237|", {"Name"}, ""},
      {"xZName", {"Name"}, ""},
      {"NameZ", {"Name"}, ""},
      {"3Name", {"Name"}, ""},
      {"Name2 xName Name_ \304Name name", {"Name"}, "1 Name\n"},
      {"caf\351Name", {"Name"}, ""},
      {"M.Name(1)", {"Name", "M"}, ""},
      // A public name that exists twice is no candidate.
      {"", {"Name", "NAME"}, ""},
      // The order of the names decides: "Foo3" is found after "Name" had it come later.
      {"Foo3Name", {"Foo3", "Name"}, "1 Foo3\n"},
      {"Foo3Aname", {"Foo3", "Aname"}, ""},
      {"xZName", {"xZName", "Name"}, "1 xZName\n"},
      // The markers of the references found hold a "v" and a "w", and one of a header line leaves its "y".
      {"u", {"u", "v", "w"}, ""},
      {"x", {"u", "v", "w"}, "1 u\n1 v\n1 w\n"},
      {"|\237x|Sub|y\237|", {"y"}, ""},
  };
  for (const auto& c : cases) EXPECT_EQ(UnusedIn(c.text, c.names), c.unused) << c.text;
}

TEST(UnusedRoutines, NeedTheModulesTexts) {
  FreshIndex index;
  EXPECT_TRUE(FindUnusedRoutines(index.database, index.folder.Path()).empty());
  index.AddModule(1, "M", "2");
  EXPECT_THROW(FindUnusedRoutines(index.database, index.folder.Path()), files::Failure);
}

}  // namespace
}  // namespace quillmate::analysis
