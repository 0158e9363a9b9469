#include <QAbstractButton>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <map>

#include <quillmate/export/html.h>
#include <quillmate/export/site.h>
#include <quillmate/files/file_bytes.h>

#include "project_pdf.h"
#include "save_dialog.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

using ui::Answer;
using ui::MessageIcon;

class ExportTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    StartWithProject();
  }
  /// Marks a stretch of the module on screen.
  void Mark(int from, int to) {
    QTextCursor cursor = Code().textCursor();
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    Code().setTextCursor(cursor);
  }
  QString Clip() const { return platform.clipboard.text; }
};

TEST_F(ExportTest, HtmlGoesToTheClipboardAsTextWithTheCreditThatTheUserWants) {
  const struct {
    const char* command;
    QString start;
    int pieces;
  } kCases[] = {
      {"mnuHtml_Auswahl", "Sub Laden&#40;&#41;", 1},
      {"ht_clip", "x = &#34;ü", 1},
      {"mnuHtml_Modul", "Sub</span> Laden&#40;&#41;", 1},
      {"ht_pro", "'  Modul&#58;  Form  Typ = Userform", 2},
  };
  for (const auto& c : kCases) {
    for (const bool credit : {true, false}) {
      Mark(0, 11);
      platform.clipboard = {QStringLiteral("x = \"\u00fc\u2603"), "rtf", "html"};
      platform.answers = {credit ? Answer::kYes : Answer::kNo};
      Trigger(c.command);
      const QString html = Clip();
      EXPECT_EQ(platform.TakeText(), QString::fromUtf8(output::kCreditQuestion.data())) << c.command;
      EXPECT_TRUE(html.startsWith("<pre><span style=\"font-family=MS Sans Serif,Arial; font-size=10pt\"; >"))
          << c.command;
      EXPECT_EQ(html.endsWith("Excel Quillmate</a>"), credit) << c.command;
      EXPECT_EQ(html.endsWith("</span></pre>"), !credit) << c.command;
      EXPECT_EQ(html.count("<pre>"), c.pieces) << c.command;
      EXPECT_TRUE(platform.clipboard.rtf.isEmpty() && platform.clipboard.html.isEmpty());
      EXPECT_EQ(Panel("Vorgang"), "");
    }
  }
}

TEST_F(ExportTest, ClipboardCodeIsMarkedUpWithBestFitCharacters) {
  globals.Options.meld = false;
  platform.clipboard = {QStringLiteral("x = \"\u00fc\u2603\"\ny"), {}, {}};
  Trigger("mnuHtml_Clipboard");
  EXPECT_TRUE(Clip().contains("<span style=\"color:#800000\"; >&#34;&uuml;?&#34;</span>\r\ny")) << Clip().toStdString();
  EXPECT_EQ(platform.TakeText(), "") << "no question without messages";
}

TEST_F(ExportTest, EmptySourcesAreToldAndLeaveTheClipboard) {
  const struct {
    const char* command;
    QString text;
    MessageIcon icon;
  } kCases[] = {
      {"ht_aus", "Bitte markieren Sie den gewünschten Text", MessageIcon::kExclamation},
      {"mnuHtml_Clipboard", "Kein Text in der Zwischenablage", MessageIcon::kInformation},
      {"mnuText_Auswahl", "Bitte markieren Sie den gewünschten Text", MessageIcon::kNone},
  };
  for (const auto& c : kCases) {
    Mark(0, 0);
    platform.clipboard = {{}, "bleibt", {}};
    Trigger(c.command);
    ExpectMessage(c.text, c.icon);
    EXPECT_EQ(platform.clipboard.rtf, "bleibt") << c.command;
  }
}

TEST_F(ExportTest, PreviewIsAFileInTheProgramFolder) {
  globals.Options.vor = true;
  globals.Options.meld = false;
  const std::filesystem::path file = globals.ProgramFolder / "TempQuillmate.htm";
  Trigger("mnuHtml_Modul");
  EXPECT_EQ(platform.opened, QStringList(Text(file)));
  EXPECT_EQ(files::ReadWholeFile(file), "<HTML><HEAD><TITLE>Excel Quillmate</TITLE></HEAD><BODY>" +
                                            Clip().toLatin1().toStdString() + "</Body></HTML>\r\n");
  for (const bool written : {true, false}) {
    platform.canOpen = false;
    if (!written) {
      std::filesystem::remove(file);
      std::filesystem::create_directories(file / "im Weg");
    }
    platform.clipboard = {};
    Trigger("mnuHtml_Modul");
    EXPECT_EQ(platform.messages.back().icon, MessageIcon::kNone);
    EXPECT_EQ(platform.TakeText(), "Vorschau nicht möglich, vermutlich kein IE installiert");
    EXPECT_NE(Clip(), "") << "the clipboard has it all the same";
  }
}

TEST_F(ExportTest, RtfGoesIntoTheFileWithTheForcedExtension) {
  const struct {
    const char* command;
    const char* chosen;
    const char* written;
    const char* offered;
  } kCases[] = {
      {"mnuRtf_Modul", "Modul1.rtf", "Modul1.RTF", "Form"},
      {"mnuRtf_Projekt", "projekt.txt", "projekt.RTF", "Quelle"},
      {"mnuRtf_Projekt", "fertig.RTF", "fertig.RTF", "Quelle"},
  };
  for (const auto& c : kCases) {
    platform.saveFiles = {Text(Folder(c.chosen))};
    Trigger(c.command);
    EXPECT_EQ(platform.TakeText(), "");
    const ui::SaveRequest& request = platform.saveRequests.back();
    EXPECT_EQ(request.title, "Speichern unter");
    EXPECT_EQ(request.filter, "RTF-Dokument (*.RTF)");
    EXPECT_EQ(request.extension, "RTF");
    EXPECT_EQ(request.folder, QDir::currentPath());
    EXPECT_EQ(request.fileName, c.offered);
    const std::string rtf = files::ReadWholeFile(Folder(c.written));
    EXPECT_TRUE(rtf.starts_with("{\\rtf1") && rtf.ends_with("}")) << c.written;
    EXPECT_EQ(rtf.find("Typ = Userform") != std::string::npos, std::string(c.command) == "mnuRtf_Projekt");
    EXPECT_EQ(Panel("Vorgang"), "");
  }
  SaveAs("Lager [alt]", Folder(""));
  Trigger("mnuRtf_Projekt");
  EXPECT_EQ(platform.saveRequests.back().fileName, "Lager [alt]");
}

TEST_F(ExportTest, RtfOfManyModulesIsMadeBesideTheWindow) {
  LeaveProject();
  for (int number = 0; number < 210; ++number) {
    const std::string name = "Viele" + std::to_string(number);
    AddModule((name + ".bas").c_str(), "Attribute VB_Name = \"" + name + "\"\r\nSub A()\r\n  x = 1\r\nEnd Sub\r\n");
  }
  Trigger("mnuAnsicht_App_Aktualisieren");
  Tick(0);
  Trigger("mnuBearbeiten_Code");
  platform.messages.clear();
  const std::filesystem::path file = Folder("viele.RTF");
  platform.saveFiles = {Text(file)};
  Trigger("mnuRtf_Projekt");
  EXPECT_NE(Window().findChild<QProgressDialog*>("frmRtfFortschritt"), nullptr);
  // Its files are read before they go.
  LeaveProject();
  AwaitTasks();
  const std::string rtf = files::ReadWholeFile(file);
  EXPECT_TRUE(rtf.starts_with("{\\rtf"));
  EXPECT_NE(rtf.find("Viele209"), std::string::npos);
}

TEST_F(ExportTest, WordProcessorReadsTheRtf) {
  const QString office = QStandardPaths::findExecutable(QStringLiteral("soffice"));
  // The office programs come one by one; their launcher is the same.
  const QString writer = QFileInfo(office).canonicalPath() + QStringLiteral("/libswlo.so");
  if (office.isEmpty() || !QFileInfo::exists(writer)) GTEST_SKIP() << "no word processor installed";
  platform.saveFiles = {Text(Folder("projekt.RTF"))};
  Trigger("mnuRtf_Projekt");
  const QUrl profile = QUrl::fromLocalFile(Text(Folder("profil")));
  QProcess convert;
  convert.start(office, {"-env:UserInstallation=" + profile.toString(QUrl::FullyEncoded), "--headless", "--convert-to",
                         "fodt", "--outdir", Text(Folder("aus")), Text(Folder("projekt.RTF"))});
  ASSERT_TRUE(convert.waitForFinished(-1));
  const QString read =
      QString::fromUtf8(QByteArray::fromStdString(files::ReadWholeFile(Folder("aus") / "projekt.fodt")));
  for (const char* part : {"#000080", "#008000", "#800000", "fo:font-weight=\"bold\"", "style:tab-stop ", "äöü"}) {
    EXPECT_TRUE(read.contains(QString::fromUtf8(part))) << part;
  }
}

TEST_F(ExportTest, RtfOverwritesNothingUnaskedAndNothingWhenItFails) {
  files::WriteWholeFile(Folder("M.RTF"), "alt");
  platform.saveFiles = {Text(Folder("M.txt")), {}};
  platform.answers = {Answer::kNo};
  Trigger("mnuRtf_Modul");
  EXPECT_EQ(platform.TakeText(),
            QDir::toNativeSeparators(Text(Folder("M.RTF"))) + "\r\nexistiert schon\r\nÜberschreiben ?");
  Trigger("mnuRtf_Modul");
  EXPECT_EQ(platform.TakeText(), "") << "a cancelled dialog";

  std::filesystem::remove(codedb::ModuleTextPath(globals.TempFolder, {2}));
  platform.saveFiles = {Text(Folder("M.RTF"))};
  Trigger("mnuRtf_Projekt");
  EXPECT_TRUE(platform.TakeText().contains("M2.txt"));
  EXPECT_EQ(files::ReadWholeFile(Folder("M.RTF")), "alt");
  EXPECT_EQ(Panel("Vorgang"), "");
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ExportTest, TextGoesToTheClipboardWithAMessageIfWanted) {
  for (const bool told : {true, false}) {
    globals.Options.meld = told;
    Mark(0, 19);
    Trigger("mnuText_Auswahl");
    EXPECT_EQ(Clip(), "Sub Laden()\n  x = 1");
    EXPECT_EQ(platform.TakeText(), told ? "Text in Zwischenablage" : "");
    Trigger("mnuText_Modul");
    EXPECT_EQ(Clip(), "Sub Laden()\n  x = 1\nEnd Sub\n\n");
    EXPECT_EQ(platform.TakeText(), told ? "Text in Zwischenablage" : "");
  }
}

TEST_F(ExportTest, ZoomGivesItsOwnText) {
  globals.Options.meld = false;
  Tree("treProjekt").expandAll();
  Click(Tree("treProjekt"), ProjectNode(1, 0));
  Trigger("mnuPopUp_Zoom_Html");
  EXPECT_EQ(Clip(), "") << "no zoom, no export";
  Trigger("mnuAnsicht_Zoom");
  Trigger("mnuPopUp_Zoom_Html");
  EXPECT_TRUE(Clip().contains("Adler&#40;&#41;")) << Clip().toStdString();
  EXPECT_FALSE(Clip().contains("Zahl"));
  auto* zoom = Window().findChild<QPlainTextEdit*>(QStringLiteral("rtbZoom"));
  QTextCursor all = zoom->textCursor();
  all.setPosition(0);
  all.setPosition(7, QTextCursor::KeepAnchor);
  zoom->setTextCursor(all);
  Trigger("mnuText_Auswahl");
  EXPECT_EQ(Clip(), "Private");
}

TEST_F(ExportTest, DocumentationIsWrittenAndOpened) {
  AwaitKnowledge();
  const auto write = [this](const std::filesystem::path& chosen) {
    platform.folders = {Text(chosen)};
    platform.opened.clear();
    Trigger("mnuHtml_Dokumentation");
    AwaitTasks();
    return platform.opened.value(0);
  };
  std::filesystem::create_directories(Folder("leer"));
  for (int time = 0; time < 2; ++time) EXPECT_EQ(write(Folder("leer")), Text(Folder("leer") / "index.html"));
  EXPECT_TRUE(std::filesystem::exists(Folder("leer") / "modul-Zebra.html"));
  const std::filesystem::path below = Sources() / "Quelle Dokumentation" / "index.html";
  EXPECT_EQ(write(Sources()), Text(below)) << "a folder with other files gets a folder of its own";
  EXPECT_TRUE(std::filesystem::exists(below));
  EXPECT_EQ(platform.TakeText(), "");
  EXPECT_EQ(Panel("Vorgang"), "");

  platform.canOpen = false;
  write(Folder("leer"));
  EXPECT_EQ(platform.TakeText(), "Die Dokumentation liegt in\r\n" + Text(Folder("leer") / "index.html"));
  EXPECT_EQ(write({}), QString());
}

TEST_F(ExportTest, ExportsSayWhatTheyDoUnderTheHourglass) {
  const struct {
    const char* command;
    const char* text;
  } kCases[] = {
      {"mnuHtml_Clipboard", "Erzeuge Html Code"}, {"mnuHtml_Modul", "Erzeuge Html Code"},
      {"mnuHtml_projekt", "Erzeuge Html Code"},   {"mnuRtf_Modul", "Erzeuge RTF-Modul"},
      {"mnuRtf_Projekt", "Erzeuge RTF-Projekt"},
  };
  AwaitKnowledge();
  for (const auto& c : kCases) {
    platform.clipboard.text = QStringLiteral("Dim x");
    platform.saveFiles = {Text(Folder("x.RTF"))};
    platform.folders = {Text(Folder("doku"))};
    QStringList seen;
    platform.onClock = [this, &seen] {
      if (QApplication::overrideCursor() != nullptr) seen.append(Panel("Vorgang"));
    };
    Trigger(c.command);
    EXPECT_TRUE(seen.contains(QString::fromUtf8(c.text))) << c.command << ": " << seen.join(", ").toStdString();
    EXPECT_EQ(Panel("Vorgang"), "");
  }
}

TEST_F(ExportTest, CodeIsPrintedAndSavedAsPdf) {
  const struct {
    const char* what;
    int pages;
  } kCases[] = {{"optModul", 1}, {"optProjekt", 3}, {"optAuswahl", 1}, {"optRoutine", 1}};
  for (const auto& c : kCases) {
    Click(Tree("treProjekt"), ProjectNode(1, 0));
    for (const char* command : {"mnuDatei_Pdf", "mnuDatei_Drucken", "mnuDatei_Druckvorschau"}) {
      platform.saveFiles = {Text(Folder("Code.pdf"))};
      platform.prompts.clear();
      Trigger(command);
      auto* dialog = Window().findChild<QDialog*>("frmDrucken");
      ASSERT_NE(dialog, nullptr);
      dialog->findChild<QAbstractButton*>(c.what)->click();
      dialog->findChild<QAbstractButton*>("cmdDrucken")->click();
      AwaitTasks();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
      EXPECT_EQ(platform.prompts.size(), QLatin1String(command) == QLatin1String("mnuDatei_Pdf") ? 0 : 1);
    }
    const std::string pdf = files::ReadWholeFile(Folder("Code.pdf"));
    EXPECT_TRUE(pdf.starts_with("%PDF-")) << c.what;
    EXPECT_NE(pdf.find("/Count " + std::to_string(c.pages)), std::string::npos) << c.what;
    EXPECT_NE(pdf.find("/ToUnicode"), std::string::npos) << "text stays text";
  }
  EXPECT_EQ(platform.TakeText(), "");
}

std::string Rounded(const QByteArray& numbers) {
  QStringList rounded;
  for (const QByteArray& number : numbers.split(' ')) rounded << QString::number(number.toDouble(), 'f', 1);
  return rounded.join(u' ').toStdString();
}

/// How many characters a PDF draws in which colour, "red green blue" in tenths of the strongest.
std::map<std::string, int> CharactersByColour(const std::string& pdf) {
  std::map<std::string, int> counts;
  for (std::size_t at = pdf.find("stream\n"); at != pdf.npos; at = pdf.find("stream\n", at)) {
    at += 7;
    const std::size_t end = pdf.find("endstream", at);
    // Packed ones only; the size in front of the bytes is no more than a hint.
    if (pdf[at] == 'x') {
      const QByteArray packed = "\1\1\1\1" + QByteArray(pdf.data() + at, static_cast<qsizetype>(end - at));
      std::string colour;
      for (const QByteArray& line : qUncompress(packed).split('\n')) {
        if (line.startsWith("/CSp cs ") && line.endsWith(" scn")) colour = Rounded(line.mid(8).chopped(4));
        if (line.endsWith(" Tj")) ++counts[colour];
      }
    }
    at = end;
  }
  return counts;
}

TEST_F(ExportTest, PrintedCodeHasTheColoursOfTheOptions) {
  Click(Tree("treProjekt"), ProjectNode(1));
  platform.saveFiles = {Text(Folder("Code.pdf"))};
  Trigger("mnuDatei_Pdf");
  auto* dialog = Window().findChild<QDialog*>("frmDrucken");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QAbstractButton*>("optModul")->click();
  dialog->findChild<QAbstractButton*>("cmdDrucken")->click();
  AwaitTasks();
  std::map<std::string, int> counts = CharactersByColour(files::ReadWholeFile(Folder("Code.pdf")));
  EXPECT_EQ(counts["0.0 0.0 0.5"], 49) << "keywords";
  EXPECT_EQ(counts["0.0 0.5 0.0"], 5) << "the comment";
  EXPECT_EQ(counts["0.5 0.0 0.0"], 3) << "the string";
}

TEST_F(ExportTest, PdfThatIsGivenUpLeavesTheFileThatIsThere) {
  const std::filesystem::path file = Folder("Code.pdf");
  ui::ProjectPdf pdf;
  pdf.modules = {{codedb::ViewIndex{0}, QStringLiteral("Form"), {}},
                 {codedb::ViewIndex{1}, QStringLiteral("Zebra"), {}}};
  for (const bool atOnce : {true, false}) {
    files::WriteWholeFile(file, "das frühere");
    ui::BackgroundJob job([&](ui::BackgroundJob& run) {
      if (atOnce) run.Cancel();
      ui::SaveAsPdf(pdf, globals.TempFolder, file, run);
    });
    job.Start();
    job.FinishReading();
    job.Cancel();
    job.Wait();
    EXPECT_EQ(job.Error(), "");
    // Nobody knows how far it has come.
    EXPECT_FALSE(atOnce && job.IsMade());
    EXPECT_EQ(files::ReadWholeFile(file).starts_with("%PDF"), job.IsMade());
  }
}

TEST_F(ExportTest, PdfTakesWhatWasOnScreenWhenItWasWanted) {
  Click(Tree("treProjekt"), ProjectNode(1, 0));
  platform.saveFiles = {Text(Folder("Code.pdf"))};
  Trigger("mnuDatei_Pdf");
  Window().findChild<QDialog*>("frmDrucken")->findChild<QAbstractButton*>("cmdDrucken")->click();
  LeaveProject();
  AwaitTasks();
  EXPECT_TRUE(files::ReadWholeFile(Folder("Code.pdf")).starts_with("%PDF-"));
}

TEST_F(ExportTest, SaveFilterIsReadOrRefused) {
  const struct {
    const char* filter;
    QString read;
    QString problem;
  } kCases[] = {
      {"RTF-Dokument:RTF;", "RTF-Dokument (*.RTF)", ""},
      {"Text:txt,log;Alles:;", "Text (*.txt *.log);;Alles (*.*)", ""},
      {"Text:txt", "", "Bitte Filterart mit ; abschließen"},
      {"Text:txt;Alles;", "", "Doppelpunkt vergessen"},
      {"", "", "Bitte Filterart mit ; abschließen"},
  };
  for (const auto& c : kCases) {
    const ui::SaveFilter read = ui::ReadSaveFilter(c.filter);
    EXPECT_EQ(read.filter, c.read) << c.filter;
    EXPECT_EQ(QString::fromUtf8(read.problem.data(), static_cast<qsizetype>(read.problem.size())), c.problem);
  }
}

}  // namespace
}  // namespace quillmate::testing
