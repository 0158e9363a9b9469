#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What a document says about its macros outside of their code: who starts them, which controls raise their events,
/// what its sheets are called. All texts are UTF-8; places are German, for people to read.
///
/// Only what a file says for certain is here. Lists are as long as the file makes them, at most kMostFacts entries
/// each.
namespace quillmate::office {

inline constexpr std::size_t kMostFacts = 100000;

/// A sheet of a workbook.
struct Sheet {
  enum class Kind : std::uint8_t { kWorksheet, kChart, kDialog, kMacro };
  enum class Visibility : std::uint8_t { kVisible, kHidden, kVeryHidden };

  /// The name of its module; empty when the file does not say.
  std::string codeName;
  /// What its tab shows.
  std::string name;
  Kind kind = Kind::kWorksheet;
  Visibility visibility = Visibility::kVisible;
};

/// A form of the project, or a form or report of a database.
struct Form {
  /// The name of its module.
  std::string module;
  std::string caption;
  /// In points.
  std::optional<double> width;
  std::optional<double> height;
};

/// Something that raises the events Name_Event in a module.
struct Control {
  /// The form's, the sheet's or the document's module.
  std::string module;
  std::string name;
  /// Its class, "CommandButton"; "unbekannt" when the file does not say.
  std::string type;
  /// "MSForms" and the like; empty when the file does not say.
  std::string library;
  /// The frame or page that it is in; empty for the form itself.
  std::string parent;
  std::string caption;
  /// From the top left corner of what it is in, in points.
  std::optional<double> left;
  std::optional<double> top;
  /// In points.
  std::optional<double> width;
  std::optional<double> height;
  /// Among its neighbours, from 0.
  std::optional<int> tabIndex;
};

/// Something outside of the code that starts a routine.
struct Binding {
  enum class Kind : std::uint8_t {
    kObject,         // shape, picture, chart or form control with a macro
    kRibbon,         // call-back
    kName,           // defined name that stands for a macro or calls a function
    kFormula,        // cell formula, also of conditional formats and validations
    kShortcut,       // key combination
    kField,          // MACROBUTTON, and the macros of form fields
    kAction,         // click or mouse move in a presentation
    kEventProperty,  // of an Access form, report or control
    kMacroAction,    // RunCode and the like in an Access macro
    kQuery,          // of a database
    kToolbar
  };

  Kind kind = Kind::kObject;
  /// The macro as the file writes it, "[0]!Modul1.Start"; ParseMacroTarget takes it apart.
  std::string target;
  /// "Schaltfläche 'Start' auf Blatt 'Kunden'"; the first place when there are several.
  std::string place;
  /// Where the target is looked for first: the module of the form that has the property; empty otherwise.
  std::string module;
  /// How many places there are with this target.
  std::uint32_t count = 1;
};

/// A sheet of Excel 4 macros.
struct Excel4Sheet {
  std::string name;
  Sheet::Visibility visibility = Sheet::Visibility::kVisible;
  /// The cell that runs when the workbook is opened, as the name Auto_Open has it; empty without one.
  std::string entry;
  std::uint64_t formulas = 0;
  /// "A1: =FORMULA" line by line, by columns, CR LF between them; only where it was asked for and the file has the
  /// text.
  std::string code;
};

struct Query {
  std::string name;
  /// Empty when it can't be put together exactly.
  std::string sql;
};

struct LinkedTable {
  std::string name;
  /// What it is called at the source.
  std::string source;
  /// The file or the connection; passwords are left out.
  std::string database;
};

struct DocumentProperties {
  std::string title;
  std::string author;
  std::string lastAuthor;
  std::string application;
  std::string company;
  /// ISO 8601 in UTC, "2024-05-31T12:00:00Z"; empty when the file does not say.
  std::string created;
  std::string modified;
};

/// Who has signed a macro project, as the signature's certificate says. Nothing of it is verified.
struct MacroSignature {
  /// Common name and organisation: "Ada Beispiel, Muster GmbH". Empty when it can't be read.
  std::string signer;
  /// Who has issued the certificate; the signer itself, where it is one's own.
  std::string issuer;
  /// The days on which the certificate begins and ends, "2024-05-31".
  std::string from, until;
};

struct DocumentFacts {
  DocumentProperties properties;
  /// Whether the macro project carries a signature, where the file says; it is not verified.
  std::optional<bool> isSigned;
  MacroSignature signature;
  /// True when the file was encrypted with the password that every host tries by itself.
  bool defaultPassword = false;
  std::vector<Sheet> sheets;
  std::vector<Form> forms;
  std::vector<Control> controls;
  /// True when all controls of sheets and documents are among them.
  bool controlsKnown = false;
  std::vector<Binding> bindings;
  std::vector<Excel4Sheet> excel4;
  /// Other documents that this one refers to.
  std::vector<std::string> externalLinks;
  std::vector<Query> queries;
  std::vector<LinkedTable> linkedTables;
  /// Macros of a database, by name.
  std::vector<std::string> macros;
  /// What could not be searched, or not whole: German, one line each.
  std::vector<std::string> notices;
  /// The last of them that is about a bound: the document has more than any real one. Empty as a rule.
  std::string cutShort;
};

}  // namespace quillmate::office
