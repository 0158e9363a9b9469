#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/codedb/notes.h>
#include <quillmate/export/site_project.h>
#include <quillmate/project/note_places.h>

#include "code_area.h"
#include "code_knowledge.h"
#include "interaction.h"
#include "note_panel.h"
#include "project_session.h"

namespace quillmate::ui {

/// Notes and bookmarks of the user beside the lines of the loaded project. Those of a saved project are stored with
/// each change; those of one that is not saved go into its folder when it is saved, beside what is there.
class NoteCommands : public QObject {
  Q_OBJECT

 public:
  /// Everything must outlive it. Dialogs appear over `window`.
  NoteCommands(QWidget& window, Interaction& interaction, ProjectSession& session, CodeArea& code,
               CodeKnowledge& knowledge, NotePanel& panel);

  void ToggleBookmark();
  /// The next bookmark of the project after the caret, or the one before it: `steps` 1 or -1.
  void StepThroughBookmarks(int steps);
  /// Asks for the note beside the line of the caret.
  void EditNote();
  void ShowList();

  const std::vector<codedb::Note>& Notes() const noexcept { return notes_; }
  /// Those with a text, by module and line; a note whose module is gone is left out.
  std::vector<output::SiteNote> NotesOfSite();
  /// What is beside the lines of a view, by line.
  std::vector<LineMark> MarksOf(codedb::ViewIndex view);

 private:
  /// A note and where it is shown; no view where the project has no such module.
  struct Placed {
    std::size_t note = 0;
    std::optional<codedb::ViewIndex> view;
    project::NotePlace place;
  };

  void TakeProject();
  void TakeFolder();
  void ShowMarks();
  void FillPanel();
  std::string ProjectOf(codedb::ViewIndex view);
  std::string ModuleOf(codedb::ViewIndex view);
  std::vector<project::RoutineLines> RoutinesOf(codedb::ViewIndex view);
  /// Notes of one view by line, and those of all in the order of the tree.
  std::vector<Placed> PlacedIn(codedb::ViewIndex view);
  std::vector<Placed> PlacedAll();
  /// The note beside a line of the visible module as it is stored, else a new one.
  codedb::Note At(int line);
  void Change(const codedb::Note& place, const std::function<void(codedb::Note&)>& change);
  void ToggleBookmarkAt(int line);
  void WriteNote(const codedb::Note& place, const codedb::Note& now, const QString& text);
  void GoTo(const Placed& placed);
  /// False after saying why not.
  bool IsReady();
  int CaretLine() const;

  QWidget& window_;
  Interaction& interaction_;
  ProjectSession& session_;
  CodeArea& code_;
  CodeKnowledge& knowledge_;
  NotePanel& panel_;
  std::vector<codedb::Note> notes_;
  /// The folder that they belong to.
  std::filesystem::path folder_;
  std::vector<Placed> rows_;
};

}  // namespace quillmate::ui
