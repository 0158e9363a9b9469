#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/symbols/call_picture.h>
#include <quillmate/symbols/cycles.h>
#include <quillmate/symbols/module_uses.h>

#include "symbols/generated_project.h"
#include "symbols/written_project.h"

namespace quillmate::symbols {
namespace {

using testing::WrittenProject;

SymbolId Routine(const ReferenceIndex& index, std::string_view name) {
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
    if (index.Name(symbol) == name && IsCallable(index.SymbolAt(symbol).kind)) return symbol;
  }
  return kNone;
}

/// "-1 A; 0 B*; 1 +2 weitere | A>B B-?>C": nodes by level, "*" in a cycle, "^" that nothing calls, then the edges with
/// "?" for a possible call and "@" in a cycle.
std::string Describe(const CallPicture& picture) {
  std::string text;
  for (const PictureNode& node : picture.nodes) {
    text +=
        std::to_string(node.level) + ' ' + node.title + (node.isCycle ? "*" : "") + (node.isEntry ? "^" : "") + "; ";
  }
  text += '|';
  for (const PictureEdge& edge : picture.edges) {
    text += ' ' + picture.nodes[edge.from].title + (edge.certainty == Certainty::kSure ? "" : "?") +
            (edge.isCycle ? "@>" : ">") + picture.nodes[edge.to].title;
  }
  return text;
}

void ExpectRoom(const CallPicture& picture) {
  for (std::size_t a = 0; a < picture.nodes.size(); ++a) {
    const PictureNode& one = picture.nodes[a];
    EXPECT_GE(std::min(one.x, one.y), 0) << one.title;
    EXPECT_LE(one.x + one.width, picture.width) << one.title;
    EXPECT_LE(one.y + one.height, picture.height) << one.title;
    for (std::size_t b = a + 1; b < picture.nodes.size(); ++b) {
      const PictureNode& other = picture.nodes[b];
      const bool apart = one.x + one.width <= other.x || other.x + other.width <= one.x ||
                         one.y + one.height <= other.y || other.y + other.height <= one.y;
      EXPECT_TRUE(apart) << one.title << " lies on " << other.title;
      if (one.level < other.level) {
        EXPECT_LT(one.x, other.x) << "callers stand on the left";
      }
    }
  }
}

TEST(CallPicture, CallersStandLeftAndCalleesRight) {
  const struct {
    const char* title;
    const char* code;
    std::uint32_t levels;
    std::size_t nodesPerLevel;
    const char* picture;
  } kRows[] = {
      {"both sides, each level, entries",
       "== module M\nSub A(): B: End Sub\nSub B(): X: End Sub\nSub X(): C: C: D: End Sub\nSub C(): E: End Sub\nSub "
       "D(): "
       "E: "
       "End Sub\nSub E(): F: End Sub\nSub F(): End Sub",
       2, 9, "0 X; -1 B; -2 A^; 1 C; 1 D; 2 E; | B>X A>B X>C X>D C>E D>E"},
      {"no levels", "== module M\nSub X(): X2: End Sub\nSub X2(): X: End Sub", 0, 9, "0 X; |"},
      {"cycles: itself, over another one that so stands on both sides, among callers",
       "== module M\nSub X(): X: Y: End Sub\nSub Y(): X: End Sub\nSub P(): X: Q: End Sub\nSub Q(): P: End Sub", 3, 9,
       "0 X*; -1 Y*; -1 P*; -2 Q*; 1 Y*; | X@>X Y@>X P>X X@>Y Q@>P P@>Q X@>Y Y@>X"},
      {"what calls from outside, what may be called",
       "== class K\nSub Los(): End Sub\n== form F control cmd\nSub cmd_Click(): X Me: End Sub\n== module M\nSub X(o): "
       "o.Los: End Sub",
       2, 9,
       "0 X; -1 cmd_Click; -2 Ereignis Click von cmd; 1 Los; | cmd_Click>X Ereignis Click von cmd?>cmd_Click "
       "X?>Los"},
      {"more than there is room for",
       "== module M\nSub X(): A: B: C: D: End Sub\nSub A(): E: End Sub\nSub B(): E: End Sub\nSub C(): End Sub\nSub "
       "D(): "
       "End "
       "Sub\nSub E(): End Sub",
       2, 2, "0 X^; 1 A; 1 B; 1 +2 weitere; 2 E; | X>A X>B X>+2 weitere A>E B>E"},
  };
  for (const auto& row : kRows) {
    const ReferenceIndex index = ReferenceIndex::Build(WrittenProject(row.code).sources);
    const CallPicture picture = DrawCalls(index, {Routine(index, "X"), row.levels, row.levels, row.nodesPerLevel});
    EXPECT_EQ(Describe(picture), row.picture) << row.title;
    ExpectRoom(picture);
  }
}

TEST(CallPicture, HasRoomForManyAndLongNames) {
  std::string code = "== module M\nSub X(): Y: End Sub\nSub Y(): End Sub\n";
  for (int i = 0; i < 60; ++i) {
    const std::string name = "Rufer" + std::string(static_cast<std::size_t>(i), 'W') + std::to_string(i);
    code += "Sub " + name + "(): X: Y: End Sub\nSub R" + name + "(): " + name + ": End Sub\n";
  }
  const ReferenceIndex index = ReferenceIndex::Build(WrittenProject(code).sources);
  const CallPicture picture = DrawCalls(index, {Routine(index, "Y"), 6, 6, 25});
  EXPECT_GT(picture.nodes.size(), 50U);
  ExpectRoom(picture);
}

TEST(ModuleUses, AreTheSureUsesOfWhatOthersDeclare) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    const ReferenceIndex index = ReferenceIndex::Build(testing::GenerateProject(seed).sources);
    std::map<std::pair<Index, Index>, std::uint32_t> expected;
    for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
      const Index to = index.SymbolAt(symbol).module;
      for (const Reference& use : index.ReferencesTo(symbol)) {
        if (use.certainty == Certainty::kSure && use.module != to) ++expected[{use.module, to}];
      }
    }
    std::map<std::pair<Index, Index>, std::uint32_t> found;
    for (const ModuleUse& use : ModuleUses(index)) {
      found[{use.from, use.to}] = use.count;
      const std::vector<Reference> listed = UsesBetween(index, use.from, use.to);
      EXPECT_EQ(listed.size(), use.count);
      EXPECT_TRUE(std::ranges::all_of(listed, [&](const Reference& one) { return one.module == use.from; }));
    }
    EXPECT_EQ(found, expected) << seed;
    EXPECT_FALSE(found.empty());
  }
}

TEST(Cycles, AreFoundWithoutRecursion) {
  const std::vector<Arc> arcs = {{0, 1}, {1, 2}, {2, 1}, {3, 3}, {4, 0}, {5, 6}, {6, 7}, {7, 5}};
  EXPECT_EQ(CyclesOf(8, arcs), (std::vector<Index>{kNone, 0, 0, kNone, kNone, 1, 1, 1}));
  std::vector<Arc> ring;
  for (Index i = 0; i < 200'000; ++i) ring.push_back({i, (i + 1) % 200'000});
  EXPECT_EQ(CyclesOf(ring.size(), ring), std::vector<Index>(ring.size(), 0));
}

}  // namespace
}  // namespace quillmate::symbols
