#include "site_notes.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>

#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/notes.h>
#include <quillmate/project/note_places.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::cli {
namespace {

using codedb::Note;

/// The understanding's number of a module; kNone when it has none.
symbols::Index NumberOf(const IndexUnderstanding& understanding, codedb::ModuleNumber module) {
  const auto found = std::ranges::find(understanding.places, module.value, &symbols::ModulePlaces::Number);
  return found == understanding.places.end() ? symbols::kNone
                                             : static_cast<symbols::Index>(found - understanding.places.begin());
}

/// Takes out of `notes` those that belong to a module.
std::vector<Note> TakeNotesOf(std::vector<Note>& notes, const codedb::ModuleRecord& module,
                              const symbols::ReferenceIndex& index, symbols::Index number) {
  const std::string name = text::Utf8FromCode(module.name);
  const symbols::ProjectInfo* const project =
      number == symbols::kNone ? nullptr : &index.Projects()[index.Modules()[number].project];
  // A project that is alone may have been renamed.
  const auto rest = std::stable_partition(notes.begin(), notes.end(), [&](const Note& note) {
    const bool same = index.Projects().size() < 2 || (project != nullptr && note.project == project->name);
    return note.module != name || !same;
  });
  std::vector<Note> own(std::make_move_iterator(rest), std::make_move_iterator(notes.end()));
  notes.erase(rest, notes.end());
  return own;
}

}  // namespace

std::vector<output::SiteNote> ReadSiteNotes(const std::filesystem::path& folder,
                                            const std::vector<codedb::ModuleRecord>& modules,
                                            const IndexUnderstanding& understanding) {
  std::vector<output::SiteNote> found;
  std::vector<Note> notes = codedb::LoadNotes(folder);
  std::erase_if(notes, [](const Note& note) { return note.text.empty(); });
  for (const codedb::ModuleRecord& module : modules) {
    if (notes.empty()) break;
    const symbols::Index number = NumberOf(understanding, module.number);
    const std::vector<Note> own = TakeNotesOf(notes, module, understanding.index, number);
    if (own.empty()) continue;
    const navigation::CodeView view(navigation::StripMarkers(codedb::ReadModuleText(folder, module.number)).text);
    const std::vector<project::RoutineLines> routines =
        number == symbols::kNone ? std::vector<project::RoutineLines>()
                                 : project::RoutinesOf(understanding.index.Code(number), understanding.places[number]);
    const std::vector<project::NotePlace> places = project::PlacesOf(own, view, routines);
    for (std::size_t i = 0; i < own.size(); ++i) {
      found.push_back({module.number, {places[i].line + 1}, own[i].text});
    }
  }
  std::ranges::stable_sort(found, [](const output::SiteNote& a, const output::SiteNote& b) {
    return std::tie(a.module, a.line) < std::tie(b.module, b.line);
  });
  return found;
}

}  // namespace quillmate::cli
