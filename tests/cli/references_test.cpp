#include <fstream>
#include <sstream>

#include <quillmate/codedb/index_files.h>

#include "process.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

const fs::path kReferences = QUILLMATE_SOURCE_DIR "/tests/cli/reference";

struct Reference {
  fs::path file;
  std::vector<std::string> arguments;
};

/// The list in commands.txt.
std::vector<Reference> ReadReferences() {
  std::vector<Reference> references;
  std::ifstream list(kReferences / "commands.txt");
  for (std::string line; std::getline(list, line);) {
    std::istringstream words(line.substr(0, line.find('#')));
    Reference reference;
    if (words >> reference.file) {
      for (std::string word; words >> word;) {
        reference.arguments.push_back(word);
      }
      references.push_back(reference);
    }
  }
  return references;
}

/// The sample project through every command, byte for byte. scripts/renew-references renews the files.
TEST_F(CliTest, References) {
  const std::vector<Reference> references = ReadReferences();
  ASSERT_FALSE(references.empty());
  for (const Reference& reference : references) {
    std::vector<std::string> arguments = reference.arguments;
    arguments.emplace_back(QUILLMATE_SOURCE_DIR "/samples/Lagerverwaltung");
    const Result result = Run(arguments);
    EXPECT_EQ(result.err, "");
    const fs::path expected = kReferences / reference.file;
    if (codedb::ReadWholeFile(expected) != result.out) {
      const fs::path actual = Write(reference.file.string(), result.out);
#ifdef _WIN32
      ADD_FAILURE() << expected << " and " << actual << " differ";
#else
      const Result diff = RunAt("/usr/bin/diff", {"-u", "-a", expected.string(), actual.string()});
      ADD_FAILURE() << diff.out.substr(0, 20000);
#endif
    }
  }
}

}  // namespace
}  // namespace quillmate::cli
