#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/loose_ends.h>
#include <quillmate/symbols/unused.h>

#include "symbols/written_project.h"

namespace quillmate::symbols {
namespace {

using testing::LineNumber;
using testing::WrittenProject;

/// The first symbol of that name on a line (numbered across the modules).
SymbolId Find(const WrittenProject& project, const ReferenceIndex& index, std::string_view name, std::uint32_t line) {
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
    const Symbol& found = index.SymbolAt(symbol);
    if (found.line > 0 && index.Name(symbol) == name && LineNumber(project, found.module, found.line) == line) {
      return symbol;
    }
  }
  return kNone;
}

struct GradeCase {
  std::string_view title;
  std::string_view project;
  /// "name@line = grade reason place", or "used"; a text may end early.
  std::vector<std::string_view> grades;
};

const GradeCase kGrades[] = {
    {"nobody, somebody, only itself, only inactive code",
     "== module M\nSub A(): B: End Sub\nSub B(): End Sub\nSub C(): C: End Sub\n#If Mac Then\nSub D(): E: End Sub\n#End "
     "If\nSub E(): End Sub\nFunction F(): F = 1: End Function",
     {"A@1 = certain nirgends verwendet", "B@2 = used", "C@3 = self", "D@5 = inactive steht in inaktivem Code",
      "E@7 = inactive nur in inaktivem Code verwendet M:5", "F@8 = certain"}},
    {"variables: read, written, loop, ReDim, implicit",
     "== module M\nSub S(): Dim a, b, c, d(), e: a = 1: b = a: For c = 1 To 2: Next: ReDim d(2): f = 1: g = h: End Sub",
     {"a@1 = used", "b@1 = written", "c@1 = used", "d@1 = written", "e@1 = certain", "f@1 = written", "g@1 = written",
      "h@1 = used"}},
    {"parameters: named only, of handlers, of call-backs, of interfaces",
     "== class I\nSub Los(p): End Sub\n== form F control cmd\nImplements I\nSub I_Los(p): End Sub\nSub "
     "cmd_Click(Index): End Sub\n== module M\nSub A(p, q, r): A q:=1, r:=r: End Sub\nSub B(p): End Sub\nSub C(): x = "
     "AddressOf B: End Sub",
     {"p@1 = possible Parameter eines Elements einer Schnittstelle",
      "p@3 = host Parameter, den der Aufrufer vorgibt: "
      "Schnittstelle I",
      "Index@4 = host Parameter, den der Aufrufer vorgibt: Ereignis Click von cmd", "p@5 = certain", "q@5 = used",
      "p@6 = possible Parameter eines Rückrufs"}},
    {"constants, types, members, enums, labels, events, Declares",
     "== class C\nEvent E()\nEvent F()\nSub S(): RaiseEvent E: End Sub\n== module M\nConst k = 1, l = k\nType T: a As "
     "Long: b As Long: End Type\nEnum N: x: y: End Enum\nEnum O: z: End Enum\nDeclare Sub D Lib \"l\" (p)\nSub R(): "
     "Dim v "
     "As T: v.a = x: GoTo m\nm: 10\n10 End Sub",
     {"E@1 = used", "F@2 = certain", "k@4 = used", "l@4 = certain", "T@5 = used", "a@5 = used", "b@5 = certain",
      "N@6 = used", "x@6 = used", "y@6 = certain", "O@7 = certain", "z@7 = certain", "D@8 = certain", "p@8 = used",
      "m@10 = used", "10@11 = used"}},
    {"a record that leaves the code as a whole keeps all its members",
     "== module M\nType Inner: c As Long: End Type\nType T: a As Inner: End Type\nType U: b As Long: End Type\nDeclare "
     "Sub D Lib \"l\" (p As Any)\nSub R(): Dim v As T, w As U: D v: S w: End Sub\nSub S(w As U): End Sub",
     {"c@1 = possible Teil eines Typs", "a@2 = possible", "b@3 = certain"}},
    {"names in strings, by name, ambiguous",
     "== module M\nSub A(): End Sub\nSub B(): End Sub\nSub C(o): Application.Run \"A\": s = \"x!M.B\": t = "
     "\"=Summe(D(1))\": "
     "MsgBox \"E kaputt\": o.Los: Doppelt: End Sub\nFunction D(x): End Function\nSub E(): MsgBox \"E\": End Sub\n== "
     "class "
     "K\nPublic Sub Los(): End Sub\nPrivate Sub Lass(): End Sub\n== module N\nPublic Sub Doppelt(): End Sub\n== module "
     "O\nPublic Sub Doppelt(): End Sub",
     {"A@1 = text Name in einer Zeichenkette M:3", "B@2 = text", "D@4 = text", "E@5 = certain",
      "Los@6 = possible Element eines Objekts", "Lass@7 = certain", "Doppelt@8 = possible Name, der mehreres"}},
    {"members of a type that two modules have",
     "== module A\nPublic Type T: x As Long: End Type\n== module B\nPublic Type T: x As Long: End Type\n== module "
     "C\nSub S(): Dim v As T: v.x = 1: End Sub\n== module D\nPrivate Type U: x As Long: End Type\nDim u1 As U",
     {"x@1 = possible Teil eines Typs, dessen Name", "x@2 = possible", "x@4 = certain"}},
    {"parameters of what may be a handler",
     "== class C assumed\nPrivate Sub alt_Click(p): End Sub\nPrivate Sub Neu(p): End Sub\nSub S(): Neu 1: End Sub",
     {"p@1 = possible Parameter einer Routine, die vielleicht", "p@2 = certain"}},
    {"what hosts call: controls, objects, variables, forms, shortcuts, buttons",
     "== project P excel\n== form F control cmd_OK, control cmd[]\nSub cmd_OK_Click(): End Sub\nSub cmd_Click(Index): "
     "End "
     "Sub\nSub UserForm_Initialize(): End Sub\nSub alt_Click(): End Sub\n== form G\nSub alt_Click(): End Sub\n== "
     "document "
     "Tabelle1\nSub Worksheet_Change(t): End Sub\nSub c_Click(): End Sub\n== class C\nWithEvents app As "
     "Application\nSub app_NewWorkbook(): End Sub\nSub Class_Initialize(): End Sub\nSub weg_Neu(): End Sub\n== module "
     "M\nSub Taste(): End Sub\nAttribute Taste.VB_ProcData.VB_Invoke_Func = \"k\\n14\"\nSub Knopf(): End Sub\nSub "
     "Auto_Open(): End Sub\nFunction Zelle(): End Function\nPrivate Function Intern(): End Function\nSub Wort(): End "
     "Sub\nAttribute Wort.VB_ProcData.VB_Invoke_Func = \"Project.M.Wort\"\n== binding Knopf -> Name 'Knopf'\n"
     "== binding [0]!M.Knopf -> Schaltfläche auf Blatt 1",
     {"cmd_OK_Click@1 = host Ereignis Click von cmd_OK", "cmd_Click@2 = host", "UserForm_Initialize@3 = host",
      "alt_Click@4 = certain", "alt_Click@5 = possible vielleicht ein Ereignis", "Worksheet_Change@6 = host",
      "c_Click@7 = possible", "app@8 = used", "app_NewWorkbook@9 = host Ereignis NewWorkbook von app",
      "Class_Initialize@10 = host", "weg_Neu@11 = certain", "Taste@12 = host Tastenkürzel Strg+K",
      "Knopf@14 = host Schaltfläche auf Blatt 1", "Auto_Open@15 = host", "Zelle@16 = possible öffentliche Funktion",
      "Intern@17 = certain", "Wort@18 = certain"}},
    {"strings with arguments, in lists, in brackets; members by name where CallByName is told none",
     "== module M\nSub A(): End Sub\nSub B(): End Sub\nSub C(): End Sub\nSub D(): End Sub\nFunction E(): End "
     "Function\nSub "
     "F(): End Sub\nSub S(): x = \"A \"\"x\"\"\": x = \"'B 1'\": x = \"C; D\": MsgBox \"F 1\": x = [1+E(2)]: "
     "CallByName o, n, 2: v = Array(\"Alter\"): End Sub\n== class K\nProperty Get Alter(): End Property\nProperty Get "
     "Rest(): End Property\n== project Q\n== module N\nSub S(): CallByName o, \"Wert\", 2: v = Array(\"Alter\"): End "
     "Sub\n== class L\nProperty Get Alter(): End Property\nProperty Get Wert(): End Property",
     {"A@1 = text", "B@2 = text", "C@3 = text", "D@4 = text", "E@5 = text Name in einer Zeichenkette M:7",
      "F@6 = certain", "Alter@8 = text", "Rest@9 = certain", "Alter@11 = certain", "Wert@12 = text"}},
    {"a sheet's own members behind a library's sheet, what may hold anything",
     "== project P excel\n== document Tabelle1\nSub A(): End Sub\n== class C\nSub B(): End Sub\nSub D(): End Sub\n== "
     "module "
     "M\nSub S(w As Workbook): w.Sheets(1).A: w.A: w.B: Switch(True, w).D: End Sub",
     {"A@1 = possible", "B@2 = certain", "D@3 = possible"}},
    {"what somebody outside may use: designers, properties, call-backs, records that are copied, kinds that nobody "
     "told",
     "== usercontrol U\nProperty Let P(v): End Property\nSub S(): End Sub\n== class B\nProperty Get Item(i)\nAttribute "
     "Item.VB_UserMemId = 0\nEnd Property\nFunction Each_()\nAttribute Each_.VB_UserMemId = -4\nEnd Function\n== "
     "module M "
     "assumed\nSub Form_Load(): End Sub\nSub Alles_Neu(): End Sub\n' @TestMethod\nSub T(): End Sub\nSub R(c As "
     "IRibbonControl): End Sub\nSub Main(): End Sub\nType X: a As Long: End Type\nType Y: b As Long: End Type\nSub "
     "V(): Dim x1 "
     "As X, y1 As Y: LSet x1 = y1: End Sub\n== class Q assumed\nSub Alles_Neu(): End Sub\n== project A access\n== "
     "document "
     "Form_F\nPrivate Function G(): End Function\n== project W word\n== module Z\nSub FileSave(): End Sub",
     {"P@1 = possible Eigenschaft eines Steuerelements", "S@2 = certain", "Item@3 = possible Standardelement",
      "Each_@6 = possible", "Form_Load@9 = possible vielleicht ein Ereignis: die Art", "Alles_Neu@10 = certain",
      "T@12 = possible Testroutine", "R@13 = possible", "c@13 = possible", "Main@14 = possible", "a@15 = possible",
      "b@16 = possible", "Alles_Neu@18 = possible", "G@19 = possible Funktion eines Formulars",
      "FileSave@20 = host Start durch den Host"}},
    {"interfaces, events that nobody raises, exposed classes, default members",
     "== class I\nSub A(): End Sub\nSub B(): End Sub\nEvent E()\n== class C exposed\nImplements I\nPrivate WithEvents "
     "v As "
     "I\nSub I_A(): End Sub\nSub I_B(): End Sub\nSub v_E(): End Sub\nPublic Function Wert(i): End Function\nAttribute "
     "Wert.VB_UserMemId = 0\nPublic Sub Offen(): End Sub\nPrivate Sub Zu(): End Sub\n== module M\nSub S(x As I, y As "
     "C): "
     "x.A: z = y(1): End Sub",
     {"A@1 = used", "B@2 = used", "E@3 = used", "I_A@6 = used", "I_B@7 = possible implementiert",
      "v_E@8 = host Ereignis", "Wert@9 = used", "Offen@11 = possible Element einer nach außen", "Zu@12 = certain"}},
    {"only dead code uses it, declares it, or names it elsewhere",
     "== class K\nPrivate Sub P(): End Sub\nPublic Sub Q(): End Sub\nEvent E()\n== module M\n"
     "Private Sub A(): End Sub\nConst k = 1\nDim v\nType T: m As Long: n As Long: End Type\nEnum F: x: y: End Enum\n"
     "Declare Sub D Lib \"l\" ()\nProperty Get G(): End Property\nSub S(u, w): Dim a1, b1\n#If False Then\nCall A: z = "
     "k + "
     "v: Dim t1 As T: t1.m = x: D: z = G: RaiseEvent E: GoTo Weg: P: Q: u = a1\nConst y = 1, n = 2: S u:=w\n"
     "#End If\nWeg: End Sub\n#If 0 Then\nSub H(b1, w): I\nEnd Sub\n#End If\n"
     "Sub I(): End Sub\nEnum L: a2: End Enum\nEnum N: b2: End Enum\n#If False Then\nEnum O\na2 = b2\nEnd Enum\n"
     "#End If",
     {"P@1 = certain",   "Q@2 = inactive nur in inaktivem Code verwendet M:10",
      "E@3 = inactive",  "A@4 = inactive",
      "k@5 = inactive",  "v@6 = inactive",
      "T@7 = inactive",  "m@7 = inactive",
      "n@7 = certain",   "F@8 = inactive",
      "x@8 = inactive",  "y@8 = certain",
      "D@9 = inactive",  "G@10 = inactive",
      "S@11 = certain",  "u@11 = inactive",
      "w@11 = inactive", "a1@11 = inactive",
      "b1@11 = certain", "Weg@16 = inactive",
      "I@21 = inactive", "L@22 = certain",
      "a2@22 = certain", "N@23 = inactive",
      "b2@23 = inactive"}},
    {"an Enum goes with its members",
     "== module M\nEnum E: a: b: End Enum\nEnum F: a: c: End Enum\nSub S(): x = a: End Sub\n#If Mac Then\n"
     "Sub T(): x = d: End Sub\n#End If\nEnum G: d: End Enum",
     {"E@1 = possible Name, der mehreres", "F@2 = possible", "b@1 = certain", "G@7 = inactive"}},
    {"one of two under #If is listed, the other is it",
     "== module M\n#If VBA7 Then\nDeclare PtrSafe Sub D Lib \"l\" (p)\nDeclare PtrSafe Sub E Lib \"l\" "
     "()\n#Else\nDeclare "
     "Sub D Lib \"l\" (p)\nDeclare Sub E Lib \"l\" ()\n#End If\nSub S(): D 1: End Sub",
     {"D@2 = used", "D@5 = used", "E@3 = certain", "E@6 = used"}},
};

TEST(Answers, GradesOfWhatIsUnused) {
  for (const GradeCase& c : kGrades) {
    SCOPED_TRACE(c.title);
    const WrittenProject project(c.project);
    const ReferenceIndex index = ReferenceIndex::Build(project.sources);
    for (const std::string_view expected : c.grades) {
      const std::size_t at = expected.find('@'), equals = expected.find(" = ");
      const auto line = static_cast<std::uint32_t>(std::stoul(std::string(expected.substr(at + 1))));
      const SymbolId symbol = Find(project, index, expected.substr(0, at), line);
      ASSERT_NE(symbol, kNone) << expected;
      const std::optional<UnusedSymbol> unused = GradeUnused(index, symbol);
      std::string found = "used";
      if (unused) found = std::string(Word(unused->grade)) + " " + unused->reason + " " + unused->place;
      const std::string_view wanted = expected.substr(equals + 3);
      EXPECT_EQ(found.substr(0, wanted.size()), wanted) << expected << "\n" << found;
    }
  }
}

TEST(Answers, LooseEndsBetweenCodeAndDocument) {
  const WrittenProject project(
      "== project P excel\n== form F known control da\nSub da_Click(): End Sub\nSub weg_Click(): End Sub\nSub "
      "weg_Neu(): End Sub\nSub lebt_Click(): End Sub\nSub Knopf_Click(): lebt_Click: End Sub\n== form Unbekannt\nSub "
      "weg_Click(): End Sub\n== module M\nSub Da(c As IRibbonControl): End Sub\nSub Fehlt(c As Office.IRibbonControl, "
      "p As Boolean): End Sub\nSub Los(): End Sub\n== binding [0]!M.Los -> Knopf 1\n== binding Weg.Los -> Knopf 2\n"
      "== binding Los2 -> Knopf 3\n== binding Los3 -> Name 'Los3'\n== binding [1]!Los4 -> Knopf 4\n"
      "== binding Anders.M.Los -> Knopf 5\n== binding Da -> Knopf 6\n== project Q excel\n== module N\n"
      "Sub Fehlt(c As IRibbonControl): End Sub");
  const ReferenceIndex index = ReferenceIndex::Build(project.sources);
  std::string found;
  for (const LooseEnd& end : FindLooseEnds(index)) {
    const std::string_view routine = end.routine == kNone ? "-" : index.Name(end.routine);
    found.append(routine).append(" ").append(end.name).append(" ").append(end.place).append("\n");
  }
  EXPECT_EQ(found, "weg_Click weg \nKnopf_Click Knopf \nFehlt  \n- Weg.Los Knopf 2\n- Los2 Knopf 3\n");
}

std::string CallsText(const WrittenProject& project, const ReferenceIndex& index, std::vector<CallEdge> edges) {
  std::string text;
  for (const CallEdge& edge : edges) {
    if (!text.empty()) text += ", ";
    text.append(edge.routine == kNone ? std::string_view(edge.host) : index.Name(edge.routine));
    if (edge.certainty != Certainty::kSure) text.append(" ").append(Word(edge.certainty));
    for (const std::uint32_t line : edge.lines) text.append(" ").append(std::to_string(line));
  }
  static_cast<void>(project);
  return text;
}

TEST(Answers, CallersAndCallees) {
  const struct {
    std::string_view project, name;
    std::uint32_t line;
    std::string_view callers, callees;
  } cases[] = {
      {"== module M\nSub A(): B: C\nB: x = AddressOf B: End Sub\nSub B(): End Sub\nProperty Get C(): A: End Property",
       "B", 3, "A 1 2", ""},
      {"== module M\nSub A(): B: C\nB: x = AddressOf B: End Sub\nSub B(): End Sub\nProperty Get C(): A: End Property",
       "A", 1, "C 4", "B 1 2, C 1"},
      // A parameter with a routine's name is no call, nor is a function's own result.
      {"== module M\nSub A(B): x = B: End Sub\nFunction B(): B = 1: End Function", "B", 2, "", ""},
      {"== class C\nEvent E()\nSub S(): RaiseEvent E: End Sub\n== class D\nWithEvents v As C\nSub v_E(): End Sub",
       "v_E", 4, "S 2", ""},
      {"== class C\nEvent E()\nSub S(): RaiseEvent E: End Sub\n== class D\nWithEvents v As C\nSub v_E(): End Sub", "S",
       2, "", "v_E 2"},
      {"== class I\nSub A(): End Sub\n== class C\nImplements I\nSub I_A(): End Sub\n== module M\nSub S(x As I): x.A: "
       "End "
       "Sub",
       "S", 4, "", "A 1, I_A ambiguous 1"},
      {"== class I\nSub A(): End Sub\n== class C\nImplements I\nSub I_A(): End Sub\n== module M\nSub S(x As I): x.A: "
       "End "
       "Sub",
       "I_A", 3, "S ambiguous 1", ""},
      {"== module M\nSub A(o): Application.Run \"B\": o.K: End Sub\nSub B(): End Sub\n== class C\nSub K(): End Sub\n== "
       "binding M.B -> Menü",
       "B", 2, "A string 1, Menü host", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.project) + " " + std::string(c.name));
    const WrittenProject project(c.project);
    const ReferenceIndex index = ReferenceIndex::Build(project.sources);
    const SymbolId symbol = Find(project, index, c.name, c.line);
    ASSERT_NE(symbol, kNone);
    EXPECT_EQ(CallsText(project, index, CallersOf(index, symbol)), c.callers);
    EXPECT_EQ(CallsText(project, index, CalleesOf(index, symbol)), c.callees);
  }
}

TEST(Answers, HierarchiesEndAtCyclesAndAtTheDepth) {
  const WrittenProject project("== module M\nSub A(): B: C: End Sub\nSub B(): C: End Sub\nSub C(): A: C: End Sub");
  const ReferenceIndex index = ReferenceIndex::Build(project.sources);
  const auto hierarchy = [&](std::uint32_t depth) {
    std::string text;
    for (const CallNode& node : CallHierarchy(index, Find(project, index, "A", 1), CallDirection::kCallees, depth)) {
      text.append(std::to_string(node.depth)).append(index.Name(node.edge.routine)).append(node.cycle ? "* " : " ");
    }
    return text;
  };
  EXPECT_EQ(hierarchy(1), "0A 1B 1C ");
  EXPECT_EQ(hierarchy(9), "0A 1B 2C 3A* 3C* 1C 2A* 2C* ");
}

TEST(Answers, HierarchiesStayBounded) {
  // Each routine calls the next one in two ways: twice as many paths with every step.
  std::string code = "== module M\n";
  for (int i = 0; i < 60; ++i) {
    const std::string next = std::to_string(i + 1);
    code += "Sub A" + std::to_string(i) + "(): B" + next + ": A" + next + ": End Sub\nSub B" + std::to_string(i) +
            "(): A" + next + ": B" + next + ": End Sub\n";
  }
  const WrittenProject project(code);
  const ReferenceIndex index = ReferenceIndex::Build(project.sources);
  const auto nodes = CallHierarchy(index, Find(project, index, "A0", 1), CallDirection::kCallees, UINT32_MAX);
  EXPECT_LT(nodes.size(), kFullHierarchy + 500);
}

TEST(Answers, PlacesGiveTheNamesThereAndTheirUses) {
  const WrittenProject project(
      "== module M\nPrivate Größe As Long\nSub A(): Größe = 1: x = Größe + 2: End Sub\n== module N\nSub B(): M.A: End "
      "Sub");
  const ReferenceIndex index = ReferenceIndex::Build(project.sources);
  const auto there = [&](Index module, std::uint32_t line, std::uint32_t column) -> std::string {
    const std::optional<Occurrence> name = index.NameAt(module, line, column);
    if (!name) return "none";
    std::string text = name->declares ? "declares" : std::string(Word(name->use));
    for (const SymbolId target : name->targets) text.append(" ").append(index.Name(target));
    return text;
  };
  EXPECT_EQ(there(0, 1, 9), "declares Größe");
  EXPECT_EQ(there(0, 2, 10), "write Größe");
  EXPECT_EQ(there(0, 2, 15), "write Größe");  // a caret right behind the name
  EXPECT_EQ(there(0, 2, 25), "read Größe");
  EXPECT_EQ(there(0, 2, 8), "none");
  EXPECT_EQ(there(1, 1, 10), "type M");
  EXPECT_EQ(there(1, 1, 12), "call A");
  EXPECT_EQ(there(1, 9, 1), "none");
  EXPECT_EQ(index.FindModules("m"), std::vector<Index>{0});
  EXPECT_EQ(index.FindModules("P.N"), std::vector<Index>{1});
  EXPECT_EQ(index.FindSymbols(0, "GRÖSSE").size(), 0U);
  EXPECT_EQ(index.FindSymbols(0, "grÖße").size(), 1U);
}

/// Whatever goes round or nests without end is read like anything else.
TEST(Answers, CyclesAndDepthsEnd) {
  std::string nested = "== module M\nType A: m As B: End Type\nType B: m As A: End Type\nSub S(v As A, o): x = v";
  for (int i = 0; i < 20000; ++i) nested += ".m";
  nested += ": y = ";
  nested.append(20000, '(').append("o").append(20000, ')').append(": ");
  for (int i = 0; i < 5000; ++i) nested += "With o: ";
  nested += ".z = 1: End Sub\nSub T(): T";
  for (int i = 0; i < 5000; ++i) nested += " T:=T,";
  nested += "\nEnd Sub\n";
  for (int i = 0; i < 3000; ++i) nested += "Private Sub Doppelt(): Doppelt: End Sub\n";
  nested +=
      "== class C\nImplements C\nPublic Function Item() As C\nAttribute Item.VB_UserMemId = 0\nx = Item(1)(2)!a!b\n"
      "End Function\nSub C_Item(): End Sub\n";
  const WrittenProject project(nested);
  const ReferenceIndex index = ReferenceIndex::Build(project.sources);
  EXPECT_GT(index.Count().uses[static_cast<std::size_t>(Use::kRead)], 20000U);
  EXPECT_GT(FindUnused(index).size(), 1000U);
}

}  // namespace
}  // namespace quillmate::symbols
