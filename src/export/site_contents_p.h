#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>

#include "site_calls_p.h"
#include "site_declarations_p.h"
#include "site_model_p.h"
#include "site_uses_p.h"

namespace quillmate::output {

/// What the pages of a site are made from.
struct SiteContents {
  explicit SiteContents(const SiteProject& project);
  SiteContents(const SiteContents&) = delete;
  SiteContents& operator=(const SiteContents&) = delete;

  SiteModel model;
  SiteUses uses;
  SiteDeclarations declarations;
  SiteCalls calls;
  std::vector<checks::Finding> findings;  ///< by module, then place
  checks::Metrics metrics;

  /// What is on a control, as far as the source has told; UTF-8.
  std::string_view Caption(symbols::Index module, std::string_view control) const;

 private:
  void ReadCaptions();

  std::unordered_map<std::string, std::string> captions_;
};

}  // namespace quillmate::output
