#pragma once

#include <QSplitter>
#include <string>
#include <string_view>

#include <quillmate/settings/settings_store.h>

#include "code_area.h"
#include "command_set.h"
#include "project_panel.h"

namespace quillmate::ui {

/// How code and tree are shown, set while working and kept for the next run: section "ansicht" of the settings with the
/// flags `zeilennummern`, `quellreihenfolge`, `sofortlesen`, `genauegliederung`, `deklarationen` and `routinenkopf`
/// ("-1"/"0"), the number `schrift`, points added to the code's font, and `teiler`, the tree's width in twips.
class ViewSettings {
 public:
  /// Everything must outlive it.
  ViewSettings(settings::SettingsStore& store, CodeArea& code, ProjectPanel& tree, CommandSet& commands);

  /// Applies what is stored. A width of the tree that does not fit the window is left out of account.
  void Load(QSplitter& splitter);
  void SaveSplitterPlace(const QSplitter& splitter);

  /// Line numbers beside the code; on unless the user has switched them off.
  void SwitchLineNumbers();
  /// Routines in the tree as they are in the code instead of by name.
  void SwitchSourceOrder();
  /// The routines of the code in the tree instead of those of the index.
  void SwitchExactOutline();
  /// What the modules declare beside their routines in the tree; off unless the user has switched it on.
  void SwitchDeclarations();
  /// The header of the routine stays above the code; on unless the user has switched it off.
  void SwitchHeader();
  /// A single document is read as soon as it is added; on unless the user has switched it off.
  void SwitchReadAtOnce();
  /// Makes the code's font larger or smaller by some points, 0 brings the size of the options back.
  void ChangeFont(int steps);

 private:
  std::string Read(std::string_view key) const;
  void Write(std::string_view key, const std::string& value);
  int FontSteps() const;
  void ApplyLineNumbers(bool on);
  void ApplySourceOrder(bool on);
  void ApplyExactOutline(bool on);
  void ApplyDeclarations(bool on);
  void ApplyHeader(bool on);

  settings::SettingsStore& store_;
  CodeArea& code_;
  ProjectPanel& tree_;
  CommandSet& commands_;
};

}  // namespace quillmate::ui
