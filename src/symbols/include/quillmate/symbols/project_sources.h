#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/symbols/sources.h>

/// The road from a project's folder to the understanding, and from its places to the lines that are on screen.
namespace quillmate::symbols {

/// Where the lines of a module's text (ModuleSource::text, header and Attribute lines included) are in the stored one.
/// All lines are 1-based; 0 stands for one that the other side lacks.
class ModulePlaces {
 public:
  ModulePlaces() = default;
  explicit ModulePlaces(const codedb::ModuleFacts& facts);
  explicit ModulePlaces(std::int32_t number) : number_(number) {}

  /// `mod_num`, 0 for a module that the index lacks.
  std::int32_t Number() const noexcept { return number_; }
  /// The line as the host's editor counts it, and the way back.
  std::uint32_t EditorLine(std::uint32_t textLine) const noexcept;
  std::uint32_t TextLine(std::uint32_t editorLine) const noexcept;
  /// The line of the stored text, and the way back.
  std::uint32_t ShownLine(std::uint32_t textLine) const noexcept;
  std::uint32_t TextLineOfShown(std::uint32_t shownLine) const noexcept;

 private:
  struct Hidden {
    std::uint32_t before, count;
  };

  std::int32_t number_ = 0;
  std::vector<Hidden> hidden_;
  std::vector<codedb::LineRun> runs_;
};

/// The column in `to` of what is in `column` of `from`, the same line before or after it was laid out: the blanks
/// at its beginning may differ, and one of them may lack TABs. UTF-8, columns in characters, 1-based.
std::uint32_t MapColumn(std::string_view from, std::string_view to, std::uint32_t column) noexcept;

struct ProjectSources {
  Sources sources;
  /// One for each of the sources' modules.
  std::vector<ModulePlaces> places;
  /// Modules whose text can't be read; it is empty then.
  std::vector<Index> unreadable;
  /// Why the facts could not be read, with their file: German, UTF-8. Empty where they could, or where there are none.
  std::string damage;
};

/// The host of a program by its name, regardless of case: "Excel", "VisualBasic"; kUnknown for any other.
Host HostOfProgram(std::string_view name) noexcept;

/// Facts whose modules all have their code. `assumed` is where a project runs that does not tell.
Sources SourcesFrom(codedb::Facts facts, Host assumed = Host::kUnknown);

/// What the folder's Fakten.db and module texts tell; without the former, or with one that can't be read, what the open
/// index tells: one project, its stored texts taken for the originals. A text that can't be read counts as empty.
/// Throws files::Failure when the index can't be read either.
ProjectSources LoadSources(codedb::CodeDatabase& database, const std::filesystem::path& folder,
                           Host assumed = Host::kUnknown);

}  // namespace quillmate::symbols
