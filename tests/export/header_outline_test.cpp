#include <gtest/gtest.h>

#include <quillmate/export/module_header.h>
#include <quillmate/export/outline.h>

namespace quillmate::output {
namespace {

TEST(ModuleHeader, BlockByKind) {
  const std::string stars = "' " + std::string(62, '*');
  const struct {
    std::string_view name, imageKey, line;
  } cases[] = {
      {"frmA", "M1", "frmA  Typ = Userform"},
      {"mdlB", "M2", "mdlB  Typ = Allgemeines Modul"},
      {"clsC", "M3", "clsC  Typ = Klassenmodul"},
      {"Tabelle1", "M5", "Tabelle1  Typ = Element der Mappe(Sheet, Workbook, ...)"},
      {"x", "M32", "x  "},
      {"xxxxx_yyyyy", "M3", "xxxxx_Typ = Klassenmodul  Typ = Klassenmodul"},
  };
  for (const auto& c : cases) {
    std::string block = "|\237x||\237k|" + stars + "\r\n'  Modul:  ";
    block.append(c.line).append("\r\n").append(stars).append("|n\237||y\237|");
    EXPECT_EQ(MakeModuleHeader(c.name, c.imageKey), block);
    EXPECT_EQ(HeaderBlock(c.name, c.imageKey), "\r\n\r\n" + block + "\r\n\r\n");
  }
}

TEST(Outline, ChildrenOfTopNodesInIndexOrder) {
  const std::vector<OutlineNode> nodes = {{"late", 2},  {"Empty", -1}, {"Mod", -1}, {"b", 2},    {"deep", 3},
                                          {"Last", -1}, {"c", 5},      {"a", 2},    {"lost", 99}};
  EXPECT_EQ(BuildOutline(nodes), "Empty\r\nMod\r\n\tlate\r\n\tb\r\n\ta\r\nLast\r\n\tc\r\n");
  EXPECT_EQ(BuildOutline({}), "");
}

}  // namespace
}  // namespace quillmate::output
