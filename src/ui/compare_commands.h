#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

#include "compare_choice.h"
#include "compare_window.h"
#include "table_file.h"

namespace quillmate::ui {

/// "Vergleichen mit ...": which states, and the windows that show what changed.
class CompareCommands : public QObject {
  Q_OBJECT

 public:
  /// `assumed`: where a project runs that does not tell. Windows appear over `window`; everything must outlive it.
  CompareCommands(QWidget& window, const ListDesk& desk, symbols::Host assumed);

  /// Asks which states are meant; the project on screen is the new one.
  void Choose();
  /// Two files or folders were dropped: asks whether they are two states. True when they are compared, or nothing is to
  /// happen with them.
  bool TakeDropped(const QStringList& files);
  /// The project folders opened last, to be offered.
  void SetRecent(const std::vector<std::string>& folders) { recent_ = folders; }

  /// The project on screen leaves.
  void ForgetLoaded();
  /// Its files are copied: nobody may be reading them.
  void FinishReading();
  /// The run ends.
  void CloseAll();

 signals:
  /// A place of the project on screen: module and line of its understanding.
  void PlaceWanted(symbols::Index module, std::uint32_t line);

 private:
  void Compare(const std::filesystem::path& oldPath, const std::filesystem::path& newPath,
               const symbols::CompareOptions& options);
  std::vector<StateOffer> Offers() const;
  QString TitleOf(const std::filesystem::path& path) const;
  bool IsLoaded(const std::filesystem::path& path) const;
  void ForEachWindow(const std::function<void(CompareWindow&)>& run) const;

  QWidget& window_;
  const ListDesk desk_;
  const symbols::Host assumed_;
  std::vector<std::string> recent_;
};

}  // namespace quillmate::ui
