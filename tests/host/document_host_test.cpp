#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/files/paths.h>
#include <quillmate/host/document_host.h>

#include "codedb/scratch.h"
#include "host/listing.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

TEST(DocumentHost, AttachesWhenASourceIsKnown) {
  DocumentHost host;
  EXPECT_FALSE(host.AttachHost());
  host.SetSources({"/nirgends/x.bas"});
  EXPECT_TRUE(host.AttachHost());
  EXPECT_EQ(host.ProjectCount(), 0);
  EXPECT_EQ(host.HostVersion(), 0.0F);
  EXPECT_THROW(host.Project(1), files::Failure);
  EXPECT_THROW(host.ComponentByName(1, "x", 1), files::Failure);
  host.SetSources({});
  EXPECT_FALSE(host.AttachHost());
}

TEST(DocumentHost, FolderInByteOrderFilesFirst) {
  const files::ScratchFolder temp("Lager");
  temp.Write("b.bas", "Attribute VB_Name = \"Zwei\"\r\nSub A()\r\nEnd Sub\r\n");
  temp.Write("B.CLS", "a\nb\nc");
  temp.Write("\xC3\xA4.frm", "x");
  temp.Write("a.txt", "kein Modul");
  temp.Write("p.vbp", "Name=\"P\"\r\nModule=M; v.bas\r\nModule=N; a\\n.bas\r\n");
  temp.Write("v.bas", "Attribute VB_Name = \"V\"\n1");
  temp.Write("a/n.bas", "1");
  temp.Write("a/z.bas", "Attribute VB_Name = \"Zwei\"\n1");
  temp.Write("a/c/y.dsr", "1\n2");
  temp.Write("Z/x.bas/w.bas", "1");
  DocumentHost host;
  // What comes again counts once.
  host.SetSources({temp.Path() / "." / "", temp.Path() / "B.CLS", temp.Path() / "p.vbp", temp.Path() / "a"});
  EXPECT_EQ(Listed(host, temp.Path()),
            (Lines{"Lager [.]", "  B 2 3 B.CLS", "  Zwei 1 2 b.bas", "  \344 3 1 \xC3\xA4.frm", "  w 1 1 Z/x.bas/w.bas",
                   "  Zwei 1 1 a/z.bas", "  y 11 2 a/c/y.dsr", "P [p.vbp]", "  M 1 1 v.bas", "  N 1 1 a/n.bas"}));
  EXPECT_TRUE(host.Problems().empty());
  // Of two modules of one name the position tells which.
  EXPECT_EQ(host.Lines(1, "Zwei", 2, 2), "Sub A()\r\nEnd Sub");
  EXPECT_EQ(host.Lines(1, "Zwei", 5, 1), "1");
}

TEST(DocumentHost, TextExportsOfAccessAreToldByTheirContent) {
  const files::ScratchFolder temp("Export");
  temp.Write("Module/mdlLager.txt", "Option Compare Database\r\nPublic Function Netto(a)\r\nEnd Function\r\n");
  temp.Write("Module/Kunde.txt", "Attribute VB_Exposed = False\r\nOption Explicit\r\nDim a\r\n");
  temp.Write("Formulare/Kunden.txt",
             "Version =20\r\nBegin Form\r\nEnd\r\nCodeBehindForm\r\nSub Form_Load()\r\nEnd Sub\r\n");
  temp.Write("Formulare/Form_Orte.txt", "Version =20\r\nBegin Form\r\nEnd\r\nCodeBehindForm\r\nDim a\r\n");
  temp.Write("Berichte/Liste.txt", "Version =20\r\nBegin Report\r\nEnd\r\n");
  temp.Write("Abfragen/qryPreise.txt",
             "Operation =1\r\nBegin OutputColumns\r\n Expression =\"Netto([Preis])\"\r\nEnd\r\n");
  temp.Write("Makros/Start.txt", "Version =196611\r\nBegin\r\n Action =\"RunCode\"\r\n Argument =\"Los()\"\r\nEnd\r\n");
  temp.Write("Liesmich.txt", "Option Explicit steht in jedem Modul.\r\nSub A()\r\nEnd Sub\r\n");
  temp.Write("Bild.txt", "\0\1\2"sv);
  DocumentHost host;
  host.SetSources({temp.Path()});
  EXPECT_EQ(Listed(host, temp.Path()),
            (Lines{"Export [.]", "  Report_Liste 100 0 Berichte/Liste.txt", "  Form_Orte 100 1 Formulare/Form_Orte.txt",
                   "  Form_Kunden 100 2 Formulare/Kunden.txt", "  Kunde 2 2 Module/Kunde.txt",
                   "  mdlLager 1 3 Module/mdlLager.txt"}));
  std::string calls;
  for (const codedb::BindingFact& binding : host.BindingsOfProject(1))
    calls += binding.text + ": " + binding.place + "; ";
  EXPECT_EQ(calls, "Netto: Abfrage 'qryPreise'; Los: Makro 'Start'; ");
  // Alone one of them is a project; what is no code is not taken for it.
  host.SetSources({temp.Path() / "Formulare" / "Kunden.txt", temp.Path() / "Liesmich.txt",
                   temp.Path() / "Abfragen" / "qryPreise.txt"});
  EXPECT_EQ(Listed(host, temp.Path()),
            (Lines{"Kunden [Formulare/Kunden.txt]", "  Form_Kunden 100 2 Formulare/Kunden.txt",
                   "Liesmich.txt: Diese Dateiart kann nicht eingelesen werden",
                   "Abfragen/qryPreise.txt: Diese Dateiart kann nicht eingelesen werden"}));
}

TEST(DocumentHost, ModuleFilesAreProjectsOfTheirOwn) {
  const files::ScratchFolder temp;
  const fs::path file = temp.Write("Bericht.BAS", "Attribute VB_Name = \"Modul1\"\r\na\r\nb\r\nc\r\n");
  DocumentHost host;
  host.SetSources({file, file});
  EXPECT_EQ(Listed(host, temp.Path()), (Lines{"Bericht [Bericht.BAS]", "  Modul1 1 3 Bericht.BAS"}));
}

TEST(DocumentHost, VbProjectNamesItsModules) {
  const files::ScratchFolder temp;
  temp.Write("src/Helfer.bas", "Attribute VB_Name = \"Anders\"\r\n1\r\n2\r\n3");
  temp.Write("src/Sub/KUNDE.CLS", "VERSION 1.0 CLASS\r\nBEGIN\r\nEND\r\nAttribute VB_Name = \"Kunde\"\r\n1");
  temp.Write("Maske.frm", "VERSION 5.00\nBegin VB.Form Maske\nEnd\nAttribute VB_Name = \"frmMaske\"\n1\n2");
  temp.Write("\303\234bersicht.ctl", "1");
  temp.Write("daneben/alt.mod", "1");
  const fs::path project = temp.Write(
      "vb/Auftrag.vbp",
      "Type=Exe\r\nForm=\"..\\Maske.frm\"\r\nReference=*\\G{0}#2.0#0#x.tlb#\r\n module = Helfer "
      ";..\\SRC\\helfer.BAS\r\n"
      "Class=;..\\src\\SUB\\kunde.cls\r\nUserControl=..\\\374bersicht.CTL\r\nModule=Alt; ..\\daneben\\alt.mod\r\n"
      "Module=Weg; ..\\fehlt.bas\r\nDesigner=..\\src\\Sub\r\nName=\"Auftr\344ge\"\r\nHelpFile=\"\"\r\n");
  DocumentHost host;
  host.SetSources({project});
  EXPECT_EQ(
      Listed(host, temp.Path()),
      (Lines{"Auftr\344ge [vb/Auftrag.vbp]", "  frmMaske 3 2 Maske.frm", "  Helfer 1 3 src/Helfer.bas",
             "  Kunde 2 1 src/Sub/KUNDE.CLS", "  \334bersicht 11 1 \303\234bersicht.ctl", "  Alt 1 1 daneben/alt.mod",
             "fehlt.bas: Datei existiert nicht", "src/Sub: Ist ein Ordner, keine Datei"}));
}

TEST(DocumentHost, VbProjectInUtf8WithoutAName) {
  const files::ScratchFolder temp;
  temp.Write("\xCE\xB1\xC3\xA4.bas", "1");
  const fs::path project = temp.Write("Plan.VBP", "\xEF\xBB\xBFmodule=\xC3\x84; \xCE\xB1\xC3\xA4.bas");
  DocumentHost host;
  host.SetSources({project});
  EXPECT_EQ(Listed(host, temp.Path()), (Lines{"Plan [Plan.VBP]", "  \304 1 1 \xCE\xB1\xC3\xA4.bas"}));
}

TEST(DocumentHost, WhatCannotBeReadIsAProblem) {
  const files::ScratchFolder temp;
  temp.Write("gut/a.bas", "1\n2\n3");
  temp.Write("gut/leer.bas", "");
  temp.Write("gut/muell.bas", "MZ\0\1\2"sv);
  temp.Write("gut/muell16.bas", "\377\376a\0\0\0b\0"sv);
  temp.Write("nur leer/leer.cls", "");
  fs::create_directories(temp / "ohne/x.bas");
  temp.Write("text.xyz", "Sub A()");
  temp.Write("nichts.vbp", "Name=N\r\n");
  temp.Write("ins Leere.vbp", "Module=A; weg\\a.bas\r\n");
  fs::resize_file(temp.Write("gross.frm", "x"), (128U << 20U) + 1);
  temp.Write("lang/viele.bas", std::string(5'000'000, '\n'));
  temp.Write("lang/zu viele.bas", std::string(5'000'001, '\r'));
  DocumentHost host;
  host.SetSources({temp / "fehlt.bas", temp / "gut", temp / "nur leer", temp / "ohne", temp / "ohne/x.bas",
                   temp / "text.xyz", temp / "nichts.vbp", temp / "ins Leere.vbp", temp / "gross.frm", temp / "lang"});
  EXPECT_EQ(
      Listed(host, temp.Path()),
      (Lines{"gut [gut]", "  a 1 3 gut/a.bas", "lang [lang]", "  viele 1 5000000 lang/viele.bas",
             "fehlt.bas: Datei existiert nicht", "gut/leer.bas: Datei ist leer",
             "gut/muell.bas: Datei enthält keinen Text", "gut/muell16.bas: Datei enthält keinen Text",
             "nur leer/leer.cls: Datei ist leer", "ohne: Ordner enthält keine Module",
             "ohne/x.bas: Ordner enthält keine Module", "text.xyz: Diese Dateiart kann nicht eingelesen werden",
             "nichts.vbp: Projektdatei nennt keine Module", "weg/a.bas: Datei existiert nicht",
             "gross.frm: Datei ist zu groß für ein Modul", "lang/zu viele.bas: Datei ist zu groß für ein Modul"}));
}

#ifndef _WIN32
TEST(DocumentHost, LinksAndPipes) {
  const files::ScratchFolder temp;
  temp.Write("fern/a.bas", "1");
  fs::create_directories(temp / "quelle");
  fs::create_symlink("nirgends", temp / "quelle/tot.bas");
  fs::create_symlink("kreis.bas", temp / "quelle/kreis.bas");
  fs::create_symlink("../fern/a.bas", temp / "quelle/verweis.bas");
  fs::create_directory_symlink("..", temp / "quelle/hinauf");
  fs::create_directory_symlink("../fern", temp / "quelle/fern.bas");
  fs::create_directory_symlink("fern", temp / "nah");
  // A pipe without a writer would hold the program up for ever.
  ASSERT_EQ(mkfifo((temp / "quelle/rohr.bas").c_str(), 0600), 0);
  DocumentHost host;
  host.SetSources({temp / "quelle", temp / "nah", temp / "quelle/hinauf/nah/../quelle/kreis.bas"});
  EXPECT_EQ(Listed(host, temp.Path()),
            (Lines{"quelle [quelle]", "  verweis 1 1 quelle/verweis.bas", "nah [nah]", "  a 1 1 nah/a.bas",
                   "quelle/kreis.bas: Verknüpfung führt ins Leere", "quelle/rohr.bas: Datei kann nicht gelesen werden",
                   "quelle/tot.bas: Verknüpfung führt ins Leere", "quelle/kreis.bas: Verknüpfung führt ins Leere"}));
}
#endif

TEST(DocumentHost, ReadsTheFileAsItIsThen) {
  const files::ScratchFolder temp;
  const fs::path file = temp.Write("a.bas", "Attribute VB_Name = \"A\"\n1\n2\n3\n");
  const fs::path other = temp.Write("b.bas", "1");
  DocumentHost host;
  host.SetSources({temp.Path()});
  ASSERT_TRUE(host.AttachHost());
  ASSERT_EQ(host.ProjectCount(), 1);

  // A new file before it moves nothing until the next listing.
  temp.Write("0.bas", "x");
  temp.Write("a.bas", "Attribute VB_Name = \"A\"\n1\n2\n3\n4\n5");
  EXPECT_EQ(host.ComponentByName(1, "A", 1).lineCount, 5);
  // One look at the file serves both calls.
  fs::remove(file);
  EXPECT_EQ(host.Lines(1, "A", 1, 5), "1\r\n2\r\n3\r\n4\r\n5");
  EXPECT_EQ(Reason(host, "A", 1), files::PathText(file) + ": Datei existiert nicht");
  temp.Write("a.bas", "Attribute VB_Name = \"Neu\"\n1\n2\n3");
  EXPECT_EQ(Reason(host, "A", 1), files::PathText(file) + ": Datei enthält jetzt ein anderes Modul");
  EXPECT_THROW(host.Lines(1, "A", 1, 3), files::Failure);
  temp.Write("b.bas", "\0\0"sv);
  EXPECT_EQ(Reason(host, "b", 2), files::PathText(other) + ": Datei enthält keinen Text");
  EXPECT_EQ(Reason(host, "C", 1), "Das Modul ist nicht mehr vorhanden");
  EXPECT_EQ(Reason(host, "A", 9), files::PathText(file) + ": Datei enthält jetzt ein anderes Modul");
  // A few NUL bytes are blanks, those at the end nothing.
  temp.Write("a.bas", "Attribute VB_Name = \"A\"\nx\0= 1 ' as long as it takes for one to be one of many\n2\0\0\0"sv);
  EXPECT_EQ(host.Lines(1, "A", 1, 1).substr(0, 5), "x = 1");
}

TEST(DocumentHost, OpensAFileOnceForTheListingAndTheRead) {
  const files::ScratchFolder temp;
  const fs::path file = temp.Write("a.bas", "Attribute VB_Name = \"M\"\r\nSub Alt()\r\nEnd Sub\r\n");
  // Long enough ago for another change to show.
  const auto then = fs::file_time_type::clock::now() - std::chrono::hours(1);
  fs::last_write_time(file, then);
  DocumentHost host;
  host.SetSources({file});
  ASSERT_EQ(host.ProjectCount(), 1);
  temp.Write("a.bas", "Attribute VB_Name = \"M\"\r\nSub Neu()\r\nEnd Sub\r\n");
  fs::last_write_time(file, then);
  ASSERT_TRUE(host.AttachHost());
  EXPECT_EQ(host.StartReading(1, "M", 1)().code, "Sub Alt()\r\nEnd Sub");
  // What was kept is gone once it was read.
  EXPECT_EQ(host.StartReading(1, "M", 1)().code, "Sub Neu()\r\nEnd Sub");
  host.Release();
  // A change that shows is not passed by.
  ASSERT_EQ(host.ProjectCount(), 1);
  temp.Write("a.bas", "Attribute VB_Name = \"M\"\r\nSub Drei()\r\nEnd Sub\r\n");
  fs::last_write_time(file, then);
  ASSERT_TRUE(host.AttachHost());
  EXPECT_EQ(host.StartReading(1, "M", 1)().code, "Sub Drei()\r\nEnd Sub");
}

TEST(DocumentHost, LinesGivesTheFirstOnes) {
  const files::ScratchFolder temp;
  temp.Write("a.bas", "1\n2\n3\n");
  DocumentHost host;
  host.SetSources({temp.Path()});
  const struct {
    int count;
    const char* lines;
  } cases[] = {{-1, ""}, {0, ""}, {1, "1"}, {2, "1\r\n2"}, {3, "1\r\n2\r\n3"}, {4, "1\r\n2\r\n3"}};
  for (const auto& [count, lines] : cases) EXPECT_EQ(host.Lines(1, "a", 1, count), lines) << count;
}

}  // namespace
}  // namespace quillmate::host
