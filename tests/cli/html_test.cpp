#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kOpen = "<pre><span style=\"font-family=MS Sans Serif,Arial; font-size=10pt\"; >";
constexpr const char* kClose = "</span></pre>";
constexpr const char* kCredit =
    "\r\n<br><span style=\" font-weight:bold;\"> Code eingef&uuml;gt mit: </span> <a style =\"color:#ffff00; "
    "background-color:#000080; font-weight:bold;\" href=\"https://quillmate.example/\" target=\"blank\">";

std::string Span(const std::string& colour, const std::string& text) {
  return "<span style=\"color:" + colour + "\"; >" + text + "</span>";
}

std::string Key(const std::string& word) { return Span("#000080", word); }

TEST_F(CliTest, HtmlOfModulesAndProjects) {
  Write("a.bas", "'1\n'2\n'3\n");
  Write("b.cls", kCard);
  const std::string card = Key("Private") + " mName " + Key("As") + " " + Key("String") + "\r\n<b>" + Key("Property") +
                           " " + Key("Get") + " Name&#40;&#41; " + Key("As") + " " + Key("String") +
                           "</b>\r\nName = mName\r\n<b>" + Key("End") + " " + Key("Property") + "</b>\r\n\r\n";
  EXPECT_EQ(Run({"html", "--module", "KARTE", "a.bas", "b.cls"}).out, kOpen + card + kClose);
  const std::string stars = "' " + std::string(62, '*');
  const auto header = [&](const std::string& line) {
    return "\r\n\r\n<b>" + Span("#008000", stars + "\r\n'  Modul&#58;  " + line + "\r\n" + stars) + "</b>\r\n\r\n";
  };
  const std::string first = header("a  Typ = Allgemeines Modul") + Span("#008000", "'1") + "\r\n" +
                            Span("#008000", "'2") + "\r\n" + Span("#008000", "'3") + "\r\n\r\n";
  EXPECT_EQ(Run({"html", "--credit", "--edition", "word", "a.bas", "b.cls"}).out,
            kOpen + first + kClose + kOpen + header("Karte  Typ = Klassenmodul") + card + kClose + kCredit +
                "Word Quillmate</a>");
  const Result missing = Run({"html", "--module", "c", "-o", "c.html", "a.bas", "b.cls"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err, Messages({"Es gibt kein Modul \"c\""}));
  EXPECT_EQ(Names("."), "a.bas b.cls");
}

TEST_F(CliTest, ClipTakesAFileOrStandardInput) {
  Write("ansi", "x = \"\344\" ' <\374>");
  Write("utf8", "x = \"ä\" ' <ü>");
  Write("utf16", std::string_view("\377\376x\0 \0\r\0", 8));
  Write("leer", "");
  const std::string marked = "x = " + Span("#800000", "&#34;&auml;&#34;") + " " + Span("#008000", "' &lt;&uuml;&gt;");
  const struct {
    std::vector<std::string> arguments;
    const char* input;
    std::string out;
  } cases[] = {
      {{"ansi"}, "", kOpen + marked + kClose},
      {{}, "utf8", kOpen + marked + kClose},
      {{"-", "--credit"}, "ansi", kOpen + marked + kClose + kCredit + "Excel Quillmate</a>"},
      {{"utf16"}, "", kOpen + std::string("x \r\n") + kClose},
      {{"--option", "font=Arial,8", "--option", "fstr=255", "--option", "fkom=0", "ansi"},
       "",
       "<pre><span style=\"font-family=Arial,Arial; font-size=8pt\"; >x = " + Span("#FF0000", "&#34;&auml;&#34;") +
           " " + Span("#000000", "' &lt;&uuml;&gt;") + kClose},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments{"clip"};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
    const Result result = Run(arguments, {.input = c.input});
    EXPECT_EQ(result.out, c.out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
  }
}

TEST_F(CliTest, ClipWithoutText) {
  Write("leer", "");
  Write("a", "x");
  const struct {
    std::vector<std::string> arguments;
    const char* input;
    int status;
    const char* message;
  } cases[] = {
      {{"clip", "leer"}, "", 1, "Kein Text in leer"},
      {{"clip"}, "", 1, "Kein Text in der Standardeingabe"},
      {{"clip", "fehlt"},
       "",
       1,
       "Die Datei fehlt kann nicht gelesen werden: die Datei oder ihr Ordner existiert nicht."},
      {{"clip", "-o", "a", "a"}, "", 2, "Die Ausgabe a gehört zur Eingabe"},
      {{"clip", "a", "a"}, "", 2, "Es ist nur eine Datei möglich"},
  };
  for (const auto& c : cases) {
    const Result result = Run(c.arguments, {.input = c.input});
    EXPECT_EQ(result.status, c.status) << c.message;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.substr(0, result.err.find('\n') + 1), Messages({c.message}));
  }
  EXPECT_EQ(Names("."), "a leer");
  EXPECT_EQ(Read("a"), "x");
}

}  // namespace
}  // namespace quillmate::cli
