#include <QAbstractButton>
#include <QDialog>
#include <QTreeWidget>

#include "form_sketch.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

class FormsTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    std::filesystem::remove_all(Sources());
  }
  QDialog& ShowForm(int module) {
    StartWithProject();
    AwaitKnowledge();
    Click(Tree("treProjekt"), ProjectNode(module));
    Trigger("mnuAnalyse_Formular");
    return *Window().findChild<QDialog*>("frmFormular");
  }
  QString ListText(const QDialog& dialog) {
    QString text;
    for (QTreeWidgetItemIterator item(dialog.findChild<QTreeWidget*>("lstFormular")); *item; ++item) {
      QStringList cells;
      for (int column = 0; column < 4; ++column) cells << (*item)->text(column);
      text += QString((*item)->parent() == nullptr ? 0 : 1, QLatin1Char(' ')) + cells.join(QLatin1Char('|')) +
              QLatin1Char('\n');
    }
    return text;
  }
};

TEST_F(FormsTest, ListAndSketchLeadToTheHandlers) {
  AddModule(
      "Maske.frm",
      "VERSION 5.00\r\nBegin VB.Form Maske \r\n   Caption         =   \"Die \"\"Maske\"\"\"\r\n   ClientHeight    =  "
      " 3000\r\n   ClientWidth     =   6000\r\n   ScaleMode       =   3  'Pixel\r\n   Begin VB.Frame fra \r\n      "
      "Caption         =   \"Rahmen\"\r\n      Height          =   100\r\n      Left            =   20\r\n      Top "
      "            =   10\r\n      Width           =   200\r\n      Begin VB.CommandButton cmdOk \r\n         "
      "Caption         =   \"&OK\"\r\n         Height          =   495\r\n         Left            =   300\r\n      "
      "   Top             =   600\r\n         Width           =   1200\r\n         BeginProperty Font \r\n           "
      " Name            =   \"Arial\"\r\n            Width = 5\r\n         EndProperty\r\n      End\r\n   End\r\n   "
      "Begin VB.Menu mnuDatei \r\n      Caption         =   \"Datei\"\r\n   End\r\nEnd\r\nAttribute VB_Name = "
      "\"Maske\"\r\nPrivate Sub cmdOk_Click()\r\n  x = 1\r\nEnd Sub\r\nPrivate Sub Form_Load()\r\n  x = 1\r\nEnd "
      "Sub\r\nPrivate Sub cmdAlt_Click()\r\n  x = 1\r\nEnd Sub\r\n");
  QDialog& dialog = ShowForm(0);
  EXPECT_EQ(dialog.windowTitle(), "Formular: Die \"Maske\"");
  EXPECT_EQ(
      ListText(dialog),
      "(Formular)||Die \"Maske\"|\n Load|||Form_Load, Zeile 4\nfra|Frame|Rahmen|\n cmdOk|CommandButton|&OK|Click\n "
      "Click|||cmdOk_Click, Zeile 1\nmnuDatei|Menu|Datei|\nTote Ereignisroutinen|||\n cmdAlt_Click|||Das "
      "Steuerelement gibt es nicht.\n");
  auto& sketch = *dialog.findChild<ui::FormSketch*>("picFormular");
  const QRectF frame = sketch.PlaceOf(0), button = sketch.PlaceOf(1);
  EXPECT_TRUE(frame.contains(button));
  EXPECT_NEAR((button.left() - frame.left()) / frame.width(), 300.0 / (200 * 15), 0.001)
      << "twips in a frame of pixels";
  EXPECT_TRUE(sketch.PlaceOf(2).isEmpty()) << "a menu lies nowhere";
  QTest::mouseClick(&sketch, Qt::LeftButton, {}, button.center().toPoint());
  EXPECT_EQ(Panel("Routine"), "cmdOk_Click");
  EXPECT_EQ(dialog.findChild<QTreeWidget*>("lstFormular")->currentItem()->text(0), "cmdOk");
  QTest::keyClick(&sketch, Qt::Key_Left);
  EXPECT_EQ(sketch.accessibleDescription(), "fra, Frame, \"Rahmen\", keine Ereignisse");
  dialog.findChild<QAbstractButton*>("cmdKopieren")->click();
  EXPECT_TRUE(platform.clipboard.text.contains("cmdOk\tCommandButton\t&OK\tClick\tcmdOk_Click, Zeile 1\n"));
}

TEST_F(FormsTest, AccessTellsWhatIsMissing) {
  AddModule(
      "Form_Kunden.cls",
      "Version =20\r\nVersionRequired =20\r\nBegin Form\r\n    Width =8000\r\n    OnOpen =\"[Event "
      "Procedure]\"\r\n    GUID = Begin\r\n        0x00\r\n    End\r\n    Begin\r\n        Begin Label\r\n            "
      "BackStyle =0\r\n        End\r\n        Begin FormHeader\r\n            Height =500\r\n            Name "
      "=\"Kopf\"\r\n        End\r\n        Begin Section\r\n            Height =3000\r\n            Name "
      "=\"Detail\"\r\n            Begin\r\n                Begin CommandButton\r\n                    Left =400\r\n   "
      "                 Top =100\r\n                    Width =1000\r\n                    Height =400\r\n             "
      "       Name =\"cmdNeu\"\r\n                    Caption =\"Neu\"\r\n                    OnClick =\"[Event "
      "Procedure]\"\r\n                    OnDblClick =\"=Rechne()\"\r\n                End\r\n            End\r\n   "
      "     End\r\n    End\r\nEnd\r\nCodeBehindForm\r\nAttribute VB_Name = \"Form_Kunden\"\r\nPrivate Sub "
      "Form_Open(Cancel As Integer)\r\n  x = 1\r\nEnd Sub\r\n");
  QDialog& dialog = ShowForm(0);
  EXPECT_EQ(ListText(dialog).toStdString(),
            "(Formular)||Form_Kunden|\n Open|||Form_Open, Zeile 1\ncmdNeu|CommandButton|Neu|Click, DblClick\n "
            "Click|||Routine fehlt\n DblClick|||=Rechne()\n");
  auto& sketch = *dialog.findChild<ui::FormSketch*>("picFormular");
  const QRectF button = sketch.PlaceOf(0);
  EXPECT_NEAR(button.top() / button.height(), (600.0 / 400) + 10 / button.height(), 0.01) << "below the head";
}

TEST_F(FormsTest, UnknownControlsAreNotTakenForNone) {
  AddModule("Maske.frm",
            "VERSION 5.00\r\nBegin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} Maske \r\n   Caption = \"x\"\r\nEnd\r\n"
            "Attribute VB_Name = \"Maske\"\r\nSub UserForm_Click()\r\n  y = 1\r\nEnd Sub\r\n");
  const QDialog& dialog = ShowForm(0);
  EXPECT_TRUE(dialog.findChild<QLabel*>("lblFormular")->text().startsWith("Welche Steuerelemente"));
}

TEST_F(FormsTest, ModuleWithoutFormSaysSo) {
  AddModule("A.bas", "Attribute VB_Name = \"A\"\r\nSub X()\r\n  y = 1\r\nEnd Sub\r\n");
  StartWithProject();
  AwaitKnowledge();
  Trigger("mnuAnalyse_Formular");
  EXPECT_EQ(Window().findChild<QDialog*>("frmFormular"), nullptr);
  EXPECT_EQ(Panel("Vorgang"), "Dieses Modul hat kein Formular und keine Steuerelemente.");
}

}  // namespace
}  // namespace quillmate::testing
