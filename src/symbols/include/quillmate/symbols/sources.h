#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/language/parse.h>
#include <quillmate/symbols/kinds.h>

/// What the understanding is made from: plain records, filled by whoever reads files, a running host or a saved
/// project. All texts are UTF-8. What is unknown stays empty: the answers are then less sure, never wrong.
namespace quillmate::symbols {

struct ControlSource {
  std::string name;
  std::string type;    ///< "VB.TextBox", "CommandButton"; empty when unknown
  bool array = false;  ///< of a control array: handlers get its Index first
  bool event = false;  ///< false for what raises no events that code can handle (most never tell: leave it true)
};

/// One module, those of one or two lines too.
struct ModuleSource {
  /// The code as the host's editor shows it, or a whole module file with header and Attribute lines.
  std::string text;
  /// Into Sources::projects.
  Index project = 0;
  /// As the project calls it; empty: its VB_Name, else the stem of `file`.
  std::string name;
  /// Path of the file it came from, for people; may be empty.
  std::string file;
  /// What is outside for it: the tab of a sheet, the caption of a form. May be empty.
  std::string outsideName;
  /// True when the lines of `text` are those of `file`: places then have a source line.
  bool linesOfFile = false;
  /// What the source knows. Empty: as the text itself says.
  std::optional<language::ModuleKind> kind;
  /// `kind` is only what the name of the file suggests.
  bool kindAssumed = false;
  std::optional<bool> predeclared, exposed;
  /// Controls that the text's own header does not tell (forms of Office, controls of sheets), and whether all of the
  /// module are known by now. A text that describes its form (VB, Access exports) needs neither.
  std::vector<ControlSource> controls;
  bool controlsKnown = false;
};

/// What a document says of itself, in German words for people: author, dates, signature, external links ...
struct DocumentProperty {
  std::string name;
  std::string value;
};

/// Something that could not be read, or not whole. Names are empty as far as they are not known.
struct Omission {
  std::string file, project, module;
  std::string reason;  ///< German, one line
};

/// A name space of its own: a VB project, a workbook's macros, a folder of module files.
struct ProjectSource {
  /// As code would write it before a "."; may be empty.
  std::string name;
  /// The name is only that of a folder or file of modules: what the code calls the project nobody knows.
  bool nameAssumed = false;
  /// Path of the file it came from, for people; may be empty.
  std::string file;
  Host host = Host::kUnknown;
  /// The host is only the likeliest one: module files that could be of any.
  bool hostAssumed = false;
  /// All of its modules are there, and everything in its document that starts them.
  bool outsideKnown = false;
  language::Dialect dialect = language::Dialect::kVba;
  /// Conditional constants of the project.
  std::vector<language::ConditionalConstant> constants;
  /// Projects of this read that this one refers to, in order of its references. Names of others are invisible.
  std::vector<Index> references;
  /// Names of the libraries that it refers to, in their order.
  std::vector<std::string> libraries;
  /// In the order of the document; a name may come more than once.
  std::vector<DocumentProperty> properties;
};

/// Something outside the code that calls a routine.
enum class BindingKind : std::uint8_t {
  kButton,
  kEventProperty,
  kRibbon,
  kDefinedName,
  kCellFormula,
  kShortcut,
  kStart,
  kOther
};

struct ExternalBinding {
  Index project = 0;
  /// A module's name where the place itself decides it (the form of an event property); else empty.
  std::string module;
  /// As it is there: "Makro", "Modul.Makro", "[0]!Modul.Makro", "=Rechne(1)", "'Mappe.xlsm'!Makro".
  std::string text;
  /// In German words for the user: "Schaltfläche auf Blatt Kunden".
  std::string place;
  BindingKind kind = BindingKind::kOther;
};

struct Sources {
  std::vector<ProjectSource> projects;
  std::vector<ModuleSource> modules;
  std::vector<ExternalBinding> bindings;
  std::vector<Omission> omissions;
};

}  // namespace quillmate::symbols
