#include "run_options.h"

#include <quillmate/settings/settings_store.h>
#include <quillmate/startup/edition.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::cli {

settings::Options RunOptions(const Invocation& invocation) {
  settings::Options options;
  if (invocation.userSettings) {
    settings::LoadOptions(*settings::OpenSettings(startup::SettingsRootOf(invocation.edition)), options);
  }
  for (const auto& [key, value] : invocation.settings) {
    settings::SetOption(options, key, value);
  }
  return options;
}

analysis::ScanOptions ScanOptionsOf(const settings::Options& options) {
  return {.indent = options.einr,
          .indentBodies = options.rer,
          .removeEmptyLines = options.leer,
          .emptyLineBeforeRoutines = options.rle};
}

output::RtfOptions RtfOptionsOf(const settings::Options& options) {
  return {.keywordColour = options.fkey,
          .commentColour = options.fkom,
          .stringColour = options.fstr,
          .fontName = text::CodeFromUtf8(options.fontName),
          .fontSize = options.fontSize,
          .tabWidth = options.tab,
          .boldRoutines = options.rouf};
}

output::HtmlOptions HtmlOptionsOf(const settings::Options& options) {
  return {.keywordColour = options.fkey,
          .commentColour = options.fkom,
          .stringColour = options.fstr,
          .fontName = text::CodeFromUtf8(options.fontName),
          .fontSize = options.fontSize,
          .boldRoutines = options.rouf};
}

output::SiteStyle SiteStyleOf(const settings::Options& options) {
  return {.keywordColour = options.fkey,
          .commentColour = options.fkom,
          .stringColour = options.fstr,
          .boldRoutines = options.rouf};
}

}  // namespace quillmate::cli
