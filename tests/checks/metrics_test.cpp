#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/checks/metrics.h>

#include "symbols/written_project.h"

namespace quillmate::checks {
namespace {

struct MetricsCase {
  std::string_view title;
  std::string_view project;
  /// "name: lines code comment statements complexity nesting parameters fan-in fan-out"
  std::vector<std::string_view> routines;
};

const MetricsCase kCases[] = {
    {"sizes and branches; a continued line, a comment in the body, a trailing one",
     "== module M\nSub A(x, Optional ByVal y = 2)\n' eins\n\n  If x Then B: B\n  For i = 1 To _\n    2: If i Then\n"
     "  Call B  ' zwei\n  End If: Next\nEnd Sub\nSub B(): End Sub",
     {"A: 9 7 1 6 4 2 2 0 1", "B: 1 1 0 0 1 0 0 1 0"}},
    {"calls count once for each routine, not those of oneself, not those by name or in inactive code",
     "== class K\nPublic Sub Los(): Los: End Sub\n== module M\nDeclare Sub D Lib \"l\" ()\nSub A(o): o.Los: D: D: C: "
     "End Sub\nSub B(k As K): k.Los: A k: C\n#If Mac Then\nA k: If k Then\n#End If\nEnd Sub\nProperty Get C(): C = "
     "C(): "
     "End Property",
     {"Los: 1 1 0 1 1 0 0 1 0", "A: 1 1 0 4 1 0 1 1 2", "B: 5 3 0 3 1 0 1 0 3", "C: 1 1 0 1 1 0 0 2 0"}},
};

/// The numbers of small routines, counted by hand.
TEST(Metrics, Routines) {
  for (const MetricsCase& test : kCases) {
    const symbols::testing::WrittenProject project(test.project);
    for (const unsigned threads : {1U, 2U}) {
      const auto index = symbols::ReferenceIndex::Build(project.sources);
      const Metrics metrics = Measure(index, threads);
      std::vector<std::string> actual;
      for (const RoutineNumbers& r : metrics.routines) {
        std::string line(index.Name(index.RoutineSymbol(r.module, r.routine)));
        line += ":";
        for (const std::uint32_t number :
             {r.lines, r.code, r.comment, r.statements, r.complexity, r.nesting, r.parameters, r.fanIn, r.fanOut}) {
          line += " " + std::to_string(number);
        }
        actual.push_back(line);
      }
      EXPECT_EQ(actual, std::vector<std::string>(test.routines.begin(), test.routines.end())) << test.title;
    }
  }
}

}  // namespace
}  // namespace quillmate::checks
