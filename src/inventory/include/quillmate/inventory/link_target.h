#pragma once

#include <string>
#include <string_view>

/// Where links of documents lead to, as far as their text and the file's folder tell.
namespace quillmate::inventory {

/// The name of the file that a link leads to, in lower case as targets are looked up by; empty for an address in the
/// net, a connection and whatever else is no file.
std::string TargetName(std::string_view target);

/// The path that a link of a file in `folder` (as stored) leads to: with "/" between names, without "." and "..", in
/// lower case. Empty as above.
std::string TargetPath(std::string_view target, std::string_view folder);

}  // namespace quillmate::inventory
