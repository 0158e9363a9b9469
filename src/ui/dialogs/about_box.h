#pragma once

#include <QDialog>
#include <QString>

#include <quillmate/startup/app_globals.h>

#include "interaction.h"

namespace quillmate::ui {

/// Program, libraries and machine, one a line: what a report of a fault should hold.
QString SystemInformation(const startup::AppGlobals& globals);

/// The about box `frmInfo`: what program this is and what it runs on. Deletes itself when it is closed.
class AboutBox : public QDialog {
  Q_OBJECT

 public:
  AboutBox(QWidget* parent, Interaction& interaction, const startup::AppGlobals& globals);

 signals:
  void ManualWanted();
};

}  // namespace quillmate::ui
