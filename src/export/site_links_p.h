#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "site_contents_p.h"

/// Where names of a module's code lead, and where its routines begin.
namespace quillmate::output {

/// A name in the shown code; line and column count from 1, column and length characters.
struct SiteLink {
  std::uint32_t line = 0;
  std::uint32_t column = 0;
  std::uint32_t length = 0;
  symbols::SymbolId symbol = symbols::kNone;
  /// The name in its declaration.
  bool isDefinition = false;
  /// The name may mean something else.
  bool isPossible = false;
};

/// The links of a module by place: each name that surely or possibly means something of the project, of several things
/// the first routine of the index, or else the first. `markedText` is without the line breaks that storing has added.
std::vector<SiteLink> FindLinks(const SiteModel& model, int module, std::string_view markedText);

/// What links of one module's page lead to, and the words about it that a browser shows beside them.
class LinkTags {
 public:
  LinkTags(const SiteContents& site, int module) : site_(site), module_(module) {}

  /// `<a href="..." title="...">`; empty where there is nothing to lead to. Stays until the next call.
  const std::string& Of(const SiteLink& link);

 private:
  std::string Make(const SiteLink& link) const;
  std::string Address(const SiteLink& link) const;
  std::string Title(const SiteLink& link) const;

  const SiteContents& site_;
  int module_;
  std::unordered_map<std::uint64_t, std::string> made_;
};

/// Tells where routines begin, line by line.
class RoutineStarts {
 public:
  /// Begins a module at its first line.
  RoutineStarts(const SiteModel& model, int module);

  void NextLine() noexcept;
  codedb::Line CurrentLine() const noexcept { return line_; }
  /// The routine that starts in this line, or kNoRoutine.
  int Here() const noexcept;

 private:
  bool IsBegun(const codedb::RoutineRecord& record) const noexcept { return record.start && *record.start <= line_; }

  const SiteModel& model_;
  int last_;
  codedb::Line line_;
  /// The last routine that has started, and the next one.
  int current_ = kNoRoutine;
  int next_;
};

/// Notes which routines have an anchor in the code.
void FindAnchors(std::string_view markedText, int module, SiteModel& model);

}  // namespace quillmate::output
