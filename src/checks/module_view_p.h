#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <quillmate/checks/checks.h>

#include "known_names_p.h"

namespace quillmate::checks {

using language::Access;
using language::Role;
using symbols::BoundUse;
using symbols::Certainty;
using symbols::Index;
using symbols::kNone;
using symbols::ReferenceIndex;
using symbols::Symbol;
using symbols::SymbolId;
using symbols::SymbolKind;
namespace use_flag = language::use_flag;
namespace declaration_flag = language::declaration_flag;

/// One module as the checks see it: its records with tokens and statements, what its uses mean, which of its names are
/// known ones of the hosts. Findings go into `findings`.
struct ModuleView {
  explicit ModuleView(const ReferenceIndex& i) : index(i) {}

  /// Takes up a module.
  void Open(Index number, language::Workspace& workspace);

  const symbols::ModuleInfo& Info() const { return index.Modules()[module]; }
  const symbols::ProjectInfo& Project() const { return index.Projects()[Info().project]; }
  bool IsVb6() const { return vb6; }
  /// Whether the code may run in the host: it does, or nobody knows where it runs.
  bool MayBe(symbols::Host host) const { return !vb6 && (Project().host == host || Project().hostAssumed); }

  Known KnownName(language::NameId name) const noexcept { return known[name]; }
  Known KnownName(const language::NameUse& use) const noexcept { return known[use.name]; }
  /// The name if nothing of the sources has it: a library's. kNone_ otherwise. `use` must not be inactive.
  Known LibraryName(Index use) const noexcept;
  /// Likewise, with nothing before it or after "VBA.", "Application." and the like.
  Known GlobalName(Index use) const noexcept;
  bool IsActive(const language::NameUse& use) const noexcept { return (use.flags & use_flag::kInactive) == 0; }
  /// The use that a chain begins with.
  Index ChainFirst(Index use) const noexcept;
  /// The symbol that a use surely means, nullptr if none.
  const Symbol* SureSymbol(Index use) const noexcept;
  /// Its declaration by the front end, nullptr when it has none.
  const language::Declaration* DeclarationOf(const Symbol& symbol) const noexcept;
  /// Tokens of a statement.
  std::span<const language::Token> Tokens(const language::Statement& statement) const noexcept;

  void Report(CheckId check, std::uint32_t line, std::uint32_t column, Index routine, std::string_view subject,
              std::string text, std::string advice = {});
  void ReportUse(CheckId check, Index use, std::string text, std::string advice = {});
  void ReportStatement(CheckId check, const language::Statement& statement, std::string text, std::string advice = {});
  void ReportDeclaration(CheckId check, const language::Declaration& declaration, std::string text,
                         std::string advice = {});
  /// 1-based, in characters.
  std::uint32_t ColumnOf(std::uint32_t offset, std::uint32_t line) const;
  /// "Name" in German quotation marks, as the code writes it.
  std::string Named(const language::NameUse& use) const;
  std::string Named(const language::Declaration& declaration) const;

  const ReferenceIndex& index;
  Index module = 0;
  language::Module code;
  std::vector<BoundUse> bound;
  std::vector<Known> known;  ///< by NameId
  bool vb6 = false;
  const Selection* selection = nullptr;
  std::vector<Finding> findings;
};

/// „text“
std::string InQuotes(std::string_view text);
/// At most some sixty bytes of a text, with "…" where it was cut; never within a character.
std::string Shortened(std::string_view text);

}  // namespace quillmate::checks
