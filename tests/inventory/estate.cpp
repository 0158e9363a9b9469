#include "inventory/estate.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <random>
#include <stdexcept>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "office/access_writer.h"
#include "office/document_writer.h"
#include "office/signature_writer.h"
#include "office/vba_writer.h"

namespace quillmate::inventory {
namespace {

namespace fs = std::filesystem;
using namespace office;

constexpr const char* kDepartments[] = {"Einkauf", "Vertrieb", "Buchhaltung", "Lager & Versand", "Qualität", "IT"};
constexpr const char* kSubjects[] = {"Bestellungen",     "Umsatz",      "Planung",   "Inventur",
                                     "Auswertung Größe", "Preise 100%", "Prüfliste", "Etiketten"};
constexpr const char* kAuthors[] = {"Ada Beispiel", "B. Muster", "C. Probe", "Dora Test"};

struct SampleModule {
  std::string name, extension, text;
};

std::vector<SampleModule> ReadSample(const fs::path& folder) {
  std::vector<SampleModule> modules;
  for (const auto& entry : fs::directory_iterator(folder)) {
    const std::string extension = files::PathText(entry.path().extension());
    if (extension != ".bas" && extension != ".cls") continue;
    modules.push_back({files::PathText(entry.path().stem()), extension, files::ReadWholeFile(entry.path())});
  }
  if (modules.empty()) throw std::runtime_error("Das Beispiel hat keine Module");
  std::ranges::sort(modules, {}, &SampleModule::name);
  return modules;
}

class Maker {
 public:
  explicit Maker(const EstateOptions& options) : random_(options.seed), sample_(ReadSample(options.sample)) {}

  /// One file: its extension, state and bytes.
  struct Made {
    std::string extension, state, bytes;
  };
  Made Make() {
    static constexpr struct {
      unsigned share;
      Made (Maker::*make)();
    } kKinds[] = {{34, &Maker::Workbook},   {8, &Maker::Document},    {4, &Maker::NewPresentation},
                  {8, &Maker::OldWorkbook}, {5, &Maker::OldDocument}, {3, &Maker::OldPresentation},
                  {5, &Maker::Database},    {6, &Maker::ModuleFile},  {10, &Maker::PlainWorkbook},
                  {2, &Maker::Encrypted},   {2, &Maker::Locked},      {2, &Maker::CutShort},
                  {1, &Maker::Compiled},    {1, &Maker::Macros4},     {9, &Maker::Foreign}};
    unsigned total = 0;
    for (const auto& kind : kKinds) total += kind.share;
    unsigned drawn = Draw(total);
    for (const auto& kind : kKinds) {
      if (drawn < kind.share) return (this->*kind.make)();
      drawn -= kind.share;
    }
    return Foreign();
  }
  unsigned Draw(std::size_t below) { return static_cast<unsigned>(random_() % below); }

 private:
  /// A few modules of the sample. Every third document has its own state of them.
  WrittenProject Project() {
    WrittenProject project;
    project.name = "Projekt" + std::to_string(Draw(50));
    const std::size_t count = 1 + Draw(5);
    const std::size_t first = Draw(sample_.size());
    const unsigned own = Draw(3) == 0 ? 1 + Draw(100000) : 0;
    for (std::size_t i = 0; i < count; ++i) {
      const SampleModule& module = sample_[(first + i) % sample_.size()];
      std::string text = module.text;
      if (own != 0) text += "\r\nPublic Const STAND = " + std::to_string(own) + "\r\n";
      project.modules.push_back({module.extension == ".bas" ? "Module" : "Class", module.name, text});
    }
    project.references = {{"stdole", "*\\G{00020430-0000-0000-C000-000000000046}#2.0#0#C:\\Windows\\stdole2.tlb#OLE"}};
    return project;
  }
  PackageWriter Package(const std::string& main, const std::string& folder, bool macros) {
    PackageWriter writer;
    if (macros) writer.Add(folder + "/vbaProject.bin", Project().Bin());
    writer.Add(folder + "/" + main, "<" + main + "/>").Relate("", "officeDocument", "/" + folder + "/" + main);
    writer.Relate("", "core-properties", "docProps/core.xml")
        .Add("docProps/core.xml", std::string("<p><dc:creator>") + kAuthors[Draw(std::size(kAuthors))] +
                                      "</dc:creator><dcterms:created>2019-05-31T12:00:00Z</dcterms:created></p>");
    return writer;
  }
  Made Workbook() {
    PackageWriter writer = Package("workbook.xml", "xl", true);
    if (Draw(5) == 0) {
      writer.Relate("xl/workbook.xml", "externalLink", "externalLinks/externalLink1.xml")
          .Add("xl/externalLinks/externalLink1.xml", "<externalLink/>")
          .Relate("xl/externalLinks/externalLink1.xml", "externalLinkPath", "file:///Z:/Preise/Liste.xlsx");
    }
    if (Draw(10) == 0) {
      const WrittenName signer{kAuthors[Draw(std::size(kAuthors))], "Muster GmbH"};
      writer.Relate("xl/vbaProject.bin", "vbaProjectSignature", "vbaProjectSignature.bin")
          .Add("xl/vbaProjectSignature.bin", WrittenSignature{{{signer, signer}}}.Blob());
    }
    return {".xlsm", "makros", writer.File()};
  }
  Made Document() { return {".docm", "makros", Package("document.xml", "word", true).File()}; }
  Made NewPresentation() { return {".pptm", "makros", Package("presentation.xml", "ppt", true).File()}; }
  Made PlainWorkbook() { return {".xlsx", "keine", Package("workbook.xml", "xl", false).File()}; }
  std::string Globals() { return XlsRecord(0x809, Bytes<2>(0x600) + Bytes<2>(5) + Bytes<8>(0) + Bytes<4>(0)); }
  Made Compound(const char* extension, const char* stream, const std::string& bytes, const char* storage, bool locked) {
    CompoundWriter writer;
    writer.Add(stream, bytes);
    WrittenProject project = Project();
    project.locked = locked;
    project.AddTo(writer, storage);
    return {extension, locked ? "gesperrt" : "makros", writer.File()};
  }
  Made OldWorkbook() {
    return Compound(".xls", "Workbook", Globals() + XlsRecord(0x0A, ""), "_VBA_PROJECT_CUR/", false);
  }
  Made OldDocument() {
    return Compound(".doc", "WordDocument", Bytes<2>(0xA5EC) + std::string(8, 'x') + Bytes<2>(0xFE00), "Macros/",
                    false);
  }
  Made Locked() { return Compound(".xls", "Workbook", Globals() + XlsRecord(0x0A, ""), "_VBA_PROJECT_CUR/", true); }
  Made OldPresentation() {
    PresentationWriter writer;
    writer.project = Project().Bin();
    writer.olderProject = writer.project;
    return {".ppt", "makros", writer.File()};
  }
  Made Database() {
    const bool old = Draw(2) == 0;
    return {old ? ".mdb" : ".accdb", "makros",
            AccessWith(Project(), old ? AccessFormat::k97 : AccessFormat::k2007).File()};
  }
  Made Compiled() {
    WrittenProject project = Project();
    for (WrittenModule& module : project.modules) module.text.clear();
    return {".accdb", "kompiliert", AccessWith(project, AccessFormat::k2007).File()};
  }
  Made ModuleFile() {
    const SampleModule& module = sample_[Draw(sample_.size())];
    return {module.extension, "makros", module.text + "' " + std::to_string(Draw(100000)) + "\r\n"};
  }
  Made Encrypted() {
    return {".xlsx", "verschlüsselt", CompoundWriter{{{"EncryptedPackage", std::to_string(Draw(100000))}}}.File()};
  }
  Made CutShort() {
    Made made = Workbook();
    made.bytes.resize(made.bytes.size() / 2);
    made.state = "beschädigt";
    return made;
  }
  Made Macros4() {
    PackageWriter writer;
    writer.Relate("", "officeDocument", "/xl/workbook.xml")
        .Add("xl/workbook.xml", "<workbook xmlns:r='r'><sheets><sheet name='Makro1' r:id='rId1'/></sheets></workbook>")
        .Relate("xl/workbook.xml", "xlMacrosheet", "macrosheets/sheet1.xml")
        .Add("xl/macrosheets/sheet1.xml", "<macrosheet><sheetData><row><c r='A1'><f>HALT(" + std::to_string(Draw(100)) +
                                              ")</f></c></row></sheetData></macrosheet>");
    return {".xlsm", "excel4", writer.File()};
  }
  Made Foreign() { return {".txt", "fremd", "Notiz " + std::to_string(Draw(100000)) + "\n"}; }

  std::mt19937 random_;
  std::vector<SampleModule> sample_;
};

/// Folders hold 40 files or so and lie up to four deep.
fs::path FolderOf(std::size_t number) {
  constexpr std::size_t kInFolder = 40;
  std::size_t folder = number / kInFolder;
  fs::path path = files::PathFromText(kDepartments[folder % std::size(kDepartments)]);
  for (folder /= std::size(kDepartments); folder > 0; folder /= 10)
    path /= "Jahr " + std::to_string(2010 + folder % 10);
  return path;
}

void WriteFile(const fs::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error(files::PathText(path) + " kann nicht geschrieben werden");
}

}  // namespace

std::vector<EstateFile> MakeEstate(const fs::path& root, const EstateOptions& options) {
  Maker maker(options);
  std::vector<EstateFile> estate;
  std::vector<Maker::Made> recent;
  for (std::size_t i = 0; i < options.files; ++i) {
    constexpr std::size_t kRecent = 200;
    const bool copy = !recent.empty() && maker.Draw(5) == 0;
    Maker::Made made = copy ? recent[maker.Draw(recent.size())] : maker.Make();
    const fs::path folder = root / FolderOf(i);
    fs::create_directories(folder);
    const std::string name = std::string(copy ? "Kopie von " : "") + kSubjects[i % std::size(kSubjects)] + " " +
                             std::to_string(i) + made.extension;
    estate.push_back({folder / files::PathFromText(name), made.state});
    WriteFile(estate.back().path, made.bytes);
    if (recent.size() < kRecent) {
      recent.push_back(std::move(made));
    } else {
      recent[i % kRecent] = std::move(made);
    }
  }
  return estate;
}

}  // namespace quillmate::inventory
