#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <array>
#include <filesystem>

#include <quillmate/project/compared_state.h>
#include <quillmate/ui/platform.h>

namespace quillmate::ui {

/// A state that can be chosen by name.
struct StateOffer {
  QString name;
  QString path;
};

/// Asks which two states are to be compared, and what counts as no difference.
class CompareChoice : public QDialog {
  Q_OBJECT

 public:
  /// `offers`: what is likely to be meant, the project on screen first. `oldPath`, `newPath`: to begin with; may be
  /// empty.
  CompareChoice(QWidget* parent, Platform& platform, std::vector<StateOffer> offers, const QString& oldPath,
                const QString& newPath, const QString& startFolder);

  std::filesystem::path OldPath() const;
  std::filesystem::path NewPath() const;
  symbols::CompareOptions Options() const;

 private:
  QWidget* MakeSide(std::size_t side, const QString& caption);
  QWidget* MakeIgnored();
  QString PathOf(std::size_t side) const;
  void SetPath(std::size_t side, const QString& path);
  void Browse(std::size_t side, bool folder);
  void Judge();

  Platform& platform_;
  const std::vector<StateOffer> offers_;
  const QString startFolder_;
  std::array<QComboBox*, 2> fields_{};
  std::array<QCheckBox*, 3> ignored_{};
  QLabel* problem_;
  QPushButton* ok_;
};

}  // namespace quillmate::ui
