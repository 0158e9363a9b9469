#pragma once

#include "site_declarations_p.h"
#include "site_model_p.h"
#include "site_uses_p.h"

namespace quillmate::output {

/// What the pages of a site are made from.
struct SiteContents {
  explicit SiteContents(const SiteProject& project) : model(project), uses(model), declarations(model, uses) {}
  SiteContents(const SiteContents&) = delete;
  SiteContents& operator=(const SiteContents&) = delete;

  SiteModel model;
  SiteUses uses;
  SiteDeclarations declarations;
};

}  // namespace quillmate::output
