#pragma once

#include <quillmate/analysis/scanner.h>
#include <quillmate/settings/options.h>

namespace quillmate::ui {

/// How code is laid out when it is marked up.
inline analysis::ScanOptions ScanOptionsOf(const settings::Options& options) {
  return {options.einr, options.rer, options.leer, options.rle};
}

}  // namespace quillmate::ui
