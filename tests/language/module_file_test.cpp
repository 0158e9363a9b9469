#include <string>

#include <gtest/gtest.h>

#include "dump.h"

namespace quillmate::language {
namespace {

/// "name:type" of each control; "(3)" its index, "<" the control around it, "*" a menu.
std::string Controls(const Module& module) {
  std::string text;
  for (const Control& control : module.controls) {
    if (!text.empty()) text += ' ';
    text += module.Text(control.nameText);
    text += ':';
    text += module.Text(control.type);
    if (control.index >= 0) text += '(' + std::to_string(control.index) + ')';
    if (control.parent != kNone) text.append("<").append(module.Text(module.controls[control.parent].nameText));
    if (control.menu) text += '*';
  }
  for (const EventProperty& event : module.eventProperties) {
    text.append(" ").append(module.Text(module.controls[event.control].nameText)).append(".");
    text.append(module.Text(event.property)).append("=").append(module.Text(event.value));
  }
  return text;
}

TEST(ModuleFile, Headers) {
  const struct {
    const char* text;
    ModuleKind kind;
    const char* name;
    const char* controls;
    const char* routines;
  } kCases[] = {
      {"VERSION 5.00\r\n"
       "Object = \"{831FDD16-0C5C-11D2-A9FC-0000F8754DA1}#2.0#0\"; \"MSCOMCTL.OCX\"\r\n"
       "Begin VB.Form frmMain \r\n"
       "   Caption         =   \"End\"\r\n"
       "   Begin VB.TextBox txtName \r\n"
       "      Index           =   3\r\n"
       "      BeginProperty Font \r\n"
       "         Index           =   7\r\n"
       "      EndProperty\r\n"
       "   End\r\n"
       "   Begin VB.Menu mnuDatei \r\n"
       "      Begin VB.Menu mnuNeu \r\n"
       "      End\r\n"
       "   End\r\n"
       "End\r\n"
       "Attribute VB_Name = \"frmMain\"\r\n"
       "Attribute VB_PredeclaredId = True\r\n"
       "Sub A(): End Sub\r\n",
       ModuleKind::kForm, "frmMain",
       "frmMain:VB.Form txtName:VB.TextBox(3)<frmMain mnuDatei:VB.Menu<frmMain* mnuNeu:VB.Menu<mnuDatei*", "S:A@18-18"},
      {"VERSION 5.00\nBegin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} UserForm1 \nEnd\nAttribute VB_Name = "
       "\"UserForm1\"\n",
       ModuleKind::kForm, "UserForm1", "UserForm1:{C62A69F0-16DC-11CE-9E98-00AA00574A4F}", ""},
      {"VERSION 5.00\nBegin VB.UserControl U\nEnd\n", ModuleKind::kUserControl, "", "U:VB.UserControl", ""},
      {"Version =20\nVersionRequired =20\nBegin Form\n    OnLoad =\"=Oeffne()\"\n    Begin\n        Begin "
       "CommandButton\n"
       "            OnClick =\"x\"\n        End\n        Begin Section\n            Name =\"Detail\"\n            "
       "Begin\n"
       "                Begin CommandButton\n                    Name =\"cmd OK\"\n"
       "                    EventProcPrefix =\"cmd_OK\"\n                    PrtDevMode = Begin\n"
       "                        0x000102\n                    End\n                    OnClick =\"[Event Procedure]\"\n"
       "                End\n            End\n        End\n    End\nEnd\nCodeBehindForm\n"
       "Attribute VB_PredeclaredId = True\nPrivate Sub cmd_OK_Click()\nEnd Sub\n",
       ModuleKind::kDocument, "",
       ":Form Detail:Section< cmd OK:CommandButton<Detail .OnLoad==Oeffne() cmd OK.OnClick=[Event Procedure]",
       "S:cmd_OK_Click@26-27"},
      {"Version =20\nBegin Form\nEnd\n", ModuleKind::kDocument, "", ":Form", ""},
      {"VERSION 1.0 CLASS\nBEGIN\n  MultiUse = -1  'True\nAttribute VB_Name = \"Tabelle1\"\n"
       "Attribute VB_Base = \"0{00020820-0000-0000-C000-000000000046}\"\n"
       "Attribute VB_Control = \"cmdStart, 3, 0, MSForms, CommandButton\"\nSub C(): End Sub",
       ModuleKind::kDocument, "Tabelle1", "cmdStart:MSForms, CommandButton", "S:C@7-7"},
      {"VERSION 1.0 CLASS\nSub E(): End Sub", ModuleKind::kClass, "", "", "S:E@2-2"},
      {"Attribute VB_Name = \"Form_x\"\nAttribute VB_PredeclaredId = True\n", ModuleKind::kDocument, "Form_x", "", ""},
      {"Attribute VB_Name = \"Modul1\"\n\nSub D(): End Sub", ModuleKind::kStandard, "Modul1", "", "S:D@3-3"},
      {"\xEF\xBB\xBFSub D(): End Sub", ModuleKind::kStandard, "", "", "S:D@1-1"},
      {"VERSION 1.0 CLASS", ModuleKind::kClass, "", "", ""},
  };
  for (const auto& [text, kind, name, controls, routines] : kCases) {
    const Module module = ParseModule(text);
    EXPECT_EQ(module.facts.kind, kind) << text;
    EXPECT_EQ(module.facts.name, name) << text;
    EXPECT_EQ(Controls(module), controls) << text;
    EXPECT_EQ(Routines(module), routines) << text;
  }
}

/// What the editor shows has neither header nor Attribute lines; its lines count without them, and both texts read
/// alike.
TEST(ModuleFile, LinesOfTheEditor) {
  const Module module = ParseModule(
      "VERSION 1.0 CLASS\nBEGIN\nEND\nAttribute VB_Name = \"C\"\nOption Explicit\nPublic Function Item(i) As Long\n"
      "Attribute Item.VB_UserMemId = 0\nAttribute Item.VB_Description = _\n  \"d\"\nItem = i\nEnd Function\n"
      "Public W As Long\nAttribute W.VB_VarHelpID = -1\n' end\n");
  std::string lines;
  for (std::uint32_t line = 1; line <= module.lines.size(); ++line) {
    const std::uint32_t shown = module.EditorLine(line);
    lines += std::to_string(shown) + ' ';
    if (shown > 0) {
      EXPECT_EQ(module.LineOfEditorLine(shown), line);
    }
  }
  EXPECT_EQ(lines, "0 0 0 0 1 2 0 0 0 3 4 5 0 6 ");
  EXPECT_EQ(module.LineText(10), "Item = i");
  EXPECT_EQ(module.RoutineAt(9), 0U);
  EXPECT_EQ(module.RoutineAt(12), kNone);
  std::string attributes;
  for (const Attribute& attribute : module.attributes) {
    if (attribute.member == kNone) continue;
    attributes += module.NameText(attribute.name);
    attributes += '=' + std::string(module.Text(attribute.value)) + '@';
    attributes += std::to_string(module.declarations[attribute.declaration].line) + ' ';
  }
  EXPECT_EQ(attributes, "vb_usermemid=0@6 vb_description=\"d\"@6 vb_varhelpid=-1@12 ");
}

TEST(ModuleFile, Names) {
  const struct {
    const char* name;
    const char* folded;
  } kCases[] = {{"Größe", "größe"},
                {"STRASSE_Ä", "strasse_ä"},
                {"[Feld 1]", "feld 1"},
                {"Left$", "left"},
                {"Ёлка", "ёлка"},
                {"ΣΑΣ", "σασ"},
                {"[_X]", "_x"},
                {"\xFC"
                 "ber",
                 "\xFC"
                 "ber"}};
  for (const auto& [name, folded] : kCases) {
    EXPECT_EQ(FoldName(name), folded);
    // The same name in every module, however it is written there.
    const Module module = ParseModule(std::string("x = ") + name + " + " + folded);
    ASSERT_GE(module.uses.size(), 2U);
    EXPECT_EQ(module.NameText(module.uses[1].name), folded);
    EXPECT_EQ(module.NameHash(module.uses[1].name), HashName(folded));
    EXPECT_EQ(module.FindName(name), module.uses[1].name);
  }
}

TEST(ModuleFile, Conditions) {
  const ConditionalConstant kConstants[] = {{"iVersion", 6}, {"ÜBER", 1}};
  const struct {
    const char* condition;
    bool vba, vb6;
  } kCases[] = {
      {"VBA7", true, false},
      {"Win64 And Win32", true, false},
      {"Mac Or Undefined", false, false},
      {"Not Win64", true, true},
      {"VBA7 = True", false, false},
      {"iversion >= 6", true, true},
      {"über", true, true},
      {"1 + 2 * 3 = 7", true, true},
      {"(1 + 2) * 3 = 9", true, true},
      {"-2 ^ 2 = -4", true, true},
      {"7 \\ 2 = 3 And 7 Mod 4 = 3", true, true},
      {"\"a\" & \"b\" = \"AB\"", true, true},
      {"\"abc\" Like \"[a-c]?*\"", true, true},
      {"Len(\"abc\") = 3", true, true},
      {"Not True", false, false},
      {"&HFF = 255 Xor &O17 = 15", false, false},
      {"1 +", false, false},
      {"(((", false, false},
      {"1 / 0 = 0", true, true},
      {"D = 5 And E = 6", true, true},
      {"True Imp False Eqv False", true, true},
      {"Abs(-3) = 3 And Sgn(-2) = -1 And Int(-1.5) = -2 And Fix(-1.5) = -1", true, true},
  };
  for (const auto& [condition, vba, vb6] : kCases) {
    const std::string code =
        "#If " + std::string(condition) + " Then\nDim a\n#Else\n#Const D = 5\n#End If\n#Const E = D + 1\n";
    ParseOptions options;
    options.constants = kConstants;
    for (const bool isVba : {true, false}) {
      options.dialect = isVba ? Dialect::kVba : Dialect::kVb6;
      EXPECT_EQ(ParseModule(code, options).lines[1].activity == Activity::kActive, isVba ? vba : vb6) << condition;
    }
  }
  const auto constants = ParseConditionalConstants("iVBVer = 6 : afDebug=-5:x: y = z");
  ASSERT_EQ(constants.size(), 2U);
  EXPECT_EQ(constants[1].name, "afDebug");
  EXPECT_EQ(constants[1].value, -5);
}

}  // namespace
}  // namespace quillmate::language
