#include <algorithm>

#include "site_lists_p.h"
#include "site_parts_p.h"

namespace quillmate::output {
namespace {

class ListDivider {
 public:
  ListDivider(const std::vector<std::size_t>& sizes, const std::vector<ListLevel>& levels, std::size_t pageSize)
      : sizes_(sizes), levels_(levels), pageSize_(pageSize) {}

  /// As deep as there are levels.
  void Divide(std::size_t first, std::size_t last, std::size_t level, const std::string& file,
              const std::string& title) {
    if (level == levels_.size()) return Pieces(first, last, file, title);
    const bool fits = Fits(first, last);
    if (fits) return Pieces(first, last, file, title);
    const bool isOnlyKey = levels_[level].key(first) == levels_[level].key(last - 1);
    if (levels_[level].onlySeveral && isOnlyKey) return Divide(first, last, level + 1, file, title);
    for (std::size_t begin = first, end = first; begin < last; begin = end) {
      const ListKey key = levels_[level].key(begin);
      end = RunEnd(begin, last, level, key);
      Divide(begin, end, level + 1, file + key.file, title.empty() ? key.title : title + ", " + key.title);
    }
  }

  std::vector<ListPage> TakePages() { return std::move(pages_); }

 private:
  bool Fits(std::size_t first, std::size_t last) const {
    std::size_t size = 0;
    for (std::size_t i = first; i < last && size <= pageSize_; ++i) size += sizes_[i];
    return size <= pageSize_;
  }

  std::size_t RunEnd(std::size_t first, std::size_t last, std::size_t level, const ListKey& key) const {
    std::size_t end = first;
    while (end < last && levels_[level].key(end) == key) ++end;
    return end;
  }

  void Pieces(std::size_t first, std::size_t last, const std::string& file, const std::string& title) {
    std::size_t number = 1;
    std::size_t size = 0;
    std::size_t begin = first;
    const auto add = [&](std::size_t end) {
      const std::string count = number == 1 ? "" : std::to_string(number);
      pages_.push_back({file + (count.empty() ? "" : "-" + count) + ".html",
                        title + (count.empty() ? "" : ", Teil " + count), begin, end});
      begin = end;
      size = 0;
      ++number;
    };
    for (std::size_t i = first; i < last; ++i) {
      if (size > 0 && size + sizes_[i] > pageSize_) add(i);
      size += sizes_[i];
    }
    add(last);
  }

  const std::vector<std::size_t>& sizes_;
  const std::vector<ListLevel>& levels_;
  std::size_t pageSize_;
  std::vector<ListPage> pages_;
};

}  // namespace

std::vector<ListPage> DivideList(std::string_view stem, std::string_view title, const std::vector<std::size_t>& sizes,
                                 const std::vector<ListLevel>& levels, std::size_t pageSize) {
  ListDivider divider(sizes, levels, pageSize);
  divider.Divide(0, sizes.size(), 0, std::string(stem), std::string(title));
  return divider.TakePages();
}

std::size_t PageOfItem(const std::vector<ListPage>& pages, std::size_t item) {
  const auto next = std::upper_bound(pages.begin(), pages.end(), item,
                                     [](std::size_t wanted, const ListPage& page) { return wanted < page.first; });
  return next == pages.begin() ? 0 : static_cast<std::size_t>(next - pages.begin()) - 1;
}

void AppendListNavigation(std::string& html, const std::vector<ListPage>& pages, std::size_t page,
                          std::string_view overviewFile, std::string_view overviewTitle) {
  if (pages.size() < 2) return;
  html += "<nav aria-label=\"Teile der Liste\">\n<ul class=\"letters\">\n";
  const auto add = [&](std::string_view file, std::string_view before, std::string_view title) {
    html += "<li>";
    AppendLink(html, file, std::string(before).append(title));
    html += "</li>\n";
  };
  if (page > 0) add(pages[page - 1].file, "← ", pages[page - 1].title);
  add(overviewFile, "↑ ", overviewTitle);
  if (page + 1 < pages.size()) add(pages[page + 1].file, "→ ", pages[page + 1].title);
  html += "</ul>\n</nav>\n";
}

}  // namespace quillmate::output
