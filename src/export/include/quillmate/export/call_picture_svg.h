#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <quillmate/symbols/call_picture.h>

/// The picture of a routine's calls as SVG, UTF-8.
namespace quillmate::output {

struct CallPictureSvgOptions {
  /// Read out in place of the picture; empty for none.
  std::string title;
  /// Where a click on a node leads; an empty answer for nowhere. May be empty.
  std::function<std::string(const symbols::PictureNode& node)> link{};
  /// With the XML declaration, a white ground and the style in it, as a file of its own. Otherwise an element for a
  /// page whose style sheet holds kCallPictureStyle.
  bool standAlone = true;
};

/// Light colours; those of a dark page are the page's matter.
extern const std::string_view kCallPictureStyle;

/// The picture must have been laid out with EstimateTextWidth; what is wider than its node is cut.
std::string CallPictureSvg(const symbols::CallPicture& picture, const CallPictureSvgOptions& options);

}  // namespace quillmate::output
