#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include <quillmate/navigation/code_view.h>
#include <quillmate/navigation/project_texts.h>

namespace quillmate::navigation {

/// The array of code views `rtbHaupt`: index i (0-based) shows the module whose `mod_num` is i + 1. A module's text is
/// read when its view is first looked at. There is always at least one view, empty while no project is loaded.
class CodeViews {
 public:
  CodeViews();

  /// Makes one view per module of the project in `folder`. Throws files::Failure when one of the module
  /// text files is missing; the views are those of before then.
  void Load(const std::filesystem::path& folder, int moduleCount);
  /// The same with texts that are kept anyway, for other questions; they must outlive the views.
  void Load(ProjectTexts& texts);
  /// One empty view, current index 0.
  void Reset();

  int Count() const noexcept;
  /// Index of the visible view.
  codedb::ViewIndex Current() const noexcept { return current_; }
  void SetCurrent(codedb::ViewIndex index) noexcept { current_ = index; }

  /// The view, its text read at the first call. Throws files::Failure when the file can't be read.
  CodeView& View(codedb::ViewIndex index);
  /// The colouring of that view's text.
  const std::vector<StyleRun>& Runs(codedb::ViewIndex index);
  /// True when the view's text has been read.
  bool IsRead(codedb::ViewIndex index) const noexcept;
  /// Gives up a view that nobody holds any more, with caret and selection: who looks through all of a large project
  /// once keeps only one in memory. It is read anew when it is asked for again.
  void Forget(codedb::ViewIndex index) noexcept;

 private:
  struct Slot {
    CodeView view;
    std::vector<StyleRun> runs;
  };
  Slot& Read(codedb::ViewIndex index);

  std::filesystem::path folder_;
  ProjectTexts* texts_ = nullptr;
  std::vector<std::unique_ptr<Slot>> slots_;  // null until the text has been read
  codedb::ViewIndex current_;
};

}  // namespace quillmate::navigation
