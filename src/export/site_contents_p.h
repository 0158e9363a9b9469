#pragma once

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
  explicit SiteContents(const SiteProject& project)
      : model(project),
        uses(model),
        declarations(model, uses),
        calls(model),
        findings(checks::RunChecks(model.known)),
        metrics(checks::Measure(model.known)) {}
  SiteContents(const SiteContents&) = delete;
  SiteContents& operator=(const SiteContents&) = delete;

  SiteModel model;
  SiteUses uses;
  SiteDeclarations declarations;
  SiteCalls calls;
  std::vector<checks::Finding> findings;  ///< by module, then place
  checks::Metrics metrics;
};

}  // namespace quillmate::output
