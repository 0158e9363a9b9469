#pragma once

#include <string>
#include <vector>

#include <quillmate/codedb/notes.h>
#include <quillmate/navigation/code_view.h>
#include <quillmate/project/folding.h>

/// Where notes are in the code that is shown. Lines are 0-based lines of a module's view.
namespace quillmate::project {

/// The place of a note beside a line: everything of it but text and bookmark. `routines` by place.
codedb::Note NoteAt(const std::string& project, const std::string& module, const navigation::CodeView& view,
                    const std::vector<RoutineLines>& routines, int line);

/// The lines of the notes of one module. A note whose line is gone is beside the header of its routine, without
/// that at the module's first line; `found` tells whether the line itself is there.
struct NotePlace {
  int line = 0;
  bool found = false;
};
std::vector<NotePlace> PlacesOf(const std::vector<codedb::Note>& notes, const navigation::CodeView& view,
                                const std::vector<RoutineLines>& routines);

}  // namespace quillmate::project
