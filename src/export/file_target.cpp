#include <fstream>
#include <stdexcept>

#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/paths.h>

#include "file_target_p.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const fs::path& file) {
  throw std::runtime_error("Die Datei " + codedb::PathText(file) + " kann nicht geschrieben werden.");
}

/// `named` is the file that messages speak of.
void WriteDirectly(const fs::path& file, const fs::path& named, const std::function<void(const Sink&)>& produce) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  if (!out) Fail(named);
  produce([&](std::string_view bytes) {
    if (!out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) Fail(named);
  });
  out.close();
  if (!out) Fail(named);
}

/// A name beside the target that nothing has yet.
fs::path NameBeside(const fs::path& target) {
  fs::path name = target;
  do {
    name += ".neu";
  } while (fs::exists(fs::symlink_status(name)));
  return name;
}

bool IsWritable(const fs::path& file) { return std::ofstream(file, std::ios::binary | std::ios::app).good(); }

/// A target that another program has open keeps its place where the system does not let go of it, and gets the bytes.
void PutInPlace(const fs::path& fresh, const fs::path& target) {
  try {
    codedb::RenamePath(fresh, target);
  } catch (const fs::filesystem_error&) {
    if (!fs::exists(target)) throw;
    const std::string bytes = codedb::ReadWholeFile(fresh);
    WriteDirectly(target, target, [&](const Sink& sink) { sink(bytes); });
    fs::remove(fresh);
  }
}

void WriteBeside(const fs::path& target, const std::function<void(const Sink&)>& produce) {
  const fs::path fresh = NameBeside(target);
  try {
    WriteDirectly(fresh, target, produce);
    PutInPlace(fresh, target);
  } catch (const std::exception& failure) {
    std::error_code ignored;
    fs::remove(fresh, ignored);
    if (dynamic_cast<const fs::filesystem_error*>(&failure) != nullptr) Fail(target);
    throw;
  }
}

}  // namespace

void WriteFile(const fs::path& target, const std::function<void(const Sink&)>& produce) {
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (!fs::exists(status)) {
    WriteBeside(target, produce);
  } else if (!fs::is_regular_file(status)) {
    WriteDirectly(target, target, produce);
  } else if (IsWritable(target)) {
    WriteBeside(codedb::RealPath(target), produce);
  } else {
    Fail(target);
  }
}

}  // namespace quillmate::output
