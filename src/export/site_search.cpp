#include <algorithm>
#include <charconv>

#include <quillmate/codedb/collation.h>
#include <quillmate/text/windows1252.h>

#include "site_parts_p.h"
#include "site_search_p.h"
#include "site_search_script_p.h"

namespace quillmate::output {
namespace {

/// Words of an entry's comment that can be found and shown.
constexpr std::size_t kLongest = 300;
/// A part of the words has more entries by one word at most.
constexpr std::size_t kPostingsPerPart = 16384;

/// The beginning of a description, on one line; cut between words.
std::string Beginning(std::string_view text) {
  std::string plain(text.substr(0, std::min(text.size(), kLongest + 1)));
  for (char& c : plain) c = c == '\n' || c == '\t' ? ' ' : c;
  if (plain.size() <= kLongest) return plain;
  const std::size_t blank = plain.find_last_of(' ', kLongest);
  return plain.substr(0, blank == std::string::npos ? 0 : blank) + " …";
}

/// Within a string of the script; nothing in it ends the script or its line.
void AppendEscaped(std::string& script, std::string_view utf8) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char c : utf8) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      (script += '\\') += c;
    } else if (c == '\n' || c == '\t') {
      (script += '\\') += c == '\n' ? 'n' : 't';
    } else if (code < 0x20 || c == '<') {
      ((script += "\\u00") += kDigits[code >> 4U]) += kDigits[code & 0xFU];
    } else {
      script += c;
    }
  }
}

void AppendNumber(std::string& text, std::uint64_t number) {
  constexpr int kBase = 36;
  char digits[16];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, number, kBase).ptr);
}

/// Names and words have no line break in them.
template <typename List>
void AppendLines(std::string& script, std::string_view name, const List& texts) {
  script.append(name).append(":\"");
  bool isFirst = true;
  for (const auto& text : texts) {
    if (!isFirst) script += "\\n";
    isFirst = false;
    AppendEscaped(script, text);
  }
  script += "\",\n";
}

bool IsWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// ASCII letters small: the script sees to the others.
std::vector<std::string> WordsOf(std::string_view comment) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at < comment.size();) {
    std::size_t end = at;
    while (end < comment.size() && IsWordCharacter(comment[end])) ++end;
    if (end - at > 1) {
      std::string& word = words.emplace_back(comment.substr(at, end - at));
      for (char& c : word) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    }
    at = end + 1;
  }
  std::ranges::sort(words);
  words.erase(std::unique(words.begin(), words.end()), words.end());
  return words;
}

std::string PartFile(char kind, std::size_t part) { return std::string("suche-") + kind + std::to_string(part + 1); }

std::string SearchPage(const SiteModel& model) {
  std::string html = PageHead(model, "Suche", kSearchFile);
  html +=
      "<p><label for=\"suchfeld\">Namen und Wörter aus Kommentaren:</label> "
      "<input type=\"search\" id=\"suchfeld\" name=\"q\" autocomplete=\"off\"></p>\n"
      "<p id=\"anzahl\" role=\"status\"></p>\n<ul class=\"found\" id=\"treffer\"></ul>\n"
      "<noscript><p>Die Suche braucht ein Skript. Ohne Skripte helfen die Listen ";
  AppendLink(html, kRoutinesFile, "Routinen von A bis Z");
  html += " und ";
  AppendLink(html, kDeclarationsFile, "Deklarationen");
  html.append(".</p></noscript>\n<script src=\"").append(kSearchScript).append("\"></script>\n");
  return html.append(kPageEnd);
}

}  // namespace

SiteSearch::SiteSearch(const SiteContents& site, const SearchComments& comments) : site_(site), comments_(comments) {
  Collect();
  SortByName();
  ReadWords();
  DivideWords();
  for (std::size_t page = 0; page < site.declarations.PageCount(); ++page) {
    lists_.emplace(site.declarations.File(page), page);
  }
}

/// Modules, routines, what modules declare, what routines do.
void SiteSearch::Collect() {
  const SiteModel& model = site_.model;
  const symbols::ReferenceIndex& known = model.known;
  entries_.reserve(model.modules.size() + model.routines.size() + known.SymbolCount());
  for (std::uint32_t i = 0; i < model.modules.size(); ++i) {
    const codedb::ModuleRecord& record = *model.modules[i].record;
    Add(What::kModule, i, own_.emplace_back(text::Utf8FromCode(record.name)), ModuleKindText(record.kind));
  }
  for (std::uint32_t i = 0; i < model.routines.size(); ++i) {
    const codedb::RoutineRecord& record = *model.routines[i].record;
    Add(What::kRoutine, i, own_.emplace_back(text::Utf8FromCode(record.name)), RoutineKindText(record.kind));
  }
  for (const bool local : {false, true}) {
    for (symbols::SymbolId symbol = 0; symbol < known.SymbolCount(); ++symbol) {
      const symbols::Symbol& found = known.SymbolAt(symbol);
      const bool inside = found.visibility == symbols::Visibility::kLocal || found.kind == symbols::SymbolKind::kLabel;
      if (inside != local || !site_.declarations.Has(symbol) || model.RoutineOf(symbol) != kNoRoutine) continue;
      Add(What::kSymbol, symbol, known.Name(symbol), GermanWord(found.kind));
    }
  }
}

void SiteSearch::Add(What what, std::uint32_t number, std::string_view name, std::string_view kind) {
  const auto found = std::ranges::find(kinds_, kind);
  const auto position = static_cast<std::uint8_t>(found - kinds_.begin());
  if (found == kinds_.end()) kinds_.push_back(kind);
  entries_.push_back({static_cast<std::uint32_t>(names_.size()), number, what, position});
  names_.push_back(name);
}

/// Until here each entry has a name of its own.
void SiteSearch::SortByName() {
  std::unordered_map<std::string_view, std::uint32_t> numbers;
  std::vector<std::string_view> distinct;
  for (Entry& entry : entries_) {
    const auto [found, isNew] = numbers.try_emplace(names_[entry.name], static_cast<std::uint32_t>(distinct.size()));
    if (isNew) distinct.push_back(found->first);
    entry.name = found->second;
  }
  std::vector<std::uint32_t> order(distinct.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
  std::ranges::sort(order, [&](std::uint32_t a, std::uint32_t b) {
    const int compared = codedb::CompareText(distinct[a], distinct[b]);
    return compared != 0 ? compared < 0 : distinct[a] < distinct[b];
  });
  std::vector<std::uint32_t> rank(distinct.size());
  names_.resize(distinct.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) {
    rank[order[i]] = i;
    names_[i] = distinct[order[i]];
  }
  std::vector<std::uint32_t> next(distinct.size() + 1);
  for (Entry& entry : entries_) {
    entry.name = rank[entry.name];
    ++next[entry.name + 1];
  }
  for (std::size_t i = 1; i < next.size(); ++i) next[i] += next[i - 1];
  std::vector<Entry> sorted(entries_.size());
  for (const Entry& entry : entries_) sorted[next[entry.name]++] = entry;
  entries_ = std::move(sorted);
}

std::string_view SiteSearch::CommentOf(const Entry& entry) const {
  const SiteModel& model = site_.model;
  if (entry.what == What::kModule) return model.modules[entry.number].description.text;
  if (entry.what == What::kRoutine) {
    return entry.number < comments_.routines.size() ? std::string_view(comments_.routines[entry.number]) : "";
  }
  const int page = model.ModuleOf(model.known.SymbolAt(entry.number).module);
  if (page < 0 || static_cast<std::size_t>(page) >= comments_.declarations.size()) return {};
  const auto& all = comments_.declarations[static_cast<std::size_t>(page)];
  const auto found = std::ranges::lower_bound(all, entry.number, {}, [](const auto& one) { return one.first; });
  return found == all.end() || found->first != entry.number ? std::string_view() : found->second;
}

void SiteSearch::ReadWords() {
  std::unordered_map<std::string, std::uint32_t> numbers;
  std::vector<Posting> found;
  for (std::uint32_t i = 0; i < entries_.size(); ++i) {
    const std::string_view comment = CommentOf(entries_[i]);
    if (comment.empty()) continue;
    for (std::string& word : WordsOf(Beginning(comment))) {
      const auto number = static_cast<std::uint32_t>(numbers.size());
      found.push_back({numbers.try_emplace(std::move(word), number).first->second, i});
    }
  }
  std::vector<std::pair<std::string, std::uint32_t>> order(numbers.begin(), numbers.end());
  std::ranges::sort(order);
  std::vector<std::uint32_t> rank(order.size());
  words_.reserve(order.size());
  for (auto& [word, number] : order) {
    rank[number] = static_cast<std::uint32_t>(words_.size());
    words_.push_back(std::move(word));
  }
  postingsOf_.assign(words_.size() + 1, 0);
  for (Posting& posting : found) {
    posting.word = rank[posting.word];
    ++postingsOf_[posting.word + 1];
  }
  for (std::size_t i = 1; i < postingsOf_.size(); ++i) postingsOf_[i] += postingsOf_[i - 1];
  postings_.resize(found.size());
  std::vector<std::size_t> next = postingsOf_;
  for (const Posting& posting : found) postings_[next[posting.word]++] = posting;
}

void SiteSearch::DivideWords() {
  for (std::size_t word = 0; word < words_.size(); ++word) {
    const bool full = !wordParts_.empty() && postingsOf_[word] - postingsOf_[wordParts_.back()] >= kPostingsPerPart;
    if (wordParts_.empty() || full) wordParts_.push_back(word);
  }
}

std::string SiteSearch::Script() const {
  std::string script = "\"use strict\";\nvar data = {\n";
  AppendLines(script, "names", names_);
  const auto counts = [&script](std::string_view name, std::size_t size, const auto& count) {
    script.append(name).append(":\"");
    for (std::size_t i = 0; i < size; ++i) {
      if (i > 0) script += ' ';
      AppendNumber(script, count(i));
    }
    script += "\",\n";
  };
  std::vector<std::uint32_t> ofName(names_.size());
  for (const Entry& entry : entries_) ++ofName[entry.name];
  counts("counts", names_.size(), [&](std::size_t i) { return ofName[i]; });
  AppendLines(script, "words", words_);
  counts("wordCounts", words_.size(), [&](std::size_t i) { return postingsOf_[i + 1] - postingsOf_[i]; });
  script += "wordParts:[";
  for (const std::size_t first : wordParts_) {
    script.append(script.back() == '[' ? "" : ",").append(std::to_string(first));
  }
  script += "],\n";
  AppendLines(script, "kinds", kinds_);
  std::vector<std::string> texts;
  const bool several = site_.model.known.Projects().size() > 1;
  for (const SiteModule& module : site_.model.modules) {
    std::string& text = texts.emplace_back(text::Utf8FromCode(module.record->name));
    if (several && module.number != symbols::kNone) {
      const symbols::ModuleInfo& info = site_.model.known.Modules()[module.number];
      text = site_.model.known.Projects()[info.project].name + "." + text;
    }
    text.append("\t").append(module.page);
  }
  AppendLines(script, "modules", texts);
  texts.clear();
  for (std::size_t i = 0; i < site_.declarations.PageCount(); ++i) texts.push_back(site_.declarations.File(i));
  AppendLines(script, "lists", texts);
  return script.append("perPart:").append(std::to_string(kEntriesPerPart)).append("\n};").append(kSearchProgram);
}

/// "place TAB address TAB": see the script's `read`.
void SiteSearch::AppendSymbol(std::string& text, symbols::SymbolId symbol) const {
  const SiteModel& model = site_.model;
  const symbols::Symbol& found = model.known.SymbolAt(symbol);
  const int module = model.ModuleOf(found.module);
  if (module >= 0) text += std::to_string(module);
  text += '\t';
  if (module < 0) text.append(model.known.Modules()[found.module].name);
  if (found.parent != symbols::kNone) text.append(module < 0 ? "." : "").append(model.known.Name(found.parent));
  text += '\t';
  std::string address;
  site_.declarations.AppendAddress(address, symbol);
  const std::size_t anchor = address.find('#');
  text.append(std::to_string(lists_.at(address.substr(0, anchor)))).append(address.substr(anchor));
}

void SiteSearch::AppendEntry(std::string& text, const Entry& entry) const {
  text.append(std::to_string(entry.kind)).append("\t");
  if (entry.what == What::kSymbol) {
    AppendSymbol(text, entry.number);
  } else if (entry.what == What::kModule) {
    text.append(std::to_string(entry.number)).append("\t\t");
  } else {
    const SiteRoutine& routine = site_.model.routines[entry.number];
    text.append(std::to_string(routine.module)).append("\t\t#r-").append(routine.anchor);
  }
  text.append("\t").append(Beginning(CommentOf(entry)));
}

std::string SiteSearch::EntryPart(std::size_t part) const {
  std::string script = "sucheTeil(\"" + PartFile('e', part) + "\",\"";
  const std::size_t first = part * kEntriesPerPart;
  const std::size_t last = std::min<std::size_t>(first + kEntriesPerPart, entries_.size());
  std::string text;
  for (std::size_t i = first; i < last; ++i) {
    if (i > first) text += '\n';
    AppendEntry(text, entries_[i]);
  }
  AppendEscaped(script, text);
  return script.append("\");\n");
}

std::string SiteSearch::WordPart(std::size_t part) const {
  std::string script = "sucheTeil(\"" + PartFile('w', part) + "\",\"";
  const std::size_t last = part + 1 < wordParts_.size() ? wordParts_[part + 1] : words_.size();
  for (std::size_t word = wordParts_[part]; word < last; ++word) {
    if (word > wordParts_[part]) script += "\\n";
    std::uint32_t before = 0;
    for (std::size_t i = postingsOf_[word]; i < postingsOf_[word + 1]; ++i) {
      if (i > postingsOf_[word]) script += ' ';
      AppendNumber(script, postings_[i].entry - std::exchange(before, postings_[i].entry));
    }
  }
  return script.append("\");\n");
}

std::vector<SitePage> SiteSearch::Pages() const {
  std::vector<SitePage> pages;
  pages.push_back({kSearchFile, [this] { return SearchPage(site_.model); }});
  pages.push_back({kSearchScript, [this] { return Script(); }});
  for (std::size_t part = 0; part * kEntriesPerPart < entries_.size(); ++part) {
    pages.push_back({PartFile('e', part) + ".js", [this, part] { return EntryPart(part); }});
  }
  for (std::size_t part = 0; part < wordParts_.size(); ++part) {
    pages.push_back({PartFile('w', part) + ".js", [this, part] { return WordPart(part); }});
  }
  return pages;
}

}  // namespace quillmate::output
