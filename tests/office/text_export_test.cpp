#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/office/component_type.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/text_export.h>

namespace quillmate::office {
namespace {

using namespace std::string_view_literals;

struct KindCase {
  const char* what;
  std::string_view bytes;
  TextExport kind;
};

TEST(TextExport, IsToldByItsBeginning) {
  const KindCase cases[] = {
      {"module", "Option Compare Database\r\nOption Explicit\r\n", TextExport::kModule},
      {"module below a comment", "\xEF\xBB\xBF\r\n' Lager\r\n  option  base 1 ' wie immer\r\nDim a\r\n",
       TextExport::kModule},
      {"class", "Attribute VB_GlobalNameSpace = False\r\nOption Explicit", TextExport::kModule},
      {"class with its header", "VERSION 1.0 CLASS\r\nBEGIN\r\n  MultiUse = -1\r\nEND\r\n", TextExport::kModule},
      {"form", "Version =20\r\nVersionRequired =20\r\nBegin Form\r\n", TextExport::kForm},
      {"report", "Version =21\nPublishOption =1\nBegin Report\n", TextExport::kReport},
      {"form in UTF-16",
       "\xFF\xFEV\0e\0r\0s\0i\0o\0n\0 \0=\0"
       "2\0\n\0B\0e\0g\0i\0n\0 \0F\0o\0r\0m\0"sv,
       TextExport::kForm},
      {"macro", "Version =196611\r\nColumnsShown =0\r\nBegin\r\n    Action =\"RunCode\"\r\n", TextExport::kMacro},
      {"query", "Operation =1\r\nOption =0\r\nBegin InputTables\r\n", TextExport::kQuery},
      {"query as a statement", "dbMemo \"SQL\" =\"SELECT 1\"\r\n", TextExport::kQuery},
      {"nothing", "", TextExport::kNone},
      {"prose", "Option Explicit ist wichtig.\r\n", TextExport::kNone},
      {"another language", "Option Explicit On\r\nOption Strict On\r\n", TextExport::kNone},
      {"a note above code", "Beispiel:\r\nOption Explicit\r\nSub A()\r\nEnd Sub\r\n", TextExport::kNone},
      {"code without its head", "Sub A()\r\nEnd Sub\r\n", TextExport::kNone},
      {"an apostrophe in front of everything", "'Nur ein Zitat\r\n", TextExport::kNone},
      {"a number of something", "Version =20\r\n\r\nNeues in dieser Fassung\r\nBegin Form\r\n", TextExport::kNone},
      {"no number", "Version =zwei\r\nBegin Form\r\n", TextExport::kNone},
      {"a block of something else", "Version =1\r\nBegin Liste\r\nEnd\r\n", TextExport::kNone},
      {"a stored module of an index", "|\237f|Option|n\237| |\237f|Explicit|n\237|\r\n", TextExport::kNone},
  };
  for (const KindCase& each : cases) EXPECT_EQ(TextExportOf(each.bytes), each.kind) << each.what;
}

TEST(TextExport, IsTakenApartByItsContent) {
  const struct {
    const char* what;
    std::string_view bytes, prefix;
    int type;
    std::string_view code;
  } cases[] = {
      {"module", "Option Compare Database\r\nDim a\r\n", "", kStdModule, "Option Compare Database\r\nDim a"},
      {"class", "Attribute VB_GlobalNameSpace = False\r\nAttribute VB_Exposed = True\r\nDim a", "", kClassModule,
       "Dim a"},
      {"class with its header", "VERSION 1.0 CLASS\r\nBEGIN\r\nEND\r\nDim a", "", kClassModule, "Dim a"},
      {"form", "Version =20\nBegin Form\nEnd\nCodeBehindForm\nAttribute VB_Exposed = False\nSub A()\nEnd Sub", "Form_",
       kHostDocument, "Sub A()\r\nEnd Sub"},
      {"report without code", "Version =20\nBegin Report\nEnd\n", "Report_", kHostDocument, ""},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    for (const char* extension : {".txt", "TXT"}) {
      const ModuleFile file = ParseModuleFile(each.bytes, extension);
      EXPECT_EQ(file.type, each.type);
      EXPECT_EQ(file.namePrefix, each.prefix);
      EXPECT_EQ(file.code, each.code);
      const ModuleFile summary = SummarizeModuleFile(each.bytes, extension);
      EXPECT_EQ(summary.type, each.type);
      EXPECT_EQ(summary.namePrefix, each.prefix);
    }
    EXPECT_EQ(ParseModuleFile(each.bytes, "bas").namePrefix, "");
  }
}

TEST(TextExport, NamesWhatAQueryCalls) {
  const std::string bytes =
      "Operation =1\r\nBegin OutputColumns\r\n    Expression =\"Netto([Preis]) + Netto(2)\"\r\n"
      "    Expression =\"\\\"(\\\" & mdlText.K\374rze ([a])\"\r\n    Alias =\"(x)\"\r\nEnd\r\n";
  EXPECT_EQ(NamesCalledIn(bytes), (std::vector<std::string>{"Netto"}));
  EXPECT_EQ(NamesCalledIn("=mdlText.K\374rze([a]) .b(1) Iif(Netto(1))"),
            (std::vector<std::string>{"mdlText.K\303\274rze", "Iif", "Netto"}));
}

}  // namespace
}  // namespace quillmate::office
