#include <stdexcept>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "site_folder_fixture.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;
using files::Names;

/// Targets lie in "ziel"; beside it nothing may be left.
class SiteFolderTest : public SiteTest {
 protected:
  SiteFolderTest() { AddModule("a", codedb::kStandard, "x"); }

  void Put(const std::string& name, std::string_view bytes) const { folder_.Write("oben/ziel/" + name, bytes); }
  std::string Read(const std::string& name) const { return files::ReadWholeFile(Target() / name); }

  void Export(bool force = false) const { ExportSite(project_, {}, Target(), force); }

  std::string Refusal(bool force = false) const {
    return codedb::MessageOf([&] { Export(force); });
  }

  fs::path Target() const { return folder_ / "oben" / "ziel"; }
};

constexpr const char* kSite =
    "abhaengigkeiten.html aufrufe.html befunde.html deklarationen.html index.html kennzahlen.html modul-a.html "
    "quillmate-site.txt "
    "routinen.html stil.css "
    "suche-e1.js suche.html suche.js "
    "unbenutzt.html";

TEST_F(SiteFolderTest, NewEmptyAndEarlierFolders) {
  EXPECT_THROW(Export(), files::Failure);
  fs::create_directories(folder_ / "oben");
  Export();
  EXPECT_EQ(Names(Target()), kSite);
  fs::remove_all(Target());
  fs::create_directory(Target());
  Export();
  // What is not the site's stays, its own pages go when there are no modules for them any more.
  Put("LIESMICH.txt", "bleibt");
  Put("bilder/a.png", "bleibt");
#ifdef _WIN32
  Put("verweis", "bleibt");
#else
  fs::create_symlink("LIESMICH.txt", Target() / "verweis");
#endif
  project_.modules.front().name = "b";
  Export();
  EXPECT_EQ(Names(Target()),
            "LIESMICH.txt abhaengigkeiten.html aufrufe.html befunde.html bilder deklarationen.html index.html "
            "kennzahlen.html "
            "modul-b.html quillmate-site.txt "
            "routinen.html "
            "stil.css suche-e1.js suche.html suche.js unbenutzt.html verweis");
  EXPECT_EQ(Read("bilder/a.png"), "bleibt");
  EXPECT_EQ(Read("verweis"), "bleibt");
#ifndef _WIN32
  EXPECT_TRUE(fs::is_symlink(Target() / "verweis"));
#endif
  EXPECT_EQ(Names(folder_ / "oben"), "ziel");
}

TEST_F(SiteFolderTest, ForeignFoldersNeedForce) {
  Put("index.html", "fremd");
  Put("notiz", "bleibt");
  const std::string path = files::PathText(fs::canonical(Target()));
  EXPECT_EQ(Refusal(), path + ": Der Ordner ist nicht leer und keine HTML-Dokumentation");
  EXPECT_EQ(Names(Target()), "index.html notiz");
  EXPECT_EQ(Refusal(true), "");
  EXPECT_EQ(Names(Target()), std::string(kSite).replace(std::string(kSite).find(" quillmate-site"), 0, " notiz"));
  EXPECT_EQ(Read("notiz"), "bleibt");
  EXPECT_NE(Read("index.html"), "fremd");
  EXPECT_EQ(Names(folder_ / "oben"), "ziel");
}

TEST_F(SiteFolderTest, NothingOfOthersIsOverwrittenOrRemoved) {
  fs::create_directories(folder_ / "oben");
  Export();
  Put("modul-b.html", "fremd");
  AddModule("b", codedb::kStandard, "x");
  const std::string clash = files::PathText(fs::canonical(Target()) / "modul-b.html");
  EXPECT_EQ(Refusal(), clash + ": Das gehört nicht zur HTML-Dokumentation und wird nicht überschrieben");
  EXPECT_EQ(Read("modul-b.html"), "fremd");
  fs::remove(Target() / "modul-b.html");
  Put("modul-b.html/x", "fremd");
  EXPECT_NE(Refusal(true), "");
  EXPECT_EQ(Read("modul-b.html/x"), "fremd");
  fs::remove_all(Target() / "modul-b.html");
  // A list that was tampered with.
  files::WriteWholeFile(folder_ / "oben" / "fremd", "bleibt");
  Put("unter/fremd", "bleibt");
  Put(kSiteListFile, "Quillmate HTML-Dokumentation\n../fremd\nunter\nunter/fremd\n..\n.\n\n");
  Export(true);
  EXPECT_EQ(Names(folder_ / "oben"), "fremd ziel");
  EXPECT_EQ(Read("unter/fremd"), "bleibt");
}

TEST_F(SiteFolderTest, AFailureLeavesTheTargetAsItWas) {
  fs::create_directories(folder_ / "oben");
  Export();
  const std::string before = Read("index.html");
  AddModule("b", codedb::kStandard, "x");
  EXPECT_THROW(ExportSite(project_, {}, Target(), false, [](std::size_t, std::size_t) { throw 1; }), int);
  fs::remove(project_.indexFolder / "M2.txt");
  EXPECT_NE(Refusal(), "");
  EXPECT_EQ(Read("index.html"), before);
  EXPECT_EQ(Names(Target()), kSite);
  EXPECT_EQ(Names(folder_ / "oben"), "ziel");
  files::WriteWholeFile(folder_ / "datei", "bleibt");
  const std::string message = codedb::MessageOf([&] { ExportSite(project_, {}, folder_ / "datei", true); });
  EXPECT_EQ(message, files::PathText(folder_ / "datei") + ": Das ist kein Ordner");
  EXPECT_EQ(files::ReadWholeFile(folder_ / "datei"), "bleibt");
}

}  // namespace
}  // namespace quillmate::output
