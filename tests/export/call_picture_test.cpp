#include <string>

#include <gtest/gtest.h>

#include <quillmate/export/call_picture_svg.h>

namespace quillmate::output {
namespace {

std::ptrdiff_t Count(const std::string& text, const std::string& part) {
  std::ptrdiff_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST(CallPictureSvg, DrawsEveryNodeAndEveryCall) {
  symbols::ModuleSource module;
  module.name = "M";
  module.kind = language::ModuleKind::kForm;
  module.controls = {{"A", "CommandButton", false, true}};
  const std::string longName(250, 'W');
  module.text = "Sub A_Click(): X: " + longName + ": End Sub\nSub X(): X: Y: End Sub\nSub Y(): " + longName +
                ": End Sub\nSub " + longName + "(): End Sub\n";
  symbols::Sources sources;
  sources.projects.emplace_back();
  sources.modules.push_back(module);
  const auto index = symbols::ReferenceIndex::Build(std::move(sources));
  const symbols::SymbolId x = index.FindSymbols(0, "X").front();
  const symbols::CallPicture picture = symbols::DrawCalls(index, {x, 3, 3, 9});
  ASSERT_EQ(picture.nodes.size(), 5U) << "X, A_Click, its event, Y, the long one";

  const std::string file = CallPictureSvg(picture, {"Aufrufe von <X>", {}, true});
  EXPECT_EQ(Count(file, "<g class="), 5);
  EXPECT_EQ(Count(file, "<path class=\"edge"), static_cast<std::ptrdiff_t>(picture.edges.size()));
  EXPECT_EQ(Count(file, ">X ↻</text>"), 1);
  EXPECT_EQ(Count(file, ">Y</text>"), 1) << "the title of a node is text";
  EXPECT_EQ(Count(file, "<title>Aufrufe von &lt;X&gt;</title>"), 1);
  EXPECT_EQ(Count(file, std::string(60, 'W')), 0) << "cut";
  EXPECT_TRUE(file.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "));
  EXPECT_EQ(Count(file, "<style>"), 1);

  const std::string part = CallPictureSvg(
      picture, {{}, [](const symbols::PictureNode& node) { return node.level == 1 ? "a&b" : ""; }, false});
  EXPECT_TRUE(part.starts_with("<svg "));
  EXPECT_EQ(Count(part, "<style>"), 0);
  EXPECT_EQ(Count(part, "<a href=\"a&amp;b\"><g "), 1);
}

}  // namespace
}  // namespace quillmate::output
