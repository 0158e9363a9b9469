#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <vector>

#include <quillmate/settings/options.h>
#include <quillmate/settings/settings_store.h>
#include <quillmate/startup/app_globals.h>

#include "colour_frame.h"
#include "interaction.h"

namespace quillmate::ui {

/// The options dialog `frmOptionen`. OK stores everything and is then told as `accepted`; Abbrechen leaves all as it
/// was. Deletes itself when it is closed.
class OptionsDialog : public QDialog {
 public:
  OptionsDialog(QWidget* parent, Interaction& interaction, startup::AppGlobals& globals,
                settings::SettingsStore& store);

 private:
  struct Flag {
    QCheckBox* box;
    bool settings::Options::*option;
  };

  QWidget* MakeDisplayPage();
  QWidget* MakeFilesPage();
  QWidget* MakeDatabaseFrame();
  QWidget* MakeFolderFrame();
  QWidget* MakeCodePage();
  QWidget* MakeReadingRow();
  QWidget* MakeFormatsPage();
  QWidget* MakeFontRow();
  /// Check boxes of a page of the table of switches.
  QWidget* MakeFlagPage(int page);

  void Load();
  void ShowSampleFont();
  void ChooseFolder();
  void MakeFolder();
  void Store();

  Interaction& interaction_;
  startup::AppGlobals& globals_;
  settings::SettingsStore& store_;
  std::vector<Flag> flags_;
  QLineEdit* txtSpeichern_ = nullptr;
  ColourFrame* fraKeyfarbe_ = nullptr;
  ColourFrame* fraKomFarbe_ = nullptr;
  ColourFrame* fraStringFarbe_ = nullptr;
  QComboBox* cboSchriftArt_ = nullptr;
  QComboBox* cboSchriftGr_ = nullptr;
  QComboBox* cboTabStop_ = nullptr;
  QCheckBox* chkExcel4_ = nullptr;
  QComboBox* cboZeichensatz_ = nullptr;
  QLabel* lblSchrift_ = nullptr;
};

}  // namespace quillmate::ui
