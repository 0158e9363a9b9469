#include <string>

#include <gtest/gtest.h>

#include "dump.h"

namespace quillmate::language {
namespace {

struct Case {
  const char* code;
  const char* expected;
};

/// Each a line of a routine: its names and what it does with them.
TEST(Uses, OfStatements) {
  const Case kCases[] = {
      {"Circle (x, y), B: Line (x, y)-(z, w), B, F: PSet (x, y), BF", "x; y; B; x; y; z; w; B; F; x; y; BF;"},
      {"s = a &O17: Foo &O17: x = a &Hab", "let s; a; call Foo(1); let x; a;"},
      {"rs!Feld = 1: !Feld = a!b!c: x! = y!", "rs; let rs!Feld; let ~!Feld; a; key a!b; key a!b!c; let x!; y!;"},
      {"Range(\"A1\").End(xlDown).Select", "Range(1); Range.End(1); xlDown<End1; call Range.End.Select;"},
      {"rs.Type = 1: x = o.Property: o.Next: .Print \"a\"; b",
       "rs; let rs.Type; let x; o; o.Property; o; call o.Next; call ~.Print,list; b;"},
      {"Dim Name As String, Line As Long, Text$: Name = \"x\": Name a As b", "let Name; a; b;"},
      {"Foo: Bar: Baz", "call Bar; call Baz;"},
      {" Foo: Bar", "call Bar;"},
      {"f a(1).b, c.d(2), e!f", "call f(3); a(1); a.b<f1; c; c.d(1)<f2; e; key e!f<f3;"},
      {"o.OnAction = \"M.Los\": Application.OnKey \"x\", \"Los\"",
       "o; let o.OnAction; Application; call Application.OnKey(2);"},
      {"CallByName o, \"Member\", VbMethod, a",
       "call CallByName(4); o<CallByName1; VbMethod<CallByName3; a<CallByName4;"},
      {"Set o = Nothing: o = Null", "set o; let o;"},
      {"a = b(c)(d): a.b(c)(d).e f",
       "let a; b(1),more; c<b1; d,of-result<b1; a; a.b(1),more; c<b1; d,of-result<b1; call a.b.e(1); f<e1;"},
      {"With a: f .b, !c: End With", "a,with; call f(2); a~.b<f1; key a~!c<f2;"},
      {"If a = b Then c = d Else e f", "a; b; let c; d; call e(1); f<e1;"},
      {"Select Case a.b: Case c, d To e: f: End Select", "a; a.b; c; d; e; call f;"},
      {"x = -a ^ -b & c$ & d", "let x; a; b; c$; d;"},
      {"x = a And Not b Or c Xor d Eqv e Imp f Mod g Like h \\ i", "let x; a; b; c; d; e; f; g; h; i;"},
      {"f New C, a: Set x = New C.D", "call f(2); new C; a<f2; set x; new C; new C.D;"},
      {"DoEvents: x = DoEvents", "call DoEvents; let x; DoEvents;"},
      {"GoTo a: GoSub 10: Resume b: On c GoTo d, 5", "label a; label 10; label b; c; label d; label 5;"},
      {"Me.Caption = Me!txt & Me(\"x\")", "Me; let Me.Caption; Me; key Me!txt; Me(1);"},
      {"Call a.b(c).d(e): Call f", "a; a.b(1); c<b1; call a.b.d(1); e<d1; call f;"},
      {"x = UBound(a, 2) + LBound(a) + Len(s) + Array(1, b)(0)",
       "let x; UBound(2); a<UBound1; LBound(1); a<LBound1; Len(1); s<Len1; Array(2),more; b<Array2;"},
      {"Debug.Assert a: Debug.Print", "Debug; call Debug.Assert(1); a<Assert1; Debug; call Debug.Print;"},
      {"a(b(c(d))) = e", "let a(1); b(1)<a1; c(1)<b1; d<c1; e;"},
      {"f (a), (b): f a, (b) + c: f ((a))", "call f(2); a; b; call f(2); a<f1; b; c; call f(1); a;"},
      {"x = f(, a): f , , a: f a,", "let x; f(2); a<f2; call f(3); a<f3; call f(2); a<f1;"},
      {"For .i = a.b To c Step d: Next .i", "for ~.i; a; a.b; c; d; next ~.i;"},
      {"For a(i) = 1 To 2: Next", "for a(1); i<a1;"},
      {"Static a As New B, c(d To e) As F.G", "new B; d,constant; e,constant; type F; type F.G;"},
      {"Const a = b, c$ = d & \"x\"", "b,constant; d,constant;"},
      {"Dim a(1 To b) As String * c", "b,constant; c,constant;"},
      {"x = a.[b c].[d]!e", "let x; a; a.[b c]; a.[b c].[d]; key a.[b c].[d]!e;"},
      {"[a] = [b]: [A1:B2].Value = 1", "let [a]; [b]; [A1:B2]; let [A1:B2].Value;"},
      {"a.Print b, c; d: .Line (a, b)-Step(c, d), e, BF",
       "a; call a.Print,list; b; c; d; call ~.Line,list; a; b; c; d; e;"},
      {"x = #1/1/2020#: f #12:00:00 AM#, a", "let x; call f(2); a<f2;"},
      {"f a _\n , b _\n .c", "call f(2); a<f1; b; b.c<f2;"},
      {"a.b = \"x\" & c: a.b \"x\"", "a; let a.b; c; a; call a.b(1);"},
      {"x = TypeOf Me Is Foo", "let x; Me; type-of Foo;"},
      {"On Error GoTo Err: x = Err.Number", "label Err; let x; Err; Err.Number;"},
      {"Erase a, b.c: ReDim a(b), c.d(e, f To g)", "erase a; b; erase b.c; redim a; b; c; redim c.d; e; f; g;"},
      {"ReDim Preserve a(UBound(a) + 1) As B", "redim a,preserve; UBound(1); a<UBound1; type B;"},
      {"If a Then If b Then c Else d Else e", "a; b; call c; call d; call e;"},
      {"If a.b Then .c Else !d = 1", "a; a.b; call ~.c; let ~!d;"},
      {"f a = b, c <> d", "call f(2); a; b; c; d;"},
      {"Line Input #a, b: Input #a, b, c.d: Get #a, b, c: Put #a, , b",
       "a; input b; a; input b; c; input c.d; a; b; input c; a; b;"},
      {"LSet a = b: RSet a.b = c: Mid(a, b) = c: Mid$(a.b, c, d) = e",
       "let a; b; a; let a.b; c; Mid(2); let a,read; b<Mid2; c; Mid$(3); a; let a.b,read; c<Mid$2; d<Mid$3; e;"},
      {"Open a For Input Shared As b Len = c: Close #a, b: Seek a, b", "a; b; c; a; b; a; b;"},
      {"Print #a, b; Tab(c); d: Write #a, b", "a; b; Tab(1); c<Tab1; d; a; b;"},
      {"Lock a, b To c: Unlock #a: Width #a, b: Name a & b As c", "a; b; c; a; a; b; a; b; c;"},
      {"a.b.c: a.b.c d: a.b(c).d = e: Let a.b = c",
       "a; a.b; call a.b.c; a; a.b; call a.b.c(1); d<c1; a; a.b(1); c<b1; let a.b.d; e; a; let a.b; c;"},
      {"x = a.b .c", "let x; a; a.b; a.b.c;"},
      {"f a.b .c", "call f(1); a; a.b; a.b.c<f1;"},
      {"x = String(3, a) & Date$ & Time", "let x; String(2); a<String2; Date$; Time;"},
      {"If a Then b: Exit Sub Else Stop", "a; call b;"},
      {"RaiseEvent a(b, (c)): RaiseEvent d", "raise a(2); b<a1; c; raise d;"},
      {"While a: Wend: Do Until b: Loop While c", "a; b; c;"},
      {"x = a:=b", "let x; named a; b;"},
      {"f(a:=b): f a:=b, c:=d.e", "call f(1); named a<f; b<a0; call f(2); named a<f; b<a0; named c<f; d; d.e<c0;"},
      {"x = (a): x = (a).b: f (a).b, c", "let x; a; let x; a; a.b; call f(2); a; a.b<f1; c<f2;"},
      {"Set a = b: Set c = d(e)", "set a; b; set c; d(1); e<d1;"},
      {"x = AddressOf a: f AddressOf b.c, d", "let x; address a; call f(2); address b; address b.c; d<f2;"},
      {"f (a).b, c", "call f(2); a; a.b<f1; c<f2;"},
      {"f (a).b", "f(1); a<f1; call f.b;"},
      {"f (a)(b).c = d", "f(1),more; a<f1; b,of-result<f1; let f.c; d;"},
      {"Debug.Print (a).b; c", "Debug; call Debug.Print,list; a; a.b; c;"},
      {"Debug.Print (a).b & c", "Debug; call Debug.Print,list; a; a.b; c;"},
      {"f (a).b(c) + d", "call f(1); a; a.b(1); c<b1; d;"},
      {"Name = \"x\": Line = 1: Width = 3: Error = 4: Mid = 6: Property = 8: Step = Base",
       "let Name; let Line; let Width; let Error; let Mid; let Property; let Step; Base;"},
      {"Name.x = 1: Line.y: Text(1) = 2: Mid(1).z = 2",
       "Name; let Name.x; Line; call Line.y; let Text(1); Mid(1); let Mid.z;"},
      {"Name x: Name \"a\", 1: Reset: Load frmA: Unload Me: Load o.f(1)",
       "call Name(1); x<Name1; call Name(2); call Reset; call Load(1); load frmA<Load1; call Unload(1); unload "
       "Me<Unload1; call Load(1); o; load o.f(1)<Load1;"},
      {"Error 5: Date = d: Date$ = \"1\": Width #1, 80: Width 5",
       "call Error(1); let Date; d; let Date$; call Width(1);"},
      {"Open p & \"x\" For Append Access Read Write Lock Read As #n Len = k", "p; n; k;"},
      {"Open cn For Random As 1 Len = Len(r): cn.Open s: rs.Close: Close: Close #1, n",
       "cn; Len(1); r<Len1; cn; call cn.Open(1); s<Open1; rs; call rs.Close; n;"},
      {"Get #1, , x: Put #1, , x(i): Seek #1, p: x = Seek(1) + Input(n, #1)",
       "input x; x(1); i<x1; p; let x; Seek(1); Input(2); n<Input1;"},
      {"Line (x1, y1)-(x2, y2), c, BF: Line -(x, y), , B: Line Step(a, b)-Step(c, d)",
       "x1; y1; x2; y2; c; x; y; a; b; c; d;"},
      {"Circle (x, y), r: PSet (x, y), c: Scale (0, 0)-(w, h): Me.Circle Step(1, 2), r",
       "x; y; r; x; y; c; w; h; Me; call Me.Circle,list; r;"},
      {"o.Line(1).x = 2: o.Line a, b: pic.Line (x, y)-(z, w), bf, BF",
       "o; o.Line(1); let o.Line.x; o; call o.Line(2); a<Line1; b<Line2; pic; call pic.Line,list; x; y; z; w; bf;"},
      {"x.y(1) 2: f -1: f - x: f , 2: f(): f(a, b)",
       "x; call x.y(1),more; call f(1); call f(1); x; call f(2); call f(0); call f(2); a<f1; b<f2;"},
      {"f ByVal 0&, ByVal x: f(-a): x = f (1)", "call f(2); x,byval<f2; call f(1); a; let x; f(1);"},
      {"rs _\n    .Open \"x\": obj. Name = 1: a _\n !b = 2", "rs; call rs.Open(1); obj; let obj.Name; a; let a!b;"},
      {"Print a; b, c d; .x: Debug.Print a b \"c\" d: ? z; y",
       "a; b; c; d; ~.x; Debug; call Debug.Print,list; a; b; d; z; y;"},
      {"007 GoTo 7: Go To 010: Go Sub y", "label 7; label 010; label y;"},
      {"With a: With .b: .c = 1: End With: .d = 2: End With: .e = 3",
       "a,with; a~.b,with; let a~.b~.c; let a~.d; let ~.e;"},
      {"With New C: .x = 1: End With: With (o): .x = 2: End With: With f(1).g: !h = .i!j: End With",
       "new C,with; let C~.x; o,with; let o~.x; f(1); f.g,with; let f.g~!h; f.g~.i; key f.g~.i!j;"},
  };
  for (const auto& [code, expected] : kCases) {
    const std::string text = "Sub S()\n" + std::string(code) + "\nEnd Sub";
    EXPECT_EQ(Uses(ParseModule(text), false), expected) << code;
  }
}

TEST(Uses, Strings) {
  const Case kCases[] = {
      {"o.OnAction = \"M.Los\": Application.Run \"a\" & \"b\", x, \"c\"",
       "\"M.Los\"@1=o.OnAction0,whole; \"a\"@1<Application.Run1; \"b\"@1<Application.Run1; "
       "\"c\"@1<Application.Run3,whole;"},
      {"f(\"a\").g = h(n:=\"b\") & \"\": CallByName o, \"c\", (\"d\")",
       "\"a\"@1<f1,whole; \"b\"@1<n0,whole; \"c\"@1<CallByName2,whole; \"d\"@1;"},
      {"x = \"unclosed", "\"unclosed@1=x0,whole;"},
  };
  for (const auto& [code, expected] : kCases) EXPECT_EQ(Strings(ParseModule(code)), expected) << code;
}

}  // namespace
}  // namespace quillmate::language
