#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

/// Looks over all pages of a site: tags, characters, links and anchors.
namespace quillmate::output {

/// What a page offers to links and where its own lead. Complains about tags that do not match.
struct PageLinks {
  std::set<std::string> ids;
  std::vector<std::string> targets;
};

inline std::string Attribute(std::string_view tag, std::string_view name) {
  const std::string key = " " + std::string(name) + "=\"";
  const std::size_t at = tag.find(key);
  return at == std::string_view::npos ? "" : std::string(text::TextBefore(tag.substr(at + key.size()), "\""));
}

inline PageLinks ReadPage(const std::string& file, const std::string& page) {
  PageLinks links;
  std::vector<std::string> open;
  EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n<html lang=\"de\">")) << file;
  EXPECT_TRUE(text::IsValidUtf8(page)) << file;
  EXPECT_TRUE(
      std::none_of(page.begin(), page.end(), [](char c) { return c >= 0 && c < ' ' && c != '\t' && c != '\n'; }))
      << "control characters in " << file;
  for (std::size_t at = page.find('<', 1); at != std::string::npos; at = page.find('<', at + 1)) {
    const std::string_view tag = std::string_view(page).substr(at + 1, page.find('>', at) - at - 1);
    const std::string name(text::TextBefore(tag, " "));
    if (name.starts_with('/')) {
      EXPECT_FALSE(open.empty()) << file;
      if (open.empty()) return links;
      EXPECT_EQ("/" + open.back(), name) << file << " at " << at;
      open.pop_back();
    } else if (!tag.ends_with('/') && name != "meta" && name != "link" && name != "input") {
      open.push_back(name);
    }
    if (const std::string id = Attribute(tag, "id"); !id.empty()) {
      EXPECT_TRUE(links.ids.insert(id).second) << id << " twice in " << file;
    }
    if (const std::string target = Attribute(tag, "href"); !target.empty()) links.targets.push_back(target);
  }
  EXPECT_TRUE(open.empty()) << file;
  return links;
}

/// Every link of every page leads to a file and an anchor that are there; names are unique regardless of case.
inline void CheckSite(const std::map<std::string, std::string>& files) {
  std::map<std::string, PageLinks> pages;
  std::set<std::string> lowerNames;
  for (const auto& [file, bytes] : files) {
    std::string lower = file;
    for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    EXPECT_TRUE(lowerNames.insert(lower).second) << file;
    EXPECT_EQ(file.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-."),
              std::string::npos)
        << file;
    if (file.ends_with(".html")) pages[file] = ReadPage(file, bytes);
  }
  for (const auto& [file, page] : pages) {
    for (const std::string& target : page.targets) {
      const std::string to(text::TextBefore(target, "#"));
      const std::string& toFile = to.empty() ? file : to;
      ASSERT_TRUE(files.contains(toFile)) << target << " in " << file;
      if (target.find('#') == std::string::npos) continue;
      EXPECT_TRUE(pages[toFile].ids.contains(std::string(text::TextAfterLast(target, "#"))))
          << target << " in " << file;
    }
  }
}

}  // namespace quillmate::output
