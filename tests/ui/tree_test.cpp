#include <QAbstractItemModelTester>
#include <QLineEdit>

#include "compare_colours.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

/// Two projects whose modules have the same names.
class TreeTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    std::filesystem::remove_all(Sources());
    for (const char* project : {"Alt", "Neu"}) {
      AddModule((std::string(project) + ".vbp").c_str(),
                "Type=Exe\r\nModule=Lager; " + std::string(project) + "_Lager.bas\r\nName=\"" + project + "\"\r\n");
    }
    AddModule("Alt_Lager.bas", "Attribute VB_Name = \"Lager\"\r\nSub Laden()\r\nEnd Sub\r\n\r\n");
    AddModule("Neu_Lager.bas",
              "Attribute VB_Name = \"Lager\"\r\nPublic Type Posten\r\n  Nr As Long\r\n  Art As String\r\nEnd Type\r\n"
              "Private menge As Long\r\nEnum Farbe\r\n  rot\r\nEnd Enum\r\nConst Grenze = 4\r\nSub Laden()\r\n"
              "  Dim innen As Long\r\nEnd Sub\r\n");
  }
  QString Shown() { return TextOf(*Tree("treProjekt").model()); }
};

TEST_F(TreeTest, IconsKeepTheirColoursInASelectedRow) {
  // One module has the sign of an outline that differs.
  AddModule("Neu_Lager.bas",
            "Attribute VB_Name = \"Lager\"\r\nPrivate menge As Long\r\n#If VBA7 Then\r\nSub Laden()\r\n#Else\r\n"
            "Sub Laden()\r\n#End If\r\nEnd Sub\r\nFunction Menge2() As Long\r\nEnd Function\r\n");
  Start();
  Tick(0);
  Tick(1);
  Trigger("mnuBearbeiten_Code");
  AwaitKnowledge();
  ASSERT_TRUE(Panel("Vorgang").startsWith("Gliederung abweichend")) << Panel("Vorgang").toStdString();
  Trigger("mnuAnsicht_Deklarationen");
  std::vector<std::pair<std::string, QIcon>> icons;
  const QAbstractItemModel& model = *Tree("treProjekt").model();
  for (const QModelIndex& node :
       model.match(model.index(0, 0), Qt::DisplayRole, QString(), -1, Qt::MatchContains | Qt::MatchRecursive)) {
    icons.emplace_back(node.data().toString().toStdString(), node.data(Qt::DecorationRole).value<QIcon>());
  }
  EXPECT_TRUE(std::ranges::any_of(icons, [](const auto& icon) { return icon.first == "menge"; }));
  using enum symbols::ChangeState;
  for (const auto state : {kLayout, kChanged, kMoved, kRenamed, kNew, kGone}) {
    icons.emplace_back("Vergleich", ui::StateIcon(state, QApplication::palette()));
  }
  for (const auto& [name, icon] : icons) {
    EXPECT_EQ(icon.pixmap(16, QIcon::Selected).toImage(), icon.pixmap(16).toImage()) << name;
  }
}

TEST_F(TreeTest, DeclarationsStandBelowTheirModules) {
  Start();
  for (int row = 0; row < Tree("treApp").model()->rowCount(); ++row) Tick(row);
  Trigger("mnuBearbeiten_Code");
  AwaitKnowledge();
  QTreeView& tree = Tree("treProjekt");
  const QAbstractItemModelTester tester(tree.model());
  const QString plain = Shown();
  EXPECT_EQ(plain, "Lager\n Laden\nLager\n Laden\n");
  tree.setExpanded(ProjectNode(1), true);
  Trigger("mnuAnsicht_Deklarationen");
  EXPECT_EQ(
      Shown(),
      "Alt\n Lager\n  Laden\nNeu\n Lager\n  Laden\n  Grenze\n  menge\n  Posten\n   Nr\n   Art\n  Farbe\n   rot\n");
  const QModelIndex module = ProjectNode(1, 0);
  EXPECT_TRUE(tree.isExpanded(module)) << "what was unfolded stays it";
  EXPECT_TRUE(module.data(Qt::ToolTipRole).toString().startsWith("Projekt: Neu\nDatei: "));
  const QModelIndex limit = tree.model()->index(1, 0, module);
  EXPECT_TRUE(limit.data(Qt::ToolTipRole).toString().contains("Const Grenze = 4"));
  Click(tree, limit);
  EXPECT_EQ(Code().textCursor().selectedText(), "Grenze");
  Click(tree, tree.model()->index(0, 0, module));
  EXPECT_EQ(Panel("Routine"), "Laden");
  EXPECT_EQ(Code().textCursor().blockNumber(), 9);
  Trigger("mnuBearbeiten_RouBew3");
  EXPECT_EQ(Code().textCursor().selectedText(), "Grenze") << "back leads to the very place";

  auto& filter = *Window().findChild<QLineEdit*>("txtFilter");
  filter.setText("ro");
  EXPECT_EQ(Shown(), "Neu\n Lager\n  Farbe\n   rot\n");
  EXPECT_EQ(tree.currentIndex().data(), "rot");
  EXPECT_TRUE(tree.isExpanded(tree.currentIndex().parent()));
  filter.setText("posten");
  EXPECT_EQ(Shown(), "Neu\n Lager\n  Posten\n   Nr\n   Art\n");
  filter.clear();
  Trigger("mnuAnsicht_Quellreihenfolge");
  EXPECT_TRUE(Shown().endsWith(" Lager\n  Posten\n   Nr\n   Art\n  menge\n  Farbe\n   rot\n  Grenze\n  Laden\n"))
      << Shown().toStdString();
  Trigger("mnuAnsicht_Quellreihenfolge");
  Trigger("mnuAnsicht_Gliederung");
  Click(tree, tree.model()->index(0, 0, ProjectNode(1, 0)));
  EXPECT_EQ(Panel("Routine"), "Laden");
  Trigger("mnuAnsicht_Gliederung");
  Trigger("mnuAnsicht_Deklarationen");
  EXPECT_EQ(Shown(), plain);
  EXPECT_EQ(settings->ReadSetting("ansicht", "deklarationen"), "0");
}

}  // namespace
}  // namespace quillmate::testing
