#include <filesystem>
#include <string>
#include <vector>

#include <quillmate/codedb/notes.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kSite =
    "abhaengigkeiten.html aufrufe.html befunde.html deklarationen.html index.html kennzahlen.html modul-Gruss.html "
    "modul-Karte.html "
    "quillmate-site.txt "
    "routinen.html stil.css "
    "suche-e1.js suche.html suche.js unbenutzt.html";

/// A module that is too short for the index is named with its own file.
TEST_F(CliTest, SiteNamesShortModules) {
  Write("q/a.bas", kGreeting);
  Write("q/kurz.bas", "Option Explicit\r\n");
  EXPECT_EQ(Run("site -o doku q"), Success());
  EXPECT_NE(Read("doku/index.html").find("<tr><td>" + Full("q/kurz.bas") + "</td><td>q</td><td>kurz</td>"),
            std::string::npos)
      << Read("doku/index.html");
}

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

/// What the user has noted in a saved project stands on the pages of its modules, beside the line wherever that went.
TEST_F(CliTest, SiteHasTheNotesOfTheSavedProject) {
  Write("q/a.bas", kGreeting);
  Write("q/b.cls", kCard);
  ASSERT_EQ(Run("index -o p q").status, 0);
  std::vector<codedb::Note> notes(4);
  for (codedb::Note& note : notes) note.project = "q", note.module = "Gruß";
  notes[0].line = "MsgBox \"Hallo {Welt}\" ' Grüße";
  notes[0].routine = "Anfang";
  notes[0].text = "Erste <Notiz>\nzweite Zeile";
  notes[1].line = "End Sub";
  notes[1].isBookmark = true;
  notes[2].module = "Weg";
  notes[2].text = "Von einem Modul, das es nicht mehr gibt";
  notes[3].module = "Karte";
  notes[3].line = "gibt es nicht mehr";
  notes[3].text = "Zur Klasse";
  codedb::SaveNotes(Folder() / "p", notes);
  ASSERT_EQ(Run("site -o doku p"), Success());
  const std::string page = Read("doku/modul-Gruss.html");
  const std::size_t at = page.find("<h2 id=\"notizen\">");
  ASSERT_NE(at, std::string::npos);
  const std::string part = page.substr(at, page.find("</table>", at) - at);
  EXPECT_NE(part.find("<a href=\"#z3\">Zeile 3</a></td><td>Erste &lt;Notiz&gt;<br>zweite Zeile</td>"),
            std::string::npos)
      << part;
  EXPECT_EQ(part.find("</td></tr>"), part.rfind("</td></tr>")) << "a bookmark alone is none: " << part;
  EXPECT_NE(Read("doku/modul-Karte.html").find("<a href=\"#z1\">Zeile 1</a></td><td>Zur Klasse</td>"),
            std::string::npos);
  EXPECT_EQ(Read("doku/modul-Gruss.html").find("Von einem Modul"), std::string::npos);
  // Sources have none, and a file that is none is told.
  ASSERT_EQ(Run("site -o doku q"), Success());
  EXPECT_EQ(Read("doku/modul-Gruss.html").find("id=\"notizen\""), std::string::npos);
  Write("p/Notizen.db", "keine Datenbank");
  EXPECT_EQ(Run("site -o neu p").status, 1);
  EXPECT_FALSE(std::filesystem::exists(Folder() / "neu"));
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
