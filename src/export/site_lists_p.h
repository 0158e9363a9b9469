#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Lists that may be too long for one page.
namespace quillmate::output {

/// A page of a list holds about so many bytes.
inline constexpr std::size_t kListPage = 400'000;

/// What an item of a list belongs to: the end of a file's name (with what parts it from what is before) and words,
/// escaped.
struct ListKey {
  std::string file, title;

  bool operator==(const ListKey&) const = default;
};

/// One way to divide a list; items of one key are together.
struct ListLevel {
  std::function<ListKey(std::size_t item)> key;
  /// Says nothing where all items of the list have the same key.
  bool onlySeveral = false;
};

/// Items `first` up to before `last` on the page `file`.
struct ListPage {
  std::string file;  ///< name of the file
  std::string title;
  std::size_t first = 0, last = 0;
};

/// Divides a list of items, whose sizes in bytes are given, into pages: the first level where it does not fit on one,
/// each part by the next level, and at last into numbered pieces. A list that fits is one page, `stem`.html. The names
/// tell what is on the pages, not where in the list it is: what is added to one page leaves the others alone.
std::vector<ListPage> DivideList(std::string_view stem, std::string_view title, const std::vector<std::size_t>& sizes,
                                 const std::vector<ListLevel>& levels, std::size_t pageSize = kListPage);

/// The page that holds an item.
std::size_t PageOfItem(const std::vector<ListPage>& pages, std::size_t item);

/// Links to the pages before and after one, and to the list's first page.
void AppendListNavigation(std::string& html, const std::vector<ListPage>& pages, std::size_t page,
                          std::string_view overviewFile, std::string_view overviewTitle);

}  // namespace quillmate::output
