#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

constexpr const char* kUsage = "Aufruf: quillmate-cli BEFEHL [Optionen] EINGABE...";
constexpr const char* kTextUsage = "Aufruf: quillmate-cli text [--module NAME] [-o DATEI] EINGABE...";
constexpr const char* kIndexUsage = "Aufruf: quillmate-cli index -o ORDNER [--force] [--partial] EINGABE...";
constexpr const char* kOutlineUsage = "Aufruf: quillmate-cli outline [--exact] [-o DATEI] EINGABE...";

TEST_F(CliTest, WrongUsageIsSaidWithTheRightUsage) {
  const struct {
    const char* line;
    const char* message;
    const char* usage;
  } cases[] = {
      {"", "Es fehlt der Befehl", kUsage},
      {"--json", "Es fehlt der Befehl", kUsage},
      {"drucken a.bas", "Unbekannter Befehl \"drucken\"", kUsage},
      {"text", "Es fehlt die Eingabe", kTextUsage},
      {"text --", "Es fehlt die Eingabe", kTextUsage},
      {"text ''", "Eine Eingabe ist leer", kTextUsage},
      {"text --farbe a.bas", "Unbekannte Option \"--farbe\"", kTextUsage},
      {"text -x a.bas", "Unbekannte Option \"-x\"", kTextUsage},
      {"text a.bas --module", "Der Option --module fehlt der Wert NAME", kTextUsage},
      {"text -o '' a.bas", "Das Ziel hinter -o ist leer", kTextUsage},
      {"text --json a.bas", "Der Befehl text kennt die Option --json nicht", kTextUsage},
      {"--module=A outline a.bas", "Der Befehl outline kennt die Option --module nicht", kOutlineUsage},
      {"outline --user-settings=ja a.bas", "Die Option --user-settings hat keinen Wert", kOutlineUsage},
      {"outline --option einr a", "--option erwartet SCHLÜSSEL=WERT statt \"einr\"", kOutlineUsage},
      {"outline --option rot=1 a", "Unbekannter Schlüssel \"rot\" in --option", kOutlineUsage},
      {"outline --edition=lotus a", "Unbekannte Edition \"lotus\"", kOutlineUsage},
      {"index a.bas", "Es fehlt der Ordner hinter -o", kIndexUsage},
      {"index -o - a.bas", "Es fehlt der Ordner hinter -o", kIndexUsage},
  };
  for (const auto& c : cases) EXPECT_EQ(Run(c.line), Refusal(2, {c.message, c.usage})) << c.line;
}

TEST_F(CliTest, HelpAndVersionNeedNothingElse) {
  const Result help = Run("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_TRUE(help.out.starts_with(std::string(kUsage) + "\n"));
  for (const char* const word : {"\n  index ", "\n  modules ", "\n  outline ", "\n  text ", "\n  rtf ", "\n  html ",
                                 "\n  clip ", "\n  site ", "\n  --json "}) {
    EXPECT_NE(help.out.find(word), std::string::npos) << word;
  }
  const Result text = Run("text --help --json");
  EXPECT_EQ(text.status, 0);
  EXPECT_TRUE(text.out.starts_with(std::string(kTextUsage) + "\n"));
  EXPECT_EQ(text.out.find("--force"), std::string::npos);
  EXPECT_EQ(Run("--version").out, "quillmate-cli 1.0\n");
}

TEST_F(CliTest, OptionsAndInputsMixInAnyOrder) {
  Write("-a.bas", kGreeting);
  Write("b.cls", kCard);
  const std::string expected = Run("text --module Karte -- -a.bas b.cls").out;
  EXPECT_EQ(expected,
            "Private mName As String\r\nProperty Get Name() As String\r\nName = mName\r\nEnd Property\r\n\r\n");
  EXPECT_EQ(Run("--module=karte text b.cls -- -a.bas").out, expected);
  EXPECT_EQ(Run("text b.cls -ox ./-a.bas --module KARTE").status, 0);
  EXPECT_EQ(Read("x"), expected);
}

}  // namespace
}  // namespace quillmate::cli
