#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include <quillmate/office/compound_file.h>

#include "office/access_writer.h"

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

/// The stream of a presentation with the place of its last edit behind it.
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

void AddDatabases(Corpus& corpus, const WrittenProject& project) {
  for (const bool old : {false, true}) {
    AccessWriter writer = AccessWith(project, old);
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
  AddProject(corpus, SeedProject(1252, false));
  AddDatabases(corpus, SeedProject(1252, false));
  AddProject(corpus, SeedProject(1251, true));
  AddProject(corpus, LargeProject(3, 500));
}
