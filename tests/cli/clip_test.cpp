#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kOpen = "<pre><span style=\"font-family=MS Sans Serif,Arial; font-size=10pt\"; >";
constexpr const char* kClose = "</span></pre>";
constexpr const char* kCredit =
    "\r\n<br><span style=\" font-weight:bold;\"> Code eingef&uuml;gt mit: </span> <a style =\"color:#ffff00; "
    "background-color:#000080; font-weight:bold;\" href=\"\" target=\"blank\">";

std::string Span(const std::string& colour, const std::string& text) {
  return "<span style=\"color:" + colour + "\"; >" + text + "</span>";
}

TEST_F(CliTest, ClipTakesAFileOrStandardInput) {
  Write("ansi", "x = \"\344\" ' <\374>");
  Write("utf8", "x = \"ä\" ' <ü>");
  Write("leer", "");
  const std::string marked = "x = " + Span("#800000", "&#34;&auml;&#34;") + " " + Span("#008000", "' &lt;&uuml;&gt;");
  const struct {
    const char* line;
    const char* input;
    std::string out;
  } cases[] = {
      {"clip ansi", "", kOpen + marked + kClose},
      {"clip", "utf8", kOpen + marked + kClose},
      {"clip - --credit", "ansi", kOpen + marked + kClose + kCredit + "Excel Quillmate</a>"},
      {"clip --option font=Arial,8 --option fstr=255 --option fkom=0 ansi", "",
       "<pre><span style=\"font-family=Arial,Arial; font-size=8pt\"; >x = " + Span("#FF0000", "&#34;&auml;&#34;") +
           " " + Span("#000000", "' &lt;&uuml;&gt;") + kClose},
  };
  for (const auto& c : cases) EXPECT_EQ(Run(c.line, {.input = c.input}), Success(c.out)) << c.line;
}

TEST_F(CliTest, ClipWithoutText) {
  Write("leer", "");
  Write("a", "x");
  const struct {
    const char* line;
    int status;
    const char* message;
  } cases[] = {
      {"clip leer", 1, "Kein Text in leer"},
      {"clip", 1, "Kein Text in der Standardeingabe"},
      {"clip fehlt", 1, "fehlt kann nicht gelesen werden: Datei oder Ordner existiert nicht"},
      {"clip -o a a", 2, "Die Ausgabe a gehört zur Eingabe"},
      {"clip a a", 2, "Es ist nur eine Datei möglich"},
  };
  for (const auto& c : cases) {
    const Result result = Run(c.line);
    EXPECT_EQ(result.status, c.status) << c.message;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.substr(0, result.err.find('\n') + 1), Messages({c.message}));
  }
  EXPECT_EQ(Names("."), "a leer");
  EXPECT_EQ(Read("a"), "x");
}

}  // namespace
}  // namespace quillmate::cli
