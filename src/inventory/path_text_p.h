#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace quillmate::inventory {

/// A path, or a name, as it is in the database: schema.h tells which bytes are escaped.
std::string StoredText(const std::filesystem::path& path);
/// The way back, exactly.
std::filesystem::path PathOfStored(std::string_view stored);

/// A number for a path that is the same on every machine: what shards are made by.
std::uint64_t PathHash(std::string_view stored) noexcept;

}  // namespace quillmate::inventory
