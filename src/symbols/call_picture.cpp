#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <quillmate/symbols/call_picture.h>
#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/cycles.h>
#include <quillmate/text/utf8.h>

namespace quillmate::symbols {
namespace {

constexpr double kMargin = 12;
constexpr double kLevelGap = 64;
constexpr double kNodeGap = 12;

std::string PlaceText(const ReferenceIndex& index, Index module) {
  const ModuleInfo& info = index.Modules()[module];
  if (index.Projects().size() < 2) return info.name;
  return index.Projects()[info.project].name + "." + info.name;
}

/// Finds what is shown, level by level, from the middle outwards.
class Collector {
 public:
  Collector(const ReferenceIndex& index, const PictureRequest& request) : index_(index), request_(request) {}

  CallPicture Collect() {
    AddRoutine(request_.routine, 0);
    Side(CallDirection::kCallers, request_.callerLevels);
    Side(CallDirection::kCallees, request_.calleeLevels);
    MarkCycles();
    return std::move(picture_);
  }

 private:
  Index AddNode(PictureNode node) {
    picture_.nodes.push_back(std::move(node));
    return static_cast<Index>(picture_.nodes.size() - 1);
  }

  Index AddRoutine(SymbolId routine, int level) {
    PictureNode node;
    node.routine = routine;
    node.level = level;
    node.title = index_.Name(routine);
    if (node.title.empty()) node.title = "(ohne Namen)";
    node.place = PlaceText(index_, index_.SymbolAt(routine).module);
    return AddNode(std::move(node));
  }

  void AddEdge(Index inner, Index outer, const CallEdge& call) {
    const bool callers = direction_ == CallDirection::kCallers;
    picture_.edges.push_back(
        {callers ? outer : inner, callers ? inner : outer, call.certainty, call.lines.size(), false});
  }

  void Side(CallDirection direction, std::uint32_t levels) {
    direction_ = direction;
    placed_.clear();
    placed_[request_.routine] = 0;
    std::vector<Index> inner = {0};
    for (std::uint32_t level = 1; level <= levels && !inner.empty(); ++level) {
      const int number = static_cast<int>(level);
      inner = Level(inner, direction == CallDirection::kCallers ? -number : number);
    }
    if (direction != CallDirection::kCallers) return;
    for (const Index node : inner) {
      if (CallersOf(index_, picture_.nodes[node].routine).empty()) picture_.nodes[node].isEntry = true;
    }
  }

  /// The nodes one level further out; those of routines.
  std::vector<Index> Level(const std::vector<Index>& inner, int level) {
    std::vector<Index> outer;
    std::unordered_set<SymbolId> left;
    std::vector<Index> leaving;
    std::size_t shown = 0, leftOutside = 0;
    for (const Index node : inner) {
      const SymbolId routine = picture_.nodes[node].routine;
      const std::vector<CallEdge> calls =
          direction_ == CallDirection::kCallers ? CallersOf(index_, routine) : CalleesOf(index_, routine);
      if (direction_ == CallDirection::kCallers) picture_.nodes[node].isEntry = calls.empty();
      SymbolId last = kNone;
      for (const CallEdge& call : calls) {
        if (call.routine != kNone && std::exchange(last, call.routine) == call.routine) {
          // The same routine, called less surely in other lines.
          if (!leaving.empty() && leaving.back() == node) continue;
          picture_.edges.back().lines += call.lines.size();
          continue;
        }
        const auto known = call.routine == kNone ? placed_.end() : placed_.find(call.routine);
        if (known != placed_.end()) {
          // The one that both sides would draw.
          const bool isOwn = node == 0 && known->second == 0;
          if (!isOwn || !std::exchange(callsItself_, true)) AddEdge(node, known->second, call);
          continue;
        }
        if (shown >= request_.nodesPerLevel) {
          if (call.routine == kNone)
            ++leftOutside;
          else
            left.insert(call.routine);
          if (leaving.empty() || leaving.back() != node) leaving.push_back(node);
          continue;
        }
        ++shown;
        if (call.routine == kNone) {
          PictureNode outside;
          outside.kind = PictureNode::Kind::kOutside;
          outside.level = level;
          outside.title = call.host;
          AddEdge(node, AddNode(std::move(outside)), call);
        } else {
          const Index added = AddRoutine(call.routine, level);
          placed_.emplace(call.routine, added);
          AddEdge(node, added, call);
          outer.push_back(added);
        }
      }
    }
    if (!leaving.empty()) AddMore(leaving, left.size() + leftOutside, level);
    return outer;
  }

  void AddMore(const std::vector<Index>& inner, std::size_t count, int level) {
    PictureNode node;
    node.kind = PictureNode::Kind::kMore;
    node.level = level;
    node.more = count;
    node.title = "+" + std::to_string(count) + (count == 1 ? " weiterer" : " weitere");
    const Index more = AddNode(std::move(node));
    for (const Index from : inner) AddEdge(from, more, {});
  }

  /// A routine on both sides is one and the same.
  void MarkCycles() {
    std::unordered_map<SymbolId, Index> numbers;
    std::vector<Index> of;
    for (const PictureNode& node : picture_.nodes) {
      const auto next = static_cast<Index>(numbers.size());
      // What is no routine ends every way and gets a number that no symbol has.
      const SymbolId key = node.routine == kNone ? kNone - 1 - static_cast<SymbolId>(of.size()) : node.routine;
      of.push_back(numbers.try_emplace(key, next).first->second);
    }
    std::vector<Arc> arcs;
    for (const PictureEdge& edge : picture_.edges) arcs.push_back({of[edge.from], of[edge.to]});
    std::sort(arcs.begin(), arcs.end(), [](const Arc& a, const Arc& b) { return a.from < b.from; });
    const std::vector<Index> cycles = CyclesOf(numbers.size(), arcs);
    for (PictureEdge& edge : picture_.edges) {
      const Index cycle = cycles[of[edge.from]];
      edge.isCycle = of[edge.from] == of[edge.to] || (cycle != kNone && cycle == cycles[of[edge.to]]);
      if (!edge.isCycle) continue;
      picture_.nodes[edge.from].isCycle = picture_.nodes[edge.to].isCycle = true;
    }
  }

  const ReferenceIndex& index_;
  const PictureRequest& request_;
  CallPicture picture_;
  CallDirection direction_ = CallDirection::kCallers;
  bool callsItself_ = false;
  /// Nodes of the side that is being collected.
  std::unordered_map<SymbolId, Index> placed_;
};

/// Moves what wants to be at `wanted` (centres, in any order) apart, as little as may be, order kept.
std::vector<double> Apart(const std::vector<double>& wanted, double distance) {
  struct Block {
    double sum;
    std::size_t count;
    double Mean() const { return sum / static_cast<double>(count); }
  };
  std::vector<Block> blocks;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    blocks.push_back({wanted[i] - static_cast<double>(i) * distance, 1});
    while (blocks.size() > 1 && blocks[blocks.size() - 2].Mean() >= blocks.back().Mean()) {
      blocks[blocks.size() - 2].sum += blocks.back().sum;
      blocks[blocks.size() - 2].count += blocks.back().count;
      blocks.pop_back();
    }
  }
  std::vector<double> places;
  for (const Block& block : blocks) {
    for (std::size_t i = 0; i < block.count; ++i) {
      places.push_back(block.Mean() + static_cast<double>(places.size()) * distance);
    }
  }
  return places;
}

/// Gives every node its place: levels are columns, and nodes are as near as may be to those they hang on.
class Layout {
 public:
  Layout(CallPicture& picture, const MeasureText& measure) : picture_(picture), measure_(measure) {}

  void Run() {
    for (Index node = 0; node < picture_.nodes.size(); ++node) {
      lowest_ = std::min(lowest_, picture_.nodes[node].level);
      highest_ = std::max(highest_, picture_.nodes[node].level);
    }
    columns_.resize(static_cast<std::size_t>(highest_ - lowest_ + 1));
    for (Index node = 0; node < picture_.nodes.size(); ++node) Column(picture_.nodes[node].level).push_back(node);
    Widths();
    FindParents();
    for (int level = -1; level >= lowest_; --level) Heights(level);
    for (int level = 1; level <= highest_; ++level) Heights(level);
    Normalize();
  }

 private:
  std::vector<Index>& Column(int level) { return columns_[static_cast<std::size_t>(level - lowest_)]; }

  void Widths() {
    double x = kMargin;
    for (const std::vector<Index>& column : columns_) {
      double width = 0;
      for (const Index number : column) {
        const PictureNode& node = picture_.nodes[number];
        const std::string title = node.isCycle ? node.title + " ↻" : node.title;
        width = std::max({width, measure_(title, true), measure_(node.place, false)});
      }
      width = std::min(width + 2 * kPictureTextMargin, kPictureNodeWidth);
      for (const Index number : column) {
        PictureNode& node = picture_.nodes[number];
        node.x = x;
        node.width = width;
        node.height = kPictureNodeHeight;
      }
      x += width + kLevelGap;
    }
    picture_.width = x - kLevelGap + kMargin;
  }

  /// For each node those further in that it hangs on.
  void FindParents() {
    inner_.resize(picture_.nodes.size());
    for (const PictureEdge& edge : picture_.edges) {
      const int from = picture_.nodes[edge.from].level;
      const int to = picture_.nodes[edge.to].level;
      if (to <= 0 && from < to) inner_[edge.from].push_back(edge.to);
      if (from >= 0 && to > from) inner_[edge.to].push_back(edge.from);
    }
  }

  void Heights(int level) {
    const std::vector<Index>& column = Column(level);
    std::vector<double> wanted;
    for (const Index number : column) {
      double sum = 0;
      for (const Index parent : inner_[number]) sum += picture_.nodes[parent].y;
      const std::size_t parents = inner_[number].size();
      wanted.push_back(parents == 0 ? 0 : sum / static_cast<double>(parents));
    }
    const std::vector<double> places = Apart(wanted, kPictureNodeHeight + kNodeGap);
    for (std::size_t i = 0; i < column.size(); ++i) picture_.nodes[column[i]].y = places[i];
  }

  void Normalize() {
    double top = 0, bottom = 0;
    for (const PictureNode& node : picture_.nodes) {
      top = std::min(top, node.y);
      bottom = std::max(bottom, node.y);
    }
    for (PictureNode& node : picture_.nodes) node.y += kMargin - top;
    picture_.height = bottom - top + kPictureNodeHeight + 2 * kMargin;
  }

  CallPicture& picture_;
  const MeasureText& measure_;
  int lowest_ = 0, highest_ = 0;
  std::vector<std::vector<Index>> columns_;
  std::vector<std::vector<Index>> inner_;
};

/// Per cent of the size of the font.
int WidthOf(std::uint32_t character) {
  if (character >= 0x2E80) return 100;
  if (character > 0x7F) return 62;
  const auto c = static_cast<char>(character);
  if (std::string_view("iljI|!.,:;'`").find(c) != std::string_view::npos) return 30;
  if (std::string_view("ftr()[]{}/\\-\" ").find(c) != std::string_view::npos) return 40;
  if (std::string_view("mwMW@%").find(c) != std::string_view::npos) return 95;
  return c >= 'A' && c <= 'Z' ? 72 : 60;
}

}  // namespace

double EstimateTextWidth(std::string_view utf8, bool bold) {
  int sum = 0;
  while (!utf8.empty()) {
    const auto read = text::ReadUtf8(utf8);
    sum += WidthOf(static_cast<std::uint32_t>(read.character));
    utf8.remove_prefix(std::max<std::size_t>(1, read.length));
  }
  return sum * kPictureTextSize / 100 * (bold ? 1.08 : 1);
}

double PictureBend(const PictureNode& from, const PictureNode& to) {
  const double gap = to.x - from.x - from.width;
  return gap > 0 ? gap / 2 : kLevelGap;
}

CallPicture DrawCalls(const ReferenceIndex& index, const PictureRequest& request, const MeasureText& measure) {
  CallPicture picture = Collector(index, request).Collect();
  Layout(picture, measure).Run();
  return picture;
}

}  // namespace quillmate::symbols
