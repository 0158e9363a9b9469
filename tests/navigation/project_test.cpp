#include <quillmate/navigation/code_views.h>
#include <quillmate/navigation/project_tree.h>

#include "project_fixture.h"

namespace quillmate::navigation {
namespace {

TEST_F(Project, TreeOfModulesAndRoutines) {
  ProjectTree tree;
  FillModuleNodes(database, tree);
  FillRoutineNodes(database, tree);
  EXPECT_EQ(Describe(tree) + std::to_string(tree.moduleCount), "0");

  AddModule(1, "A", "2");
  AddModule(2, "B", "1");
  AddModule(3, "\304rger", "2");
  AddRoutine(1, 1, "Zebra", "1", "2");
  AddRoutine(2, 1, "adler", "12", "1");
  AddRoutine(3, 2, "F", "4", "3");
  SetLine("rou_start", "5", 1);
  FillModuleNodes(database, tree);
  FillRoutineNodes(database, tree);
  EXPECT_EQ(Describe(tree),
            "M2 B M1 -1\nM1 A M2 -1\nM3 \304rger M2 -1\n"
            "R2 adler R12O1 1\nR1 Zebra R1O2 1\nR3 F R4O3 0\n");
  EXPECT_EQ(tree.moduleCount, 3);
  EXPECT_EQ(tree.Find(codedb::RoutineNumber{1}), 4);
  EXPECT_EQ(tree.Find(codedb::RoutineNumber{9}), -1);
  EXPECT_EQ(database.StartOf({1}), codedb::Line{5});
  EXPECT_EQ(database.StartOf({2}), codedb::Line{0});  // no line yet
  EXPECT_EQ(database.StartOf({9}), std::nullopt);

  AddRoutine(4, 7, "Lost", "1", "1");
  FillModuleNodes(database, tree);
  EXPECT_THROW(FillRoutineNodes(database, tree), files::Failure);
}

TEST_F(Project, ViewsAreReadWhenLookedAt) {
  CodeViews views;
  EXPECT_EQ(views.Count(), 1);
  EXPECT_EQ(views.View({0}).Text(), "");
  Write(1, "|\237f|Sub|n\237| A\r\n");
  Write(2, "x");
  views.Load(folder.Path(), 2);
  views.SetCurrent({1});
  EXPECT_EQ(views.Count(), 2);
  EXPECT_FALSE(views.IsRead({0}));
  EXPECT_EQ(views.View({0}).Text(), "Sub A\r\n\r\n");
  EXPECT_EQ(views.Runs({0}).size(), 1U);
  EXPECT_TRUE(views.IsRead({0}));
  EXPECT_FALSE(views.IsRead({1}));

  EXPECT_THROW(views.Load(folder.Path(), 3), files::Failure);
  EXPECT_EQ(views.Count(), 2);
  EXPECT_EQ(views.Current().value, 1);
  EXPECT_EQ(views.View({1}).Text(), "x\r\n");
  EXPECT_FALSE(views.IsRead({2}) || views.IsRead({-1}));

  views.Load(folder.Path(), 0);
  EXPECT_EQ(views.Count(), 1);
  EXPECT_EQ(views.Current().value, 0);
  EXPECT_EQ(views.View({0}).Text(), "");
}

}  // namespace
}  // namespace quillmate::navigation
