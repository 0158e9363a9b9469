#include <quillmate/navigation/code_view.h>
#include <quillmate/text/marked_walk.h>

namespace quillmate::navigation {
namespace {

using text::Marker;

/// Collects the text and its runs. Colour and bold are switches as in the RTF: an opener sets the colour, whatever it
/// was, and one closing header marker ends the bold of a line that was wrapped twice.
class RunBuilder {
 public:
  explicit RunBuilder(std::size_t size) { module_.text.reserve(size); }

  void Mark(Marker marker) noexcept {
    switch (marker) {
      case Marker::kSpanClose:
        span_ = Span::kPlain;
        break;
      case Marker::kCommentOpen:
        span_ = Span::kComment;
        break;
      case Marker::kKeywordOpen:
        span_ = Span::kKeyword;
        break;
      case Marker::kStringOpen:
        span_ = Span::kString;
        break;
      default:
        headerLine_ = marker == Marker::kHeaderLineOpen;
    }
  }

  void Code(std::string_view code) {
    if (span_ == Span::kPlain && !headerLine_) {
      module_.text.append(code);
    } else {
      AddStyled(code);
    }
  }

  PlainModule Take() { return std::move(module_); }

 private:
  void AddStyled(std::string_view code) {
    for (std::size_t found = code.find(text::kLineBreak); found != std::string_view::npos;
         found = code.find(text::kLineBreak)) {
      AddRun(code.substr(0, found));
      module_.text.append(text::kLineBreak);
      code.remove_prefix(found + text::kLineBreak.size());
    }
    AddRun(code);
  }

  void AddRun(std::string_view code) {
    if (code.empty()) return;
    auto& runs = module_.runs;
    const std::size_t start = module_.text.size();
    const bool goesOn = !runs.empty() && runs.back().start + runs.back().length == start && runs.back().span == span_ &&
                        runs.back().headerLine == headerLine_;
    if (goesOn) {
      runs.back().length += code.size();
    } else {
      runs.push_back({start, code.size(), span_, headerLine_});
    }
    module_.text.append(code);
  }

  PlainModule module_;
  Span span_ = Span::kPlain;
  bool headerLine_ = false;
};

}  // namespace

PlainModule StripMarkers(std::string_view markedText) {
  RunBuilder builder(markedText.size());
  text::WalkMarkedText(markedText, builder);
  return builder.Take();
}

}  // namespace quillmate::navigation
