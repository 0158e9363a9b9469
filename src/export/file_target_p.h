#pragma once

#include <filesystem>
#include <functional>

#include <quillmate/export/sink.h>

namespace quillmate::output {

/// Writes what `produce` hands to its sink into a file. The bytes go into a new file beside the target, which takes the
/// target's place at the end; when anything fails it is removed, and an earlier file stays as it was. A link is
/// followed; a target that is no plain file is written to directly. Throws std::runtime_error (UTF-8, names the file)
/// and what `produce` throws.
void WriteFile(const std::filesystem::path& target, const std::function<void(const Sink&)>& produce);

}  // namespace quillmate::output
