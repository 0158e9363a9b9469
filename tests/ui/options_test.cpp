#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextLayout>

#include <quillmate/files/paths.h>

#include "colour_frame.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

class OptionsTest : public WindowTest {
 protected:
  QDialog& Dialog() {
    auto* open = Window().findChild<QDialog*>(QStringLiteral("frmOptionen"));
    if (open == nullptr) {
      Trigger("mnuExtras_Optionen");
      open = Window().findChild<QDialog*>(QStringLiteral("frmOptionen"));
    }
    return *open;
  }
  template <typename Widget>
  Widget& Get(const char* name) {
    return *Dialog().findChild<Widget*>(QString::fromUtf8(name));
  }
  QCheckBox& Box(const char* name) { return Get<QCheckBox>(name); }
  void Press(const char* name) { Get<QAbstractButton>(name).click(); }
  /// Presses a button that ends the dialog.
  void End(const char* name) {
    Press(name);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Window().findChild<QDialog*>(QStringLiteral("frmOptionen")), nullptr) << name;
  }
  QString Stored(const char* key, const char* section = "optionen") {
    return QString::fromStdString(settings->ReadSetting(section, key));
  }
};

TEST_F(OptionsTest, EverySwitchIsLoadedAndStored) {
  const struct {
    const char* box;
    const char* caption;
    const char* tooltip;
    const char* key;
    int tab;
  } kRows[] = {
      {"chkUserBild", "Beim Start Benutzer Bildschirm Anwenden", "", "usb", 0},
      {"chkVorschau", "Vorschau Html ", "", "vor", 0},
      {"chkMeldung", "Meldung nach Clip", "Meldung nach Transport in die Zwischenablage ausgeben", "meld", 0},
      {"chkAufgeklappt", "Modulliste aufgeklappt", "Zeigt alle Einträge im linken Fenster", "aufk", 0},
      {"chkStandardImmer", "Immer benutzen", "", "stapro", 1},
      {"chkRoutLeer", "Leerzeile vor Routinen einfügen", "", "rle", 2},
      {"chkRouEinruecken", "Zwischen Routinen Einrücken", "Wirkt nur zusammen mit Einrücken", "rer", 2},
      {"chkEinrueck", "Einrücken", "", "einr", 2},
      {"chkLeer", "Leerzeilen entfernen", "", "leer", 2},
      {"chkRoutinen", "Routinen Fett", "", "rouf", 3},
  };
  Start();
  for (const bool on : {true, false}) {
    for (const auto& row : kRows) {
      Box(row.box).setChecked(on);
      EXPECT_EQ(Box(row.box).text(), row.caption);
      EXPECT_EQ(Box(row.box).toolTip(), row.tooltip);
      EXPECT_TRUE(Get<QTabWidget>("tbOptionen").widget(row.tab)->isAncestorOf(&Box(row.box))) << row.box;
    }
    EXPECT_EQ(Box("chkRouEinruecken").isEnabled(), on);
    End("cmdOK");
    for (const auto& row : kRows) EXPECT_EQ(Stored(row.key), on ? "-1" : "0") << row.key;
    for (const auto& row : kRows) EXPECT_EQ(Box(row.box).isChecked(), on) << row.box;
    End("cmdEscape");
  }
  EXPECT_EQ(Stored("bis"), "") << "not the dialog's to store";
}

TEST_F(OptionsTest, TabsShowOneFrameEach) {
  Start();
  auto& tabs = Get<QTabWidget>("tbOptionen");
  const QStringList captions = {"&Anzeige", "&Dateien", "&Code", "&Formate"};
  ASSERT_EQ(tabs.count(), captions.size());
  EXPECT_EQ(tabs.currentIndex(), 0);
  for (int tab = 0; tab < tabs.count(); ++tab) {
    EXPECT_EQ(tabs.tabText(tab), captions[tab]);
    QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(tab).center());
    for (int frame = 0; frame < tabs.count(); ++frame) EXPECT_EQ(tabs.widget(frame)->isVisible(), frame == tab);
  }
}

TEST_F(OptionsTest, FormatsAreSeenAtOnceAfterOk) {
  StartWithProject();
  const auto keyword = [this] {
    return Code().document()->firstBlock().layout()->formats().value(0).format.foreground().color();
  };
  for (const bool ok : {false, true}) {
    Press("lblFarbe12");
    auto& frame = Get<ui::ColourFrame>("fraKeyfarbe");
    EXPECT_EQ(frame.palette().color(QPalette::Window), QColor(255, 0, 0)) << "the frame shows the choice";
    Press("lblFarbe25");
    Press("lblFarbe46");
    Get<QComboBox>("cboSchriftGr").setCurrentText("16");
    Get<QComboBox>("cboTabStop").setCurrentText("8");
    End(ok ? "cmdOK" : "cmdEscape");
    EXPECT_EQ(keyword(), ok ? QColor(255, 0, 0) : QColor(0, 0, 128));
    EXPECT_EQ(Code().font().pointSize(), ok ? 16 : 10);
    EXPECT_EQ(globals.Options.tab, ok ? 8 : 5);
  }
  EXPECT_EQ(Stored("fkey"), "255");
  EXPECT_EQ(Stored("fkom"), "16711680");
  EXPECT_EQ(Stored("fstr"), "65535");
  EXPECT_EQ(Stored("font"), "MS Sans Serif,16") << "a font that is not installed is kept";
  EXPECT_EQ(Stored("tab"), "8");
}

TEST_F(OptionsTest, ValuesOutsideOfTheListsAreKept) {
  settings->WriteSetting("optionen", "fkey", "1193046");
  settings->WriteSetting("optionen", "font", "Eigene Schrift,15");
  settings->WriteSetting("optionen", "tab", "33");
  Start();
  EXPECT_EQ(Get<ui::ColourFrame>("fraKeyfarbe").palette().color(QPalette::Window), QColor(0x56, 0x34, 0x12));
  EXPECT_EQ(Get<QLabel>("lblSchrift").font().family(), "Eigene Schrift");
  EXPECT_EQ(Get<QLabel>("lblSchrift").font().pointSize(), 15);
  Get<QComboBox>("cboSchriftGr").setCurrentText("16");
  EXPECT_EQ(Get<QLabel>("lblSchrift").font().pointSize(), 16);
  Get<QComboBox>("cboSchriftGr").setCurrentText("15");
  End("cmdOK");
  EXPECT_EQ(Stored("fkey"), "1193046");
  EXPECT_EQ(Stored("font"), "Eigene Schrift,15");
  EXPECT_EQ(Stored("tab"), "33");
}

TEST_F(OptionsTest, ModuleHeadersStayOn) {
  StartWithProject();
  EXPECT_TRUE(Box("chkModulnamen").isChecked());
  Box("chkModulnamen").setChecked(false);
  End("cmdOK");
  EXPECT_TRUE(Box("chkModulnamen").isChecked());
  globals.Options.meld = false;
  Trigger("ht_pro");
  EXPECT_TRUE(platform.clipboard.text.contains("Typ = Userform"));
}

TEST_F(OptionsTest, FoldersAreChosenAndMade) {
  StartWithProject();
  EXPECT_EQ(Get<QLineEdit>("txtInfo").text().toStdString(), files::PathText(codedb::CodeDbPath(globals.TempFolder)));
  EXPECT_FALSE(Get<QAbstractButton>("cmdVBÄndern").isEnabled());
  const QString parent = QString::fromStdString(files::PathText(Sources()));
  const auto folder = [this] { return Get<QLineEdit>("txtSpeichern").text(); };
  Press("cmdSpeichernÄndern");
  EXPECT_EQ(folder(), "C:\\") << "a cancelled chooser";
  platform.folders = {parent, parent};
  Press("cmdSpeichernÄndern");
  EXPECT_EQ(folder(), parent);
  platform.typed = {QStringLiteral(" Lag:er ")};
  Press("cmdNeu");
  const QString made = QDir::toNativeSeparators(parent + "/Lager");
  EXPECT_EQ(folder(), made);
  EXPECT_TRUE(std::filesystem::is_directory(Sources() / "Lager"));
  EXPECT_EQ(platform.prompts.mid(1),
            (QStringList{"Bitte Standardordner für Projekte auswählen",
                         "Bitte Verzeichnis auswählen,\r\nin welchem der neue Ordner erzeugt werden soll",
                         "Namen für neuen Ordner angeben"}));
  platform.folders = {parent + "/fehlt"};
  platform.typed = {QStringLiteral("Lager")};
  Press("cmdNeu");
  EXPECT_TRUE(platform.TakeText().contains("fehlt")) << "told, and the dialog stays";
  EXPECT_EQ(Stored("proj_pf", "proj"), "");
  End("cmdOK");
  EXPECT_EQ(Stored("proj_pf", "proj"), made);
  EXPECT_EQ(globals.LastProjectFolder, made.toStdString());
}

}  // namespace
}  // namespace quillmate::testing
