#pragma once

#include <cstddef>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/navigation/code_views.h>
#include <quillmate/navigation/history.h>
#include <quillmate/navigation/project_texts.h>
#include <quillmate/navigation/project_tree.h>
#include <quillmate/navigation/routine_lines.h>
#include <quillmate/navigation/search.h>

/// The project that is loaded: where it is, whether it is saved, and where in its code the user is.
namespace quillmate::project {

/// How the place that a command has led to comes into view.
enum class Reveal {
  kAtTop,      // its line becomes the first one on screen
  kWhenHidden  // scrolled to only when it can't be seen, into the middle
};

/// Whoever shows the session. A call comes when everything has changed, except the first one.
class SessionListener {
 public:
  virtual ~SessionListener() = default;

  /// The views and texts of the project on screen are about to go away: nothing may refer to them any more.
  virtual void OnProjectLeaves() = 0;
  /// Another project, or none, is loaded.
  virtual void OnProjectChanged() = 0;
  /// Name, folder, or whether it is saved.
  virtual void OnTitleChanged() = 0;
  /// Module() and Routine().
  virtual void OnPlaceChanged() = 0;
  /// The way back and on.
  virtual void OnHistoryChanged() = 0;
  /// The caret was moved by a command, perhaps into another view.
  virtual void OnMoved(Reveal reveal) = 0;
};

/// What loading takes: failures throw files::Failure and leave everything as it
/// was, unless something else is said. Names in code are Windows-1252.
class Session {
 public:
  /// `index` and `folder` are the program's open index and its current project folder; both must outlive the session.
  Session(codedb::CodeDatabase& index, std::filesystem::path& folder, SessionListener& listener);

  /// Opens the index in `folder`, reads its tree and checks that its texts are there; `folder` is the current one then.
  /// `title` is the project as the window's title names it (UTF-8): "Lager [Lager.xls]" for one just read, the name of
  /// the folder for a saved one. Nothing of the project before stays, its history neither. Throws
  /// ProjectReason::kManyModules where there are more than `mostModules`.
  void ReloadProject(const std::filesystem::path& folder, std::string title, bool isSaved,
                     std::size_t mostModules = std::numeric_limits<std::size_t>::max());
  /// No project any more: the index is closed, `scratch` is the current folder.
  void Leave(const std::filesystem::path& scratch);
  /// The project was saved: it is the same one in another folder. Its index there is opened.
  void MoveTo(const std::filesystem::path& folder, std::string title);

  bool IsLoaded() const noexcept { return isLoaded_; }
  bool IsSaved() const noexcept { return isSaved_; }
  const std::string& Title() const noexcept { return title_; }
  /// The title without the file that a project was read from.
  std::string Name() const;
  const std::filesystem::path& Folder() const noexcept { return folder_; }
  /// The same for whoever reads the project's files: throws when they are another project's by now.
  const std::filesystem::path& Files();
  codedb::CodeDatabase& Index() const noexcept { return index_; }

  /// Empty while no project is loaded.
  const std::shared_ptr<const navigation::ProjectTree>& Tree() const noexcept { return content_->tree; }
  /// The first line of each node of the tree; 0 for modules. Asked for once.
  const std::vector<codedb::Line>& StartLines();
  /// One empty view while no project is loaded.
  navigation::CodeViews& Views() noexcept { return content_->views; }
  navigation::ProjectTexts& Texts() noexcept { return content_->texts; }
  navigation::CodeView& View() { return Views().View(Views().Current()); }

  /// The visible module, and the routine at the caret; empty outside of routines.
  const std::string& Module() const noexcept { return module_; }
  const std::string& Routine() const noexcept { return routine_; }
  codedb::ModuleNumber VisibleModule() const;
  const navigation::RoutineHistory& History() const noexcept { return history_; }

  /// A node of the tree: the top of a module, or the first line of a routine, which is a visit for the history.
  void GoToNode(int node);
  /// A stretch of a view, which is selected.
  void GoToMatch(codedb::ViewIndex view, const navigation::TextMatch& match);
  /// A stretch of a view, which is selected and a visit for the history. Back leads to the very place that the jump
  /// began at.
  void JumpTo(codedb::ViewIndex view, const navigation::TextMatch& match);
  /// The first line of a routine, which the index need not know; a visit for the history.
  void GoToRoutine(codedb::ViewIndex view, codedb::Line line, std::string routine);
  /// The definition of a name as seen from the visible module; false when it is unknown. Back leads to the place that
  /// the jump began at.
  bool GoToDefinition(std::string_view name);
  /// Adds the caret's place to the history.
  void Visit();
  /// One place back or on in the history; false when there is none.
  bool Back() { return Step(history_.Back()); }
  bool Next() { return Step(history_.Next()); }

  /// The user may have moved the caret.
  void TrackCaret();

  /// Reads ahead a part of the texts, so that the project on screen shows its own even when its folder is written anew.
  /// False when there is nothing more to read. Never throws.
  bool ReadAhead();
  /// True when another program has written the project's folder anew since it was loaded. Said once for each time.
  bool WasReplaced();

 private:
  struct Content {
    std::shared_ptr<const navigation::ProjectTree> tree = std::make_shared<navigation::ProjectTree>();
    navigation::ProjectTexts texts;
    navigation::CodeViews views;
    std::vector<codedb::Line> startLines;
  };
  static std::unique_ptr<Content> ReadContent(codedb::CodeDatabase& index, const std::filesystem::path& folder,
                                              bool isSaved, std::size_t mostModules);

  void Replace(std::unique_ptr<Content> content);
  void SetTitle(std::string title, bool isSaved);
  void ShowModule(codedb::ViewIndex view);
  void SetPlace(std::string module, std::string routine);
  std::string ModuleName() const;
  navigation::Place CurrentPlace();
  void Visit(navigation::Place place);
  bool Step(const navigation::Place* place);

  codedb::CodeDatabase& index_;
  std::filesystem::path& folder_;
  SessionListener& listener_;
  std::unique_ptr<Content> content_ = std::make_unique<Content>();
  bool isLoaded_ = false;
  bool isSaved_ = false;
  std::string title_;
  std::string module_;
  std::string routine_;
  navigation::RoutineHistory history_;
  navigation::CaretTracker caret_;
  /// The index that WasReplaced has told of.
  std::filesystem::file_time_type told_ = std::filesystem::file_time_type::min();
};

}  // namespace quillmate::project
