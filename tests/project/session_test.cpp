#include <chrono>

#include <gtest/gtest.h>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/project/session.h>

#include "project/read_project.h"

namespace quillmate::project {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLager =
    "Attribute VB_Name = \"Lager\"\r\nSub Abgang()\r\nEnd Sub\r\nSub Zugang()\r\n  Call Melden\r\n  Ende\r\nEnd Sub\r\n"
    "Private Sub Melden()\r\nEnd Sub\r\n";
constexpr const char* kSuche = "Attribute VB_Name = \"Suche\"\r\nSub Ende()\r\n  x = 1\r\nEnd Sub\r\n";

/// Writes down what it is told, a letter for each call.
class Log : public SessionListener {
 public:
  void OnProjectLeaves() override { told += 'L'; }
  void OnProjectChanged() override { told += 'C'; }
  void OnTitleChanged() override { told += 'T'; }
  void OnPlaceChanged() override { told += 'P'; }
  void OnHistoryChanged() override { told += 'H'; }
  void OnMoved(Reveal reveal) override { told += reveal == Reveal::kAtTop ? 'M' : 'm'; }

  std::string Take() { return std::exchange(told, {}); }
  std::string told;
};

class SessionTest : public testing::Test {
 protected:
  void Load() { session_.ReloadProject(read_.Folder(), "Quelle [Lager.xls]", false); }
  /// "Lager.Zugang 4 'Sub' <>": place, 1-based line, selection, and the ways that are open.
  std::string Place() {
    const navigation::CodeView& view = session_.View();
    std::string place = session_.Module() + "." + session_.Routine() + " ";
    place += std::to_string(view.LineAt(view.SelStart()).value) + " '" + std::string(view.SelText()) + "' ";
    place += session_.History().BackEnabled() ? '<' : '-';
    return place + (session_.History().NextEnabled() ? '>' : '-');
  }
  /// The caret put into a line by the user, after so many characters.
  void PutCaret(std::size_t line, std::size_t column) {
    session_.View().Select(session_.View().LineStart(line - 1) + column, 0);
    session_.TrackCaret();
  }
  int Node(const char* text) const {
    const auto& nodes = session_.Tree()->nodes;
    return static_cast<int>(std::ranges::find(nodes, text, &navigation::TreeNode::text) - nodes.begin());
  }
  /// The folder gets another project's files, later by so many hours.
  void WriteAnew(int hours) const {
    files::WriteWholeFile(codedb::ModuleTextPath(read_.Folder(), {2}), "fremd\r\n");
    const fs::path index = codedb::CodeDbPath(read_.Folder());
    fs::last_write_time(index, fs::last_write_time(index) + std::chrono::hours(hours));
  }

  ReadProject read_{SourceFiles{{"a.bas", kLager}, {"b.bas", kSuche}}};
  files::ScratchFolder scratch_{"leer"};
  codedb::CodeDatabase index_;
  fs::path folder_ = scratch_.Path();
  Log log_;
  Session session_{index_, folder_, log_};
};

TEST_F(SessionTest, TellsWhatHasChangedWhenEverythingHas) {
  EXPECT_EQ(Place(), ". 1 '' --");
  EXPECT_FALSE(session_.ReadAhead());
  Load();
  EXPECT_EQ(log_.Take(), "LCPHTPM");
  EXPECT_EQ(Place(), "Lager. 1 '' --");
  EXPECT_EQ(folder_, read_.Folder());
  EXPECT_EQ(session_.Name(), "Quelle");
  EXPECT_EQ(session_.StartLines().size(), session_.Tree()->nodes.size());
  session_.MoveTo(read_.Folder(), "Lager [alt]");
  EXPECT_EQ(log_.Take(), "T");
  EXPECT_TRUE(session_.IsSaved());
  EXPECT_EQ(session_.Name(), "Lager [alt]") << "a bracket in a saved name is part of it";
  session_.Leave(scratch_.Path());
  EXPECT_EQ(log_.Take(), "LCPHT");
  EXPECT_FALSE(session_.IsLoaded() || session_.IsSaved() || index_.IsOpen());
  EXPECT_EQ(folder_, scratch_.Path());
  EXPECT_TRUE(session_.StartLines().empty());
  session_.TrackCaret();
  EXPECT_EQ(log_.Take(), "");
}

TEST_F(SessionTest, WaysLeadBackToWhereTheyBegan) {
  Load();
  log_.Take();
  const struct {
    std::function<void()> go;
    const char* place;
    const char* told;
  } kSteps[] = {
      {[&] { EXPECT_FALSE(session_.Back()); }, "Lager. 1 '' --", "H"},
      {[&] { PutCaret(4, 8); }, "Lager.Zugang 4 '' --", "P"},
      // Right after a load there is no way back but to where the jump begins.
      {[&] { EXPECT_TRUE(session_.GoToDefinition("Melden")); }, "Lager.Melden 7 'Private' <-", "PHM"},
      {[&] { EXPECT_TRUE(session_.Back()); }, "Lager.Zugang 4 '' ->", "HPM"},
      {[&] { EXPECT_TRUE(session_.Next()); }, "Lager.Melden 7 'Private' <-", "HPM"},
      {[&] { EXPECT_FALSE(session_.GoToDefinition("Fehlt")); }, "Lager.Melden 7 'Private' <-", ""},
      {[&] { EXPECT_TRUE(session_.GoToDefinition("ende")); }, "Suche.Ende 1 'Sub' <-", "PHM"},
      {[&] { session_.GoToNode(Node("Lager")); }, "Lager. 1 '' <-", "PM"},
      {[&] { session_.GoToNode(Node("Zugang")); }, "Lager.Zugang 3 'Sub' <-", "PHM"},
      {[&] {
         session_.GoToMatch({1}, {12, 5});
       },
       "Suche.Ende 2 '  x =' <-", "Pm"},
      {[&] {
         session_.JumpTo({0}, {0, 3});
       },
       "Lager.Abgang 1 'Sub' <-", "PHm"},
      // The very stretch that the jump began at.
      {[&] { EXPECT_TRUE(session_.Back()); }, "Suche.Ende 2 '  x =' <>", "HPm"},
      {[&] { session_.GoToRoutine({0}, {7}, "Melden"); }, "Lager.Melden 7 'Private' <-", "PHM"},
      {[&] { EXPECT_FALSE(session_.Next()); }, "Lager.Melden 7 'Private' <-", "H"},
  };
  for (std::size_t i = 0; i < std::size(kSteps); ++i) {
    kSteps[i].go();
    EXPECT_EQ(Place(), kSteps[i].place) << i;
    EXPECT_EQ(log_.Take(), kSteps[i].told) << i;
  }
  // Another project's places are never offered.
  Load();
  EXPECT_EQ(Place(), "Lager. 1 '' --");
}

TEST_F(SessionTest, WhatCantBeLoadedLeavesEverything) {
  Load();
  session_.GoToNode(Node("Ende"));
  session_.GoToNode(Node("Zugang"));
  const std::string before = Place();
  const files::ScratchFolder broken("kaputt"), textless("ohne Text");
  broken.Write("Quillmate.mdb", "x");
  fs::copy_file(codedb::CodeDbPath(read_.Folder()), codedb::CodeDbPath(textless.Path()));
  log_.Take();
  EXPECT_THROW(session_.ReloadProject(broken.Path(), "x", true), files::Failure);
  EXPECT_THROW(session_.ReloadProject(textless.Path(), "x", true), files::Failure);
  EXPECT_EQ(files::MessageOf([&] { session_.ReloadProject(read_.Folder(), "x", true, 1); }),
            "Mehr als 1 Module kann das Fenster nicht zeigen.");
  EXPECT_EQ(Place(), before);
  EXPECT_EQ(session_.Title() + log_.Take(), "Quelle [Lager.xls]");
  EXPECT_EQ(folder_, read_.Folder());
  EXPECT_TRUE(session_.GoToDefinition("Ende")) << "index and tree still belong together";
  EXPECT_TRUE(session_.Back());

  // A module whose text has gone since: nothing moves.
  log_.Take();
  const std::string place = Place();
  session_.ReloadProject(read_.Folder(), "Quelle", false);
  fs::remove(codedb::ModuleTextPath(read_.Folder(), {2}));
  log_.Take();
  EXPECT_THROW(session_.GoToNode(Node("Ende")), files::Failure);
  EXPECT_EQ(log_.Take(), "");
  EXPECT_EQ(session_.VisibleModule().value, 1);
  EXPECT_THROW(session_.GoToMatch({2}, {0, 1}), files::Failure) << "no such view";

  session_.Leave(scratch_.Path());
  EXPECT_THROW(session_.ReloadProject(broken.Path(), "x", true), files::Failure);
  EXPECT_FALSE(index_.IsOpen() || session_.IsLoaded());
}

TEST_F(SessionTest, AFolderThatIsWrittenAnewIsNoticedOnce) {
  Load();
  WriteAnew(1);
  EXPECT_FALSE(session_.WasReplaced()) << "nobody else writes where a project is that is not saved";
  index_.CloseCodeDatabase();
  read_.Read();
  session_.ReloadProject(read_.Folder(), "Lager", true);
  while (session_.ReadAhead()) continue;
  EXPECT_FALSE(session_.WasReplaced());
  EXPECT_EQ(session_.Files(), read_.Folder());
  for (const int hours : {1, 2}) {
    WriteAnew(hours);
    EXPECT_TRUE(session_.WasReplaced());
    EXPECT_FALSE(session_.WasReplaced()) << "one question is enough";
  }
  EXPECT_THROW(session_.Files(), files::Failure) << "they are another project's";
  session_.GoToNode(Node("Suche"));
  EXPECT_TRUE(session_.View().Text().starts_with("Sub Ende")) << "what was read ahead is its own";
#ifndef _WIN32  // which keeps a file that somebody has open
  fs::remove(codedb::CodeDbPath(read_.Folder()));
  EXPECT_FALSE(session_.WasReplaced()) << "an index that is gone is another matter";
#endif
}

}  // namespace
}  // namespace quillmate::project
