#include "title.h"

#include <filesystem>

#include <quillmate/files/paths.h>

namespace quillmate::cli {

namespace fs = std::filesystem;

std::string TitleOf(const Invocation& invocation) {
  if (invocation.title) return *invocation.title;
  if (invocation.host || invocation.inputs.size() > 1) return "Makroprojekt";
  const fs::path input = files::RealPath(files::PathFromText(invocation.inputs.front()));
  return files::PathText(fs::is_directory(input) ? input.filename() : input.stem());
}

}  // namespace quillmate::cli
