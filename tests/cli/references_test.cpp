#include <fstream>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>

#include "places.h"
#include "process.h"

namespace quillmate::cli {
namespace {

const fs::path kReferences = tests::SourceFolder() / "tests/cli/reference";

/// Paths as seen from the checkout's own folder, wherever it lies.
std::string WithoutCheckout(const std::string& json) {
  const std::string folder = files::PathText(fs::absolute(tests::SourceFolder()).lexically_normal()) + "/";
  const std::string plain = text::ReplaceAll(json, "\\\\", "/");
  return text::ReplaceAll(plain, text::ReplaceAll(folder, "\\", "/"), "");
}

/// The sample project through every command of the list in commands.txt, byte for byte. scripts/renew-references renews
/// the files.
TEST_F(CliTest, References) {
  int references = 0;
  std::ifstream list(kReferences / "commands.txt");
  for (std::string line; std::getline(list, line);) {
    std::vector<std::string> arguments = Words(line.substr(0, line.find('#')));
    if (arguments.empty()) continue;
    const std::string file = arguments.front();
    arguments.erase(arguments.begin());
    arguments.push_back((tests::SourceFolder() / "samples/Lagerverwaltung").string());
    Result result = RunAt(Program(), arguments);
    if (file.ends_with(".json")) result.out = WithoutCheckout(result.out);
    EXPECT_EQ(result.err, "");
    ++references;
    const fs::path expected = kReferences / file;
    if (files::ReadWholeFile(expected) == result.out) continue;
    const fs::path actual = Write(file, result.out);
#ifdef _WIN32
    ADD_FAILURE() << expected << " and " << actual << " differ";
#else
    const Result diff = RunAt("/usr/bin/diff", {"-u", "-a", expected.string(), actual.string()});
    ADD_FAILURE() << diff.out.substr(0, 20000);
#endif
  }
  EXPECT_GT(references, 0);
}

}  // namespace
}  // namespace quillmate::cli
