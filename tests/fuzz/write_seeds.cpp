#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include <quillmate/analysis/module_indexer.h>
#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/office/compound_file.h>

#include "office/access_writer.h"
#include "office/document_writer.h"
#include "office/signature_writer.h"
#include "office/vba_writer.h"
#include "places.h"
#include "scratch.h"

/// Writes the seed corpus: a folder for each target below the one given.
namespace quillmate::office {
namespace {

namespace fs = std::filesystem;

class Corpus {
 public:
  explicit Corpus(fs::path folder) : folder_(std::move(folder)) {}

  void Add(const std::string& target, const std::string& bytes) {
    fs::create_directories(folder_ / target);
    std::ofstream(folder_ / target / ("seed" + std::to_string(++count_)), std::ios::binary) << bytes;
  }

 private:
  fs::path folder_;
  int count_ = 0;
};

WrittenProject SeedProject(int codePage, bool locked) {
  WrittenProject project;
  project.codePage = codePage;
  project.locked = locked;
  project.modules = {{"Document", "Tabelle1", DocumentModule("Tabelle1", "Sub A()\r\nEnd Sub\r\n")},
                     {"Module", "M\344", StandardModule("M\344", "' \344\366\374\r\n")},
                     {"BaseClass", "frm", StandardModule("frm", std::string(9000, 'x')), u"frm"},
                     {"Class", "K", StandardModule("K", "x\r\n"), {}, 3}};
  return project;
}

/// The stream of a presentation with the place of its last edit after it.
std::string PresentationStream(const PresentationWriter& writer) {
  const std::string bytes = writer.File();
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  const auto stream = [&](const char* name) {
    return file->ReadStream(*file->FindStream(CompoundFile::kRoot, name), bytes.size()).bytes;
  };
  return stream("PowerPoint Document") + stream("Current User").substr(16, 4);
}

void AddContainers(Corpus& corpus) {
  for (const char* text : {"", "Attribute VB_Name = \"M\"\r\n", "aaaaaaaaaaaaaaaaaaaaaaaaaaab"}) {
    corpus.Add("unpack", PackVba(text));
  }
  const std::string text = LargeProject(1, 9000).modules[0].text;
  corpus.Add("unpack", PackVba(text));
  corpus.Add("unpack", "xyz" + StoreVba(text));
}

void AddSignatures(Corpus& corpus) {
  const WrittenCertificate root{{"Wurzel", "Amt"}, {"Wurzel", "Amt"}, "\x02",
                                "490101000000Z",   "20510101000000Z", "key 1"};
  const WrittenCertificate own{{"Ada", "", true}, {"Wurzel", "Amt"}, "\x03"};
  corpus.Add("signature", WrittenSignature{{root, own}, 1}.Blob());
  corpus.Add("signature", WrittenSignature{{own, root}, 1, true}.Message());
}

void AddDatabases(Corpus& corpus, const WrittenProject& project) {
  for (const AccessFormat format : kAccessFormats) {
    AccessWriter writer = AccessWith(project, format);
    corpus.Add("access", writer.File());
    writer.moved = true;
    writer.longMaps = true;
    writer.loops = true;
    corpus.Add("access", writer.File());
    writer.noMaps = true;
    writer.pageKey = 99;
    corpus.Add("access", writer.File());
    corpus.Add("office", writer.File());
  }
}

void AddProject(Corpus& corpus, const WrittenProject& project) {
  corpus.Add("dir", project.Dir());
  corpus.Add("project", project.ProjectStream());
  const std::string bin = project.Bin();
  for (const bool deflate : {false, true}) {
    const std::string zip = ZipOf({{"[Content_Types].xml", "<x/>"}, {"xl/vbaProject.bin", bin, deflate}});
    corpus.Add("zip", zip);
    corpus.Add("office", zip);
  }
  for (const int version : {3, 4}) {
    CompoundWriter file;
    file.version = version;
    file.scattered = version == 4;
    project.AddTo(file, "Macros/");
    corpus.Add("compound", file.File());
    corpus.Add("office", file.File());
  }
  for (const bool broken : {false, true}) {
    const PresentationWriter presentation{
        .project = bin, .olderProject = bin, .packed = !broken, .brokenEdits = broken};
    corpus.Add("presentation", PresentationStream(presentation));
    corpus.Add("office", presentation.File());
  }
}

void AddDocuments(Corpus& corpus) {
  corpus.Add("drawing",
             "<d><grpSp><sp macro='[0]!A'><cNvPr id='1' name='x'/><a:t>T</a:t></sp></grpSp><x:ClientData "
             "ObjectType=\"Button\">"
             "<x:FmlaMacro>[0]!B</x:FmlaMacro></x:ClientData><button id='b' onAction='C'/></d>");
  corpus.Add("formula", "[0]!Modul1.Steuer('A'!B1,\"x\")+_xludf.Steuer(1)");
  corpus.Add("formula", std::string("\x43\1\0\0\0\x39\0\0\2\0\0\0\x17\1\0xx\x22\2\377\0", 21));
  const std::string bof = XlsRecord(0x809, Bytes<2>(0x600) + Bytes<14>(5));
  corpus.Add("records", bof + XlsRecord(0x85, Bytes<4>(60) + Bytes<3>(1) + XlsText("M")) +
                            XlsRecord(0x18, Bytes<2>(0x20) + Bytes<12>(0x100) + XlsText("\1") + "\x3A" + Bytes<6>(0)) +
                            XlsRecord(0x0A, "") + bof + XlsRecord(0xEC, Bytes<8>(15) + Bytes<8>(0xF00B0013)) +
                            XlsRecord(0x5D, Bytes<4>(0x20008) + Bytes<6>(16)) + XlsRecord(0x0A, ""));
  corpus.Add("records", XlsbRecord(39, Bytes<9>(14) + XlsbText("A")) + XlsbRecord(145, "") +
                            XlsbRecord(9, Bytes<18>(2) + Bytes<4>(5) + "\x43" + Bytes<4>(1)));
  const std::vector<DesignerSite> sites{{DesignerBlock(0).Text(0, "c").Number(7, 2, 17).Bytes(), ""}};
  CompoundWriter form;
  form.Add("f", DesignerForm("F", sites));
  form.Add("o", DesignerObjects(sites));
  corpus.Add("form", form.File());
  corpus.Add("stored_form", Bytes<4>(0xACCDEAF7) + Bytes<8>(150) + Bytes<4>(1) + Bytes<16>(0) + Bytes<8>(104) +
                                std::string("Los\0\0", 5));
  corpus.Add("stored_form", Bytes<10>(0) + Bytes<4>(0xFE) + Bytes<2>(104) + Bytes<4>(0xDC) + Bytes<2>(20) +
                                Bytes<4>(12) + Bytes<4>(4) + Bytes<4>(2) + Bytes<2>('A') + Bytes<4>(0xFD));
}

/// The display options and the kind of file in front.
void AddModules(Corpus& corpus, const WrittenProject& project) {
  for (const char choice : {'\0', '\x71', '\xf2'}) {
    for (const WrittenModule& module : project.modules) corpus.Add("module", choice + module.text);
  }
}

/// Each text after its length, lowest byte first.
std::string Parts(const std::vector<std::string>& texts) {
  std::string parts;
  for (const std::string& text : texts) {
    for (unsigned shift = 0; shift < 32; shift += 8) parts += static_cast<char>(text.size() >> shift);
    parts += text;
  }
  return parts;
}

/// An index of the program's own making, and rows for one that is none.
void AddSavedProject(Corpus& corpus) {
  const fuzz::Scratch scratch;
  const std::string code = "Sub A()\r\n    B 1 ' e\r\nEnd Sub\r\nFunction B(x)\r\nEnd Function\r\n";
  codedb::PrepareCodeDatabase(scratch.Path(), tests::ProgramFolder() / codedb::kTemplateFile);
  codedb::CodeDatabase database;
  database.OpenCodeDatabase(scratch.Path());
  analysis::ReadState state;
  std::vector<std::string> parts(1);
  for (const char* const name : {"Eins", "Zwei"}) {
    ++state.module.number.value;
    state.module.name = name;
    state.module.kind = codedb::kStandard;
    analysis::ScannedModule module(code, {});
    module.Insert(database, state);
    codedb::WriteModuleText(scratch.Path(), state.module.number, module.MarkedText());
    parts.push_back(codedb::ReadModuleText(scratch.Path(), state.module.number));
  }
  database.CloseCodeDatabase();
  parts[0] = std::string(1, '\0') + files::ReadWholeFile(codedb::CodeDbPath(scratch.Path()));
  corpus.Add("saved", Parts(parts));
  // A module with two routines, and numbers that nobody expects.
  for (const std::string& rows : {std::string("\0\1\1\350M\1\6", 7) + std::string("\1\1\1\347A\1\2\1\1\3", 10) +
                                      std::string("\1\2\1\347B\2\1\1\4\5", 10),
                                  std::string("\0\xcb\347M\xc8\xc9\1\xc8\xcb\347A\xc8\xc9\xca\xcb\xcc", 15)}) {
    parts[0] = "\1" + rows;
    corpus.Add("saved", Parts(parts));
  }
}

void AddTexts(Corpus& corpus) {
  corpus.Add("vbp",
             "Type=Exe\r\nForm=frm1.frm\r\nModule=Helpers; src\\Helpers.bas\r\nClass=K; ..\\k.cls\r\nName=\"P\"\r\n"
             "UserControl=c.ctl\r\nDesigner=d.dsr\r\n");
  for (const char* const statement : {"INSERT INTO td_mod(mod_num,mod_name) SELECT '1' AS AX1, 'a''b' AS AX2",
                                      "UPDATE td_rout SET td_rout.rou_ende = [rou_start]+([anz_dec_zeilen]-1) WHERE "
                                      "(([rou_typ]>10) And (mod_num=1));",
                                      "SELECT td_rout!rou_num, \"M\" & mod_typ AS \"x\" FROM td_mod, td_rout WHERE "
                                      "rou_name Like 'x*' ORDER BY 1, mod_num;",
                                      "SELECT Count(mod_num) AS Anzahl FROM td_mod -- 1 /* 2.5e3;"}) {
    corpus.Add("jet", statement);
  }
  corpus.Add("settings",
             "[optionen]\nfkey=8388608\neinr=-1\nfont=\"MS Sans Serif,10\"\nbis=\"10;20,5;300;400\"\ntab=5\n"
             "[quellen]\nQ0=/a/b.bas\nQ1=@ByteArray(\\xe4)\nQ10=\"x;y\", z\n[recent]\nF1=/p\n");
}

/// The sample project's modules, one by one and as a project.
void AddCode(Corpus& corpus) {
  std::string project;
  for (const auto& entry : fs::directory_iterator(tests::SourceFolder() / "samples" / "Lagerverwaltung")) {
    const std::string code = files::ReadWholeFile(entry.path());
    corpus.Add("language", code);
    project.append(project.empty() ? "" : "\f").append(code.substr(0, 8000));
  }
  corpus.Add("symbols", project);
  corpus.Add(
      "symbols",
      "Implements B\r\nPrivate WithEvents e As B\r\nSub B_A(): e.A: RaiseEvent X: End Sub\r\nEvent X()\r\n\f"
      "Public Function A(Optional p As B) As B\r\nAttribute A.VB_UserMemId = 0\r\nWith A(1)\r\n.A!k = Me.A(p:=1)\r\n"
      "End With\r\nReDim z(3)\r\nApplication.Run \"A.B_A\"\r\nEnd Function\r\nEnum E: x: End Enum\r\n\f"
      "Type T: m As T: End Type\r\nSub S(t As T): t.m.m.m = x: GoTo 1: y = t: End Sub\r\n");
}

}  // namespace
}  // namespace quillmate::office

int main(int argc, char** argv) {
  using namespace quillmate::office;
  if (argc != 2) {
    std::cerr << "write_seeds FOLDER\n";
    return 2;
  }
  Corpus corpus(argv[1]);
  AddContainers(corpus);
  AddSignatures(corpus);
  AddProject(corpus, SeedProject(1252, false));
  AddDatabases(corpus, SeedProject(1252, false));
  AddProject(corpus, SeedProject(1251, true));
  AddProject(corpus, LargeProject(3, 500));
  AddDocuments(corpus);
  AddModules(corpus, SeedProject(1252, false));
  AddModules(corpus, LargeProject(3, 500));
  AddSavedProject(corpus);
  AddTexts(corpus);
  AddCode(corpus);
}
