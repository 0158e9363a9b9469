#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>

/// Which file or folder it is, whatever path, link or second name leads to it.
namespace quillmate::files {

struct FileIdentity {
  std::uint64_t volume = 0;
  std::array<std::uint64_t, 2> number{};
  auto operator<=>(const FileIdentity&) const = default;
};

/// Links are followed; nothing for what does not exist or must not be looked at.
std::optional<FileIdentity> IdentityOf(const std::filesystem::path& path) noexcept;

class IdentitySet {
 public:
  void Add(const std::filesystem::path& path) {
    if (const auto identity = IdentityOf(path)) identities_.insert(*identity);
  }
  bool Contains(const std::filesystem::path& path) const {
    const auto identity = IdentityOf(path);
    return identity && identities_.contains(*identity);
  }

 private:
  std::set<FileIdentity> identities_;
};

}  // namespace quillmate::files
