#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "site_model_p.h"

/// Which names of a module's code lead to routines, and where its routines begin.
namespace quillmate::output {

/// A name in the shown code; line and column count from 1, column and length characters.
struct SiteLink {
  std::uint32_t line = 0;
  std::uint32_t column = 0;
  std::uint32_t length = 0;
  /// Position in the model.
  int routine = kNoRoutine;
  /// The name of a routine in its own header.
  bool isDefinition = false;
};

/// The links of a module by place: each name that surely or possibly means routines of the index, the first one of
/// several. `markedText` is without the line breaks that storing has added.
std::vector<SiteLink> FindLinks(const SiteModel& model, int module, std::string_view markedText);

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
