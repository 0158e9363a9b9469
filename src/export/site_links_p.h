#pragma once

#include <string_view>
#include <vector>

#include "site_model_p.h"

/// Which routine an identifier means.
namespace quillmate::output {

struct SiteReference {
  /// Position in the model; kNoRoutine when the identifier means none.
  int routine = kNoRoutine;
  /// The name of a routine in its own header.
  bool isDefinition = false;
};

/// Finds the routines that a module's identifiers mean. Its lines have to be gone through in order.
class ReferenceFinder {
 public:
  explicit ReferenceFinder(const SiteModel& model);

  /// Begins a module at its first line.
  void EnterModule(int module);
  void NextLine() noexcept;
  codedb::Line CurrentLine() const noexcept { return line_; }

  SiteReference Find(std::string_view identifier) const noexcept;
  /// The routine that starts in this line, or kNoRoutine.
  int RoutineStartingHere() const noexcept;

 private:
  bool IsBegun(const codedb::RoutineRecord& record) const noexcept { return record.start && *record.start <= line_; }
  bool IsInHeader() const noexcept;

  /// The first routine of a name in the current module; counts when `module` is the current one.
  struct OwnRoutine {
    int module = -1;
    int routine = kNoRoutine;
  };

  const SiteModel& model_;
  std::vector<OwnRoutine> ownOfName_;
  int module_ = -1;
  codedb::Line line_;
  /// The last routine that has started, and the next one.
  int current_ = kNoRoutine;
  int next_ = 0;
};

/// Reads a module's text (without the line breaks that storing has added) into the model: who calls whom and which
/// routines have an anchor.
void CollectReferences(std::string_view markedText, int module, ReferenceFinder& finder, SiteModel& model);
/// To be called when all modules were read.
void SortReferences(SiteModel& model);

}  // namespace quillmate::output
