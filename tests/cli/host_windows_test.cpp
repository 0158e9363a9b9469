#include "host/com_stand_in_windows.h"
#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

/// Each with a stand-in host of an edition of its own.
using HostTest = CliTest;

TEST_F(HostTest, ItsProjectsStandBeforeTheInputs) {
  Write("a.bas", "'Karte\n'\n'\n");
  Write("karte.cls", kCard);
  const host::StandInHost running("--edition word --locked --sources \"" + Full("karte.cls") + "\"");
  const Result result = Run("search Karte --host --edition=word *.bas weg.bas");
  EXPECT_EQ(result.status, 1) << "weg.bas was named";
  const std::string modules = Run("modules --host --edition word a.bas").out;
  EXPECT_TRUE(modules.starts_with("Modul 1: Karte, ")) << modules;
  EXPECT_NE(modules.find("\nModul 2: a, "), std::string::npos) << modules;
  EXPECT_EQ(result.out, "a:1: 'Karte\n");
  EXPECT_NE(result.err.find(": Das Projekt ist gesperrt\n"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find(Full("weg.bas") + ": "), std::string::npos) << result.err;
  EXPECT_EQ(Run("index --host --edition Word -o p").status, 0);
  EXPECT_EQ(Names("p"), "Fakten.db M1.txt Quillmate.mdb");
  EXPECT_EQ(Run("site --host --edition word -o doku").status, 0);
  EXPECT_NE(Read("doku/index.html").find("<h1>Makroprojekt</h1>"), std::string::npos);
}

TEST_F(HostTest, WhatItDoesNotGiveIsSaid) {
  Write("a.bas", "'\n'\n'\n");
  ASSERT_EQ(Run("index -o p a.bas").status, 0);
  EXPECT_EQ(Run("text --host p").status, 2) << "a saved project stands alone";
  EXPECT_EQ(Run("clip --host").status, 2);
  const struct {
    const char* running;
    const char* line;
    int status;
    const char* message;
  } cases[] = {
      {"", "text --host", 1, "quillmate-cli: Access ist im Moment nicht geöffnet. Es "},
      {"", "text --host a.bas", 0, "quillmate-cli: Access ist im Moment nicht geöffnet"},
      {"--refuse-access", "text --host", 1, "quillmate-cli: Sie benutzen AccessXP. Ihre "},
      {"--die-at Karte", "index -o q --host", 1, "Fehler beim Einlesen: "},
  };
  Write("karte.cls", kCard);
  for (const auto& c : cases) {
    std::unique_ptr<host::StandInHost> running;
    if (*c.running != '\0') {
      running = std::make_unique<host::StandInHost>("--edition access " + std::string(c.running) + " --sources \"" +
                                                    Full("karte.cls") + "\"");
    }
    const Result result = Run("--edition access " + std::string(c.line));
    EXPECT_EQ(result.status, c.status) << c.message;
    EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    EXPECT_EQ(Names("."), "a.bas karte.cls p");
  }
}

}  // namespace
}  // namespace quillmate::cli
