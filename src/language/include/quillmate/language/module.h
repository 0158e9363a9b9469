#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/language/records.h>
#include <quillmate/language/words.h>

namespace quillmate::language {

/// Kinds of a module by the words of its file; code without a header is kStandard unless the caller knows better.
enum class ModuleKind : std::uint8_t {
  kStandard,
  kClass,
  kForm,      ///< with a designer: .frm, forms of Office
  kDocument,  ///< belongs to a sheet, a workbook, a document, an Access form or report
  kUserControl,
  kPropertyPage,
  kUserDocument,
  kDesigner,
};

/// What the file says of the module.
struct ModuleFacts {
  ModuleKind kind = ModuleKind::kStandard;
  std::string name;          ///< VB_Name, else empty; UTF-8
  std::string base;          ///< VB_Base
  std::string description;   ///< VB_Description
  bool predeclared = false;  ///< VB_PredeclaredId: the class name is a variable too
  bool exposed = false;
  bool creatable = false;
  bool globalNameSpace = false;
  bool accessExport = false;  ///< an Access text export: designer, then the code after CodeBehindForm
  bool hasHeader = false;     ///< the text began with a header or Attribute lines
  bool optionExplicit = false;
  bool optionPrivateModule = false;
  std::uint8_t optionBase = 0;
  bool optionCompareText = false;
};

/// Lines by class; hidden lines are in none.
struct LineCounts {
  std::uint32_t code = 0, comment = 0, blank = 0, directive = 0, trailingComments = 0, inactive = 0;
};

/// What the front end knows of one module: flat arrays in the order of the source. It refers to the text that was
/// parsed, which must outlive it.
struct Module {
  std::string_view text;
  ModuleFacts facts;
  LineCounts counts;

  std::vector<PhysicalLine> lines;  ///< line n is lines[n - 1]; a line break at the text's end begins no further line
  std::vector<LogicalLine> logicalLines;
  std::vector<HiddenLines> hidden;
  std::vector<NameUse> uses;
  std::vector<StringUse> strings;
  std::vector<Declaration> declarations;
  std::vector<Routine> routines;
  std::vector<HeaderVariant> variants;
  std::vector<Attribute> attributes;
  std::vector<Control> controls;
  std::vector<EventProperty> eventProperties;
  std::vector<Problem> problems;
  std::vector<DeadName> deadNames;

  std::vector<Token> tokens;          ///< only with ParseOptions::keepTokens
  std::vector<Statement> statements;  ///< only with ParseOptions::keepStatements

  /// Names of this module: id kWordCount + i is names[i].
  struct Name {
    std::uint32_t offset, length;  ///< of the folded spelling in `foldedNames`
    std::uint64_t hash;            ///< HashName of it
  };
  std::vector<Name> names;
  std::string foldedNames;

  /// One more than the largest NameId.
  NameId NameCount() const noexcept { return kWordCount + static_cast<NameId>(names.size()); }
  /// The folded name; words included. Inner text of brackets, no suffix.
  std::string_view NameText(NameId name) const noexcept;
  /// The same value for the same folded name in every module.
  std::uint64_t NameHash(NameId name) const noexcept;
  /// The id of a name, regardless of case, kNone when the module does not hold it. Looks at every name: for questions,
  /// not for loops.
  NameId FindName(std::string_view name) const;

  /// The text as written, suffix and brackets included.
  std::string_view Spelling(const NameUse& use) const noexcept;
  std::string_view Spelling(const Declaration& declaration) const noexcept;
  std::string_view Text(Span span) const noexcept { return text.substr(span.offset, span.length); }
  /// A line without its break.
  std::string_view LineText(std::uint32_t line) const noexcept;

  /// The declared type in words: as written with single blanks, a suffix as the name of its type ("Long"), empty when
  /// none is declared.
  std::string DeclaredType(const Declaration& declaration) const;

  /// The line as the host's editor counts it, 0 for one that it hides; and the way back.
  std::uint32_t EditorLine(std::uint32_t line) const noexcept;
  std::uint32_t LineOfEditorLine(std::uint32_t editorLine) const noexcept;

  /// The logical line that a physical line belongs to.
  Index LogicalLineAt(std::uint32_t line) const noexcept;
  /// The routine around a line, kNone outside of all.
  Index RoutineAt(std::uint32_t line) const noexcept;

  /// Empties everything and keeps the memory for the next module.
  void Clear();
  /// Gives back what the arrays hold beyond their contents; for results that are kept.
  void Shrink();
};

/// "Integer" and so on; empty for kUndeclared and kNamed.
std::string_view TypeName(BuiltinType type) noexcept;

}  // namespace quillmate::language
