#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace quillmate::inventory {

/// A path as its bytes are in memory, and the way back.
std::string MessageOf(const std::filesystem::path& path);
std::filesystem::path PathFromMessage(std::string_view bytes);

}  // namespace quillmate::inventory
