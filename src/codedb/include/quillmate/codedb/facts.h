#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a read learned beyond the index: where each module came from, its code as the host's editor shows it, what
/// headers and attributes say, controls, and what calls routines from outside the code.
///
/// The facts are in "Fakten.db" beside the index, a plain SQLite file that any tool opens (UTF-8, no functions or
/// collations of the program's own):
///
///   projekt           one row for each VB project, document or folder of module files
///   verweis           its references, in their order
///   konstante         its conditional constants
///   dokument          what the document says of itself: author, dates, program, signature, external links ...
///   modul             every module, those of one or two lines too; mod_num is its number in the index, NULL without
///                     one
///   verborgene_zeile  what the editor hides of a module file: header and Attribute lines, by the line they stand
///                     before
///   attribut          what those say, member by member
///   steuerelement     controls of forms, sheets and documents
///   bindung           what calls a routine from outside: buttons, event properties, ribbons, formulas ...
///   ausgelassen       what of the sources could not be read, or not whole, with the reason; not modules that are
///                     merely too short for the index: they are in modul
///
/// PRAGMA user_version holds kFactsVersion. A project without the file opens all the same and knows less.
namespace quillmate::codedb {

inline constexpr std::string_view kFactsFile = "Fakten.db";
inline constexpr int kFactsVersion = 1;

/// A reference of a project.
struct ReferenceFact {
  std::string name;
  std::string version;  // "2.8"; empty when unknown
  std::string path;     // of the library, or of the project's file
  /// The project of this read that is meant, 0-based; -1 for a library or a file that was not read.
  int project = -1;
};

struct ConstantFact {
  std::string name;
  std::int64_t value = 0;
};

/// How many places of the document start macros. It is there only where the whole document was searched and all modules
/// of the project were read.
inline constexpr std::string_view kBindingsProperty = "Verweise auf Makros";

/// One property of a document: "Autor", "Gespeichert", "Signatur", "Verknüpfung" ...
struct DocumentFact {
  std::string property;
  std::string value;
};

/// All texts are UTF-8.
struct ProjectFacts {
  std::string name;
  /// Full path of the file or folder; empty for what was never saved.
  std::string file;
  /// "excel", "word", "access", "powerpoint", "vb6", empty when unknown.
  std::string host;
  /// Code page of the project; 0 when unknown.
  int codePage = 0;
  bool locked = false;
  /// SHA-256 of the file in lower-case hexadecimal digits; empty when there is no single file.
  std::string hash;
  std::vector<ReferenceFact> references;
  std::vector<ConstantFact> constants;
  std::vector<DocumentFact> document;
};

/// An Attribute of a module or of one of its members.
struct AttributeFact {
  /// Line of the editor that it follows, 0 before the first.
  std::int32_t line = 0;
  std::string member;  // empty: of the module itself
  std::string name;    // "VB_UserMemId"
  std::string value;   // as written
};

struct ControlFact {
  std::string name;
  std::string type;  // "VB.TextBox", "CommandButton"; empty when unknown
  std::string caption;
  /// The control around it, empty for the form itself.
  std::string parent;
  bool inArray = false;
  /// Twips; nothing when unknown.
  std::optional<std::int32_t> left, top, width, height, tabIndex;
};

/// Lines that the editor hides, before `line` (1-based; one more than the last line: at the end). `text` has its lines
/// separated by LF, without one at the end.
struct HiddenLines {
  std::int32_t line = 1;
  std::string text;
};

/// `count` lines as shown from `shown` on are the lines from `original` on in the editor (both 1-based), each moved
/// `shift` characters to the right. Shown lines in no run were inserted when the text was laid out.
struct LineRun {
  std::int32_t shown = 1;
  std::int32_t original = 1;
  std::int32_t count = 0;
  std::int32_t shift = 0;

  bool operator==(const LineRun&) const = default;
};

struct ModuleFacts {
  /// `mod_num`, 0 when the index lacks the module (one or two lines).
  std::int32_t number = 0;
  /// 0-based position of its project.
  int project = 0;
  std::string name;
  /// Full path of its own file; empty for a module within a document or of a running host.
  std::string file;
  /// "standard", "class", "form", "document", "usercontrol", "propertypage", "userdocument", "designer"; empty: as the
  /// hidden lines say.
  std::string kind;
  /// Tab of a sheet, caption of a form.
  std::string outsideName;
  std::optional<bool> predeclared, exposed;
  /// All controls of the module are in `controls` or in the hidden lines.
  bool controlsKnown = false;
  /// Characters that the stored text replaces by "?".
  std::int64_t replacedCharacters = 0;
  /// Lines of code and hidden lines together are the lines of `file`.
  bool linesOfFile = false;
  /// The code as the editor shows it, LF or CR LF, where the stored text without its markers is another; with it, where
  /// its lines went when the layout moved them.
  std::optional<std::string> code;
  std::vector<LineRun> lines;
  std::vector<HiddenLines> hidden;
  std::vector<AttributeFact> attributes;
  std::vector<ControlFact> controls;
};

/// Something outside the code that calls a routine.
struct BindingFact {
  int project = 0;
  /// Where the place itself decides the module (an event property of a form), else empty.
  std::string module;
  /// As it is written there: "[0]!Modul.Makro".
  std::string text;
  /// In German words: "Schaltfläche 'Start' auf Blatt Kunden".
  std::string place;
  /// "schaltfläche", "ereignis", "menüband", "name", "formel", "taste", "start", "sonstiges".
  std::string kind;
};

/// Something of the sources that could not be read, or not whole: locked, encrypted, compiled, damaged ...
struct OmissionFact {
  /// Full path of the source, of a file in it or of the document; empty when there is none.
  std::string file;
  /// Names as far as they are known, else empty.
  std::string project;
  std::string module;
  /// German, one line.
  std::string reason;
};

struct Facts {
  std::vector<ProjectFacts> projects;
  /// In the order of the read.
  std::vector<ModuleFacts> modules;
  std::vector<BindingFact> bindings;
  std::vector<OmissionFact> omissions;
};

/// The folder's facts.
std::filesystem::path FactsPath(const std::filesystem::path& folder);

/// Writes the file anew. Throws files::Failure; a file that is not whole is removed then.
void WriteFacts(const std::filesystem::path& folder, const Facts& facts);

/// Nothing when there is no such file. Throws files::Failure when it is damaged, holds nonsense (a module of no
/// project) or is of a later version: the caller goes on without.
std::optional<Facts> ReadFacts(const std::filesystem::path& folder);

/// The text of the module's file again: hidden lines and code, whose lines end in LF or CR LF and keep that.
std::string WithHiddenLines(std::string_view code, const std::vector<HiddenLines>& hidden);

/// How the lines of `shown` (without markers) come from those of `code`: the layout drops or inserts empty lines,
/// changes the blanks at their beginning and removes TABs. Texts in one and the same encoding of one byte or UTF-8,
/// lines separated by CR LF, LF or CR.
std::vector<LineRun> MatchLines(std::string_view code, std::string_view shown);

}  // namespace quillmate::codedb
