#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/navigation/code_view.h>
#include <quillmate/navigation/search.h>
#include <quillmate/project/outline_difference.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/reference_index.h>

/// What the code of a loaded project means, and where its places are in the code views.
namespace quillmate::project {

/// A place in a module's text as the understanding counts: 1-based line, 1-based column in characters.
struct TextPlace {
  symbols::Index module = symbols::kNone;
  std::uint32_t line = 0;
  std::uint32_t column = 0;
};

/// A stretch of a module's text: `length` counts characters.
struct TextStretch {
  TextPlace place;
  std::uint32_t length = 0;
};

/// Immutable: any number of threads may ask.
class Understanding {
 public:
  Understanding(symbols::ReferenceIndex index, std::vector<symbols::ModulePlaces> places,
                std::vector<OutlineDifference> differences = {});

  const symbols::ReferenceIndex& Index() const noexcept { return index_; }

  /// One for each module of the index.
  const std::vector<symbols::ModulePlaces>& Places() const noexcept { return places_; }

  /// The module in a view; kNone for a view that nothing is known of.
  symbols::Index ModuleOf(codedb::ViewIndex view) const noexcept;
  /// Nothing for a module that the index lacks (one of one or two lines).
  std::optional<codedb::ViewIndex> ViewOf(symbols::Index module) const noexcept;

  /// The place of a character of a view's text. Nothing for lines that were inserted when the text was laid out.
  std::optional<TextPlace> PlaceAt(codedb::ViewIndex index, const navigation::CodeView& view, std::size_t offset) const;
  /// The name that is at a character of a view's text, or ends in front of it.
  std::optional<symbols::Occurrence> NameAt(codedb::ViewIndex index, const navigation::CodeView& view,
                                            std::size_t offset) const;
  /// Where a stretch is in the view of its module; nothing for lines that aren't shown. The view must be that of
  /// the module.
  std::optional<navigation::TextMatch> Shown(const navigation::CodeView& view, const TextStretch& stretch) const;
  /// 1-based line of the view; 0 for a line that isn't shown.
  std::uint32_t ShownLine(symbols::Index module, std::uint32_t line) const noexcept;

  /// The name of a declaration; length 0 for modules and controls, which are nowhere.
  TextStretch NameOf(symbols::SymbolId symbol) const;
  TextStretch StretchOf(const symbols::Reference& use) const;
  TextStretch StretchOf(symbols::Index module, const symbols::Occurrence& occurrence) const;

  /// Where the routines of the index are others than those of the code, by view; most projects have none.
  const std::vector<OutlineDifference>& Differences() const noexcept { return differences_; }

 private:
  std::uint32_t Characters(symbols::Index module, std::uint32_t offset, std::uint32_t length) const noexcept;

  symbols::ReferenceIndex index_;
  std::vector<symbols::ModulePlaces> places_;
  /// By view.
  std::vector<symbols::Index> modules_;
  std::vector<OutlineDifference> differences_;
};

struct UnderstandingRequest {
  std::filesystem::path folder;
  /// When the index there was written: with another one the folder holds another project by now.
  std::filesystem::file_time_type time;
  /// Where a project runs that does not tell.
  symbols::Host assumed = symbols::Host::kUnknown;
};

/// How far a thread is that makes an understanding, for those who wait for it.
struct UnderstandingProgress {
  std::atomic<bool> cancelled = false;
  /// Called when the folder is not read any more: its files may be replaced. Not before a failure.
  std::function<void()> readingEnded{};
  /// Up to `steps`, which is 0 while the folder is being read.
  std::atomic<std::size_t> done = 0;
  std::atomic<std::size_t> steps = 0;
};

/// Reads a project's folder, with a connection of its own to the index, and makes the understanding. Null when it was
/// cancelled or the folder holds another project; throws like codedb::CodeDatabase when the index can't be read.
std::shared_ptr<const Understanding> MakeUnderstanding(const UnderstandingRequest& request,
                                                       UnderstandingProgress& progress);

}  // namespace quillmate::project
