#include <QAbstractItemModelTester>
#include <QDir>

#include <quillmate/files/file_bytes.h>

#include "window_test.h"

namespace quillmate::testing {
namespace {

using ui::Answer;
using ui::Buttons;
using ui::MessageIcon;

const QString kUnsaved = QStringLiteral("Excel Quillmate 1.0 Projekt: Quelle [Quelle] [nicht gespeichert !!!]");

class ProjectTest : public WindowTest {};

TEST_F(ProjectTest, TicksGoFromProjectToModulesAndBack) {
  Start();
  const QAbstractItemModelTester tester(Tree("treApp").model());
  const auto states = [this] {
    return QList<int>{HostNode(0).data(Qt::CheckStateRole).toInt(), HostNode(0, 0).data(Qt::CheckStateRole).toInt(),
                      HostNode(0, 1).data(Qt::CheckStateRole).toInt()};
  };
  Tick(0);
  EXPECT_EQ(states(), (QList<int>{2, 2, 2}));
  Tick(0, 0, false);
  EXPECT_EQ(states(), (QList<int>{1, 0, 2}));
  Tick(0, 1, false);
  EXPECT_EQ(states(), (QList<int>{0, 0, 0}));
  Tick(0, 1);
  EXPECT_EQ(states(), (QList<int>{1, 0, 2}));

  // Space and a click on the box, as the user does it.
  QTreeView& tree = Tree("treApp");
  tree.setCurrentIndex(HostNode(0, 1));
  QTest::keyClick(&tree, Qt::Key_Space);
  EXPECT_EQ(states(), (QList<int>{0, 0, 0}));
  QStyleOptionViewItem option;
  option.initFrom(&tree);
  option.rect = tree.visualRect(HostNode(0));
  option.features = QStyleOptionViewItem::HasDisplay | QStyleOptionViewItem::HasCheckIndicator;
  const QRect box = tree.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &tree);
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, box.center());
  EXPECT_EQ(states(), (QList<int>{2, 2, 2}));
}

TEST_F(ProjectTest, ReadsTheTickedModulesAndShowsThem) {
  StartWithProject();
  EXPECT_EQ(platform.TakeText(), "");
  EXPECT_EQ(Window().windowTitle(), kUnsaved);
  const QAbstractItemModelTester tester(Tree("treProjekt").model());
  EXPECT_TRUE(Tree("treProjekt").isVisible());
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Form\n Laden\nZebra\n Adler\n Zahl\n");
  EXPECT_EQ(Tree("treProjekt").currentIndex(), ProjectNode(0));
  EXPECT_FALSE(Tree("treProjekt").isExpanded(ProjectNode(0)));
  EXPECT_TRUE(Code().toPlainText().startsWith("Sub Laden()\n  x = 1\nEnd Sub\n")) << Code().toPlainText().toStdString();
  EXPECT_TRUE(Code().hasFocus());
  EXPECT_EQ(Panel("Modul"), "Form");
  EXPECT_EQ(Panel("Vorgang"), "");
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ProjectTest, ReadsOnlyWhatIsTickedAndFromTheFilesToo) {
  settings->WriteSetting("optionen", "aufk", "-1");
  for (const char* command : {"mnuBearbeiten_Code", "mnuVB"}) {
    Start();
    Tick(0, 1);
    Trigger(command);
    EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Zebra\n Adler\n Zahl\n") << command;
    EXPECT_TRUE(Tree("treProjekt").isExpanded(ProjectNode(0)));
    EXPECT_EQ(Window().windowTitle(), kUnsaved) << command;
  }
}

TEST_F(ProjectTest, TitleSaysThatSeveralProjectsWereRead) {
  for (const char* folder : {"Eins", "Zwei"}) {
    std::filesystem::create_directories(Folder(folder));
    std::filesystem::copy_file(Sources() / "Zebra.bas", Folder(folder) / "Zebra.bas");
  }
  settings::SaveSources(*settings,
                        {files::PathText(Sources()), files::PathText(Folder("Eins")), files::PathText(Folder("Zwei"))});
  const struct {
    std::vector<int> ticked;
    const char* projects;
  } cases[] = {
      {{0}, "Quelle [Quelle]"}, {{0, 2}, "Zwei [Zwei] und 1 weiteres"}, {{0, 1, 2}, "Zwei [Zwei] und 2 weitere"}};
  for (const auto& each : cases) {
    Start();
    for (const int project : each.ticked) Tick(project);
    Trigger("mnuBearbeiten_Code");
    EXPECT_EQ(Window().windowTitle(),
              QStringLiteral("Excel Quillmate 1.0 Projekt: %1 [nicht gespeichert !!!]").arg(each.projects));
  }
}

TEST_F(ProjectTest, TellsWhatWasReplaced) {
  AddModule("Aa.bas", "Sub A()\n'\xD0\x9F\xD1\x80\nEnd Sub\n");
  AddModule("Ab.bas", "Sub B()\n'\xD0\x9F\nEnd Sub\n");
  StartWithProject();
  EXPECT_EQ(Panel("Vorgang"), Text(Sources() / "Aa.bas") +
                                  QStringLiteral(": 2 Zeichen wurden durch \"?\" ersetzt, ebenso in 1 weiteren Modul"));
}

TEST_F(ProjectTest, AsksForATick) {
  Start();
  for (const char* command : {"mnuBearbeiten_Code", "mnuVB"}) {
    Trigger(command);
    EXPECT_EQ(platform.TakeText(), "Bitte wählen Sie erst etwas aus");
  }
  EXPECT_TRUE(Tree("treApp").isVisible());
}

TEST_F(ProjectTest, ClicksShowModulesAndRoutines) {
  StartWithProject();
  QTreeView& tree = Tree("treProjekt");
  tree.expandAll();
  Click(tree, ProjectNode(1, 0));
  EXPECT_EQ(Panel("Modul"), "Zebra");
  EXPECT_EQ(Panel("Routine"), "Adler");
  EXPECT_EQ(Code().textCursor().blockNumber(), 6);
  EXPECT_EQ(Code().textCursor().selectedText(), "Private");
  EXPECT_TRUE(Code().hasFocus());
  EXPECT_TRUE(ProjectNode(1).data(Qt::UserRole).toBool());
  EXPECT_FALSE(ProjectNode(0).data(Qt::UserRole).toBool());

  Click(tree, ProjectNode(1));
  EXPECT_EQ(Panel("Routine"), "");
  EXPECT_EQ(Code().textCursor().position(), 0);
}

TEST_F(ProjectTest, KeysInTheTreeOnlyMoveUntilEnter) {
  StartWithProject();
  QTreeView& tree = Tree("treProjekt");
  tree.setFocus();
  QTest::keyClick(&tree, Qt::Key_Down);
  EXPECT_EQ(tree.currentIndex(), ProjectNode(1));
  EXPECT_EQ(Panel("Modul"), "Form");
  QTest::keyClicks(&tree, "f*");
  EXPECT_EQ(tree.currentIndex(), ProjectNode(1));
  EXPECT_FALSE(tree.isExpanded(ProjectNode(1)));
  QTest::keyClick(&tree, Qt::Key_Return);
  EXPECT_EQ(Panel("Modul"), "Zebra");
  EXPECT_TRUE(Code().toPlainText().startsWith("Option Explicit"));
  Click(tree, ProjectNode(0));
  EXPECT_EQ(Panel("Modul"), "Form") << "a key before must not swallow the click";
}

TEST_F(ProjectTest, CommandsFollowTheMode) {
  const struct {
    const char* names;
    bool without;
    bool with;
  } kRows[] = {
      {"refresh mnuAnsicht_App_Aktualisieren mnuBearbeiten_Code doit", true, false},
      {"mnuNeu neu mnuSpeichern save mnuBearbeiten_Kopieren_Modul mnuBearbeiten_Kopieren_Auswahl mnuRtf mnuText "
       "mnuHtml_Auswahl mnuHtml_Modul mnuHtml_projekt ht_aus ht_mod ht_pro mnuTest",
       false, true},
      {"mnuHtml_Clipboard ht_clip mnuÖffnen open mnuExtras_Optionen mnuAnsicht_Spezial mnuHilfe_Hilfe mnuVB "
       "mnuExtras_Struktur mnuExtras_ClearClip mnuDatei_Dateien mnuEnde",
       true, true},
  };
  const auto expectEnabled = [this](const char* names, bool enabled) {
    for (const QByteArray& name : QByteArray(names).split(' ')) {
      EXPECT_EQ(Action(name.constData()).isEnabled(), enabled) << name.constData();
    }
  };
  Start();
  for (const auto& row : kRows) expectEnabled(row.names, row.without);
  Tick(0);
  Window().PressToolButton("DoIt");
  for (const auto& row : kRows) expectEnabled(row.names, row.with);
}

TEST_F(ProjectTest, NewAsksAboutTheUnsavedProject) {
  StartWithProject();
  platform.answers = {Answer::kCancel};
  Trigger("mnuNeu");
  EXPECT_EQ(platform.messages.at(0).buttons, Buttons::kYesNoCancel);
  ExpectMessage("Projekt wurde nicht gespeichert !\r\nProjekt jetzt speichern ?", MessageIcon::kQuestion);
  EXPECT_TRUE(Tree("treProjekt").isVisible());

  platform.answers = {Answer::kYes};
  Trigger("neu");
  EXPECT_TRUE(Tree("treProjekt").isVisible()) << "no folder chosen: not saved, not left";

  LeaveProject();
  EXPECT_TRUE(Tree("treApp").isVisible());
  EXPECT_EQ(Window().windowTitle(), "Excel Quillmate 1.0");
  EXPECT_EQ(Code().toPlainText(), "");
  EXPECT_EQ(Panel("Modul"), "");
  EXPECT_EQ(Tree("treProjekt").model()->rowCount(), 0);
  EXPECT_FALSE(std::filesystem::exists(codedb::CodeDbPath(globals.RunTempFolder)));
}

TEST_F(ProjectTest, SavesBeforeLeaving) {
  StartWithProject();
  std::filesystem::create_directories(Folder("Ziel"));
  platform.answers = {Answer::kYes};
  platform.folders = {Text(Folder("Ziel"))};
  platform.typed = {QStringLiteral(" La:g*er ")};
  Trigger("mnuNeu");
  EXPECT_TRUE(Tree("treApp").isVisible());
  for (const char* file : {"Quillmate.mdb", "M1.txt", "M2.txt"}) {
    EXPECT_TRUE(std::filesystem::exists(Folder("Ziel") / "Lager" / file)) << file;
  }
  EXPECT_EQ(platform.prompts, (QStringList{"Bitte Projektpfad auswählen", "Bitte Projektnamen angeben"}));
}

TEST_F(ProjectTest, FailedSaveKeepsTheProject) {
  StartWithProject();
  files::WriteWholeFile(Folder("Datei"), "kein Ordner");
  SaveAs("Lager", Folder("Datei"));
  ASSERT_EQ(platform.messages.size(), 1U);
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::kExclamation);
  EXPECT_EQ(Window().windowTitle(), kUnsaved);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  Tree("treProjekt").expandAll();
  Click(Tree("treProjekt"), ProjectNode(1, 0));
  EXPECT_EQ(Code().textCursor().selectedText(), "Private");
}

TEST_F(ProjectTest, DamagedIndexIsToldAndTheHostTreeStays) {
  Start();
  Tick(0);
  platform.onClock = [this] {
    const std::filesystem::path index = codedb::CodeDbPath(globals.TempFolder);
    if (std::filesystem::exists(index) && !globals.CodeDb.IsOpen()) files::WriteWholeFile(index, "x");
  };
  Trigger("mnuBearbeiten_Code");
  ExpectMessage(QString::fromStdString(codedb::BrokenProject(globals.TempFolder).what()), MessageIcon::kExclamation);
  EXPECT_TRUE(Tree("treApp").isVisible());
  EXPECT_EQ(Window().windowTitle(), "Excel Quillmate 1.0");
  EXPECT_TRUE(Action("doit").isEnabled());
}

TEST_F(ProjectTest, SavedProjectIsTheCurrentOne) {
  StartWithProject();
  std::filesystem::create_directories(Folder("Ziel") / "Lager [alt]");
  const auto save = [this](Answer overwrite) {
    platform.answers = {overwrite};
    SaveAs("Lager [alt]", Folder("Ziel"));
  };
  save(Answer::kNo);
  const QString folder = Text(Folder("Ziel") / "Lager [alt]") + QDir::separator();
  EXPECT_EQ(platform.TakeText(), "\r\nEin Projekt:" + folder + "existiert schon\r\nÜberschreiben ?");
  EXPECT_EQ(Window().windowTitle(), kUnsaved);
  Tree("treProjekt").expandAll();
  Click(Tree("treProjekt"), ProjectNode(1, 0));
  save(Answer::kYes);
  EXPECT_EQ(Window().windowTitle(), "Excel Quillmate 1.0 Projekt: Lager [alt]");
  EXPECT_FALSE(std::filesystem::exists(codedb::CodeDbPath(globals.RunTempFolder)));
  EXPECT_EQ(Code().textCursor().selectedText(), "Private");
  Click(Tree("treProjekt"), ProjectNode(0, 0));
  EXPECT_EQ(Code().textCursor().selectedText(), "Sub");
  platform.messages.clear();
  Trigger("mnuNeu");
  EXPECT_EQ(platform.TakeText(), "") << "nothing unsaved";
}

TEST_F(ProjectTest, MissingTemplateLeavesTheTreeWithItsTicks) {
  Start();
  Tick(0);
  std::filesystem::remove(TemplateFile());
  Trigger("mnuBearbeiten_Code");
  ASSERT_EQ(platform.messages.size(), 1U);
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::kCritical);
  EXPECT_TRUE(platform.TakeText().startsWith("Die notwendige Datenbank\r\n"));
  EXPECT_TRUE(Tree("treApp").isVisible());
  EXPECT_EQ(HostNode(0, 1).data(Qt::CheckStateRole), Qt::Checked);
  EXPECT_TRUE(Action("doit").isEnabled());
}

/// Whatever keeps the index from being made is told with its reason.
TEST_F(ProjectTest, TemplateThatCantBeCopiedTellsWhy) {
  Start();
  Tick(0);
  std::filesystem::create_directories(globals.RunTempFolder / "Quillmate.mdb" / "x");
  Trigger("mnuBearbeiten_Code");
  ASSERT_EQ(platform.messages.size(), 1U);
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::kCritical);
  EXPECT_FALSE(platform.messages[0].detail.isEmpty());
}

TEST_F(ProjectTest, ManyLeftOutModulesAreListedWhole) {
  for (char name = 'a'; name < 'a' + 10; ++name)
    AddModule((std::string(1, name) + ".bas").c_str(), "Sub A()\r\nx\r\nEnd Sub");
  Start();
  Tick(0);
  for (char name = 'a'; name < 'a' + 10; ++name) std::filesystem::remove(Sources() / (std::string(1, name) + ".bas"));
  Trigger("mnuBearbeiten_Code");
  ASSERT_FALSE(platform.messages.empty());
  EXPECT_TRUE(platform.messages[0].detail.endsWith("... und 2 weitere"));
  EXPECT_EQ(platform.messages[0].list.count("\r\n"), 9);
}

TEST_F(ProjectTest, VanishedModuleIsNamedAndTheOthersAreRead) {
  Start();
  Tick(0);
  std::filesystem::remove(Sources() / "Zebra.bas");
  Trigger("mnuBearbeiten_Code");
  ASSERT_EQ(platform.messages.size(), 1U);
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::kExclamation);
  EXPECT_TRUE(platform.messages[0].text.startsWith("Fehler beim Einlesen !\r\n"));
  EXPECT_TRUE(platform.messages[0].detail.contains("Zebra.bas"));
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Form\n Laden\n");
}

TEST_F(ProjectTest, ModuleTextThatIsGoneIsToldAndNothingMoves) {
  StartWithProject();
  std::filesystem::remove(codedb::ModuleTextPath(globals.TempFolder, {2}));
  Click(Tree("treProjekt"), ProjectNode(1));
  EXPECT_TRUE(platform.TakeText().contains("M2.txt"));
  EXPECT_EQ(Panel("Modul"), "Form");
  EXPECT_TRUE(Code().toPlainText().startsWith("Sub Laden"));
}

TEST_F(ProjectTest, ReadingFilesOverAProjectAsksFirst) {
  StartWithProject();
  platform.answers = {Answer::kCancel};
  Trigger("mnuVB");
  EXPECT_TRUE(Tree("treProjekt").isVisible());
  AddModule("Zebra.bas", "Sub Neu()\r\n  x\r\nEnd Sub\r\n");
  platform.answers = {Answer::kNo};
  Trigger("mnuVB");
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Form\n Laden\nZebra\n Neu\n");
}

TEST_F(ProjectTest, ScratchFolderThatIsGoneIsMadeAnew) {
  Start();
  std::filesystem::remove_all(globals.RunTempFolder.parent_path());
  Tick(0);
  Trigger("mnuBearbeiten_Code");
  EXPECT_EQ(platform.TakeText(), "");
  EXPECT_EQ(Panel("Modul"), "Form");
}

TEST_F(ProjectTest, OutlineGoesToTheClipboard) {
  StartWithProject();
  Trigger("mnuExtras_Struktur");
  EXPECT_EQ(platform.clipboard.text, "Form\r\n\tLaden\r\nZebra\r\n\tAdler\r\n\tZahl\r\n");
  EXPECT_EQ(platform.TakeText(), "Struktur in der Zwischenablage erstellt");
  Trigger("mnuExtras_ClearClip");
  EXPECT_EQ(platform.clipboard.text, "");
  globals.Options.meld = false;
  Trigger("mnuExtras_Struktur");
  EXPECT_EQ(platform.TakeText(), "");
}

}  // namespace
}  // namespace quillmate::testing
