#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kSite =
    "abhaengigkeiten.html aufrufe.html befunde.html deklarationen.html index.html kennzahlen.html modul-Gruss.html "
    "modul-Karte.html "
    "quillmate-site.txt "
    "routinen.html stil.css "
    "suche.html suche.js unbenutzt.html";

TEST_F(CliTest, SiteOfSourcesAndOfTheSavedProject) {
  Write("q/a.bas", kGreeting);
  Write("q/b.cls", kCard);
  ASSERT_EQ(Run("index -o p q").status, 0);
  const struct {
    const char* line;
    const char* title;
  } cases[] = {
      {"q", "<h1>q</h1>"},
      {"p", "<h1>p</h1>"},
      {"p --title 'A & Ö'", "<h1>A &amp; Ö</h1>"},
      {"q/a.bas q/b.cls", "<h1>Makroprojekt</h1>"},
      {"--option fkey=255 --option rouf=0 q", "<h1>q</h1>"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Run("site -o doku " + std::string(c.line)), Success());
    EXPECT_EQ(Names("doku"), kSite);
    EXPECT_NE(Read("doku/index.html").find(c.title), std::string::npos) << c.title;
  }
  EXPECT_NE(Read("doku/stil.css").find("--k:#FF0000;"), std::string::npos);
  EXPECT_NE(Read("doku/stil.css").find("pre b{font-weight:400}"), std::string::npos);
  // A Declare that nothing names, and a Function that a cell may call.
  EXPECT_NE(Read("doku/unbenutzt.html")
                .find(">Zeit</a> <small>Declare Function</small></th><td><a "
                      "href=\"modul-Gruss.html\">Gruß</a></td><td>sicher<"),
            std::string::npos);
  EXPECT_NE(Read("doku/unbenutzt.html").find("</a></td><td>möglich: öffentliche Funktion, die eine Zelle"),
            std::string::npos);
  EXPECT_EQ(Names("."), "doku p q");
}

TEST_F(CliTest, SiteIsRefusedOrWhole) {
  Write("a.bas", kGreeting);
  Write("fremd/x", "bleibt");
  const char* const usage = "Aufruf: quillmate-cli site -o ORDNER [--title TEXT] [--force] EINGABE...";
  const struct {
    const char* line;
    int status;
    std::vector<std::string> messages;
  } cases[] = {
      {"site a.bas", 2, {"Es fehlt der Ordner hinter -o", usage}},
      {"site -o - a.bas", 2, {"Es fehlt der Ordner hinter -o", usage}},
      {"site -o fremd fremd", 2, {"Die Ausgabe fremd gehört zur Eingabe", usage}},
      {"site -o fremd a.bas", 1, {Full("fremd") + ": Der Ordner ist nicht leer und keine HTML-Dokumentation"}},
      {"site -o fehlt/neu a.bas",
       1,
       {Full("fehlt/neu") + " kann nicht geschrieben werden: Datei oder Ordner existiert nicht"}},
      {"site -o fremd --force fehlt.bas", 1, {Full("fehlt.bas") + ": Datei existiert nicht"}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Run(c.line), Refusal(c.status, c.messages));
    EXPECT_EQ(Names("."), "a.bas fremd");
    EXPECT_EQ(Names("fremd"), "x");
  }
  EXPECT_EQ(Run("site -o fremd --force a.bas").status, 0);
  EXPECT_EQ(Read("fremd/x"), "bleibt");
  EXPECT_EQ(Run("site -o fremd a.bas").status, 0);
  EXPECT_EQ(Names("."), "a.bas fremd");
}

}  // namespace
}  // namespace quillmate::cli
