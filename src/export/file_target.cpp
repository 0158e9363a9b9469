#include <cerrno>
#include <fstream>
#include <system_error>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "file_target_p.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

/// `named` is the file that messages speak of.
void WriteDirectly(const fs::path& file, const fs::path& named, const std::function<void(const Sink&)>& produce) {
  errno = 0;
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  if (!out) files::FailToWrite(named, errno);
  produce([&](std::string_view bytes) {
    if (!out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
      files::FailToWrite(named, errno);
    }
  });
  out.close();
  if (!out) files::FailToWrite(named, errno);
}

/// A name beside the target that nothing has yet.
fs::path NameBeside(const fs::path& target) {
  fs::path name = target;
  std::error_code unknown;
  do {
    name += ".neu";
  } while (fs::exists(fs::symlink_status(name, unknown)));
  return name;
}

bool IsWritable(const fs::path& file) { return std::ofstream(file, std::ios::binary | std::ios::app).good(); }

/// A target that another program has open keeps its place where the system does not let go of it, and gets the bytes.
void PutInPlace(const fs::path& fresh, const fs::path& target) {
  try {
    files::RenamePath(fresh, target);
  } catch (const fs::filesystem_error&) {
    if (!fs::exists(target)) throw;
    const std::string bytes = files::ReadWholeFile(fresh);
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
    const auto* const file = dynamic_cast<const fs::filesystem_error*>(&failure);
    if (file == nullptr) throw;
    // A system's own number means nothing to whoever words the reason.
    const std::error_condition reason = file->code().default_error_condition();
    files::FailToWrite(target, reason.category() == std::generic_category() ? reason.value() : 0);
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
    WriteBeside(files::RealPath(target), produce);
  } else {
    files::FailToWrite(target, EACCES);
  }
}

}  // namespace quillmate::output
