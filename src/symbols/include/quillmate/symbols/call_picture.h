#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// A routine with those that call it on its left and those that it calls on its right, level by level: what a picture
/// of its calls shows and where, without font or screen. Lengths are points of the picture, y downwards.
namespace quillmate::symbols {

struct PictureNode {
  enum class Kind : std::uint8_t {
    kRoutine,
    kOutside,  ///< something outside the code: an event, a button
    kMore      ///< stands for those of its level that found no room
  };

  Kind kind = Kind::kRoutine;
  SymbolId routine = kNone;
  int level = 0;         ///< 0 the routine in the middle, -1 its callers, 1 what it calls
  std::string title;     ///< name of the routine, the place outside in German words, "+7 weitere"
  std::string place;     ///< name of the module; with the project's where there are several; may be empty
  bool isCycle = false;  ///< calls itself, directly or over others that are in the picture
  bool isEntry = false;  ///< nothing is known to call it; told of the routine itself and its callers
  std::size_t more = 0;  ///< kMore: how many
  double x = 0, y = 0, width = 0, height = 0;
};

struct PictureEdge {
  Index from = 0;  ///< into the nodes: the caller
  Index to = 0;
  Certainty certainty = Certainty::kSure;
  std::size_t lines = 0;  ///< how many lines call
  bool isCycle = false;   ///< belongs to a cycle
};

struct CallPicture {
  std::vector<PictureNode> nodes;  ///< the routine itself comes first, then level by level
  std::vector<PictureEdge> edges;
  double width = 0, height = 0;
};

struct PictureRequest {
  SymbolId routine = kNone;
  std::uint32_t callerLevels = 2;
  std::uint32_t calleeLevels = 2;
  /// A level that has more ends with a node of kind kMore.
  std::size_t nodesPerLevel = 30;
};

/// Width of a text in a picture; `bold` for titles.
using MeasureText = std::function<double(std::string_view utf8, bool bold)>;

inline constexpr double kPictureTextSize = 12;
inline constexpr double kPictureNodeHeight = 38;
inline constexpr double kPictureTextMargin = 9;
/// A wider text is cut by whoever paints it.
inline constexpr double kPictureNodeWidth = 260;

/// About what a text takes in the usual sans serif fonts of kPictureTextSize, a little too wide rather than too narrow.
double EstimateTextWidth(std::string_view utf8, bool bold);

/// How far the line from one node's right side to the other's left side swings out, to the right and to the left.
double PictureBend(const PictureNode& from, const PictureNode& to);

/// On each side every routine is once, on the level where it is met first. No node is upon another.
CallPicture DrawCalls(const ReferenceIndex& index, const PictureRequest& request,
                      const MeasureText& measure = EstimateTextWidth);

}  // namespace quillmate::symbols
