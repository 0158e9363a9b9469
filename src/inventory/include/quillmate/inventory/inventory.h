#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/inventory/content.h>
#include <quillmate/inventory/reason.h>

/// What an inventory answers. Only read: a scan or a merge into the same file may follow, but not run meanwhile. All
/// texts are UTF-8, paths as they are stored (schema.h); PathOf gives the path itself. Failures are
/// files::Failure.
namespace quillmate::inventory {

/// The questions that are answered out of the box.
enum class Question : std::uint8_t {
  kAll,
  kMacros,      ///< which files have macros
  kCopies,      ///< which are there more than once, byte for byte
  kOnlyCopies,  ///< which hold no module that another content does not hold too
  k64Bit,       ///< which break under 64 bit
  kAutoRun,     ///< which start by themselves
  kDatabase,
  kNetwork,
  kRegistry,
  kPrograms,   ///< which start or drive other programs
  kDeadLinks,  ///< which refer to files that are not there, or nowhere in the inventory
  kBroken,     ///< which have references that are known to break
  kSigned,     ///< whose macros are signed
  kUnread,     ///< what could not be read
};
inline constexpr std::size_t kQuestionCount = 14;
/// "Dateien mit Makros", "Läuft nicht unter 64 Bit" ...
std::string_view TitleOf(Question question) noexcept;

struct FileFilter {
  Question question = Question::kAll;
  /// Only files in this state.
  std::optional<State> state = {};
  /// In the path, the project, the author; without regard to the case of ASCII letters. Empty for all.
  std::string text = {};
};

struct FileLine {
  std::int64_t number = 0;
  std::string path;
  State state = State::kNone;
  std::string reason, format, project, author;
  std::int64_t size = 0;
  /// "2024-05-31 12:00:00", UTC.
  std::string time;
  std::int64_t modules = 0, lines = 0, findings = 0;
  /// Files with this content, itself included.
  std::int64_t copies = 0;
};

/// Rows of the details of one file, as name and value or as several values.
struct FileDetails {
  std::vector<std::pair<std::string, std::string>> properties;
  struct Table {
    std::string title;
    std::vector<std::string> heads;
    std::vector<std::vector<std::string>> rows;
  };
  /// Modules, findings, references, links, bindings, Declares; those that are empty are left out.
  std::vector<Table> tables;
};

struct RunLine {
  std::int64_t number = 0;
  std::string began, ended, state, roots, shard;
  std::int64_t files = 0, read = 0, unchanged = 0, vanished = 0;
};

struct Overview {
  struct Line {
    std::string title;
    std::int64_t files = 0;
    /// Findings, or lines of code; 0 where there is nothing to count.
    std::int64_t count = 0;
    /// Of checks: the id.
    std::string id = {};
  };
  std::int64_t files = 0, modules = 0, routines = 0, codeLines = 0, contents = 0;
  /// In the order of the states, without those that no file has.
  std::vector<Line> states;
  /// In the order of the questions, from kMacros on.
  std::vector<Line> questions;
  /// By count.
  std::vector<Line> checks, formats, authors;
};

/// A table of a report: a key for data, a German title, a head for each column.
struct ReportTable {
  std::string_view key, title;
  std::vector<std::string> heads;
  /// Names of the columns in data.
  std::vector<std::string> keys;
};

/// A value of a row.
struct Cell {
  bool isNumber = false;
  std::int64_t number = 0;
  std::string_view text;
};

class Inventory {
 public:
  explicit Inventory(const std::filesystem::path& file);
  ~Inventory();
  Inventory(const Inventory&) = delete;
  Inventory& operator=(const Inventory&) = delete;

  /// Whether the file begins like an inventory, for a drop; false for what can't be read.
  static bool IsInventory(const std::filesystem::path& file) noexcept;

  /// By path; at most `limit` of them from `offset` on.
  std::vector<FileLine> Files(const FileFilter& filter, std::int64_t limit = -1, std::int64_t offset = 0);
  std::int64_t Count(const FileFilter& filter);
  FileDetails DetailsOf(std::int64_t file);
  /// Where the file is, on the system that has scanned it.
  std::filesystem::path PathOf(std::int64_t file);
  std::vector<RunLine> Runs();
  Overview Summarize();

  /// The tables of a report: files, findings, 64 bit, duplicates, unread, starts, outside, dead links, broken
  /// references, signatures, runs; with `since` the one of what is new, changed or gone since that run.
  static std::size_t TableCount(std::int64_t since) noexcept;
  ReportTable TableAt(std::size_t table, std::int64_t since);
  void ForEachRow(std::size_t table, std::int64_t since, const std::function<void(std::span<const Cell>)>& take);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmate::inventory
