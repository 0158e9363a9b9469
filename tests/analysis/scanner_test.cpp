#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include <gtest/gtest.h>

#include <quillmate/analysis/reflow.h>
#include <quillmate/analysis/scanner.h>
#include <quillmate/text/operations.h>

#include "literal_scanner.h"
#include "module_generator.h"
#include "places.h"

namespace quillmate::analysis {
namespace {

constexpr int kAllOptions = 16;

ScanOptions OptionsOf(int bits) { return {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0}; }

std::vector<literal::Routine> RoutinesOf(const ScanResult& scan) {
  std::vector<literal::Routine> routines;
  for (const codedb::RoutineRecord& r : scan.routines) {
    routines.push_back({r.kind, r.visibility, r.headerLines, r.name, r.number.value, 0, 0});
  }
  const auto find = [&](std::int64_t number) {
    return std::find_if(routines.begin(), routines.end(), [&](const auto& r) { return r.number == number; });
  };
  for (const RoutineLine& line : scan.lines) {
    const auto routine = find(line.routine.value);
    if (routine != routines.end()) (line.isStart ? routine->start : routine->end) = line.line.value;
  }
  for (literal::Routine& r : routines) {
    if (r.kind > 10 && r.start > 0) r.end = r.start + r.headerLines - 1;
  }
  return routines;
}

std::string Visible(std::string text) {
  for (const auto& [from, to] : {std::pair("\r", "\\r"), {"\n", "\\n\n"}, {"\t", "\\t"}, {"\237", "~"}}) {
    text = text::ReplaceAll(text, from, to);
  }
  return text;
}

/// Both scanners in both modes; true when they agree.
bool Agree(const std::string& code, int optionBits) {
  const ScanOptions options = OptionsOf(optionBits);
  const ScanResult scan = ScanForIndex(code, options, {7});
  const literal::Scan expected = literal::ScanForIndex(code, options, 7);
  EXPECT_EQ(Visible(scan.markedText), Visible(expected.text));
  EXPECT_EQ(scan.lineCount, expected.size);
  EXPECT_EQ(scan.last.value, expected.counter);
  EXPECT_TRUE(RoutinesOf(scan) == expected.routines);
  EXPECT_EQ(Visible(ScanForDisplay(code, options)), Visible(literal::ScanForDisplay(code, options)));
  const bool failed = ::testing::Test::HasFailure();
  if (failed) ADD_FAILURE() << "options " << optionBits << ", code:\n" << Visible(code);
  return !failed;
}

TEST(Scanner, AgreesWithTheLiteralOneOnGeneratedModules) {
  constexpr int kModules = 24000;
  testing::ModuleGenerator generator(20261121);
  for (int i = 0; i < kModules; ++i) {
    if (!Agree(generator.Next(), i % kAllOptions)) break;
  }
}

/// Long modules are marked piece by piece.
TEST(Scanner, AgreesWithTheLiteralOneOnLongModules) {
  testing::ModuleGenerator generator(7);
  for (int bits = 0; bits < kAllOptions; ++bits) {
    std::string code;
    while (code.size() < 100000) code += generator.Next() + "\r\n";
    ASSERT_TRUE(Agree(code, bits));
  }
}

/// Still longer ones are marked in parts on all cores, but for those that hold byte 159 or are laid out anew.
TEST(Scanner, AgreesWithTheLiteralOneOnModulesInParts) {
  testing::ModuleGenerator generator(20261122);
  std::string code;
  while (code.size() < 1100000) code += generator.Next() + "\r\n";
  std::ranges::replace(code, '\237', '_');
  ASSERT_TRUE(Agree(code, 0));
}

TEST(Scanner, AgreesWithTheLiteralOneOnTheSample) {
  const std::filesystem::path folder = tests::SourceFolder() / "samples" / "Lagerverwaltung";
  int modules = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string code{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    for (int bits = 0; bits < kAllOptions; ++bits) ASSERT_TRUE(Agree(code, bits)) << entry.path();
    ++modules;
  }
  EXPECT_GE(modules, 12);
}

TEST(Scanner, AgreesWithTheLiteralOneOnAwkwardModules) {
  const std::string cases[] = {
      "",
      "\r\n",
      "\r\n\r\n\r\n",
      "   ",
      "_",
      "Sub A()\r\nEnd Sub _",
      "' Kommentar _",
      "\"offen _\r\nweiter",
      "x = \"offen _\r\n' weiter\r\nSub A()",
      "y_\"x' Sub\r\nz",
      "Sub A(): End Sub\r\nSub B()\r\nEnd Sub\r\nFunction C()\r\nEnd Function",
      "Sub A(): Function B(): End Function: End Sub",
      "Function F()\r\nSub S()\r\nx\r\nEnd Function\r\ny\r\nEnd Sub",
      "Property Get P()\r\nEnd Property\r\nProperty P()\r\nEnd Property\r\nSub S\r\nEnd Sub",
      "\"abc\"?",
      "Sub A(x As String) 'x\"?\r\nSub B() : Print \"a\"?\r\n",
      "|\237u| |\237d| \237*A00000001|Sub X()",
      "\237u| Sub A()\r\nx\237d\"\"\r\nEnd Sub",
      "Sub |\237d\r\nEnd Sub |\237d",
      "Sub \237a()\r\nEnd Sub",
      "\"abc\"\237u| x\r\n|\237d\"abc\"\r\n|\237d\"\"",
      "Option Explicit Option Explicit Explicit Explicit\r\nOption Base 1 Option Base 1\r\nOption Private Module "
      "Private",
      "\"a\"?\"offen '_",
      "\237\"offen '_",
      std::string(70000, ' ') + "Sub A()",
      std::string(70000, '"'),
      std::string(70001, '"') + "'",
  };
  for (const std::string& code : cases) {
    for (int bits = 0; bits < kAllOptions; ++bits) ASSERT_TRUE(Agree(code, bits));
  }
}

/// Hand-checked results, so that both scanners can't be wrong in the same way. "~" stands for byte 159.
TEST(Scanner, MarksAsExpected) {
  const struct {
    std::string code, marked;
  } cases[] = {
      {"Dim a As Long", "|~f|Dim|n~| a |~f|As|n~| |~f|Long|n~|"},
      {"x = Not Not Not y", "x = |~f|Not|n~| Not |~f|Not|n~| y"},
      {"sub X(): Rem Sub", "|~x|sub X(): Rem |~f|Sub|n~||y~|"},
      {"If(Not(a),Empty)Then", "|~f|If|n~|(|~f|Not|n~|(a),|~f|Empty|n~|)|~f|Then|n~|"},
      {"End: Stop.x", "End: Stop.x"},
      {"s = \"a 'b\" ' c \"d\"", "s = |~s|\"a 'b\"|n~| |~k|' c \"d\"|n~|"},
      {"s = \"\" & \"\"\"\"", "s = \"\" & \"\"\"\""},
      {"s = \"x\"\"y\"?", "s = |~s|\"x\"\"y\"|n~"},
      {"Print \"offen", "|~f|Print|n~| |~s|\"offen"},
      {"Print 'so\r\nPrint \"offen 'so", "|~f|Print|n~| |~k|'so|n~|\r\n|~f|Print|n~| "},
      {"Option Private Module", "|~f|Option|n~| |~f|Private|n~| |~f|Module|n~|"},
      {"\tSub\tA()", "|~x|\t|~f|Sub|n~|\tA()|y~|"},
      {"End Sub\"offen 'so", "|~x||~f|End|n~| |~f|Sub|n~||y~|"},
      {"Exit Sub", "|~f|Exit|n~| |~f|Sub|n~|"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ScanForDisplay(c.code, {}), text::ReplaceAll(c.marked, "~", "\237")) << c.code;
  }
}

TEST(Scanner, NumbersSubsThenFunctionsThenProperties) {
  const std::string code =
      "Private Declare PtrSafe Function F _\r\n  Lib \"x\" _\r\n  () As Long\r\n"
      "Public Property Let Wert(ByVal n As Long)\r\nEnd Property\r\n"
      "Friend Sub S(ByVal a As Long, _\r\n  b)\r\nEnd Sub";
  const std::vector<literal::Routine> expected = {
      {1, 3, 2, "S", 11, 6, 8}, {12, 2, 3, "F", 12, 1, 3}, {3, 1, 1, "Wert", 13, 4, 5}};
  const ScanResult scan = ScanForIndex(code, {}, {10});
  EXPECT_TRUE(RoutinesOf(scan) == expected);
  EXPECT_EQ(scan.last.value, 13);
  EXPECT_EQ(scan.lineCount, 8);
}

/// Nobody wrote so many, and each takes a row. The three kinds count together.
TEST(Scanner, TakesSoManyRoutinesAndNoMore) {
  std::string code;
  const auto add = [&](std::int32_t count, const char* routine) {
    while (--count >= 0) code += routine;
  };
  add(kMostRoutines / 2, "Sub\r\nSub\r\n");
  add(kMostRoutines / 2, "Declare Function\r\n");
  EXPECT_EQ(ScanForIndex(code, {}, {}).routines.size(), std::size_t{kMostRoutines});
  EXPECT_THROW(ScanForIndex(code + "Sub A()", {}, {}), files::Failure);
  EXPECT_NO_THROW(ScanForDisplay(code + "Sub A()", {}));
}

TEST(Reflow, IndentsAsExpected) {
  const struct {
    std::string code, expected;
  } cases[] = {
      {"If a Then\r\nb\r\nElse\r\nc\r\nEnd If\r\n", "If a Then\r\n\tb\r\nElse\r\n\tc\r\nEnd If\r\n"},
      {"Select Case a\r\nCase 1\r\nb\r\nEnd Select\r\n", "Select Case a\r\n\tCase 1\r\n\t\tb\r\nEnd Select\r\n"},
      {"For i = 1 To 2\r\nIf a Then b\r\nc\r\nNext\r\n", "For i = 1 To 2\r\nIf a Then b\r\n\tc\r\nNext\r\n"},
      {"x = 1 + _\r\n   2 + _\r\n3\r\ny\r\n", "x = 1 + _\r\n\t2 + _\r\n\t3\r\ny\r\n"},
      {"With a\r\nEnd With ' a\r\nb\r\nEnd Sub\r\nc\r\n", "With a\r\n\tEnd With ' a\r\n\tb\r\nEnd Sub\r\nc\r\n"},
      {"End If\r\nEnd If\r\nDo\r\nx\r\n", "End If\r\nEnd If\r\nDo\r\nx\r\n"},
      {"Doch\r\n \r\n\t\"a\tb\"\r\n  Rest", "Doch\r\n\r\n\"ab\"\r\n  Rest"},
      {"If a _\r\nThen ' b\r\nc\r\n", "If a _\r\n\t\tThen ' b\r\n\tc\r\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Visible(ReflowModule(c.code)), Visible(c.expected)) << c.code;
    EXPECT_EQ(Visible(literal::Reflow(c.code)), Visible(c.expected)) << c.code;
  }
}

}  // namespace
}  // namespace quillmate::analysis
