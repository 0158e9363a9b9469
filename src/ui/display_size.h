#pragma once

#include <QWidget>

#include <quillmate/settings/options.h>
#include <quillmate/settings/settings_store.h>

#include "interaction.h"

/// The user's place and size for the window, kept in the option `bis`.
namespace quillmate::ui {

/// Keeps those of the window after a question.
void StoreDisplaySize(const QWidget& window, Interaction& interaction, settings::Options& options,
                      settings::SettingsStore& store);
/// Puts the window there; tells when what is kept is no place on any screen.
void ApplyStoredDisplaySize(QWidget& window, Interaction& interaction, const settings::Options& options);

}  // namespace quillmate::ui
