#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/office/macro_target.h>
#include <quillmate/office/office_file.h>

#include "office/document_writer.h"
#include "office/vba_writer.h"

namespace quillmate::office {
namespace {

using Lines = std::vector<std::string>;
using State = OfficeFile::State;
using namespace std::string_literals;

WrittenProject Project() {
  WrittenProject project;
  project.modules = {
      {"Document", "Tabelle1",
       DocumentModule("Tabelle1",
                      "Attribute VB_Control = \"cmdLos, 3, 0, MSForms, CommandButton\"\r\nSub T()\r\nEnd Sub\r\n")},
      {"Module", "Modul1",
       StandardModule("Modul1",
                      "Public Function Steuer(x)\r\nEnd Function\r\nPrivate Function Geheim()\r\nEnd Function\r\n"
                      "Sub Start()\r\nAttribute Start.VB_ProcData.VB_Invoke_Func = \"P\\n14\"\r\nEnd Sub\r\n"
                      "Sub Ohne()\r\nAttribute Ohne.VB_ProcData.VB_Invoke_Func = \" \\n14\"\r\nEnd Sub\r\n")}};
  return project;
}

OfficeFile Read(const std::string& bytes, bool excel4 = false) {
  MemorySource source(bytes);
  return ReadOfficeFile(source, {.facts = true, .excel4 = excel4});
}

/// "target: place" of each binding, with the number where there are several, then the notices.
Lines Bindings(const OfficeFile& file) {
  Lines lines;
  for (const Binding& binding : file.facts.bindings) {
    const std::string count = binding.count > 1 ? " x" + std::to_string(binding.count) : "";
    lines.push_back(binding.target + ": " + binding.place + count);
  }
  lines.insert(lines.end(), file.facts.notices.begin(), file.facts.notices.end());
  return lines;
}

const std::string kShortcut = "Modul1.Start: Tastenkombination Strg+Umschalt+P";

/// A workbook with a sheet "Kunden", to be filled.
PackageWriter Workbook(const std::string& sheet) {
  PackageWriter writer;
  writer.Add("xl/vbaProject.bin", Project().Bin())
      .Add("xl/workbook.xml",
           "<workbook xmlns:r='r'><sheets><sheet name='Kunden &amp; Co' state='hidden' r:id='rId1'/></sheets>"
           "<definedNames><definedName name='Satz'>Steuer(1)*2</definedName></definedNames></workbook>")
      .Add("xl/worksheets/sheet1.xml", sheet)
      .Relate("", "officeDocument", "/xl/workbook.xml")
      .Relate("xl/workbook.xml", "worksheet", "worksheets/sheet1.xml")
      .Relate("xl/workbook.xml", "externalLink", "externalLinks/externalLink1.xml")
      .Relate("xl/externalLinks/externalLink1.xml", "externalLinkPath", "file:///C:/Preise.xlsx");
  return writer;
}

TEST(Facts, WorkbooksInXml) {
  PackageWriter writer = Workbook(
      "<worksheet><sheetPr codeName='Tabelle1'/><sheetData><row><c r='B3'><f>SUM(A1)+steuer(A2)</f></c>"
      "<c r='B4'><f t='shared' si='0'>\"Steuer(1)\"&amp;Geheim()</f></c><c r='B5'><f>Modul1.Steuer(1)</f></c>"
      "<c r='B6'><f>[1]!Steuer(1)</f></c><c r='B7'><f>STEUER(2)</f></c></row></sheetData>"
      "<conditionalFormatting><cfRule><formula>Steuer(1)&gt;0</formula></cfRule></conditionalFormatting></worksheet>");
  writer.Relate("xl/worksheets/sheet1.xml", "drawing", "../drawings/drawing1.xml")
      .Relate("xl/worksheets/sheet1.xml", "vmlDrawing", "../drawings/vmlDrawing1.vml")
      .Relate("", "extensibility", "customUI/customUI14.xml")
      .Relate("", "core-properties", "docProps/core.xml")
      .Add("docProps/core.xml",
           "<p><dc:creator>Ada</dc:creator><dcterms:created>2024-05-31T12:00:00Z</dcterms:created></p>")
      .Add("customUI/customUI14.xml",
           "<customUI onLoad='Laden' xmlns='http://schemas.microsoft.com/office/2009/07/customui'>"
           "<button id='b1' label='Los geht&apos;s' onAction='Modul1.Start'/><button id='b2' onAction='Modul1.Start' "
           "getLabel='Text'/></customUI>")
      .Add("xl/drawings/drawing1.xml",
           "<xdr:wsDr><xdr:grpSp><xdr:sp macro='[0]!Start'><xdr:cNvPr name='Rechteck 1'/><a:t>Jetzt</a:t><a:t> los" +
               // The tag's name does not outlive so much text.
               std::string(70000, ' ') +
               "</a:t>"
               "</xdr:sp></xdr:grpSp><xdr:sp macro=''><xdr:cNvPr name='leer'/></xdr:sp><mc:Choice>"
               "<xdr:sp macro='[0]!Knopf'><xdr:cNvPr name='Button 1'/><a14:compatExt "
               "spid='_x0000_s1'/></xdr:sp></mc:Choice>"
               "<mc:Fallback><xdr:pic macro='[0]!Start'><xdr:cNvPr name='x'/></xdr:pic></mc:Fallback>"
               "<xdr:pic macro='Start'><xdr:cNvPr name='Logo'/></xdr:pic></xdr:wsDr>")
      .Add("xl/drawings/vmlDrawing1.vml",
           "<xml><v:shape id=\"Button_x0020_1\"><v:textbox><div><font>Weiter<br>gehen</font></div></v:textbox>"
           "<x:ClientData ObjectType=\"Button\"><x:FmlaMacro>[0]!Knopf</x:FmlaMacro></x:ClientData></v:shape>"
           "<v:shape id=\"Auswahl_x0020_2\"><x:ClientData ObjectType=\"Checkbox\"><x:FmlaMacro>[0]!Wahl</x:FmlaMacro>"
           "</x:ClientData></v:shape></xml>");
  const OfficeFile file = Read(writer.File());
  EXPECT_EQ(
      Bindings(file),
      (Lines{kShortcut, "Steuer: Definierter Name 'Satz'", "steuer: Formel in B3 auf Blatt Kunden & Co",
             "Modul1.Steuer: Formel in B5 auf Blatt Kunden & Co", "STEUER: Formel in B7 auf Blatt Kunden & Co",
             "Steuer: Bedingte Formatierung auf Blatt Kunden & Co", "[0]!Start: Form 'Jetzt los' auf Blatt Kunden & Co",
             "Start: Bild 'Logo' auf Blatt Kunden & Co", "[0]!Knopf: Schaltfläche 'Weiter gehen' auf Blatt Kunden & Co",
             "[0]!Wahl: Kontrollkästchen 'Auswahl 2' auf Blatt Kunden & Co", "Laden: Menüband (onLoad)",
             "Modul1.Start: Schaltfläche 'Los geht's' im Menüband x2",
             "Text: Schaltfläche 'b2' im Menüband (getLabel)"}));
  ASSERT_EQ(file.facts.sheets.size(), 1U);
  EXPECT_EQ(file.facts.sheets[0].codeName + "/" + file.facts.sheets[0].name, "Tabelle1/Kunden & Co");
  EXPECT_EQ(file.facts.sheets[0].visibility, Sheet::Visibility::kHidden);
  ASSERT_EQ(file.facts.controls.size(), 1U);
  EXPECT_EQ(file.facts.controls[0].module + "." + file.facts.controls[0].name + " " + file.facts.controls[0].type,
            "Tabelle1.cmdLos CommandButton");
  EXPECT_EQ(file.facts.properties.author + file.facts.properties.created, "Ada2024-05-31T12:00:00Z");
  EXPECT_EQ(file.facts.externalLinks, Lines{"file:///C:/Preise.xlsx"});
}

TEST(Facts, Excel4Sheets) {
  PackageWriter writer;
  writer
      .Add("xl/workbook.xml",
           "<workbook><sheet name='Makro1' state='veryHidden' r:id='rId1'/>"
           "<definedName name='_xlnm.Auto_Open'>Makro1!$A$1</definedName></workbook>")
      .Add("xl/macrosheets/sheet1.xml",
           "<xm:macrosheet><sheetData><c r='B1'><f>HALT()</f></c><c r='A2'><f>RETURN()</f></c><c "
           "r='A1'><f>ALERT(\"x\")</f>"
           "</c></sheetData></xm:macrosheet>")
      .Relate("", "officeDocument", "xl/workbook.xml")
      .Relate("xl/workbook.xml", "xlMacrosheet", "macrosheets/sheet1.xml");
  const OfficeFile told = Read(writer.File());
  EXPECT_EQ(told.state, State::kNoMacros);
  EXPECT_EQ(told.ReasonText(), "Datei enthält keinen VBA-Code, sie enthält Excel-4-Makros: Makro1 (3 Formeln)");
  EXPECT_EQ(told.facts.excel4.at(0).entry, "A1");
  const OfficeFile read = Read(writer.File(), true);
  ASSERT_EQ(read.state, State::kRead);
  EXPECT_EQ(read.project.modules.at(0).code, "A1: =ALERT(\"x\")\r\nA2: =RETURN()\r\nB1: =HALT()");
}

/// The same in records: the cell is known only where the name leads to a sheet of this book.
TEST(Facts, Excel4SheetsInRecords) {
  const auto entry = [](unsigned book, unsigned sheet) {
    const std::string name = XlsbRecord(39, Bytes<4>(0x20) + Bytes<1>(0) + Bytes<4>(0) + XlsbText("Auto_Open") +
                                                Bytes<4>(9) + "\x3A" + Bytes<2>(1) + Bytes<4>(6) + Bytes<2>(0xC002));
    const std::string books = XlsbRecord(355, "") + XlsbRecord(357, "") +
                              XlsbRecord(362, Bytes<4>(2) + Bytes<12>(0) + Bytes<4>(book) + Bytes<8>(sheet));
    PackageWriter writer;
    writer
        .Add("xl/workbook.bin", XlsbRecord(156, Bytes<8>(0) + XlsbText("rId1") + XlsbText("Tab")) +
                                    XlsbRecord(156, Bytes<8>(0) + XlsbText("rId2") + XlsbText("Makro1")) + books + name)
        .Add("xl/worksheets/sheet1.bin", XlsbRecord(145, ""))
        .Add("xl/macrosheets/sheet1.bin",
             XlsbRecord(145, "") + XlsbRecord(0, Bytes<4>(6)) +
                 XlsbRecord(9, Bytes<4>(2) + Bytes<4>(0) + Bytes<8>(0) + Bytes<2>(0) + Bytes<4>(0)))
        .Relate("", "officeDocument", "xl/workbook.bin")
        .Relate("xl/workbook.bin", "worksheet", "worksheets/sheet1.bin")
        .Relate("xl/workbook.bin", "xlMacrosheet", "macrosheets/sheet1.bin");
    const OfficeFile file = Read(writer.File());
    return file.facts.excel4.at(0).name + " " + file.facts.excel4.at(0).entry;
  };
  EXPECT_EQ(entry(1, 1), "Makro1 C7");
  EXPECT_EQ(entry(1, 0), "Makro1 ");
  EXPECT_EQ(entry(0, 1), "Makro1 ");
  EXPECT_EQ(entry(1, 9), "Makro1 ");
}

/// The stream of an old workbook with a button, a name and a formula.
std::string OldWorkbook() {
  const auto name = [](unsigned flags, const std::string& text) {
    return XlsRecord(0x18,
                     Bytes<2>(flags) + Bytes<1>(0) + Bytes<1>(text.size()) + Bytes<2>(0) + Bytes<8>(0) + XlsText(text));
  };
  const std::string globals = XlsRecord(0x809, Bytes<2>(0x600) + Bytes<2>(5) + Bytes<8>(0) + Bytes<4>(0));
  const auto rest = [&](std::size_t sheetAt) {
    return XlsRecord(0x85, Bytes<4>(sheetAt) + Bytes<2>(0) + Bytes<1>(6) + XlsText("Kunden")) +
           XlsRecord(0x1AE, Bytes<2>(1) + Bytes<2>(0x0401)) + XlsRecord(0x17, Bytes<2>(1) + Bytes<6>(0)) +
           name(0, "Bereich") + name(0xC, "Start") + name(0xE, "Steuer") + XlsRecord(0x0A, "");
  };
  // A record FilePass may be put after the first one: 4 bytes and what the ciphers need.
  const std::string common = Bytes<2>(0x15) + Bytes<2>(4) + Bytes<2>(7) + Bytes<2>(1);
  const std::string macro = Bytes<2>(4) + Bytes<2>(13) + Bytes<2>(7) + Bytes<4>(0) + "\x39" + Bytes<2>(0) + Bytes<4>(2);
  const std::string formula = Bytes<2>(2) + Bytes<2>(1) + std::string(16, '\0') + Bytes<2>(5) + "\x43" + Bytes<4>(3);
  const std::string sheet = XlsRecord(0x809, Bytes<2>(0x600) + Bytes<2>(0x10) + Bytes<8>(0)) +
                            XlsRecord(0x1BA, Bytes<2>(8) + XlsText("Tabelle1")) + XlsRecord(0x06, formula) +
                            XlsRecord(0x5D, common + macro + Bytes<4>(0)) +
                            XlsRecord(0x1B6, std::string(10, '\0') + Bytes<2>(3) + Bytes<6>(0)) +
                            XlsRecord(0x3C, XlsText("Los")) + XlsRecord(0x0A, "");
  return globals + rest(globals.size() + rest(0).size()) + sheet;
}

TEST(Facts, WorkbooksInRecords) {
  const Lines all{kShortcut, "Start: Definierter Name 'Start'", "Steuer: Definierter Name 'Steuer'",
                  "Steuer: Formel in B3 auf Blatt Kunden", "Start: Schaltfläche 'Los' auf Blatt Kunden"};
  const auto workbook = [](const std::string& stream) {
    CompoundWriter writer;
    writer.Add("Workbook", stream);
    Project().AddTo(writer, "_VBA_PROJECT_CUR/");
    return Read(writer.File());
  };
  const OfficeFile file = workbook(OldWorkbook());
  EXPECT_EQ(Bindings(file), all);
  EXPECT_EQ(file.facts.sheets.at(0).codeName, "Tabelle1");
  for (const WrittenCipher cipher : {WrittenCipher::kXor, WrittenCipher::kRc4, WrittenCipher::kRc4Api}) {
    // The places of the sheets are those of the stream with its additional record; only the names do not need them.
    const OfficeFile open = workbook(EncryptedWorkbook(OldWorkbook(), cipher, "VelvetSweatshop"));
    EXPECT_TRUE(open.facts.defaultPassword);
    ASSERT_GE(open.facts.bindings.size(), 3U);
    EXPECT_EQ(open.facts.bindings[1].target + open.facts.bindings[2].target, "StartSteuer");
    const OfficeFile closed = workbook(EncryptedWorkbook(OldWorkbook(), cipher, "geheim"));
    EXPECT_EQ(closed.state, State::kRead);
    EXPECT_EQ(Bindings(closed),
              (Lines{kShortcut, "Die Mappe ist verschlüsselt: Blätter und Schaltflächen sind nicht lesbar"}));
  }
}

/// Controls that the code does not tell, and the entry of a macro sheet.
TEST(Facts, ControlsOfSheets) {
  const auto controls = [](const OfficeFile& file) {
    Lines lines;
    for (const Control& control : file.facts.controls) lines.push_back(control.module + "." + control.name);
    return lines;
  };
  const Lines all{"Tabelle1.cmdLos", "Tabelle1.lstNeu"};
  const auto package = [&](const std::string& suffix, const std::string& book, const std::string& sheet) {
    PackageWriter writer;
    writer.Add("xl/vbaProject.bin", Project().Bin())
        .Add("xl/workbook." + suffix, book)
        .Add("xl/sheet1." + suffix, sheet)
        .Relate("", "officeDocument", "xl/workbook." + suffix)
        .Relate("xl/workbook." + suffix, "worksheet", "sheet1." + suffix)
        .Relate("xl/sheet1." + suffix, "ctrlProp", "c.xml")
        .Relate("xl/sheet1." + suffix, "control", "a.xml");
    return Read(writer.File());
  };
  const std::string control = "<control shapeId='1' r:id='rId2' name='lstNeu'/>";
  const OfficeFile xml = package("xml", "<workbook><sheet name='S' r:id='rId1'/></workbook>",
                                 "<worksheet><sheetPr codeName='Tabelle1'/><sheetData/><controls>" + control + control +
                                     "<control shapeId='2' r:id='rId1' name='Formular'/><control r:id='rId2' "
                                     "name='CMDLOS'/></controls></worksheet>");
  EXPECT_EQ(controls(xml), all);
  EXPECT_TRUE(xml.facts.controlsKnown);
  const OfficeFile parts = package(
      "bin",
      XlsbRecord(156, Bytes<8>(0) + XlsbText("rId1") + XlsbText("S")) +
          XlsbRecord(39, Bytes<4>(0xE) + Bytes<1>(0) + Bytes<4>(0) + XlsbText("Steuer")),
      XlsbRecord(147, std::string(19, '\0') + XlsbText("Tabelle1")) + XlsbRecord(145, "") + XlsbRecord(0, Bytes<4>(4)) +
          XlsbRecord(9, Bytes<4>(2) + Bytes<4>(0) + Bytes<8>(0) + Bytes<2>(0) + Bytes<4>(5) + "\x43" + Bytes<4>(1)) +
          XlsbRecord(644, Bytes<4>(1) + XlsbText("rId2") + XlsbText("lstNeu")));
  EXPECT_EQ(controls(parts), all);
  EXPECT_EQ(Bindings(parts),
            (Lines{kShortcut, "Steuer: Definierter Name 'Steuer'", "Steuer: Formel in C5 auf Blatt S"}));

  const std::string name = "l\0s\0t\0N\0e\0u\0\0\0"s;
  const std::string drawing = Bytes<2>(15) + Bytes<2>(0xF004) + Bytes<4>(999) + Bytes<2>(0x23) + Bytes<2>(0xF00B) +
                              Bytes<4>(12 + name.size()) + Bytes<2>(0x1BF) + Bytes<4>(7) + Bytes<2>(0xC380) +
                              Bytes<4>(name.size()) + name;
  const auto object = [](unsigned flags) {
    return XlsRecord(
        0x5D, Bytes<2>(0x15) + Bytes<2>(2) + Bytes<2>(8) + Bytes<2>(8) + Bytes<2>(2) + Bytes<2>(flags) + Bytes<4>(0));
  };
  const std::string bof = XlsRecord(0x809, Bytes<2>(0x600) + Bytes<2>(5) + Bytes<8>(0) + Bytes<4>(0));
  const auto globals = [&](std::size_t sheetAt) {
    return bof + XlsRecord(0x85, Bytes<4>(sheetAt) + Bytes<1>(1) + Bytes<1>(1) + Bytes<1>(1) + XlsText("M")) +
           XlsRecord(0x1AE, Bytes<2>(1) + Bytes<2>(0x0401)) + XlsRecord(0x17, Bytes<2>(1) + Bytes<6>(0)) +
           XlsRecord(0x18, Bytes<2>(0x20) + Bytes<1>(0) + Bytes<1>(1) + Bytes<2>(7) + Bytes<8>(0) + XlsText("\1") +
                               "\x3A" + Bytes<2>(0) + Bytes<2>(6) + Bytes<2>(1)) +
           XlsRecord(0x0A, "");
  };
  CompoundWriter writer;
  writer.Add("Workbook", globals(globals(0).size()) + bof + XlsRecord(0xEC, drawing) + object(0x11) +
                             XlsRecord(0xEC, drawing) + object(1) +
                             XlsRecord(0x1BA, Bytes<2>(8) + XlsText("Tabelle1")) + XlsRecord(0x0A, ""));
  Project().AddTo(writer, "_VBA_PROJECT_CUR/");
  const OfficeFile old = Read(writer.File());
  EXPECT_EQ(controls(old), all);
  EXPECT_EQ(old.facts.excel4.at(0).entry, "B7");
}

TEST(Facts, EncryptedPackages) {
  const std::string zip = Workbook("<worksheet/>").File();
  for (const bool agile : {false, true}) {
    const OfficeFile open = Read(EncryptedPackageOf(zip, agile, "VelvetSweatshop"));
    EXPECT_EQ(open.state, State::kRead) << open.ReasonText();
    EXPECT_EQ(open.project.modules.size(), 2U);
    EXPECT_TRUE(open.facts.defaultPassword);
    EXPECT_EQ(Read(EncryptedPackageOf(zip, agile, "geheim")).ReasonText(),
              "Datei ist mit einem Kennwort verschlüsselt");
  }
}

TEST(Facts, FormsWithTheirControls) {
  const auto site = [](const char* name, unsigned id, unsigned type, unsigned objectSize, unsigned tab, int left) {
    DesignerBlock block(0);
    block.Text(0, name).Number(2, 4, id);
    if (objectSize == 0) block.Number(4, 4, 0x23);
    return block.Number(5, 4, objectSize).Number(6, 2, tab).Number(7, 2, type).Point(8, left, 254).Bytes();
  };
  const std::string button = DesignerBlock(2).Number(0, 4, 1).WideText(3, u"Übernehmen").Point(5, 2540, 1270).Bytes();
  const std::string spin = DesignerBlock(2).Number(5, 4, 0).Point(3, 1270, 2540).Bytes();
  const std::string image = DesignerBlock(2).Number(5, 1, 0).Point(9, 5080, 5080).Bytes();
  const std::string box =
      DesignerBlock(2, 8).Number(0, 4, 1).Point(8, 2540, 254).Text(22, "1").Text(23, "Haken").Bytes();
  const std::vector<DesignerSite> inner{{site("chkDrin", 5, 26, static_cast<unsigned>(box.size()), 0, 0), box}};
  const std::vector<DesignerSite> sites{{site("cmdOk", 1, 17, static_cast<unsigned>(button.size()), 1, 2540), button},
                                        {site("spnZahl", 3, 16, static_cast<unsigned>(spin.size()), 2, 0), spin},
                                        {site("imgLogo", 4, 12, static_cast<unsigned>(image.size()), 3, 0), image},
                                        {site("fraTeil", 2, 14, 0, 0, 0)}};
  WrittenProject project = Project();
  project.modules.push_back({"BaseClass", "frmKunde", StandardModule("frmKunde", "Sub cmdOk_Click()\r\nEnd Sub\r\n")});
  CompoundWriter file;
  project.AddTo(file, "");
  for (auto& [path, bytes] : file.streams) {
    if (path == "frmKunde/\3VBFrame")
      bytes = "Begin {0} frmKunde\r\n   Caption = \"Der \"\"Kunde\"\"\"\r\n   ClientWidth = 2000\r\nEnd\r\n";
  }
  file.Add("frmKunde/f", DesignerForm("", sites));
  file.Add("frmKunde/o", DesignerObjects(sites));
  file.Add("frmKunde/i02/f", DesignerForm("Teil", inner));
  file.Add("frmKunde/i02/o", DesignerObjects(inner));
  const OfficeFile read = Read(file.File());
  Lines lines;
  for (const Control& control : read.facts.controls) {
    if (control.module != "frmKunde") continue;
    lines.push_back(control.parent + "/" + control.name + " " + control.type + " '" + control.caption + "' " +
                    std::to_string(*control.tabIndex) + " " + std::to_string(static_cast<int>(*control.left)) + " " +
                    (control.width ? std::to_string(static_cast<int>(*control.width + 0.5)) + "x" +
                                         std::to_string(static_cast<int>(*control.height + 0.5))
                                   : "-"));
  }
  EXPECT_EQ(lines, (Lines{"/cmdOk CommandButton 'Übernehmen' 1 72 72x36", "/spnZahl SpinButton '' 2 0 36x72",
                          "/imgLogo Image '' 3 0 144x144", "/fraTeil Frame 'Teil' 0 0 -",
                          "fraTeil/chkDrin CheckBox 'Haken' 0 0 72x7"}));
  EXPECT_EQ(read.facts.forms.at(0).caption, "Der \"Kunde\"");
  EXPECT_EQ(read.facts.notices, Lines{});
}

TEST(Facts, MacroTargets) {
  const struct {
    const char* text;
    const char* shown;  // book|project|module|routine
  } cases[] = {
      {"[0]!Start", "|||Start"},
      {"[0]!Modul1.Start", "||Modul1|Start"},
      {"VBAProject.Modul1.Start", "|VBAProject|Modul1|Start"},
      {"'Mappe 1.xlsm'!Start", "|||Start"},
      {"[2]!Start", "[2]|||Start fremd"},
      {"'Andere ''A''.xlsm'!Start", "Andere 'A'.xlsm|||Start fremd"},
      {"'Start \"a\", 1'", "|||Start"},
      {"=Start(1)", "|||Start"},
      {"A..B", "nichts"},
      {"", "nichts"},
  };
  for (const auto& [text, shown] : cases) {
    const auto target = ParseMacroTarget(text, "Mappe 1.XLSM");
    const std::string book = target && target->foreign ? target->book : "";
    EXPECT_EQ(!target ? "nichts"
                      : book + "|" + target->project + "|" + target->module + "|" + target->routine +
                            (target->foreign ? " fremd" : ""),
              shown)
        << text;
  }
  using Home = MacroCandidate::Home;
  const std::vector<MacroCandidate> candidates{{"Tabelle1", "Start", Home::kDocument},
                                               {"M1", "Start", Home::kStandard, true},
                                               {"M2", "Start"},
                                               {"M1", "Doppelt"},
                                               {"M2", "Doppelt"},
                                               {"Kl", "Nur", Home::kOther},
                                               {"Tabelle1", "Nur", Home::kDocument}};
  const MacroResolver resolver(candidates);
  const auto found = [&](const char* text) {
    const auto index = resolver.Find(*ParseMacroTarget(text, ""));
    return index ? static_cast<int>(*index) : -1;
  };
  EXPECT_EQ(found("start"), 2);
  EXPECT_EQ(found("m1.START"), 1);
  EXPECT_EQ(found("Doppelt"), -1);
  EXPECT_EQ(found("Nur"), 6);
  EXPECT_EQ(found("[1]!Start"), -1);
}

}  // namespace
}  // namespace quillmate::office
