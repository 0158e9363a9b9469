#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/project/understanding.h>
#include <quillmate/symbols/reference_index.h>

/// A form as its module's source tells it: what is where on it, and what its code does about the events. Lengths are
/// twips. All texts are UTF-8.
namespace quillmate::project {

struct FormEvent {
  std::string name;  ///< "Click"
  /// The routine that handles it; kNone where the form asks for one that is missing, or for something else.
  symbols::SymbolId handler = symbols::kNone;
  /// What the form does in place of running a routine: "=Rechne()", a macro's name; usually empty.
  std::string action;
};

struct FormControl {
  std::string name;
  std::string type;  ///< "TextBox", "CommandButton"; empty when unknown
  std::string caption;
  int parent = -1;  ///< the control around it; -1 for the form itself
  int index = -1;   ///< in a control array
  /// From the form's upper left corner; nothing when unknown.
  std::optional<double> left, top, width, height;
  std::vector<FormEvent> events;
};

struct FormPicture {
  std::string title;
  std::optional<double> width, height;
  std::vector<FormControl> controls;
  /// There may be others: the source does not tell all of them.
  bool isPartial = false;
  /// Of the form itself.
  std::vector<FormEvent> events;
  /// Routines that look like handlers of controls that the form does not have.
  std::vector<symbols::SymbolId> deadHandlers;

  /// Something of it can be drawn.
  bool HasPlaces() const;
};

/// Nothing for a module that has neither a form nor controls. `facts` are the module's, null when there are none.
std::optional<FormPicture> ReadForm(const symbols::ReferenceIndex& index, symbols::Index module,
                                    const codedb::ModuleFacts* facts);

/// The same with the facts that the project's folder has of the module. Facts that can't be read count as none.
std::optional<FormPicture> ReadFormOf(const Understanding& known, symbols::Index module,
                                      const std::filesystem::path& folder);

}  // namespace quillmate::project
