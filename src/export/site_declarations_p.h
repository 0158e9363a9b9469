#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "site_lists_p.h"
#include "site_uses_p.h"

/// Everything that the code declares, with its uses: by project and kind, then by name.
namespace quillmate::output {

class SiteDeclarations {
 public:
  /// Both must outlive this.
  SiteDeclarations(const SiteModel& model, const SiteUses& uses);

  /// The pages of the list; the first one is kDeclarationsFile and tells what is where.
  std::size_t PageCount() const { return files_.size(); }
  const std::string& File(std::size_t page) const { return files_[page]; }
  /// May be called on any thread.
  std::string Page(std::size_t page) const;

  /// The section of a module's page: what it declares outside of routines. Nothing without such.
  void AppendModule(std::string& html, int module) const;

  /// False for modules, numbers before lines and the parameters of Declares and events.
  bool Has(symbols::SymbolId symbol) const { return item_[symbol] != kNoItem; }
  /// The address of the entry of a symbol that has one.
  void AppendAddress(std::string& html, symbols::SymbolId symbol) const;
  /// How many lines use it, and how many may.
  std::string UseCount(symbols::SymbolId symbol) const;

 private:
  static constexpr std::uint32_t kNoItem = 0xFFFFFFFF;
  struct Item {
    symbols::SymbolId symbol;
    std::uint32_t project;
    std::uint8_t section;
    char letter;
  };

  bool HasSeveralProjects() const { return !items_.empty() && items_.front().project != items_.back().project; }
  void Collect();
  void MakeAnchors();
  void Divide();
  void AppendOverview(std::string& html) const;
  void AppendLetters(std::string& html, std::size_t first, std::size_t last) const;
  void AppendItems(std::string& html, const ListPage& page) const;
  void AppendItem(std::string& html, const Item& item) const;
  void AppendUses(std::string& html, symbols::SymbolId symbol) const;
  std::string FullName(symbols::SymbolId symbol) const;
  std::string SectionAnchor(const Item& item) const;

  const SiteModel& model_;
  const SiteUses& uses_;
  std::vector<Item> items_;
  std::vector<std::uint32_t> item_;   ///< by symbol
  std::vector<std::string> anchors_;  ///< by symbol, without "d-"
  std::vector<ListPage> pages_;
  std::vector<std::string> files_;     ///< the overview's, then those of other pages
  std::vector<std::string> projects_;  ///< their names in files
};

}  // namespace quillmate::output
