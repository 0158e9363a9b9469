#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/office/component_type.h>
#include <quillmate/office/module_file.h>

namespace quillmate::office {
namespace {

using namespace std::string_view_literals;

struct ModuleCase {
  const char* what;
  std::string_view extension, bytes;
  std::string_view name;
  int type;
  std::string_view code;
};

void ExpectModule(const ModuleCase& expected) {
  SCOPED_TRACE(expected.what);
  const ModuleFile file = ParseModuleFile(expected.bytes, expected.extension);
  EXPECT_EQ(file.name, expected.name);
  EXPECT_EQ(file.type, expected.type);
  EXPECT_EQ(file.code, expected.code);
  EXPECT_EQ(file.lineCount, CountLines(expected.code));
  const ModuleFile summary = SummarizeModuleFile(expected.bytes, expected.extension);
  EXPECT_EQ(summary.name, file.name);
  EXPECT_EQ(summary.type, file.type);
  EXPECT_EQ(summary.lineCount, file.lineCount);
  EXPECT_EQ(summary.code, "");
}

TEST(ModuleFile, HeaderAndAttributesAreNotCode) {
  const ModuleCase cases[] = {
      {"standard module", "bas", "Attribute VB_Name = \"Lager\"\r\nOption Explicit\r\nSub A()\r\nEnd Sub\r\n", "Lager",
       kStdModule, "Option Explicit\r\nSub A()\r\nEnd Sub"},
      {"class header", ".CLS",
       "VERSION 1.0 CLASS\r\nBEGIN\r\n  MultiUse = -1  'True\r\nEND\r\nAttribute VB_Name = \"Kunde\"\r\n"
       "Attribute VB_Exposed = False\r\nPrivate x\r\n",
       "Kunde", kClassModule, "Private x"},
      {"form with objects, nested blocks and a caption that reads like an end", "frm",
       "VERSION 5.00\nObject = \"{A}#2.0#0\"; \"X.OCX\"\nobject= \"{B}\"\nbegin {C62A69F0} Eingabe \n"
       "   Caption = \"End\"\n   Begin = 3\n\tBeginProperty Font \n\t Name = \"Arial\"\n\tENDPROPERTY\n"
       "  BEGIN VB.Label L\n  end\t\nEnd\nAttribute VB_Name = \"Eingabe\"\nSub X()\nEnd Sub",
       "Eingabe", kMSForm, "Sub X()\r\nEnd Sub"},
      {"version line alone", "dsr", "VERSION 5.00\r\nAttribute VB_Name = \"D\"\r\nx", "D", kOtherComponent, "x"},
      {"a block that never ends is no header", "cls", "VERSION 1.0 CLASS\r\nBEGIN\r\n  Begin X\r\n  END\r\nDim a\r\n",
       "", kClassModule, "VERSION 1.0 CLASS\r\nBEGIN\r\n  Begin X\r\n  END\r\nDim a"},
      {"code that begins with a word like it", "bas", "Versionen = 3\r\nVERSION x\r\nBEGIN\r\nEND", "", kStdModule,
       "Versionen = 3\r\nVERSION x\r\nBEGIN\r\nEND"},
      {"attributes inside the code, the first name counts", "Bas",
       "  aTTribute vb_name=\"Eins\"\r\nSub A()\r\n   ATTRIBUTE A.VB_Description = \"q\"\r\nEnd Sub\r\n"
       "Attribute VB_Name = \"Zwei\"\r\n\tAttribute tab\r\nAttributes = 1",
       "Eins", kStdModule, "Sub A()\r\nEnd Sub\r\n\tAttribute tab\r\nAttributes = 1"},
      {"one trailing break goes, not two", "bas", "a\r\n\r\n", "", kStdModule, "a\r\n"},
      {"attributes only", "bas", "Attribute VB_Name = \"Leer\"\r\n", "Leer", kStdModule, ""},
      {"one empty line", "bas", "Attribute VB_Name = \"Leer\"\r\n\r\n", "Leer", kStdModule, ""},
      {"an attribute at the end without a break", "bas", "a\r\nAttribute VB_Name = \"M\"", "M", kStdModule, "a"},
      {"user control", "ctl", "VERSION 5.00\r\nBegin VB.UserControl U\r\nEnd\r\nx", "", kOtherComponent, "x"},
      {"empty name", "bas", "Attribute VB_Name = \"\"\r\nx", "", kStdModule, "x"},
      {"nothing", "bas", "", "", kStdModule, ""},
  };
  for (const ModuleCase& each : cases) ExpectModule(each);
}

TEST(ModuleFile, ADocumentModuleShowsInItsAttributes) {
  const struct {
    std::string attributes;
    int type;
  } cases[] = {
      {"VB_PredeclaredId = True\nAttribute VB_Exposed = True", kHostDocument},
      {"VB_PredeclaredId = True\nAttribute VB_Exposed = False", kClassModule},
      {"VB_PredeclaredId = False\nAttribute VB_Exposed = True", kClassModule},
      {"VB_Creatable = True\nAttribute VB_PredeclaredId = true\nAttribute VB_Exposed = True", kClassModule},
      {"VB_Base = \"0{00020820-0000-0000-C000-000000000046}\"", kHostDocument},
      {"VB_Base = \"0{FCFB3D2A-A0FA-1068-A738-08002B3371B5}\"", kClassModule},
  };
  for (const auto& [attributes, type] : cases) {
    const std::string bytes = "Attribute " + attributes + "\nDim x";
    EXPECT_EQ(ParseModuleFile(bytes, "cls").type, type) << attributes;
    EXPECT_EQ(SummarizeModuleFile(bytes, "cls").type, type) << attributes;
    EXPECT_EQ(ParseModuleFile(bytes, "bas").type, kStdModule) << attributes;
  }
}

TEST(ModuleFile, EncodingsAndLineBreaks) {
  const ModuleCase cases[] = {
      {"windows-1252", "bas", "Attribute VB_Name = \"Pr\374fung\"\n'\200\n", "Pr\374fung", kStdModule, "'\200"},
      {"utf-8", "bas", "Attribute VB_Name = \"Pr\303\274fung\"\r'\342\202\254\r", "Pr\374fung", kStdModule, "'\200"},
      {"mark before a header", "cls", "\357\273\277VERSION 1.0 CLASS\nBEGIN\nEND\nx", "", kClassModule, "x"},
      {"utf-16", "bas", "\376\377\0'\001\170\0\n\0x"sv, "", kStdModule, "'\237\r\nx"},
      {"all breaks in one file", "bas", "a\nb\r\nc\rd\r\re\n\rf", "", kStdModule, "a\r\nb\r\nc\r\nd\r\n\r\ne\r\n\r\nf"},
      {"all breaks beside an umlaut", "bas", "\344\nb\r\nc\rd\n\r", "", kStdModule, "\344\r\nb\r\nc\r\nd\r\n"},
  };
  for (const ModuleCase& each : cases) ExpectModule(each);
}

TEST(ModuleFile, WhatTheEditorHidesAndWhatCodeCannotHoldAreKept) {
  const struct {
    const char* what;
    std::string_view bytes, code;
    /// "line>text" of each.
    std::vector<std::string> hidden;
    std::size_t replaced;
    std::string_view original;
  } cases[] = {
      {"attributes go before the next line",
       "\r\nAttribute a\n  Attribute b\nx\nAttribute c",
       "\r\nx",
       {"2>Attribute a\n  Attribute b", "3>Attribute c"},
       0,
       ""},
      {"header and attributes are one",
       "VERSION 5.00\nBegin VB.Form \374\n\n  End\nAttribute VB_Name = \"F\"\nx",
       "x",
       {"1>VERSION 5.00\nBegin VB.Form \303\274\n\n  End\nAttribute VB_Name = \"F\""},
       0,
       ""},
      {"characters",
       "Attribute VB_Name = \"\316\251\"\n'\316\251\303\244\360\237\230\200\rx",
       "'?\344?\r\nx",
       {"1>Attribute VB_Name = \"\316\251\""},
       2,
       "'\316\251\303\244\360\237\230\200\r\nx"},
      {"characters of a header only",
       "Attribute VB_Name = \"\316\251\"\nx",
       "x",
       {"1>Attribute VB_Name = \"\316\251\""},
       0,
       ""},
      {"utf-16", "\377\376'\0\251\3\0\330"sv, "'??", {}, 2, "'\316\251\357\277\275"},
      {"export of a form",
       "Version =20\nBegin Form\n  x = Begin\n    0x12 ,\n  End\nEnd\nCodeBehindForm\nAttribute a\nx",
       "x",
       {"1>Version =20\nBegin Form\n  x = Begin\n\n  End\nEnd\nCodeBehindForm\nAttribute a"},
       0,
       ""},
      {"export without code",
       "Version =21\r\nBegin Report\r\nEnd\r\n",
       "",
       {"1>Version =21\nBegin Report\nEnd"},
       0,
       ""},
      {"code that begins like one", "Versionen = 20\nVersion", "Versionen = 20\r\nVersion", {}, 0, ""},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    const ModuleFile file = ParseModuleFile(each.bytes, "bas");
    std::vector<std::string> hidden;
    for (const HiddenLines& lines : file.hidden) hidden.push_back(std::to_string(lines.line) + ">" + lines.text);
    EXPECT_EQ(file.code, each.code);
    EXPECT_EQ(file.lineCount, SummarizeModuleFile(each.bytes, "bas").lineCount);
    EXPECT_EQ(hidden, each.hidden);
    EXPECT_EQ(file.replaced, each.replaced);
    EXPECT_EQ(file.original, each.original);
  }
  EXPECT_EQ(ParseModuleFile("Attribute VB_Name = \"\316\251\"", "bas").utf8Name, "\316\251");
  EXPECT_EQ(ParseModuleFile("Attribute VB_Name = \"\374\"", "bas").utf8Name, "\303\274");
}

TEST(ModuleFile, DropAttributeLinesKeepsEverythingElse) {
  const struct {
    std::string_view code, expected;
  } cases[] = {
      {"", ""},
      {"a\r\n", "a\r\n"},
      {"Attribute x\r\na\r\n", "a\r\n"},
      {"a\r\n  attribute x\r\n\r\nb", "a\r\n\r\nb"},
      {"a\r\nAttribute \r\nAttribute", "a\r\nAttribute"},
      {"Attribute x", ""},
      {"VERSION 1.0 CLASS\r\nBEGIN\r\nEND", "VERSION 1.0 CLASS\r\nBEGIN\r\nEND"},
      {"'\r\n\tAttribute x", "'\r\n\tAttribute x"},
  };
  for (const auto& [code, expected] : cases) EXPECT_EQ(DropAttributeLines(code), expected) << code;
}

}  // namespace
}  // namespace quillmate::office
