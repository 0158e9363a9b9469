#include <string>

#include <gtest/gtest.h>

#include "dump.h"

namespace quillmate::language {
namespace {

TEST(Routines, Ranges) {
  const struct {
    const char* code;
    const char* expected;
  } kCases[] = {
      {"Sub A(): x = 1: End Sub: Sub B(): End Sub\nSub C()\nEnd Sub", "S:A@1-1 S:B@1-1 S:C@2-3"},
      {"Sub A()\nx\nSub B()\ny\nEnd Function", "S:A@1-2! S:B@3-5"},
      {"Public Static Function F As Long\nExit Function\nEnd _\n Function\nSub S () Static\n99 End Sub",
       "F:F@1-4 S:S@5-6"},
      {"Property Get Step() As Long\nEnd Property\nProperty Let Step(ByVal v As Long): m = v: End Property\nProperty "
       "Set Error(o): End Function\nFriend Sub Access(): End Sub",
       "G:Step@1-2 L:Step@3-3 T:Error@4-4 S:Access@5-5"},
      {"#If VBA7 Then\nFunction F() As LongPtr\n#Else\nFunction F() As Long\n#End If\nx = 1\nEnd Function\nSub G\nEnd "
       "Sub",
       "F:F@2-7*2 S:G@8-9"},
      {"#If Win64 Then\nSub A()\nx\nEnd Sub\n#Else\nSub A()\ny\nEnd Sub\n#End If", "S:A@2-4 S:A@6-8~"},
      {"#If VBA7 Then\nSub A(a As LongPtr)\n#End If\n#If Not VBA7 Then\nSub A(a As Long)\n#End If\nx\nEnd Sub\nSub "
       "B(): End Sub",
       "S:A@2-8*2 S:B@9-9"},
      {"#If False Then\nSub Dead()\nx\nEnd Sub\nPrivate Const eA = 0\n#End If\nSub A()\n#If 0 Then\nSub Inner()\nEnd "
       "Sub\n#End If\nEnd Sub",
       "S:Dead@2-4# S:A@7-12"},
      {"Sub A()\n#If Mac Then\nx\nEnd Sub\n#Else\ny\nEnd Sub\n#End If\nSub B()\nEnd Sub", "S:A@1-7 S:B@9-10"},
      {"#If False Then\nSub A(x)\n#Else\nSub A(y)\n#End If\nEnd Sub", "S:A@2-6*2"},
      {"Rem Sub X()\n' note _\nSub Y()\nSub Z() ' End Sub\ns = \"End Sub\"\nEnd Sub ' x", "S:Z@4-6"},
      {"Private Type T\nEnd As Long\nType As Integer\nSub As Long\nIf As Integer\nFunction() As String\nEnd "
       "Type\nPrivate Enum LongPtr\n[_First] = 0\nA = 1: B = 2\nEnd Enum\nPrivate Type U: x As Long: y(3) As String * "
       "5: End Type",
       ""},
      {"Type T\nx As Long\nSub A()\nEnd Sub", "S:A@3-4"},
      {"Declare Sub X Lib \"a\" ()\nPublic Event Sub1()\nSub B()\nx = AddressOf Sub1\nExit Sub\nEnd\nEnd If\nend sub",
       "S:B@3-8"},
      {"Sub A()\nIf a Then\nEnd Sub\nSub B()\nEndSub\nEnd Sub", "S:A@1-3 S:B@4-6"},
      {"Public Class Foo\nPublic Sub New()\nEnd Sub\nEnd Class\nImports System", "S:New@2-3"},
      {"   Private   Sub   [Foo Bar] ( )\n   End   Sub", "S:[Foo Bar]@1-2"},
      {"Function InstrN&(a$, b!)\nInstrN = 1\nEnd Function", "F:InstrN&@1-3"},
      {"VERSION 1.0 CLASS\nBEGIN\n  MultiUse = -1  'True\nEND\nAttribute VB_Name = \"C\"\nAttribute VB_PredeclaredId = "
       "False\nOption Explicit\nPublic Function Item(i)\nAttribute Item.VB_UserMemId = 0\nEnd Function",
       "F:Item@8-10"},
      {"Sub A()\nSub B()\nSub C()", "S:A@1-1! S:B@2-2! S:C@3-3!"},
      {"10 Sub A()\n20 x = 1\n30 End Sub", ""},
      {"Sub A()\n#If VBA7 Then\n#If Win64 Then\nSub B(): End Sub\n#End If\n#End If", "S:A@1-3! S:B@4-4"},
      {"#If A Then\nSub F(x)\n#ElseIf B Then\nSub F(y)\n#Else\n#If C Then\nSub F(z)\n#Else\nSub F(w)\n#End If\n#End "
       "If\nEnd Sub",
       "S:F@2-12*4"},
      {"x = y_\nSub A()\nx = y_\nEnd Sub", "S:A@2-4"},
      {"Sub A(a, _\n  b _\n  ) _\n \nEnd Sub", "S:A@1-5"},
      {"Sub A() : Rem x\nEnd Sub : Sub B()\nEnd Sub", "S:A@1-2 S:B@2-3"},
      {"Sub A(): If x Then Exit Sub: y: End Sub: Sub B(): End Sub", "S:A@1-1 S:B@1-1"},
      {"Public Function Property() As Long: Property = 1: End Function\nSub Sub1(): Set Property = x: Property.Get: "
       "End Sub",
       "F:Property@1-1 S:Sub1@2-2"},
      {"Sub\nFunction (x)\nPrivate Sub A\nEnd Sub", "S:A@3-4"},
  };
  for (const auto& [code, expected] : kCases) EXPECT_EQ(Routines(ParseModule(code)), expected) << code;
}

TEST(Routines, Metrics) {
  const struct {
    const char* code;
    const char* expected;  ///< statements, complexity, nesting
  } kCases[] = {
      {"Sub S()\nFoo: Bar\n x = 1: Foo: Bar\n10 Foo2: x = 1\nWeiter: DoEvents\nElse: Do: Loop: Next: Return: "
       "Stop\nBeep: Cls\nErr: Error: Resume Next\nRandomize: x\n[abc]: y\n007 GoTo 7\nEnd Sub",
       "17/1/1"},
      {"Sub S()\nIf x Then y: z Else w\nIf x Then:\nq\nIf x Then ' note\na\nEnd If\nIf x Then _\nb\nIf (a) Then b Else "
       "If c Then d\nIf a Then\nElse If b Then\nc\nEnd If\nEnd If\nIf a Then If b Then c Else d Else e\nIf a Then 100 "
       "Else Foo\nIf a Then Else b\nIf a Then For i = 1 To 3: f i: Next\nIf a Then Exit Sub Else End\nEndIf\nEnd Sub",
       "33/16/2"},
      {"Sub S()\nFor i = 1 To n Step -1: Next i\nFor Each v In o.Items(3): Next\nFor i = 1 To 2: For j = 1 To 3: Next "
       "j, i\nDo While a: Loop\nDo: Loop Until b\nDo While a: Loop While b\nWhile c: Wend\nSelect Case x\nCase Is > 3, "
       "5 To 9, < 2, \"a\": f\nCase Else: g\nEnd Select\nOn x GoTo a, 10, c\nOn Error Resume Next: On Error GoTo 0: On "
       "Error GoTo -1: On Local Error GoTo Err\nResume 0: Resume 100: Resume Weiter\nGo To 10: GoSub x: Go Sub y\nFor "
       "Step = 1 To Step Step Step: Next Step\nEnd Sub",
       "23/14/2"},
      {"Sub S()\nWith a: With .b: .c = 1: End With: .d = 2: End With\nWith New C: .x = 1: End With\nWith f(1).g: !h = "
       ".i!j: End With\n.z = 1\nWith (o): .x = 2: End With\nEnd Sub",
       "11/1/2"},
      {"Sub S()\nrs _\n    .Open \"x\"\n obj. Name = 1\n a _\n !b = 2\n Foo .Count, !Feld\n Print a; b, c d; .x\n "
       "Debug.Print Tab(3); x;\n Debug.Print a b \"c\" d\n ? z; y\n Print #1, a; Spc(n); b\n Write #f, a, b\nEnd Sub",
       "10/1/0"},
  };
  for (const auto& [code, expected] : kCases) EXPECT_EQ(Metrics(ParseModule(code)), expected) << code;
}

/// Kinds by name, with the blocks around them, and the statement's own text.
TEST(Routines, StatementsOnRequest) {
  ParseOptions options;
  options.keepStatements = options.keepTokens = true;
  const Module module = ParseModule(
      "Sub A(x, _\n  y): Dim z: 10 z = 1\n20 If x Then\nf x: Exit Sub\nElse: g\nEnd If\nIf a Then b Else Stop\nEnd Sub",
      options);
  std::string text;
  for (const Statement& statement : module.statements) {
    text += std::to_string(statement.depth) + ' ' +
            std::string(module.text.substr(statement.offset, statement.length)) + '|';
    EXPECT_EQ(module.tokens[statement.firstToken].offset, statement.offset);
  }
  EXPECT_EQ(text,
            "0 Sub A(x, _\n  y)|0 Dim z|0 10 z = 1|0 If x Then|1 f x|1 Exit Sub|1 Else|1 g|0 End If|0 If a Then|1 b|1 "
            "Else|1 Stop|0 End Sub|");
  EXPECT_EQ(module.routines[0].headerLastLine, 2U);
  EXPECT_EQ(module.statements[4].kind, StatementKind::kCall);
}

}  // namespace
}  // namespace quillmate::language
