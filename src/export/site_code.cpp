#include <charconv>
#include <utility>

#include "site_code_p.h"
#include "site_text_p.h"
#include "site_walk_p.h"

namespace quillmate::output {
namespace {

std::string_view SpanTag(text::Marker marker) noexcept {
  switch (marker) {
    case text::Marker::kCommentOpen:
      return "<span class=\"c\">";
    case text::Marker::kKeywordOpen:
      return "<span class=\"k\">";
    default:
      return "<span class=\"s\">";
  }
}

void AppendNumber(std::string& html, std::int64_t number) {
  char digits[24];
  const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), number);
  html.append(digits, end);
}

/// Turns the markers into tags. Markers of code that itself holds byte 159 need not match; and a comment or a header
/// may go on in the next line. So the tags follow what is open, and all are closed at a line's end.
class CodeTags {
 public:
  explicit CodeTags(std::string& html) : html_(html) {}

  void Mark(text::Marker marker) {
    switch (marker) {
      case text::Marker::kHeaderLineOpen:
        return SetBold(bold_ + 1);
      case text::Marker::kHeaderLineClose:
        return SetBold(bold_ > 0 ? bold_ - 1 : 0);
      default:
        return SetSpan(marker);
    }
  }

  /// Closes what is open, and opens it again.
  void Suspend() {
    if (span_ != text::Marker::kSpanClose) html_ += "</span>";
    if (bold_ > 0) html_ += "</b>";
  }
  void Resume() {
    if (bold_ > 0) OpenBold();
    if (span_ != text::Marker::kSpanClose) html_ += SpanTag(span_);
  }

  /// The next "<b>" gets this anchor.
  void SetAnchor(std::string_view anchor) { anchor_ = anchor; }

 private:
  void SetBold(int bold) {
    if ((bold > 0) == (bold_ > 0) && anchor_.empty()) {
      bold_ = bold;
      return;
    }
    Suspend();
    bold_ = bold;
    Resume();
  }

  void SetSpan(text::Marker span) {
    if (span_ != text::Marker::kSpanClose) html_ += "</span>";
    span_ = span;
    if (span_ != text::Marker::kSpanClose) html_ += SpanTag(span_);
  }

  void OpenBold() {
    if (anchor_.empty()) {
      html_ += "<b>";
    } else {
      html_.append("<b id=\"c-").append(anchor_).append("\">");
      anchor_ = {};
    }
  }

  std::string& html_;
  int bold_ = 0;
  text::Marker span_ = text::Marker::kSpanClose;
  std::string_view anchor_;
};

class PlainRenderer {
 public:
  explicit PlainRenderer(std::string& html) : html_(html), tags_(html) {}

  void Identifier(std::string_view word) { AppendCode(html_, word); }
  void Text(std::string_view bytes) { AppendCode(html_, bytes); }
  void Mark(text::Marker marker) { tags_.Mark(marker); }
  void LineBreak() {
    tags_.Suspend();
    html_ += '\n';
    tags_.Resume();
  }
  void Finish() { tags_.Suspend(); }

 private:
  std::string& html_;
  CodeTags tags_;
};

class ModuleRenderer {
 public:
  ModuleRenderer(std::string& html, int module, const SiteContents& site, std::vector<SiteLink> links)
      : html_(html),
        tags_(html),
        model_(site.model),
        linkTags_(site, module),
        starts_(site.model, module),
        links_(std::move(links)) {
    BeginLine();
  }

  void Identifier(std::string_view word) {
    const SiteLink* const link = LinkHere();
    if (link == nullptr) return Text(word);
    const std::string& tag = linkTags_.Of(*link);
    html_ += tag;
    Text(word);
    if (!tag.empty()) html_ += "</a>";
  }

  void Text(std::string_view bytes) {
    AppendCode(html_, bytes);
    column_ += bytes.size();
  }

  void Mark(text::Marker marker) {
    if (marker == text::Marker::kHeaderLineOpen) SetAnchor();
    tags_.Mark(marker);
  }

  void LineBreak() {
    tags_.Suspend();
    html_ += '\n';
    starts_.NextLine();
    column_ = 1;
    BeginLine();
    tags_.Resume();
  }

  void Finish() {
    tags_.Suspend();
    html_ += '\n';
  }

 private:
  /// The link whose name holds the present column.
  const SiteLink* LinkHere() {
    const auto line = static_cast<std::uint32_t>(starts_.CurrentLine().value);
    const auto isPassed = [&](const SiteLink& link) {
      return link.line < line || (link.line == line && link.column + link.length <= column_);
    };
    while (next_ < links_.size() && isPassed(links_[next_])) ++next_;
    const bool isHere = next_ < links_.size() && links_[next_].line == line && links_[next_].column <= column_;
    return isHere ? &links_[next_] : nullptr;
  }

  void BeginLine() {
    html_ += "<span id=\"z";
    AppendNumber(html_, starts_.CurrentLine().value);
    html_ += "\">";
    AppendNumber(html_, starts_.CurrentLine().value);
    html_ += "</span>";
  }

  void SetAnchor() {
    const int routine = starts_.Here();
    if (routine == kNoRoutine || routine == anchored_) return;
    anchored_ = routine;
    tags_.SetAnchor(model_.Routine(routine).anchor);
  }

  std::string& html_;
  CodeTags tags_;
  const SiteModel& model_;
  LinkTags linkTags_;
  RoutineStarts starts_;
  std::vector<SiteLink> links_;
  std::size_t next_ = 0;
  /// Of what comes next, from 1 on.
  std::size_t column_ = 1;
  /// The last routine that has its anchor.
  int anchored_ = kNoRoutine;
};

}  // namespace

void AppendModuleCode(std::string& html, std::string_view markedText, int module, const SiteContents& site) {
  ModuleRenderer renderer(html, module, site, FindLinks(site.model, module, markedText));
  WalkCode(markedText, renderer);
  renderer.Finish();
}

void AppendPlainCode(std::string& html, std::string_view markedText) {
  PlainRenderer renderer(html);
  WalkCode(markedText, renderer);
  renderer.Finish();
}

}  // namespace quillmate::output
