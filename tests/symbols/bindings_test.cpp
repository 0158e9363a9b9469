#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "symbols/written_project.h"

namespace quillmate::symbols {
namespace {

using testing::MeaningAt;
using testing::WrittenProject;

/// A project (written_project.h) and what names in it mean: "name@line = meaning", the second one of a line as
/// "name@line#2".
struct Case {
  std::string_view title;
  std::string_view project;
  std::vector<std::string_view> meanings;
};

const Case kCases[] = {
    {"a local hides the module's variable in the whole routine",
     "== module M\nPrivate n As Long\nSub A(): If True Then\nDim n As Long\nEnd If: n = 1: End Sub",
     {"n@4 = 3 write"}},
    {"a parameter hides everything",
     "== module M\nPublic Width As Long\nSub A(Width As Long)\nWidth = Width + 1\nEnd Sub",
     {"Width@3 = 2 write", "Width@3#2 = 2 read"}},
    {"a function's own name is its result, with parentheses a call",
     "== module M\nFunction F(n As Long) As Long\nF = n\nIf n > 1 Then F = F + F(n - 1)\nEnd Function",
     {"F@2 = 1 write", "F@3 = 1 write", "F@3#2 = 1 read", "F@3#3 = 1 call"}},
    {"in a Sub and in Property Let the own name is an ordinary one",
     "== module M\nSub S(): S: End Sub\nProperty Get P(): P = 1: End Property\nProperty Let P(v): P = v: x = P: End "
     "Property",
     {"S@1#2 = 1 call", "P@2#2 = 2 write", "P@3#2 = 3 call", "P@3#3 = 2 call"}},
    {"use picks Get, Let or Set",
     "== module M\nProperty Get P() As Long: P = m: End Property\nProperty Let P(v As Long): m = v: End Property\n"
     "Property Set P(o): End Property\nSub A(): P = P + 1: Set P = Nothing: End Sub",
     {"P@4 = 2 call", "P@4#2 = 1 call", "P@4#3 = 3 call"}},
    {"own module before others, private names stay inside",
     "== module M1\nPrivate Sub Log(s): End Sub\nSub A(): Log \"x\": End Sub\n== module M2\nPublic Sub Log(s): End "
     "Sub\n== module M3\nSub B(): Log \"y\": End Sub",
     {"Log@2 = 1 call", "Log@4 = 3 call"}},
    {"a private type hides a public one elsewhere",
     "== module M1\nPrivate Type T: x As Long: End Type\nDim a As T\n== module M2\nPublic Type T: x As Long: End "
     "Type\n== module M3\nDim b As T",
     {"T@2 = 1 type", "T@4 = 3 type"}},
    {"a public name of two modules is ambiguous, qualified it is not",
     "== module M1\nPublic Sub R(): End Sub\n== module M2\nPublic Sub R(): End Sub\n== module M3\nSub A(): R: M1.R: "
     "End Sub",
     {"R@3 = 1|2 call ambiguous", "M1@3 = M1 type", "R@3#2 = 1 call"}},
    {"a module's name goes before a routine of another module",
     "== module Report\nPublic Sub Report(): End Sub\n== module M2\nSub A(): Report.Report: End Sub\nSub B(): Report: "
     "End Sub",
     {"Report@2 = Report type", "Report@2#2 = 1 call", "Report@3 = 1 call ambiguous & Report type"}},
    {"members of enums, bare and qualified",
     "== module M\nPublic Enum Farbe\nRot\nEnd Enum\nSub A(): x = Rot: y = Farbe.Rot: z = M.Rot: w = M.Farbe.Rot: End "
     "Sub",
     {"Rot@4 = 2 read", "Farbe@4 = 1 type", "Rot@4#2 = 2 read", "Rot@4#3 = 2 read", "Rot@4#4 = 2 read", "M@4 = M type",
      "Farbe@4#2 = 1 type"}},
    {"a member of two enums is ambiguous, [_First] is one too",
     "== module M\nEnum E1: Rot: [_First]: End Enum\nEnum E2: Rot: End Enum\nSub A(): x = Rot: y = E2.Rot: z = "
     "[_First]: End Sub\n== class C\nPublic Enum E3: Gelb: End Enum\n== module N\nSub B(): x = Gelb: End Sub",
     {"Rot@3 = 1|2 read ambiguous", "Rot@3#2 = 2 read", "Gelb@5 = 4 read"}},
    {"members of a type only behind a value of it",
     "== module M\nType TP: X As Long: End Type\nSub A(): Dim X, p As TP: p.X = X: End Sub",
     {"p@2#2 = 2 read", "X@2#2 = 1 write", "X@2#3 = 2 read"}},
    {"a form's name is its default instance",
     "== form frmA control txtB\nPublic Sub Init(): End Sub\n== module M\nSub S(): frmA.Init: frmA.txtB = 1: Dim f As "
     "New frmA: f.Init: End Sub",
     {"frmA@2 = frmA read", "Init@2 = 1 call", "frmA@2#2 = frmA read", "txtB@2 = control write", "frmA@2#3 = frmA type",
      "f@2#2 = 2 read", "Init@2#2 = 1 call"}},
    {"a class of unknown kind may be a sheet: its name an object",
     "== class C assumed\nPublic Sub Init(): End Sub\n== module M\nSub S(): C.Init: Dim o As C: o.Init: End Sub",
     {"C@2 = C read", "Init@2 = 1 call", "C@2#2 = C type", "Init@2#2 = 1 call"}},
    {"a class that is no object is a type",
     "== class C\nPublic Sub Init(): End Sub\n== module M\nSub S(): C.Init: Dim o As New C: End Sub",
     {"C@2 = C type", "Init@2 = none", "C@2#2 = C type"}},
    {"Me and bare names in a form; With needs a dot",
     "== form F control txt\nSub S(): txt = Me.txt & Caption: Me.T: With Me: T: .T: End With: End Sub\nPrivate Sub "
     "T(): "
     "End Sub\n== module M\nPublic Caption As String",
     {"txt@1 = control write", "txt@1#2 = control read", "Caption@1 = none", "T@1 = 2 call", "T@1#2 = 2 call",
      "T@1#3 = 2 call"}},
    {"a type may be called like one that not every edition has; left out it does not count",
     "== module M\nPrivate Enum LongPtr: [_A]: End Enum\nType Object: x As Long: End Type\nSub A(o As Object, p As "
     "LongPtr): o.x = LongPtr.[_A]: End Sub\n== module N\n#If Mac Then\nEnum LongLong: y: End Enum\n#End If\nDim l As "
     "LongLong, o As Object\n",
     {"Object@3 = 2 type", "LongPtr@3 = 1 type", "x@3 = 2 write", "LongPtr@3#2 = 1 type", "LongLong@7 = none",
      "Object@7 = 2 type"}},
    {"a statement's own word is no variable, a point without With no member",
     "== class C\nPublic x As Long\n== module M\nDim Error, Reset(3)\nSub A(): Error Error: Reset: Reset(1) = 2: .x = "
     "1: "
     "End Sub\n== module N\nSub Reset(): Reset: End Sub",
     {"Error@3 = none", "Error@3#2 = 2 read", "Reset@3 = none", "Reset@3#2 = 2 write", "x@3 = none",
      "Reset@4#2 = 4 call"}},
    {"types have a space of their own",
     "== module M\nPrivate Type T\nx As Long\nEnd Type\nSub A(): Dim T As T: T.x = 1: End Sub",
     {"T@4 = declares", "T@4#2 = 1 type", "T@4#3 = 4 read", "x@4 = 2 write"}},
    {"qualified types",
     "== module M\nPublic Type T: x As Long: End Type\n== module N\nDim v As P.M.T, w As Lib.T, u As M.T\nSub A(): v.x "
     "= 1: w.x = 2: u.x = 3: End Sub",
     {"P@2 = none", "M@2 = M type", "T@2 = 1 type", "T@2#2 = none", "T@2#3 = 1 type", "x@3 = 1 write", "x@3#2 = none",
      "x@3#3 = 1 write"}},
    {"labels belong to their routine",
     "== module M\nSub A(): On Error GoTo Fehler\nExit Sub\nFehler: Resume Next\n010 GoTo 10: GoTo &H10\n&HC: &O7, "
     "2\nEnd Sub\nSub Fehler(): "
     "GoTo Fehler: End Sub",
     {"Fehler@1 = 3 label", "10@4 = 4 label", "Fehler@7#2 = none"}},
    {"AddressOf means routines, RaiseEvent events",
     "== class C\nEvent Go()\nSub Go(): RaiseEvent Go: Go: End Sub\n== module M\nSub cb(): End Sub\nSub A(cb): f "
     "AddressOf cb, AddressOf M.cb: End Sub",
     {"Go@2#2 = 1 raise", "Go@2#3 = 2 call", "cb@4#2 = 3 address", "M@4 = M type", "cb@4#3 = 3 address"}},
    {"a local hides a module before a dot; private members are no candidates of late binding",
     "== module Util\nPublic Sub Go(): End Sub\n== module M\nSub A(Util As Object): Util.Go: End Sub\nSub B(): "
     "P.Util.Go: "
     "P.Go: End Sub\n== class C\nPrivate Sub Go(): End Sub",
     {"Util@2#2 = 2 read", "Go@2 = none", "Util@3 = Util type", "Go@3 = 1 call", "Go@3#2 = 1 call"}},
    {"own names before libraries",
     "== module M1\nPublic Function Replace(s): End Function\n== module M2\nSub A(): x = Replace(a) & VBA.Replace(a, "
     "b, "
     "c): End Sub",
     {"Replace@2 = 1 call", "Replace@2#2 = none"}},
    {"Left of a form and Left with two arguments",
     "== form F\nPublic Left As Long\nSub A(): x = Left(s, 2): y = Left: End Sub",
     {"Left@2 = none", "Left@2#2 = 1 read"}},
    {"an unknown name is declared by its first use, unless a library has it or Option Explicit stands",
     "== module M\nSub A()\ni = 1\nDebug.Print I, vbCrLf, Left(\"a\", 1), j, VbMethod\nEnd Sub\n== module N\nOption "
     "Explicit\nSub "
     "B(): i = 1: End Sub",
     {"i@2 = declares implicit", "I@3 = 2 read", "vbCrLf@3 = none", "VbMethod@3 = none", "Left@3 = none",
      "j@3 = declares implicit", "i@6 = none"}},
    {"the beginning of a chain that nothing assigns is no variable",
     "== module M\nSub A(): Ding.Los: Set o = X(1): o.Los: o.Rest: End Sub",
     {"Ding@1 = none", "o@1 = declares implicit", "X@1 = none", "o@1#2 = 1 read"}},
    {"ReDim writes what is known and declares what is not",
     "== module M\nDim v()\nSub A(): ReDim v(3): ReDim w(3): ReDim w(n): w(1) = 2: End Sub\nFunction F() As Long(): "
     "ReDim F(2): End Function",
     {"v@2 = 1 write", "w@2 = declares", "w@2#2 = 2 write", "w@2#3 = 2 write", "F@3#2 = 3 write"}},
    {"declared types are followed through results, arrays, members and With",
     "== class CNode\nPublic Function Child(i) As CNode: End Function\nPublic Value As Long\n== module M\nDim a(3) As "
     "CNode\nFunction Root() As CNode: End Function\nSub S(): a(1).Child(2).Value = 1: Root.Value = 2: With "
     "Root().Child(0): .Value = 3: End With: End Sub",
     {"a@5 = 3 read", "Child@5 = 1 call", "Value@5 = 2 write", "Root@5 = 4 call", "Value@5#2 = 2 write",
      "Root@5#2 = 4 call", "Child@5#2 = 1 call", "Value@5#3 = 2 write"}},
    {"late bound members are possible by name",
     "== class C\nPublic Sub Los(): End Sub\nPublic Property Let X(v): End Property\nPublic Property Get X(): End "
     "Property\n== module M\nSub A(o As Object, v, k As Collection, ws As Worksheet): o.Los: v.X = 1: b = k(1).X: "
     "ws.Los: ActiveSheet.Los: c = (d & e).X: End Sub",
     {"Los@4 = 1 call by-name", "X@4 = 2 call by-name", "X@4#2 = 3 call by-name", "Los@4#2 = none",
      "Los@4#3 = 1 call by-name", "X@4#3 = 3 call by-name"}},
    {"default members are used without their names",
     "== class CBag\nPublic Property Get Item(k)\nAttribute Item.VB_UserMemId = 0\nEnd Property\nPublic Property Let "
     "Item(k, v): End Property\nPublic Function Alle()\nAttribute Alle.VB_UserMemId = -4\nEnd Function\n== module "
     "M\nSub "
     "A(o As CBag): x = o(1) + o!Feld: o(2) = 3: For Each e In o: Next: y = o: Set z = o: End Sub",
     {"o@8#2 = 1 call implicit & 8 read", "o@8#3 = 1 call implicit & 8 read", "Feld@8 = none",
      "o@8#4 = 4 call implicit & 8 read", "o@8#5 = 5 call implicit & 8 read", "o@8#6 = 1 call implicit & 8 read",
      "o@8#7 = 8 read"}},
    {"arguments behind a routine without parameters go to what it returns",
     "== class CBag\nPublic Property Get Item(k) As CBag\nAttribute Item.VB_UserMemId = 0\nEnd Property\n== module "
     "M\nFunction Root() As CBag: End Function\nSub A(): x = Root(1).Item(2): End Sub",
     {"Root@5 = 4 call & 1 call implicit", "Item@5 = 1 call & 1 call implicit"}},
    {"interfaces and what implements them",
     "== class IShape\nPublic Function Area() As Double: End Function\nPublic Name As String\n== class C\nImplements "
     "IShape\nPrivate Function IShape_Area() As Double: End Function\nPrivate Property Let IShape_Name(v As String): "
     "End "
     "Property\n== module M\nSub S(x As IShape): Debug.Print x.Area: x.Name = 1: End Sub",
     {"IShape@3 = IShape implements", "IShape_Area@4 = declares & 1 implements",
      "IShape_Name@5 = declares & 2 implements", "IShape@6 = IShape type", "Area@6 = 1 call", "Name@6 = 2 write"}},
    {"events, who raises and who handles them",
     "== class CDb\nEvent Saved()\nSub W(): RaiseEvent Saved: End Sub\n== class C\nWithEvents db As CDb\nSub "
     "db_Saved(): "
     "End Sub\nSub db_Weg(): End Sub",
     {"Saved@2 = 1 raise", "CDb@3 = CDb type", "db_Saved@4 = declares & 1 with-events", "db_Weg@5 = declares"}},
    {"a control of the project's own class raises that class's events",
     "== usercontrol ucListe\nEvent Wahl()\n== form F control ucListe1 P.ucListe\nSub ucListe1_Wahl(): End Sub\nSub "
     "A(): "
     "ucListe1.Leeren: End Sub",
     {"ucListe1_Wahl@2 = declares & 1 with-events", "ucListe1@3 = control read"}},
    {"controls by name, by Me, by the form, by a key, in a string",
     "== project P access\n== document Form_Kunden control txtName\nSub S(): txtName = 1: Me!txtName = 2: x = "
     "Me.Controls(\"txtName\"): Me.Gibtsnicht = 1: End Sub\n== module M\nSub T(): Forms!Kunden!txtName = 1: x = "
     "Form_Kunden.txtName: Forms!Kunden.Controls!txtName = 2: End Sub",
     {"txtName@1 = control write", "txtName@1#2 = control write", "txtName@1#3 = control read string",
      "Gibtsnicht@1 = none", "Kunden@2 = Form_Kunden read", "txtName@2 = control write", "txtName@2#2 = control read",
      "txtName@2#3 = control write"}},
    {"named arguments mean parameters of what is called",
     "== module M\nSub P(ByVal Breite As Long): End Sub\nSub A(): Dim Breite: P Breite:=Breite: MsgBox Prompt:=1: End "
     "Sub\n== class C\nPublic Sub Los(Tempo): End Sub\n== module N\nSub B(o As Object): o.Los Tempo:=1: End Sub",
     {"Breite@2#2 = 1 named-argument", "Breite@2#3 = 2 read", "Prompt@2 = none", "Tempo@4 = 3 named-argument by-name"}},
    {"conditional constants, constants of the module, of the routine",
     "== module M\n#Const D = 1\nConst D = 2\n#If D Then\nSub A(Optional k = D): Const D = 5: Dim v(D): End Sub\n#End "
     "If",
     {"D@3 = none", "D@4 = 2 read", "D@4#3 = 4 read"}},
    {"Declares: the active one of two; suffixes belong to no name",
     "== module M\n#If VBA7 Then\nDeclare PtrSafe Function Tick& Lib \"k\" ()\n#Else\nDeclare Function Tick& Lib \"k\" "
     "()\n#End If\nSub A(): x = Tick: y = Tick&: s$ = \"a\": t = s: End Sub",
     {"Tick@6 = 2 call", "Tick@6#2 = 2 call", "s@6#2 = 6 read"}},
    {"inactive code uses inactive names",
     "== module M\n#If Mac Then\nSub Alt(): End Sub\n#End If\nSub A()\n#If Mac Then\nCall Alt: A\n#End If\nCall Alt: "
     "End Sub",
     {"Alt@6 = 2 call inactive", "A@6 = 4 call inactive", "Alt@8 = 2 call inactive"}},
    {"what is left out hides nothing that counts",
     "== module M\n#If Mac Then\nEnum E: m: End Enum\nPrivate Sub v(): End Sub\n#Else\nProperty Get E(): End "
     "Property\nConst v = 1\n#End If\nSub A(): x = E + v: End Sub\nSub B()\n#If Mac Then\nDim v\n#End If\nx = v\n"
     "End Sub",
     {"E@8 = 5 call", "v@8 = 6 read", "v@13 = 6 read"}},
    {"dead branches declare nothing",
     "== module M\nEnum E: eA: End Enum\n#If False Then\nPrivate Const eA = 0\n#End If\nSub A(): x = eA: End Sub",
     {"eA@5 = 1 read"}},
    {"names in strings",
     "== module M\nPublic Sub Los(): End Sub\nSub A(): Application.Run \"M.Los\": Application.OnTime Now, \"Los\": "
     "b.OnAction = \"'Mappe 1.xls'!Los\": CallByName o, \"Tu\", VbMethod: MsgBox \"Los\": End Sub\n== class C\nPublic "
     "Sub "
     "Tu(): End Sub",
     {"Los@2 = 1 call string", "Los@2#2 = 1 call string", "Los@2#3 = 1 call string", "Tu@2 = 3 call string",
      "Los@2#4 = none"}},
    {"nested With",
     "== class C\nPublic b As C\nPublic c As Long\nPublic d As Long\n== module M\nSub S(a As C): With a: "
     "With .b: .c = 1: End With: .d = 2: End With: End Sub",
     {"b@4 = 1 read", "c@4#2 = 2 write", "d@4 = 3 write"}},
    {"For Each: the variable's own type counts",
     "== class C\nPublic W As Long\n== module M\nSub A(k As Collection): Dim c As C: For Each c In k: c.W = 1: Next: "
     "End "
     "Sub",
     {"c@2#3 = 2 write", "W@2 = 1 write"}},
    {"projects are name spaces; references show public names of standard modules",
     "== project Q\n== module MQ\nPublic Sub Gemeinsam(): End Sub\nPublic Sub NurQ(): End Sub\n== project P uses Q\n== "
     "module MP\nSub Gemeinsam(): End Sub\nSub A(): Gemeinsam: NurQ: Q.Gemeinsam: Q.MQ.NurQ: End Sub\n== project R\n== "
     "module MR\nSub A(): NurQ: End Sub",
     {"Gemeinsam@4 = 3 call", "NurQ@4 = 2 call", "Gemeinsam@4#2 = 1 call", "MQ@4 = MQ type", "NurQ@4#2 = 2 call",
      "NurQ@5 = none"}},
    {"the name of a folder hides nothing; what stands in front of a module is the project",
     "== project Daten assumed\n== module M\nPublic Daten As Long\nPublic Sub Los(): End Sub\nPublic Type T: z As "
     "Long: End Type\n== usercontrol Liste\nPublic Sub Leeren(): End Sub\n== module N\nSub A(): Daten = 1: x = "
     "Daten: Kasse.M.Los: End Sub\nDim t As Kasse.M.T, k As Kasse.K, r As ADODB.K\nSub B(): "
     "t.z = 1: k.Tu: r.Tu: End Sub\n== class K\nPublic Sub Tu(): End Sub\n== form F control l Kasse.Liste\nSub C(): "
     "l.Leeren: End Sub\n== project Kram assumed\n== module MK\nPublic Sub Los(): End Sub\n== module NK\nSub D(): "
     "Kram.MK.Los: Kram.Los: Anders.Los: End Sub",
     {"Daten@5 = 1 write", "Daten@5#2 = 1 read", "Los@5 = 2 call", "M@5 = M type", "T@6#2 = 3 type", "z@7 = 3 write",
      "Tu@7 = 8 call by-name", "Tu@7#2 = none", "Leeren@9 = 4 call", "Los@11 = 10 call", "Los@11#2 = 10 call",
      "Los@11#3 = none"}},
    {"modules of one name: folders hold what never was one project",
     "== class C\nPublic Sub Tu(): End Sub\n== class C\nPublic Sub Tu(): End Sub\nPublic Sub Zwei(): Me.Tu: End "
     "Sub\n== module M\nPublic Sub R(): End Sub\n== module M\nPublic Sub R(): End Sub\nPublic Sub Q(): End Sub\n"
     "== module N\nSub A(): Dim o As New C: o.Tu: o.Zwei: M.R: M.Q: Set p = New C: End Sub\n== form F\nPublic Sub "
     "Los(): End Sub\n== form F\nPublic Sub Los(): End Sub\nSub X(): F.Los: End Sub",
     {"C@7 = C type ambiguous", "Tu@3 = 2 call", "Tu@7 = 1|2 call by-name", "Zwei@7 = 3 call by-name",
      "R@7 = 4|5 call ambiguous", "Q@7 = 6 call", "Los@10 = 8|9 call by-name"}},
    {"a routine without parentheses, with a continuation, in a one-line If",
     "== module M\nSub A(): If x Then B Else C\nEnd Sub\nSub B(): End Sub\nSub C()\nB _\n\nC\nEnd Sub",
     {"B@1 = 3 call", "C@1 = 4 call", "B@5 = 3 call", "C@7 = 4 call"}},
};

TEST(Bindings, NamesMeanWhatTheLanguageSays) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.title);
    WrittenProject project(c.project);
    const ReferenceIndex index = ReferenceIndex::Build(project.sources);
    for (const std::string_view meaning : c.meanings) {
      const std::size_t at = meaning.find('@'), equals = meaning.find(" = "), nth = meaning.find('#');
      const auto line = static_cast<std::uint32_t>(std::stoul(std::string(meaning.substr(at + 1))));
      const unsigned number = nth < equals ? static_cast<unsigned>(meaning[nth + 1] - '0') : 1;
      EXPECT_EQ(
          std::string(meaning.substr(0, equals + 3)) + MeaningAt(project, index, meaning.substr(0, at), line, number),
          meaning);
    }
  }
}

}  // namespace
}  // namespace quillmate::symbols
