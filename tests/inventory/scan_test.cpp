#include <algorithm>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include <quillmate/inventory/scan.h>

#include "files/scratch.h"
#include "inventory/estate.h"
#include "inventory/own_program.h"
#include "inventory/table.h"
#include "places.h"

namespace quillmate::inventory {
namespace {

namespace fs = std::filesystem;

ScanOptions Options(std::vector<fs::path> roots) {
  ScanOptions options;
  options.roots = std::move(roots);
  options.jobs = 2;
  options.readerCommand = OwnReader();
  options.program = "Test";
  return options;
}

std::vector<EstateFile> Estate(const fs::path& root, std::size_t count) {
  return MakeEstate(root, {.files = count, .sample = tests::SourceFolder() / "samples" / "Lagerverwaltung"});
}

std::string Counts(const ScanResult& result) {
  return std::to_string(result.found) + " " + std::to_string(result.read) + " " + std::to_string(result.unchanged) +
         " " + std::to_string(result.vanished);
}

TEST(Scan, KnowsTheStateOfEveryFileAndReadsOnlyWhatIsNew) {
  const files::ScratchFolder scratch;
  const fs::path root = scratch / "Ablage", database = scratch / "bestand.sqlite";
  const std::vector<EstateFile> estate = Estate(root, 300);
  EXPECT_EQ(Counts(Scan(database, Options({root}))), "300 300 0 0");
  std::string expected;
  std::map<std::string, std::string> states;
  for (const EstateFile& file : estate) states[files::PathText(file.path.filename())] = file.state;
  for (const auto& [name, state] : states) expected += name + "|" + state + "\n";
  EXPECT_EQ(Ask(database, "SELECT name, zustand FROM datei ORDER BY name"), expected);
  EXPECT_EQ(Ask(database, "SELECT count(DISTINCT zustand) >= 8 FROM datei"), "1\n");
  EXPECT_EQ(Ask(database, "PRAGMA foreign_key_check"), "");
  EXPECT_EQ(Ask(database,
                "SELECT count(*) FROM inhalt WHERE module <> (SELECT count(*) FROM modul m WHERE m.inhalt = "
                "inhalt.nr) OR befunde <> (SELECT count(*) FROM befund b WHERE b.inhalt = inhalt.nr) OR "
                "befunde <> (SELECT total(anzahl) FROM befundzahl z WHERE z.inhalt = inhalt.nr)"),
            "0\n");

  EXPECT_EQ(Counts(Scan(database, Options({root}))), "300 0 300 0");
  fs::remove(estate[0].path);
  fs::remove_all(estate[41].path.parent_path());
  const auto gone = std::ranges::count_if(estate, [](const EstateFile& file) { return !fs::exists(file.path); });
  files::WriteWholeFile(estate[1].path, "Sub Neu()\r\nEnd Sub\r\n");
  files::WriteWholeFile(root / "neu.bas", "Sub Neu()\r\nShell \"x\"\r\nEnd Sub\r\n");
  EXPECT_EQ(Counts(Scan(database, Options({root}))),
            std::to_string(301 - gone) + " 2 " + std::to_string(299 - gone) + " " + std::to_string(gone));
  EXPECT_EQ(Ask(database, "SELECT count(*) FROM datei WHERE verschwunden = 3"), std::to_string(gone) + "\n");
  EXPECT_EQ(Ask(database, "SELECT count(*) FROM datei WHERE geaendert = 3 AND verschwunden IS NULL"), "2\n");
  EXPECT_EQ(Ask(database, "SELECT count(*) FROM v_aussen WHERE pfad LIKE '%neu.bas' AND pruefung = 'aussen-programm'"),
            "1\n");
  // It comes back as it was: read again, since nobody knows, but not understood again.
  files::WriteWholeFile(estate[0].path, "Sub Neu()\r\nEnd Sub\r\n");
  EXPECT_EQ(Scan(database, Options({root})).read, 1);
  EXPECT_EQ(Ask(database, "SELECT zustand FROM lauf GROUP BY zustand"), "fertig\n");
}

TEST(Scan, WhatHarmsAReaderCostsOneFile) {
  const files::ScratchFolder scratch;
  const fs::path database = scratch / "bestand.sqlite";
  const std::string code = "Sub A()\r\nEnd Sub\r\n";
  for (const char* const name : {"a/gut1.bas", "a/absturz.bas", "a/gut2.bas", "a/gut3.bas"}) {
    scratch.Write(name, code + "' " + name);
  }
  ScanOptions options = Options({scratch / "a"});
  std::string hungry;
#if !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)  // neither Wine nor the sanitizer keeps a limit of memory
  scratch.Write("a/speicher.bas", code);
  options.memoryLimit = std::uint64_t{1} << 30U;
  hungry = "speicher.bas|abgestürzt|1\n";
#endif
  const int harmful = hungry.empty() ? 1 : 2;
  EXPECT_EQ(Scan(database, options).unread, harmful);
  EXPECT_EQ(Ask(database, "SELECT name, zustand, grund <> '' FROM datei ORDER BY name"),
            "absturz.bas|abgestürzt|1\ngut1.bas|makros|0\ngut2.bas|makros|0\ngut3.bas|makros|0\n" + hungry);
  const std::string all = std::to_string(3 + harmful);
  EXPECT_EQ(Counts(Scan(database, options)), all + " 0 " + all + " 0");
  options.retry = true;
  EXPECT_EQ(Counts(Scan(database, options)), all + " " + std::to_string(harmful) + " 3 0");

  // Alone, since it is the clock that decides.
  scratch.Write("b/haengt.bas", code);
  options = Options({scratch / "b"});
  options.timeLimit = std::chrono::milliseconds(50);
  Scan(database, options);
  EXPECT_EQ(Ask(database, "SELECT zustand FROM datei WHERE name = 'haengt.bas'"), "zeitlimit\n");
}

TEST(Scan, TakesPartsPatternsAndSingleFiles) {
  const files::ScratchFolder scratch;
  for (int i = 0; i < 30; ++i)
    scratch.Write("r/" + std::to_string(i) + ".bas", "Sub A" + std::to_string(i) + "()\r\nEnd Sub");
  scratch.Write("r/weg/a.bas", "x");
  scratch.Write("r/sub/~$a.xlsm", "x");
  scratch.Write("r/sub/Alt.BAS", "Sub A1()\r\nEnd Sub");
  std::int64_t found = 0;
  for (unsigned shard = 1; shard <= 3; ++shard) {
    ScanOptions options = Options({scratch / "r", scratch / "r/sub"});
    options.shard = shard;
    options.shards = 3;
    options.exclude = {"WEG", "*/sub/alt.*"};
    const std::int64_t part = Scan(scratch / ("teil" + std::to_string(shard)), options).found;
    EXPECT_LT(part, 31);
    found += part;
  }
  EXPECT_EQ(found, 31);
  const fs::path database = scratch / "einzeln";
  const ScanResult result = Scan(database, Options({scratch / "r/1.bas", scratch / "r/gibtesnicht.bas"}));
  EXPECT_EQ(Counts(result), "1 1 0 0");
  EXPECT_EQ(result.problems.size(), 1U);
  EXPECT_EQ(Ask(database, "SELECT name FROM datei"), "1.bas\n");
  fs::remove(scratch / "r/1.bas");
  EXPECT_EQ(Scan(database, Options({scratch / "r/1.bas"})).vanished, 1);
}

TEST(Scan, RefusesWhatIsNotItsToWrite) {
  const files::ScratchFolder scratch;
  const fs::path root = scratch.Write("r/a.bas", "x").parent_path();
  const auto failure = [&](const fs::path& database) {
    return files::MessageOf([&] { Scan(database, Options({root})); });
  };
  Scan(scratch / "neuer", Options({root}));
  EXPECT_FALSE(fs::exists(scratch / "neuer-journal"));
  // An empty module is no database that waits for its first row.
  for (const char* const name : {"r/leer.bas", "r/leer.XLSM"}) {
    EXPECT_NE(failure(scratch.Write(name, "")).find("kein Bestand"), std::string::npos) << name;
    EXPECT_EQ(fs::file_size(scratch / name), 0U);
  }
  EXPECT_EQ(Scan(scratch.Write("leer", ""), Options({root})).found, 3);
  Ask(scratch / "neuer", "PRAGMA user_version = 99");
  EXPECT_NE(failure(scratch / "neuer").find("neueren Fassung"), std::string::npos);
  Ask(scratch / "andere", "CREATE TABLE x(y)");
  EXPECT_NE(failure(scratch / "andere").find("kein Bestand"), std::string::npos);
  EXPECT_NE(failure(scratch.Write("text", std::string(5000, 'x'))).find("kein Bestand"), std::string::npos);
  EXPECT_EQ(files::ReadWholeFile(scratch / "text"), std::string(5000, 'x'));
  ScanOptions options = Options({root});
  std::string second;
  options.progress = [&](const ScanProgress&) { second = failure(scratch / "zugleich"); };
  Scan(scratch / "zugleich", options);
  EXPECT_NE(second.find("Ein anderes Programm schreibt"), std::string::npos) << second;
  options.readerCommand = {files::PathText(scratch / "gibt es nicht")};
  EXPECT_THROW(Scan(scratch / "leser", options), files::Failure);
}

TEST(Scan, GoesOnWhereItWasCancelled) {
  const files::ScratchFolder scratch;
  const fs::path root = scratch / "Ablage", database = scratch / "bestand.sqlite";
  Estate(root, 200);
  std::atomic<bool> cancelled = false;
  ScanOptions options = Options({root});
  options.cancelled = &cancelled;
  options.progress = [&](const ScanProgress&) { cancelled = true; };
  EXPECT_TRUE(Scan(database, options).cancelled);
  EXPECT_EQ(Ask(database, "SELECT zustand FROM lauf"), "abgebrochen\n");
  const ScanResult result = Scan(database, Options({root}));
  EXPECT_EQ(result.found, 200);
  EXPECT_EQ(Ask(database, "SELECT count(*) FROM datei"), "200\n");
  EXPECT_EQ(Ask(database, "SELECT count(*) FROM datei WHERE verschwunden IS NOT NULL OR zustand IN ('abgestürzt')"),
            "0\n");
}

}  // namespace
}  // namespace quillmate::inventory
