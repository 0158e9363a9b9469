#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <quillmate/inventory/scan.h>

namespace quillmate::inventory {

/// The command that makes this very program a reader.
std::vector<std::string> OwnReader();

/// One folder, or a part of it, read by one process.
inline ScanOptions Options(const std::filesystem::path& root, unsigned shard = 1, unsigned shards = 1) {
  ScanOptions options;
  options.roots = {root};
  options.jobs = 1;
  options.shard = shard;
  options.shards = shards;
  options.readerCommand = OwnReader();
  return options;
}

}  // namespace quillmate::inventory
