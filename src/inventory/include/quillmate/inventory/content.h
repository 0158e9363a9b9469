#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the inventory knows of one file's content: plain rows, in the order of the file. The same bytes give the same
/// rows, wherever they are and whatever the file is called. All texts are UTF-8.
namespace quillmate::inventory {

/// Version of what is read of a content: contents that an older program has read are read again.
inline constexpr int kContentVersion = 2;

enum class State : std::uint8_t {
  kMacros,
  kNone,    ///< of a kind that can hold macros, and holds none
  kExcel4,  ///< no VBA, but macro sheets of Excel 4
  kLocked,  ///< the project is protected: the code is not read
  kEncrypted,
  kCompiled,  ///< an Access database without source
  kDamaged,
  kTimedOut,    ///< took longer than the limit for one file
  kCrashed,     ///< the process that read it ended, or needed more memory than it may have
  kUnreadable,  ///< can't be opened or read, or a format that nobody reads
  kForeign,     ///< of no kind that could hold macros; remembered so that it need not be opened again
};
inline constexpr std::size_t kStateCount = 11;

/// "makros", "keine", "excel4", "gesperrt", "verschlüsselt", "kompiliert", "beschädigt", "zeitlimit", "abgestürzt",
/// "unlesbar", "fremd"
std::string_view Word(State state) noexcept;
std::optional<State> StateFromWord(std::string_view word) noexcept;
/// True for what nobody could look into.
bool IsUnread(State state) noexcept;

struct ModuleRow {
  std::string name;
  std::string kind;  ///< "module", "class", "form", "document"
  std::uint32_t lines = 0, codeLines = 0, commentLines = 0;
  std::uint64_t hash = 0;  ///< TextHash of its code; 0 without code
};

struct RoutineRow {
  std::uint32_t module = 0;  ///< 0-based
  std::string name;
  std::string kind;        ///< "sub", "function", "property-get" ...
  std::string visibility;  ///< "public", "private", "friend", "global"
  std::string signature;   ///< header on one line, at most 500 bytes
  std::uint32_t line = 0;  ///< of the editor, 1-based
  std::uint32_t lines = 0, statements = 0, complexity = 0, nesting = 0, parameters = 0;
  std::uint64_t hash = 0;
};

struct ReferenceRow {
  std::string name, version, path;
  bool toProject = false;
  /// Why it is known to break, wherever the file is: "nur 32 Bit"; empty as a rule.
  std::string broken = {};
};

/// Another file that the document refers to.
struct LinkRow {
  std::string kind;  ///< "verknüpfung", "tabelle"; of a VB project "modul", each of its files
  std::string target;
};

struct BindingRow {
  std::string kind;  ///< as in the facts: "schaltfläche", "menüband", "formel" ...
  std::string module, target, place;
};

struct FindingRow {
  std::string check;  ///< id
  std::uint32_t module = 0;
  std::string routine;
  std::uint32_t line = 0, column = 0;  ///< of the editor; 0: in a line that it hides
  std::string text;
};

/// A Declare.
struct ApiRow {
  std::uint32_t module = 0;
  std::string name, library, alias;
  bool ptrSafe = false;
  std::uint32_t line = 0;
};

struct Content {
  State state = State::kForeign;
  /// Why nothing, or not all, could be read: German, one line. Empty when all is well.
  std::string reason;
  /// "excel", "word", "powerpoint", "access", "office", "modul"; "projekt" of a VB project file, whose modules are
  /// files of their own
  std::string format;
  std::int32_t codePage = 0;
  std::string project;
  /// "Kennwort", "gesperrt" ...; empty when there is none.
  std::string protection;
  std::optional<bool> isSigned;
  /// As the certificate says, which is not verified: signer, issuer, first and last day ("2024-05-31").
  std::string signer, signerIssuer, signedFrom, signedUntil;
  std::string title, author, lastAuthor, company, application, created, modified;
  std::uint32_t excel4Sheets = 0;
  std::uint32_t replaced = 0;  ///< characters that Windows-1252 lacks
  std::vector<ModuleRow> modules;
  std::vector<RoutineRow> routines;
  std::vector<ReferenceRow> references;
  std::vector<LinkRow> links;
  std::vector<BindingRow> bindings;
  std::vector<FindingRow> findings;
  std::vector<ApiRow> apis;
};

/// How the bytes of a file are to be taken, beside what they themselves say.
enum class Reading : std::uint8_t { kOffice, kModule };

/// What the name of a file promises.
struct NameHint {
  bool office = false;  ///< its extension is one of those that hold macros
  /// "bas", "cls" ... of a module file, "vbp" of a VB project file, else empty.
  std::string module;
};
NameHint HintOf(const std::filesystem::path& file);

/// True when bytes that begin so, under a name like that, are worth reading.
bool MayHoldMacros(std::string_view head, const NameHint& hint) noexcept;

/// Reads a content: an Office file by what its bytes say, else a module file by its extension. `bytes` is the whole
/// file where it is in memory, else empty, and `file` is opened. Never throws for what is in it but std::bad_alloc.
Content ReadContent(std::string_view bytes, const std::filesystem::path& file, const NameHint& hint);

}  // namespace quillmate::inventory
