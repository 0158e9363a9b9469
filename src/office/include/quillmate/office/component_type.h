#pragma once

namespace quillmate::office {

/// Kind of a module as the host's editor numbers it. kOtherComponent stands for every further number (user controls,
/// property pages, user documents, designers).
enum ComponentType : int { kStdModule = 1, kClassModule = 2, kMSForm = 3, kOtherComponent = 11, kHostDocument = 100 };

}  // namespace quillmate::office
