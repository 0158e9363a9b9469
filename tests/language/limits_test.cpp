#include <random>
#include <string>

#include <gtest/gtest.h>

#include "dump.h"

namespace quillmate::language {
namespace {

/// Whatever is before it, a routine is found; and a million characters are read in no time.
TEST(Limits, OneUnitOverAndOver) {
  constexpr const char* kUnits[] = {
      "(",
      "f(",
      "f(x)",
      ")",
      "a.",
      "a!b",
      "[",
      "[x[",
      "[]",
      "\"",
      "\"\"",
      ":",
      "x:",
      "a,",
      "#",
      "#1/",
      "&H",
      "_",
      " _",
      "'",
      "Rem ",
      "If a Then ",
      "Else ",
      "f (a) ",
      "x = ",
      "New ",
      "Not ",
      "TypeOf ",
      "x:=",
      "f(x:=",
      "1.",
      ".5",
      "\xC3\xA4",
      "\xC3",
      "\xE2\x80\xA8",
      "\r",
      "\n",
      "\r\r\n",
      "x _\n",
      "' _\n",
      "#If x\n",
      "#If False Then\n",
      "#Else\n",
      "#End If\n",
      "#Const a = a & \"x\"\n",
      "#Const a = 1 _\n",
      "If a Then\n",
      "With a\n",
      "With .a\n",
      "For i = 1 To 2\n",
      "End If\n",
      "Next a, b\n",
      "Sub A()\n",
      "Sub A(): End Sub\n",
      "End Sub\n",
      "x:\n",
      "Type T\n",
      "Enum E\n",
      "Dim a(1 To ",
      "Begin X Y\n",
      "Begin\n",
      "Attribute VB_Name = \"x\"\n",
      "Case 1\n",
      "Print a;",
      "Declare Sub X Lib \"a\" (",
      "ReDim a(1)(2)",
      "f (a).b (c)",
      "Dim ",
      "Public ",
      "Name a ",
      "On x GoTo a, ",
      "Line (1, 2)",
      "DefInt A-Z,",
      "Case Is > ",
      "End Sub: Sub A(): ",
      "Do While a\n#If x Then\n",
      "\0",
  };
  Workspace workspace;
  Module module;
  for (const std::string unit : kUnits) {
    std::string text = "Sub S()\n";
    while (text.size() < 1000000) text += unit.empty() ? std::string(1, '\0') : unit;
    text += "\n\nSub Zuletzt()\nEnd Sub\n";
    ParseModule(text, {}, workspace, module);
    const bool found = !module.routines.empty() &&
                       module.Spelling(module.declarations[module.routines.back().declaration]) == "Zuletzt";
    EXPECT_TRUE(found) << unit;
  }
}

TEST(Limits, Rubbish) {
  std::mt19937 random(7);
  Workspace workspace;
  Module module;
  for (int round = 0; round < 300; ++round) {
    std::string text(2000, '\0');
    for (char& c : text)
      c = static_cast<char>(round % 2 == 0 ? random() : " \n\"'()[]#:._&!,;=aEfIS1\xC3"[random() % 24]);
    ParseModule(text, {}, workspace, module);
    // Every byte belongs to a line, every place to the text.
    ASSERT_FALSE(module.lines.empty());
    EXPECT_EQ(module.lines.front().offset, 0U);
    for (const NameUse& use : module.uses) ASSERT_LE(use.offset + use.length, text.size());
    for (const Routine& routine : module.routines) ASSERT_LE(routine.lastLine, module.lines.size());
  }
  EXPECT_TRUE(ParseModule("").lines.empty());
}

}  // namespace
}  // namespace quillmate::language
