#pragma once

#include <QDialog>
#include <QString>

namespace quillmate::ui {

class Shell;

inline constexpr const char* kHomePage = "https://quillmate.example/";

/// Program, libraries and machine, one a line: what a report of a fault should hold.
QString SystemInformation(const Shell& shell);

/// The about box `frmInfo`: what program this is and what it runs on. Deletes itself when it is closed.
class AboutBox : public QDialog {
 public:
  explicit AboutBox(Shell& shell);
};

}  // namespace quillmate::ui
