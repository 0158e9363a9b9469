#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "site_model_p.h"

/// Who surely calls whom among the routines of the index, for all of them at once.
namespace quillmate::output {

class SiteCalls {
 public:
  SiteCalls() = default;
  explicit SiteCalls(const SiteModel& model);

  /// Positions in the model, each once; callees in the order of their first calls, callers in the order of the model.
  const std::vector<int>& Callees(int routine) const { return callees_[static_cast<std::size_t>(routine)]; }
  const std::vector<int>& Callers(int routine) const { return callers_[static_cast<std::size_t>(routine)]; }

 private:
  std::vector<std::vector<int>> callees_, callers_;
};

}  // namespace quillmate::output
