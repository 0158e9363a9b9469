#include "compare_commands.h"

#include <QFileInfo>
#include <algorithm>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/office/module_file.h>
#include <quillmate/project/saved_projects.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

/// What may be a state of the same thing.
enum class Sort { kFolder, kModule, kDocument };

Sort SortOf(const QFileInfo& file) {
  if (file.isDir()) return Sort::kFolder;
  return office::IsModuleFileExtension("." + ToUtf8(file.suffix())) ? Sort::kModule : Sort::kDocument;
}

}  // namespace

CompareCommands::CompareCommands(QWidget& window, const ListDesk& desk, symbols::Host assumed)
    : window_(window), desk_(desk), assumed_(assumed) {}

bool CompareCommands::IsLoaded(const fs::path& path) const {
  return desk_.session.IsLoaded() && path == desk_.session.Folder();
}

QString CompareCommands::TitleOf(const fs::path& path) const {
  return IsLoaded(path) ? QStringLiteral("Geladenes Projekt ") + FromUtf8(desk_.session.Title()) : FromPath(path);
}

std::vector<StateOffer> CompareCommands::Offers() const {
  std::vector<StateOffer> offers;
  if (desk_.session.IsLoaded()) {
    offers.push_back({TitleOf(desk_.session.Folder()), FromPath(desk_.session.Folder())});
  }
  for (const std::string& folder : recent_) {
    const fs::path path = files::PathFromText(folder);
    if (!IsLoaded(path)) offers.push_back({FromPath(path), FromPath(path)});
  }
  return offers;
}

void CompareCommands::Choose() {
  const QString loaded = desk_.session.IsLoaded() ? FromPath(desk_.session.Folder()) : QString();
  auto* choice = new CompareChoice(&window_, desk_.interaction.Desktop(), Offers(), {}, loaded,
                                   FromUtf8(desk_.globals.LastProjectFolder));
  connect(choice, &QDialog::accepted, this,
          [this, choice] { Compare(choice->OldPath(), choice->NewPath(), choice->Options()); });
  choice->open();
}

bool CompareCommands::TakeDropped(const QStringList& files) {
  if (files.size() != 2) return false;
  QFileInfo older(files[0]), newer(files[1]);
  if (SortOf(older) != SortOf(newer)) return false;
  if (newer.lastModified() < older.lastModified()) std::swap(older, newer);
  const Answer answer =
      desk_.interaction.Show("Sind das zwei Stände desselben Projekts?\r\n\r\nJa: vergleichen, " +
                                 ToUtf8(older.fileName()) + " als alten Stand\r\nNein: beide als Quellen hinzufügen",
                             MessageIcon::kQuestion, Buttons::kYesNoCancel);
  if (answer == Answer::kYes) Compare(ToPath(older.filePath()), ToPath(newer.filePath()), {});
  return answer != Answer::kNo;
}

void CompareCommands::Compare(const fs::path& oldPath, const fs::path& newPath,
                              const symbols::CompareOptions& options) {
  CompareSetup setup{.request = {oldPath, newPath, assumed_, options},
                     .oldTitle = TitleOf(oldPath),
                     .newTitle = TitleOf(newPath),
                     .loaded = std::nullopt};
  if (IsLoaded(newPath)) setup.loaded = symbols::Side::kNew;
  if (IsLoaded(oldPath)) setup.loaded = symbols::Side::kOld;
  auto* window = new CompareWindow(&window_, desk_, std::move(setup));
  connect(window, &CompareWindow::PlaceWanted, this, &CompareCommands::PlaceWanted);
  window->show();
}

void CompareCommands::ForEachWindow(const std::function<void(CompareWindow&)>& run) const {
  for (CompareWindow* window : window_.findChildren<CompareWindow*>(Qt::FindDirectChildrenOnly)) run(*window);
}

void CompareCommands::ForgetLoaded() {
  ForEachWindow([](CompareWindow& window) { window.ForgetLoaded(); });
}

void CompareCommands::FinishReading() {
  ForEachWindow([](CompareWindow& window) { window.FinishReading(); });
}

void CompareCommands::CloseAll() {
  ForEachWindow([](CompareWindow& window) { delete &window; });
}

}  // namespace quillmate::ui
