#pragma once

#include <string>
#include <vector>

#include "site_contents_p.h"

/// Which module needs which others: the sure calls between routines, gathered by module.
namespace quillmate::output {

/// Module `to` is called from module `from` by so many routines of it, each counted for every routine that it calls.
struct SiteDependency {
  int from = 0;
  int to = 0;
  int count = 0;
};

/// Sorted by `from`, then `to`; none of a module on itself.
std::vector<SiteDependency> DependenciesOf(const SiteModel& model, const SiteCalls& calls);

/// For each module the number of the cycle that it belongs to, kNone when it needs nobody who needs it. Cycles are
/// numbered in the order of their first modules.
std::vector<symbols::Index> CyclesOf(std::size_t modules, const std::vector<SiteDependency>& dependencies);

/// The matrix, for up to kMatrixModules modules, and for any number what each needs and is needed by.
inline constexpr std::size_t kMatrixModules = 60;
std::string DependenciesPage(const SiteContents& site);

}  // namespace quillmate::output
