#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "site_contents_p.h"
#include "site_page_p.h"

/// A search over the names and comments of everything that the code declares. It needs no server and no more of the
/// files than it comes to: from a disk or a share a page can only fetch scripts, so everything is one.
///
///     suche.html   the field; "suche.html?q=Wort" searches at once
///     suche.js     looks; holds every name and every word of the comments once
///     suche-eN.js  kEntriesPerPart entries each, in the order of their names
///     suche-wN.js  for some of the words the entries whose comments have them
namespace quillmate::output {

inline constexpr const char* kSearchScript = "suche.js";
inline constexpr std::uint32_t kEntriesPerPart = 2048;

/// What declarations say about themselves, plain UTF-8.
struct SearchComments {
  std::vector<std::string> routines;  ///< by position in the model
  /// By position of the module in the model, then by symbol; those without comment are left out.
  std::vector<std::vector<std::pair<symbols::SymbolId, std::string>>> declarations;
};

class SiteSearch {
 public:
  /// Both must outlive this, and this its pages.
  SiteSearch(const SiteContents& site, const SearchComments& comments);
  SiteSearch(const SiteSearch&) = delete;
  SiteSearch& operator=(const SiteSearch&) = delete;

  /// All files of the search.
  std::vector<SitePage> Pages() const;

 private:
  enum class What : std::uint8_t { kModule, kRoutine, kSymbol };
  struct Entry {
    std::uint32_t name;
    std::uint32_t number;  ///< position in the model, or symbol
    What what;
    std::uint8_t kind;  ///< into kinds_
  };
  struct Posting {
    std::uint32_t word, entry;
  };

  void Collect();
  void Add(What what, std::uint32_t number, std::string_view name, std::string_view kind);
  void SortByName();
  void ReadWords();
  void DivideWords();
  std::string_view CommentOf(const Entry& entry) const;
  std::string Script() const;
  std::string EntryPart(std::size_t part) const;
  std::string WordPart(std::size_t part) const;
  void AppendEntry(std::string& text, const Entry& entry) const;
  void AppendSymbol(std::string& text, symbols::SymbolId symbol) const;

  const SiteContents& site_;
  const SearchComments& comments_;
  std::deque<std::string> own_;  ///< names that nobody else keeps
  std::vector<std::string_view> names_;
  std::vector<std::string_view> kinds_;
  std::vector<Entry> entries_;
  std::vector<std::string> words_;
  std::vector<Posting> postings_;                       ///< by word, then entry
  std::vector<std::size_t> wordParts_;                  ///< first word of each part
  std::vector<std::size_t> postingsOf_;                 ///< first posting of each word, and the end
  std::unordered_map<std::string, std::size_t> lists_;  ///< number of each page of declarations
};

}  // namespace quillmate::output
