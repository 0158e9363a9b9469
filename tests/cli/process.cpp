#include "process.h"

#include <iomanip>
#include <ostream>
#include <sstream>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>

namespace quillmate::cli {

CliTest::~CliTest() {
  EXPECT_TRUE(fs::is_empty(Scratch())) << "The program left something in its folder for temporary files";
}

Result CliTest::Run(const std::string& line, const Environment& around) const {
  return RunAt(Program(), Words(line), around);
}

Result CliTest::RunAt(const fs::path& program, const std::vector<std::string>& arguments,
                      const Environment& around) const {
  const fs::path out = Scratch() / "out";
  const fs::path err = Scratch() / "err";
  Environment whole = around;
  whole.temporary = around.temporary.empty() ? Scratch() : Folder() / around.temporary;
  const int status = RunWithFiles(program, arguments, whole, Folder(), out, err);
  Result result{status, files::ReadWholeFile(out), files::ReadWholeFile(err)};
  fs::remove(out);
  fs::remove(err);
  return result;
}

fs::path CliTest::Write(const std::string& name, std::string_view bytes) const { return folder_.Write(name, bytes); }

std::string CliTest::Read(const std::string& name) const { return files::ReadWholeFile(folder_ / name); }

std::string CliTest::Names(const std::string& folder) const { return files::Names(folder_ / folder); }

std::string CliTest::Full(const std::string& name) const { return files::PathText((folder_ / name).make_preferred()); }

std::string CliTest::Origin(const std::string& file, const std::string& project) const {
  return "\"file\":\"" + text::ReplaceAll(Full(file), "\\", "\\\\") + "\",\"project\":\"" + project + "\"";
}

std::vector<std::string> Words(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream rest(line);
  for (std::string word; rest >> std::quoted(word, '\'');) words.push_back(word);
  return words;
}

void PrintTo(const Result& result, std::ostream* stream) {
  *stream << "status " << result.status << "\n" << result.out << result.err;
}

std::string Messages(const std::vector<std::string>& texts) {
  std::string lines;
  for (const std::string& text : texts) lines += "quillmate-cli: " + text + "\n";
  return lines;
}

}  // namespace quillmate::cli
