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

/// The string that begins behind `at` in a script, without its quotes and escapes.
inline std::string ScriptString(std::string_view script, std::string_view at) {
  std::string text;
  const std::size_t found = script.find(at);
  EXPECT_NE(found, std::string_view::npos) << at;
  if (found == std::string_view::npos) return text;
  for (std::size_t i = found + at.size(); i < script.size() && script[i] != '"'; ++i) {
    if (script[i] != '\\') {
      text += script[i];
    } else if (script[++i] == 'u') {
      text += static_cast<char>(std::stoi(std::string(script.substr(i + 1, 4)), nullptr, 16));
      i += 4;
    } else {
      text += script[i] == 'n' ? '\n' : script[i] == 't' ? '\t' : script[i];
    }
  }
  return text;
}

/// What the search knows, an entry a line: "name: kind place address comment", in the order of its files.
inline std::vector<std::string> SearchEntries(const std::map<std::string, std::string>& files) {
  const std::string& script = files.at("suche.js");
  const auto list = [&](std::string_view name) {
    std::vector<std::string> texts;
    const std::string lines = ScriptString(script, std::string(name) + ":\"");
    for (const std::string_view line : text::Split(lines, "\n")) {
      texts.emplace_back(line);
    }
    return texts;
  };
  const std::vector<std::string> names = list("names"), kinds = list("kinds"), modules = list("modules");
  const std::vector<std::string> lists = list("lists");
  std::vector<std::string> ofEntry;
  const std::string counts = ScriptString(script, "counts:\"");
  std::size_t name = 0;
  for (const std::string_view count : text::Split(counts, " ")) {
    ofEntry.insert(ofEntry.end(), std::stoul("0" + std::string(count), nullptr, 36), names[name++]);
  }
  std::vector<std::string> entries;
  for (int part = 1; files.contains("suche-e" + std::to_string(part) + ".js"); ++part) {
    const std::string stem = "suche-e" + std::to_string(part);
    const std::string text = ScriptString(files.at(stem + ".js"), "sucheTeil(\"" + stem + "\",\"");
    for (const std::string_view line : text::Split(text, "\n")) {
      const std::vector<std::string_view> cells = text::Split(line, "\t");
      const std::string module = cells[1].empty() ? "\t" : modules[std::stoul(std::string(cells[1]))];
      std::string address(cells[3]);
      const std::size_t cut = address.find('#');
      const bool inList = cut != std::string::npos && cut > 0;
      address = inList ? lists[std::stoul(address.substr(0, cut))] + address.substr(cut)
                       : std::string(text::TextAfterLast(module, "\t")) + address;
      EXPECT_LT(entries.size(), ofEntry.size());
      if (entries.size() >= ofEntry.size()) return entries;
      std::string entry = ofEntry[entries.size()] + ": " + kinds[std::stoul(std::string(cells[0]))];
      entry.append(" ").append(text::TextBefore(module, "\t"));
      entry.append(cells[2].empty() ? "" : ".").append(cells[2]).append(" ").append(address).append(" ");
      entries.push_back(entry.append(cells[4]));
    }
  }
  EXPECT_EQ(entries.size(), ofEntry.size());
  return entries;
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
  // What the search finds is a link too.
  if (files.contains("suche.js")) {
    for (const std::string& entry : SearchEntries(files)) {
      const std::size_t html = entry.find(".html"), begin = entry.rfind(' ', html);
      pages["suche.html"].targets.push_back(entry.substr(begin + 1, entry.find(' ', html) - begin - 1));
    }
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
