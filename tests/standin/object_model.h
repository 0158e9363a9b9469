#pragma once

#include "dispatch_object.h"
#include "options.h"
#include "projects.h"

namespace quillmate::standin {

/// All that the objects share; outlives them.
struct Model {
  Options options;
  Projects projects;
  Traffic traffic{};
  /// Set when the host is to end.
  HANDLE stop = nullptr;
  int attached = 0;
};

/// The application object; the caller owns the reference.
IDispatch* MakeApplication(Model& model);

}  // namespace quillmate::standin
