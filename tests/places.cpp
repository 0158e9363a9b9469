#include "places.h"

namespace quillmate::tests {

std::filesystem::path SourceFolder() { return QUILLMATE_SOURCE_DIR; }

std::filesystem::path ProgramFolder() { return QUILLMATE_BIN_DIR; }

}  // namespace quillmate::tests
