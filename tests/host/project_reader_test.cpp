#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>
#include <quillmate/files/paths.h>
#include <quillmate/host/document_host.h>
#include <quillmate/host/project_reader.h>

#include "codedb/scratch.h"
#include "host/fake_host.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

constexpr const char* kFailedText =
    "Fehler beim Einlesen !\r\nDies kann mehrere Ursachen haben:\r\n1. Die Mappe mit dem Modul ist nicht mehr "
    "geöffnet.\r\n2. Im Code sind Konstrukte, die die Quillmate nicht auslesen kann, z.B.  spezielle "
    "Doppelpunktonstrukte\r\nin der Art, \r\nPrivate Sub Test : End Sub\r\n(Also Deklaration Sub und  End Sub in einer "
    "Zeile)\r\n3. Syntaktisch nicht korrekter Code (Sollte dann auch im Editior rot sein)\r\nSiehe auch mögliche "
    "Fehler in der Hilfe";

/// A run's scratch folder with an earlier index in it, and a place for sources.
class ProjectReader : public testing::Test {
 protected:
  ProjectReader() {
    request_.folder = scratch_.Path();
    request_.templateFile = codedb::TemplateFile();
    request_.progress = [this](const std::string& status) { progress_.push_back(status); };
    scratch_.Write("M1.txt", "alt\r\n");
    scratch_.Write("M9.txt", "alt\r\n");
  }

  /// "number name kind lines: routine routine" of each module of the index.
  Texts Index() {
    database_.OpenCodeDatabase(scratch_.Path());
    Texts modules;
    for (const codedb::ModuleRecord& module : database_.ReadIndex()) {
      std::string text = std::to_string(module.number.value) + " " + module.name + " " + std::to_string(module.kind) +
                         " " + std::to_string(module.lines) + ":";
      for (const codedb::RoutineRecord& routine : module.routines) {
        text += " " + std::to_string(routine.number.value) + routine.name;
      }
      modules.push_back(std::move(text));
    }
    database_.CloseCodeDatabase();
    return modules;
  }

  void ExpectFailed(const ReadReport& report, const std::string& detail) {
    EXPECT_EQ(report.outcome, ReadOutcome::kFailed);
    EXPECT_EQ(report.message, kFailedText);
    EXPECT_EQ(report.detail, detail);
    EXPECT_FALSE(database_.IsOpen());
    EXPECT_EQ(files::Names(scratch_.Path()), "");
  }

  files::ScratchFolder scratch_{"TempDateien/T_1"};
  files::ScratchFolder sources_{"Quelle"};
  codedb::CodeDatabase database_;
  ReadRequest request_;
  Texts progress_;
};

FakeHost HostOfTwo() {
  FakeHost host;
  host.projects = {
      {{"Gesperrt", "C:\\g.xls", true}, {}},
      {{"Lager", "C:\\b.xls", false},
       {{"Tabelle1", kHostDocument, "Sub A()\r\n\r\nEnd Sub"},
        {"Kunde", kClassModule, "Sub K()\r\n\r\nEnd Sub"},
        {"Pr\374fung", kMSForm, "Sub B()\r\nx = 1\r\nEnd Sub"}}},
      {{"Neu", std::nullopt, false}, {{"D1", kOtherComponent, "Function F()\r\n\r\nEnd Function"}}},
  };
  return host;
}

HostTree TreeOf(HostAutomation& host, bool checked) {
  HostTree tree;
  ListHostProjects(host, false, tree);
  for (HostProjectNode& project : tree.projects) {
    project.checked = checked;
    for (HostModuleNode& module : project.modules) module.checked = checked;
  }
  return tree;
}

TEST_F(ProjectReader, ReadsTickedModulesInTreeOrder) {
  FakeHost host = HostOfTwo();
  HostTree tree = TreeOf(host, true);
  tree.projects[0].modules[1].checked = false;
  tree.projects.push_back(tree.projects[0]);
  tree.projects[2].checked = false;
  host.calls.clear();
  const ReadReport report = ReadCheckedModules(host, tree, database_, request_);
  EXPECT_EQ(report.outcome, ReadOutcome::kDone) << report.detail;
  EXPECT_EQ(report.message, "");
  EXPECT_EQ(report.projectText, "Neu [Nicht gespeichert]");
  EXPECT_EQ(report.modules, 3);
  EXPECT_FALSE(database_.IsOpen());
  EXPECT_EQ(Index(), (Texts{"1 Tabelle1 5 3: 1A", "2 Pr\374fung 1 3: 2B", "3 D1 32 3: 3F"}));
  EXPECT_EQ(files::Names(scratch_.Path()), "Fakten.db M1.txt M2.txt M3.txt Quillmate.mdb");
  EXPECT_EQ(progress_, (Texts{"Erzeuge Projekt", "Modul: Tabelle1", "Modul: Prüfung", "Modul: D1"}));
  EXPECT_EQ(host.calls, (Texts{"Attach", "ComponentByName 2 Tabelle1", "Lines Tabelle1 3", "Project 2",
                               "ComponentByName 2 Pr\374fung", "Lines Pr\374fung 3", "ComponentByName 3 D1",
                               "Lines D1 3", "Project 3", "ComponentCount 2", "Component 1", "Component 2",
                               "Component 3", "ComponentCount 3", "Component 1", "Release"}));

  // A second read starts from nothing: numbers begin at 1 again, older module texts are gone.
  tree.projects[0].checked = false;
  EXPECT_EQ(ReadCheckedModules(host, tree, database_, request_).outcome, ReadOutcome::kDone);
  EXPECT_EQ(Index(), (Texts{"1 D1 32 3: 1F"}));
  EXPECT_EQ(files::Names(scratch_.Path()), "Fakten.db M1.txt Quillmate.mdb");

  // A tick at a project alone reads an empty one.
  tree.projects[1].modules[0].checked = false;
  EXPECT_EQ(ReadCheckedModules(host, tree, database_, request_).outcome, ReadOutcome::kDone);
  EXPECT_EQ(Index(), Texts{});
}

TEST_F(ProjectReader, NothingTickedChangesNothing) {
  FakeHost host = HostOfTwo();
  const HostTree tree = TreeOf(host, false);
  host.calls.clear();
  for (const bool fromFiles : {false, true}) {
    const ReadReport report =
        fromFiles ? ReadModuleFiles(tree, database_, request_) : ReadCheckedModules(host, tree, database_, request_);
    EXPECT_EQ(report.outcome, ReadOutcome::kNothingChecked);
    EXPECT_EQ(report.message, "Bitte wählen Sie erst etwas aus");
  }
  EXPECT_EQ(host.calls, Texts{});
  EXPECT_EQ(progress_, Texts{});
  EXPECT_EQ(files::Names(scratch_.Path()), "M1.txt M9.txt");
}

TEST_F(ProjectReader, NoHostOrNoTemplateEndsTheReadEarly) {
  FakeHost host = HostOfTwo();
  const HostTree tree = TreeOf(host, true);
  host.running = false;
  ReadReport report = ReadCheckedModules(host, tree, database_, request_);
  EXPECT_EQ(report.outcome, ReadOutcome::kNotAttached);
  EXPECT_EQ(report.message, "");
  EXPECT_EQ(progress_, Texts{});
  EXPECT_EQ(files::Names(scratch_.Path()), "");

  host.running = true;
  request_.templateFile = sources_ / "fehlt.mdb";
  report = ReadCheckedModules(host, tree, database_, request_);
  EXPECT_EQ(report.outcome, ReadOutcome::kNoTemplate);
  EXPECT_EQ(report.message, "Die notwendige Datenbank\r\n" + files::PathText(request_.templateFile) +
                                "\r\nexistiert nicht !!!\r\nBitte kopieren Sie diese wieder an diese Stelle");
  EXPECT_EQ(progress_, Texts{"Erzeuge Projekt"});
  EXPECT_EQ(host.calls.back(), "Release");
}

TEST_F(ProjectReader, AModuleThatCannotBeReadCostsItself) {
  for (const auto& [call, module] : {std::pair{"ComponentByName 3 D1", "D1"}, std::pair{"Lines Kunde 3", "Kunde"}}) {
    SCOPED_TRACE(call);
    FakeHost host = HostOfTwo();
    const HostTree tree = TreeOf(host, true);
    host.failAt = call;
    const ReadReport report = ReadCheckedModules(host, tree, database_, request_);
    EXPECT_EQ(std::count(host.calls.begin(), host.calls.end(), call), 1);
    EXPECT_EQ(host.calls.back(), "Release");
    EXPECT_EQ(report.outcome, ReadOutcome::kDone);
    EXPECT_EQ(report.message, kFailedText);
    EXPECT_EQ(report.leftOut, Texts{std::string(module) + ": Aufruf abgelehnt"});
    EXPECT_EQ(static_cast<int>(Index().size()), report.modules);
  }
}

/// Modules are read side by side; rows, numbers, texts and messages are those of one after the other, also where a text
/// holds a routine's number: every seventh module here.
TEST_F(ProjectReader, ManyModulesComeInTheirOrder) {
  constexpr int kModules = 60;
  const auto path = [&](int i) { return sources_ / ("m" + std::to_string(100 + i) + ".bas"); };
  const auto isMissing = [](int i) { return i % 11 == 10; };
  std::vector<std::string> codes;
  for (int i = 0; i < kModules; ++i) {
    std::string code = i % 7 == 6 ? "Sub A() Function B()\r\nEnd Sub Function\r\n" : "Sub A()\r\nEnd Sub\r\n";
    for (int line = (kModules - i) * (i % 3) * 40; line >= 0; --line) code += "x = 1\r\n";
    codes.push_back(code + "'");
    sources_.Write(files::PathText(path(i).filename()), codes.back());
  }
  DocumentHost host;
  host.SetSources({sources_.Path()});
  const HostTree tree = TreeOf(host, true);
  Texts left;
  for (int i = 0; i < kModules; ++i) {
    if (!isMissing(i)) continue;
    fs::remove(path(i));
    left.push_back(files::PathText(path(i)) + ": Datei existiert nicht");
  }
  EXPECT_EQ(ReadCheckedModules(host, tree, database_, request_).leftOut, left);

  const Texts index = Index();
  codedb::RoutineNumber last;
  std::size_t number = 0;
  bool held = false;
  for (int i = 0; i < kModules; ++i) {
    if (isMissing(i)) continue;
    const analysis::ScanResult expected = analysis::ScanForIndex(codes[static_cast<std::size_t>(i)], {}, last);
    last = expected.last;
    held = held || expected.numbersInText;
    ++number;
    EXPECT_EQ(codedb::ReadModuleText(scratch_.Path(), {static_cast<std::int32_t>(number)}),
              expected.markedText + "\r\n");
    std::string row = std::to_string(number) + " " + files::PathText(path(i).stem()) + " 2 " +
                      std::to_string(expected.lineCount) + ":";
    for (const auto& routine : expected.routines) row += " " + std::to_string(routine.number.value) + routine.name;
    EXPECT_EQ(index.at(number - 1), row);
  }
  EXPECT_EQ(index.size(), number);
  EXPECT_TRUE(held);
}

/// The index counts the lines of a header in 16 bits.
TEST_F(ProjectReader, AHeaderOfTooManyLinesCostsItsModule) {
  std::string code = "Sub A()\nEnd Sub\nSub B( _\n";
  for (int line = 0; line < 33000; ++line) code += "x, _\n";
  const std::string file = files::PathText(sources_.Write("a.bas", code + "y)\nEnd Sub\n"));
  sources_.Write("b.bas", "Sub C()\n\nEnd Sub\n");
  DocumentHost host;
  host.SetSources({sources_.Path()});
  const ReadReport report = ReadCheckedModules(host, TreeOf(host, true), database_, request_);
  EXPECT_EQ(report.leftOut, Texts{file + ": Der Kopf der Routine \"B\" hat 33002 Zeilen, das sind zu viele"});
  EXPECT_EQ(Index(), Texts{"1 b 2 3: 1C"});
}

TEST_F(ProjectReader, AReadThatCannotBeWrittenFailsBeforeTheFirstModule) {
  FakeHost host = HostOfTwo();
  const HostTree tree = TreeOf(host, true);
  request_.templateFile = sources_.Write("mask.mdb", "keine Datenbank");
  const ReadReport report = ReadCheckedModules(host, tree, database_, request_);
  EXPECT_FALSE(report.detail.empty());
  ExpectFailed(report, report.detail);
  EXPECT_EQ(progress_, Texts{"Erzeuge Projekt"});
}

TEST_F(ProjectReader, DocumentsAreReadLikeAHost) {
  sources_.Write(
      "DieseMappe.cls",
      "VERSION 1.0 CLASS\nBEGIN\nEND\nAttribute VB_Name = \"DieseMappe\"\nAttribute VB_PredeclaredId = True\n"
      "Attribute VB_Exposed = True\nSub A()\nx = \"\xC3\xA4\"\nEnd Sub\n");
  sources_.Write("kurz.bas", "Option Explicit\n");
  const fs::path second = sources_.Write("zwei.bas", "Sub B()\n\nEnd Sub");
  DocumentHost host;
  host.SetSources({sources_.Path()});
  const HostTree tree = TreeOf(host, true);
  EXPECT_EQ(ReadCheckedModules(host, tree, database_, request_).projectText, "Quelle [Quelle]");
  EXPECT_EQ(Index(), (Texts{"1 DieseMappe 5 3: 1A", "2 zwei 2 3: 2B"}));
  EXPECT_NE(codedb::ReadModuleText(scratch_.Path(), {1}).find("\"\344\""), std::string::npos);

  fs::remove(second);
  const Texts gone{files::PathText(second) + ": Datei existiert nicht"};
  EXPECT_EQ(ReadCheckedModules(host, tree, database_, request_).leftOut, gone);
  EXPECT_EQ(Index(), Texts{"1 DieseMappe 5 3: 1A"});
  fs::remove(sources_ / "DieseMappe.cls");
  ExpectFailed(ReadCheckedModules(host, tree, database_, request_), gone[0]);
}

TEST_F(ProjectReader, ModuleFilesAreReadWithTheirHeaders) {
  HostTree tree;
  tree.projects.resize(2);
  tree.projects[0].text = "P [p]";
  // The name is the node's text, whatever the file says; the kind is the node's. No project needs a tick here.
  const std::string file = files::PathText(sources_.Write(
      "a.cls", "VERSION 1.0 CLASS\nBEGIN\nEND\nAttribute VB_Name = \"X\"\nSub A()\n attribute A.b = 1\nEnd Sub\n"));
  for (const int kind : {1, 2, 3, 5, 32}) {
    tree.projects[0].modules.push_back({"X", "A1\\X", "N" + std::to_string(kind), "M1", kind, file, 1, true});
  }
  tree.projects[1].modules.push_back({"Y", "A2\\Y", "Y", "M2", codedb::kStandard, "", 1, false});
  const ReadReport report = ReadModuleFiles(tree, database_, request_);
  EXPECT_EQ(report.outcome, ReadOutcome::kDone) << report.detail;
  EXPECT_EQ(report.projectText, "P [p]");
  EXPECT_EQ(report.modules, 5);
  Texts modules = Index();
  EXPECT_EQ(modules, (Texts{"1 N1 1 6: 1A", "2 N2 2 6: 2A", "3 N3 3 6: 3A", "4 N5 5 6: 4A", "5 N32 32 6: 5A"}));
  const std::string stored = codedb::ReadModuleText(scratch_.Path(), {1});
  EXPECT_TRUE(stored.starts_with("VERSION 1.0 CLASS\r\nBEGIN\r\n")) << stored;
  EXPECT_EQ(stored.find("ttribute"), std::string::npos);

  tree.projects[1].modules[0].checked = true;
  EXPECT_EQ(ReadModuleFiles(tree, database_, request_).leftOut, Texts{"Y: Modul liegt nicht in einer Datei"});
  tree.projects[1].modules[0].file = files::PathText(sources_ / "weg.bas");
  EXPECT_EQ(ReadModuleFiles(tree, database_, request_).leftOut,
            Texts{files::PathText(sources_ / "weg.bas") + ": Datei existiert nicht"});
}

/// "module number kind: code" of each module of Fakten.db, with the hidden lines.
Texts ShownFacts(const fs::path& folder) {
  const auto facts = codedb::ReadFacts(folder);
  Texts shown;
  if (!facts) return shown;
  for (const codedb::ModuleFacts& module : facts->modules) {
    shown.push_back(facts->projects[static_cast<std::size_t>(module.project)].name + "." + module.name + " " +
                    std::to_string(module.number) + " " + module.kind + " " +
                    std::to_string(module.replacedCharacters) + ": " + module.code.value_or("-"));
  }
  return shown;
}

TEST_F(ProjectReader, FactsKeepWhatTheIndexLacks) {
  sources_.Write("a/kurz.bas", "Attribute VB_Name = \"Kurz\"\nPublic X\n");
  sources_.Write("a/klasse.bas",
                 "VERSION 1.0 CLASS\nBEGIN\nEND\nAttribute VB_Name = \"Klasse\"\n"
                 "Attribute VB_PredeclaredId = True\nSub A()\n\nEnd Sub\nSub B()\n"
                 "Attribute B.VB_UserMemId = 0\n\nEnd Sub\n");
  sources_.Write("b/kyrillisch.bas", "Sub B()\n'\xD0\x9F\xD1\x80\nEnd Sub\n");
  DocumentHost host;
  host.SetSources({sources_ / "a", sources_ / "b"});
  const HostTree tree = TreeOf(host, true);
  const ReadReport report = ReadCheckedModules(host, tree, database_, request_);
  ASSERT_EQ(report.outcome, ReadOutcome::kDone) << report.detail;
  EXPECT_EQ(ShownFacts(scratch_.Path()), (Texts{"a.Klasse 1 class 0: -", "a.Kurz 0 standard 0: Public X",
                                                "b.kyrillisch 2 standard 2: Sub B()\r\n'\xD0\x9F\xD1\x80\r\nEnd Sub"}));
  EXPECT_EQ(report.replacedCharacters,
            Texts{files::PathText(sources_ / "b" / "kyrillisch.bas") + ": 2 Zeichen wurden durch \"?\" ersetzt"});
  const codedb::ModuleFacts module = codedb::ReadFacts(scratch_.Path())->modules.at(0);
  EXPECT_EQ(module.predeclared, true);
  EXPECT_TRUE(module.linesOfFile);
  EXPECT_EQ(module.attributes.back().member + " " + module.attributes.back().name, "B VB_UserMemId");
  EXPECT_EQ(module.attributes.back().line, 4);

  // Laid out, the original stays with the way back.
  request_.options = {.indent = true, .indentBodies = true, .removeEmptyLines = true, .emptyLineBeforeRoutines = true};
  ASSERT_EQ(ReadCheckedModules(host, tree, database_, request_).outcome, ReadOutcome::kDone);
  const codedb::ModuleFacts laidOut = codedb::ReadFacts(scratch_.Path())->modules.at(0);
  EXPECT_EQ(laidOut.code, "Sub A()\r\n\r\nEnd Sub\r\nSub B()\r\n\r\nEnd Sub");
  EXPECT_FALSE(laidOut.lines.empty());
}

}  // namespace
}  // namespace quillmate::host
