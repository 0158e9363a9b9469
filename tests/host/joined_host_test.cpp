#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/host/host_tree.h>
#include <quillmate/host/joined_host.h>

#include "host/fake_host.h"

namespace quillmate::host {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kCode = "Sub A()\r\n\r\nEnd Sub";

class JoinedHosts : public testing::Test {
 protected:
  JoinedHosts() {
    excel_.version = 16;
    excel_.projects = {{{"Lager", "C:\\b.xls", false}, {{"Modul1", kStdModule, kCode}}},
                       {{"Geheim", "C:\\g.xls", true}, {{"Modul1", kStdModule, kCode}}}};
    files_.version = 0;
    files_.projects = {{{"Kasse", "/k", false}, {{"Modul1", kStdModule, kCode}, {"Beleg", kClassModule, kCode}}}};
  }

  Texts List() {
    result_ = ListHostProjects(joined_, false, tree_);
    Texts texts;
    for (const HostProjectNode& project : tree_.projects) texts.push_back(project.key + project.text);
    return texts;
  }

  FakeHost excel_, files_;
  JoinedHost joined_{{&excel_, &files_}};
  HostTree tree_;
  ListResult result_;
};

TEST_F(JoinedHosts, IndicesRunThroughAndLeadBack) {
  EXPECT_EQ(List(), (Texts{"A1\\Lager [b.xls]", "A3\\Kasse [k]"}));
  EXPECT_TRUE(result_.attached);
  EXPECT_EQ(result_.version, 16.0F);
  EXPECT_EQ(result_.problem, "");
  EXPECT_EQ(tree_.lockedProjects, 1);
  EXPECT_EQ(joined_.IndexIn(excel_, 1), 1);
  EXPECT_EQ(joined_.IndexIn(excel_, 2), 2);
  EXPECT_EQ(joined_.IndexIn(files_, 3), 1);
  for (const int other : {0, 1, 2, 4}) EXPECT_EQ(joined_.IndexIn(files_, other), std::nullopt);

  excel_.calls.clear();
  files_.calls.clear();
  EXPECT_EQ(joined_.ComponentByName(3, "Beleg", 2).type, kClassModule);
  EXPECT_EQ(joined_.Lines(3, "Beleg", 2, 3), kCode);
  EXPECT_EQ(excel_.calls, Texts{});
  EXPECT_EQ(files_.calls, (Texts{"ComponentByName 1 Beleg", "Lines Beleg 3"}));
  EXPECT_THROW(joined_.Lines(4, "Beleg", 2, 3), files::Failure);
  EXPECT_THROW(joined_.Component(3, 3), files::Failure);
}

TEST_F(JoinedHosts, OnePartIsEnough) {
  excel_.running = false;
  excel_.version = 0;
  EXPECT_EQ(List(), (Texts{"A1\\Kasse [k]"}));
  EXPECT_TRUE(result_.attached);
  EXPECT_EQ(joined_.IndexIn(files_, 1), 1);
  EXPECT_EQ(excel_.calls, (Texts{"Attach", "Release"}));

  // The files are listed, and that the running program refuses is not kept quiet.
  excel_.version = 16;
  excel_.problem = "Excel verweigert den Zugriff";
  files_.problem = "Datei fehlt";
  EXPECT_EQ(List(), (Texts{"A1\\Kasse [k]"}));
  EXPECT_EQ(result_.version, 16.0F);
  EXPECT_EQ(result_.problem, "Excel verweigert den Zugriff\r\nDatei fehlt");

  files_.running = false;
  EXPECT_EQ(List(), Texts{});
  EXPECT_FALSE(result_.attached);
  EXPECT_EQ(result_.version, 16.0F);
  EXPECT_EQ(RefreshMessage(result_, tree_, "Excel"), RefreshMessage({false, 16}, HostTree{}, "Excel"));
}

TEST_F(JoinedHosts, AFailingPartHidesNoOther) {
  for (const char* call : {"ProjectCount", "Project 2", "ComponentCount 1", "Component 1"}) {
    SCOPED_TRACE(call);
    excel_.failAt = call;
    files_.failAt.clear();
    EXPECT_EQ(List(), (Texts{"A1\\Kasse [k]"}));
    EXPECT_TRUE(result_.attached);
    EXPECT_EQ(result_.problem, "Aufruf abgelehnt");
    EXPECT_EQ(tree_.lockedProjects, 0);

    files_.failAt = "ProjectCount";
    EXPECT_EQ(List(), Texts{});
    EXPECT_FALSE(result_.attached);
    EXPECT_EQ(result_.problem, "Aufruf abgelehnt");
  }
  excel_.failAt.clear();
  EXPECT_EQ(List(), (Texts{"A1\\Lager [b.xls]"}));
  EXPECT_EQ(joined_.IndexIn(files_, 1), std::nullopt);
}

}  // namespace
}  // namespace quillmate::host
