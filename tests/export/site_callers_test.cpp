#include <random>
#include <set>
#include <utility>

#include <quillmate/text/characters.h>

#include "site_folder_fixture.h"

namespace quillmate::output {
namespace {

/// Caller and called, each as the address of what the site tells about it.
using Pairs = std::set<std::pair<std::string, std::string>>;

std::string PageOf(const codedb::ModuleRecord& module) { return "modul-" + module.name + ".html"; }

std::string AddressOf(const codedb::ModuleRecord& module, const codedb::RoutineRecord& routine) {
  return PageOf(module) + "#r-" + routine.name;
}

/// The slow way: spans cut out one by one, every name looked for among all routines.
class SlowScan {
 public:
  explicit SlowScan(const SiteProject& project) : project_(project) {}

  Pairs Run() {
    for (const codedb::ModuleRecord& module : project_.modules) {
      const std::string stored = codedb::ReadModuleText(project_.indexFolder, module.number);
      codedb::Line line;
      for (const std::string_view text : text::Split(stored, text::kLineBreak)) {
        ++line.value;
        for (const std::string& word : WordsOf(WithoutSpans(std::string(text)))) Take(module, line, word);
      }
    }
    return pairs_;
  }

 private:
  static std::string WithoutSpans(std::string line) {
    for (const std::string_view open : {text::KeywordOpen, text::CommentOpen, text::StringOpen}) {
      for (std::size_t at = line.find(open); at != std::string::npos; at = line.find(open)) {
        line.replace(at, line.find(text::SpanClose, at) + text::SpanClose.size() - at, " ");
      }
    }
    for (const std::string_view marker : {text::HeaderLineOpen, text::HeaderLineClose}) {
      line = text::ReplaceAll(line, marker, " ");
    }
    return line;
  }

  static std::vector<std::string> WordsOf(const std::string& code) {
    std::vector<std::string> words(1);
    for (const char c : code) {
      if (text::IsIdentifierCharacter(c)) {
        words.back() += static_cast<char>(text::ToLower(c));
      } else {
        words.emplace_back();
      }
    }
    return words;
  }

  static bool HasName(const codedb::RoutineRecord& routine, const std::string& word) {
    return WordsOf(routine.name).front() == word;
  }

  void Take(const codedb::ModuleRecord& module, codedb::Line line, const std::string& word) {
    std::string caller = PageOf(module) + "#quelltext";
    for (const codedb::RoutineRecord& routine : module.routines) {
      if (*routine.start > line || *routine.end < line) continue;
      if (HasName(routine, word)) return;  // its own name
      caller = AddressOf(module, routine);
    }
    for (const bool own : {true, false}) {
      for (const codedb::ModuleRecord& other : project_.modules) {
        for (const codedb::RoutineRecord& routine : other.routines) {
          const bool visible = own ? &other == &module : routine.visibility != codedb::kPrivate;
          if (!visible || !HasName(routine, word)) continue;
          pairs_.emplace(caller, AddressOf(other, routine));
          return;
        }
      }
    }
  }

  const SiteProject& project_;
  Pairs pairs_;
};

class SiteCallersTest : public SiteTest {
 protected:
  /// What the pages say, from the callers' or from the calls' lists.
  Pairs ReadPairs(const std::map<std::string, std::string>& files, std::string_view list) const {
    Pairs pairs;
    for (const codedb::ModuleRecord& module : project_.modules) {
      for (const codedb::RoutineRecord& routine : module.routines) {
        const std::string section = Part(files.at(PageOf(module)), "id=\"r-" + routine.name + "\"", "</section>");
        const std::size_t begin = section.find(list);
        if (begin == std::string::npos) continue;
        const std::string links = section.substr(begin, section.find("</dd>", begin) - begin);
        for (std::size_t at = links.find("href=\""); at != std::string::npos; at = links.find("href=\"", at + 1)) {
          std::string address(text::TextBefore(std::string_view(links).substr(at + 6), "\""));
          if (address.starts_with('#')) address.insert(0, PageOf(module));
          pairs.emplace(address, AddressOf(module, routine));
        }
      }
    }
    return pairs;
  }

  /// Modules in which few names meet in all spellings and places.
  void Generate(unsigned seed) {
    static constexpr std::string_view kNames[] = {"Eins", "Zwei", "Drei", "Vier_4", "F", "EinsZwei", "_x", "Name9"};
    static constexpr std::string_view kCode[] = {" ",     ".",      "(",    "\251", "2",  "[Sub] ", "~\"Eins Drei\"^",
                                                 "{' F}", "[Eins]", "\344", "!",    "\t", "'"};
    std::mt19937 random(seed);
    const auto pick = [&](const auto& list) { return std::string(list[random() % std::size(list)]); };
    project_.modules.clear();
    routineNumber_ = 0;
    for (int m = 0; m < 4; ++m) {
      std::set<std::string> used;
      std::string code;
      std::vector<std::pair<std::string, Lines>> routines;
      std::int32_t line = 0;
      const auto addLine = [&] {
        for (std::size_t i = random() % 5; i > 0; --i) {
          std::string name = pick(kNames);
          if (random() % 2 == 0) name[0] = static_cast<char>(text::ToLower(name[0]));
          code += name + pick(kCode);
        }
        code += '\n';
        ++line;
      };
      for (std::size_t r = random() % 5; r > 0; --r) {
        while (random() % 2 == 0) addLine();
        const std::string name = pick(kNames);
        if (!used.insert(name).second) continue;
        code += "<[Sub] " + name + "()>\n";
        const std::int32_t start = ++line;
        while (random() % 3 != 0) addLine();
        code += "<[End] [Sub]>\n";
        routines.push_back({name, {start, ++line}});
      }
      AddModule("m" + std::to_string(m), codedb::kStandard, Marked(code));
      for (const auto& [name, lines] : routines) {
        AddRoutine(name, lines, codedb::kSub, static_cast<int>(1 + random() % 3));
      }
    }
  }
};

TEST_F(SiteCallersTest, AgreeWithTheSlowScan) {
  std::size_t found = 0;
  for (unsigned seed = 0; seed < 150; ++seed) {
    Generate(seed);
    const Pairs expected = SlowScan(project_).Run();
    found += expected.size();
    const auto files = Write();
    ASSERT_EQ(ReadPairs(files, "Aufgerufen von"), expected) << seed;
    Pairs calls;
    for (const auto& [called, caller] : ReadPairs(files, "Ruft auf")) calls.emplace(caller, called);
    Pairs inRoutines;
    for (const auto& pair : expected) {
      if (!pair.first.ends_with("#quelltext")) inRoutines.insert(pair);
    }
    ASSERT_EQ(calls, inRoutines) << seed;
  }
  EXPECT_GT(found, 1000U);
}

}  // namespace
}  // namespace quillmate::output
