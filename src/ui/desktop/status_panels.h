#pragma once

#include <QLabel>
#include <QStatusBar>
#include <QString>
#include <QToolButton>
#include <array>

namespace quillmate::ui {

/// The status bar `staBar`: five panels, known by their numbers from 1 on. Panels 3 and 4 are the buttons "<<" and
/// ">>".
class StatusPanels : public QStatusBar {
  Q_OBJECT

 public:
  static constexpr int kModule = 1;
  static constexpr int kRoutine = 2;
  static constexpr int kBack = 3;
  static constexpr int kNext = 4;
  static constexpr int kProgress = 5;

  explicit StatusPanels(QWidget* parent = nullptr);

  void SetText(int panel, const QString& text);
  /// Empties module, routine and progress; the arrows keep theirs.
  void ClearTexts();
  /// Shows a text in panel 5, at once where no events are handled during a long operation.
  void ShowProgress(const QString& text, bool atOnce);
  /// Switches an arrow on or off.
  void SetEnabled(int panel, bool enabled);

 signals:
  /// An arrow was clicked.
  void BackClicked();
  void NextClicked();
  /// The routine was double-clicked.
  void RoutineActivated();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLabel* Label(int panel) const;

  std::array<QLabel*, 3> labels_{};
  std::array<QToolButton*, 2> arrows_{};
};

}  // namespace quillmate::ui
