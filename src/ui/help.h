#pragma once

#include <quillmate/startup/app_globals.h>

#include "interaction.h"

namespace quillmate::ui {

/// Opens the manual at the page for the part of the window that has the focus; tells when there is no manual.
void ShowHelp(Interaction& interaction, const startup::AppGlobals& globals);

}  // namespace quillmate::ui
