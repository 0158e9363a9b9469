#include "startup/folder_link.h"

namespace quillmate::testing {

bool MakeFolderLink(const std::filesystem::path& target, const std::filesystem::path& link) {
  std::error_code error;
  std::filesystem::create_directory_symlink(target, link, error);
  return !error;
}

}  // namespace quillmate::testing
