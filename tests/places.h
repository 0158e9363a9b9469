#pragma once

#include <filesystem>

/// Where the tests find what they run and compare with.
namespace quillmate::tests {

/// The project's own folder, absolute.
std::filesystem::path SourceFolder();
/// The build's folder of programs, with the template of the index in it; absolute.
std::filesystem::path ProgramFolder();

}  // namespace quillmate::tests
