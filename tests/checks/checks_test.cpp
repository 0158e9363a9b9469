#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/checks/checks.h>

#include "symbols/written_project.h"

namespace quillmate::checks {
namespace {

using symbols::testing::LineNumber;
using symbols::testing::WrittenProject;

struct FindingCase {
  std::string_view title;
  std::string_view ids;  ///< of the checks that run
  std::string_view project;
  std::string_view found;  ///< "id@line ..." in order; the id is left out where only one check runs
};

const FindingCase kCases[] = {
    {"inactive Declares, those of VB 6, a pointer to a pointer, other numbers of parameters",
     "ptrsafe-fehlt api-signatur",
     "== project P excel\n== module M\n#If VBA7 Then\nDeclare PtrSafe Sub Sleep Lib \"kernel32\" (ByVal ms As Long)\n"
     "#Else\nDeclare Sub Sleep Lib \"kernel32\" (ByVal ms As Long)\n#End If\nDeclare PtrSafe Function SendMessageW Lib "
     "\"user32\" (ByVal hWnd As LongPtr, ByVal m As Long, ByVal w As Long, ByVal l As LongPtr) As LongPtr\nDeclare "
     "PtrSafe Function Laden Lib \"kernel32\" Alias \"LoadLibraryW\" (ByVal n As LongPtr) As Long\nDeclare PtrSafe "
     "Function SetTimer Lib \"user32\" (ByVal h As Long) As LongPtr\n== project Q vb6\n== module N\nDeclare Sub Sleep "
     "Lib "
     "\"kernel32\" (ByVal ms As Long)",
     "api-signatur@6 api-signatur@7 api-signatur@8"},
    {"Declares as they are found: values for addresses, parameters too few, 64 bit where 32 would do, texts as "
     "pointers, "
     "a handle that is a Long, names that only look like pointers, call-backs that no table knows",
     "api-signatur zeiger-als-long",
     "== project P excel\n== module M\nDeclare PtrSafe Function Senden Lib \"user32.dll\" Alias \"SendMessageA\" "
     "(ByVal "
     "h As LongPtr, ByVal m As Long, ByVal w As LongPtr, ByVal l As Long) As LongPtr\nDeclare PtrSafe Function Rahmen "
     "Lib \"user32\" Alias \"GetWindowRect\" (ByVal h As LongPtr, ByVal r As Long) As Long\nDeclare PtrSafe Function "
     "GetComputerName Lib \"kernel32\" Alias \"GetComputerNameA\" (ByVal b As String, ByVal n As Long) As "
     "Long\nDeclare PtrSafe Function FindWindow Lib \"user32\" Alias \"FindWindowA\" (ByVal c As String) As "
     "LongPtr\nDeclare PtrSafe Function GetTickCount Lib \"kernel32\" () As LongPtr\nDeclare PtrSafe Sub Sleep Lib "
     "\"kernel32\" (ByVal ms As LongPtr)\nDeclare PtrSafe Function FindWindow2 Lib \"user32\" Alias \"FindWindowW\" "
     "(ByVal c As LongPtr, ByVal t As LongPtr) As LongPtr\nDeclare PtrSafe Function lClose Lib \"kernel32\" Alias "
     "\"_lclose\" (ByVal hFile As Long) As Long\nDeclare PtrSafe Function Fremd Lib \"x\" (ByVal lPixel As Long, ByVal "
     "hResult As Long, phase As Long, hWnd As Long) As Long\nDeclare PtrSafe Function Eigen Lib \"x\" (ByVal lpName As "
     "Long,\nDeclare PtrSafe Function Marke Lib \"x\" (ByVal p As LongPtr, phToken As Long) As Long\nType BROWSEINFO: "
     "lpfn As LongPtr\npidlRoot As Long\nlParam As Long\niImage As Long\nEnd Type\nSub S(): x = Adr(AddressOf "
     "Ordner): x = Adr(AddressOf Gut): End Sub\nFunction Ordner(ByVal hwnd As Long, ByVal m As Long) As Long: End "
     "Function\nFunction Gut(ByVal hwnd As LongPtr, ByVal m As Long) As Long: End Function",
     "api-signatur@1 api-signatur@2 api-signatur@3 api-signatur@4 zeiger-als-long@10 zeiger-als-long@11 "
     "zeiger-als-long@13 zeiger-als-long@14 zeiger-als-long@17"},
    {"pointers kept: moved ones, differences, as numbers of the host, by branch, in a call's argument",
     "zeiger-in-long",
     "== project P excel\n== module M\nDeclare PtrSafe Function FindWindow Lib \"user32\" Alias \"FindWindowA\" (ByVal "
     "c As String, ByVal t As String) As LongPtr\nPrivate hWndXL As Long, hook&\nSub S()\n#If Win64 Then\nDim q As "
     "LongPtr\n#Else\nDim q As Long\n#End If\nDim p As Long, a() As Byte, s As String\np = VarPtr(a(0)) + 4\np = "
     "VarPtr(a(1)) - VarPtr(a(0))\nhook = StrPtr(s)\nhWndXL = FindWindow(\"XLMAIN\", Application.Caption)\np = "
     "Application.Hwnd\nq = VarPtr(s)\np = IIf(FindWindow(\"a\", s) = 0, 1, 2)\np = Len(s) + VarPtr(s)\nIf True Then p "
     "= ObjPtr(a): q = p\nEnd Sub\nFunction Adresse(x) As Long\nAdresse = VarPtr(x)\nEnd Function",
     "10 12 13 18 21"},
    {"32 bit only: providers in any place, drivers by their old names, ProgIDs, messages, other keys", "nur-32-bit",
     "== project P access\n== module M\nSub S()\nx = \"Data Source=a.mdb; provider = 'Microsoft.Jet.OLEDB.4.0';\"\nx = "
     "\"OLEDB;Provider=Microsoft.Jet.OLEDB.4.0;User ID=Admin\"\nx = \"Driver={Microsoft Text Driver (*.txt; "
     "*.csv)};DBQ=c\"\nx = \"Driver={Microsoft Access Driver (*.mdb, *.accdb)};DBQ=c\"\nx = \"Microsoft.Jet.OLEDB.4.0 "
     "fehlt\"\nSet x = CreateObject(\"MSScriptControl.ScriptControl.1\")\nSet x = CreateObject(\"Scripting.Dictionary\""
     ")\nx = \"Provider=Microsoft.ACE.OLEDB.12.0;Data Source=Microsoft.Jet.OLEDB\"\nEnd Sub\n== project Q vb6\n== "
     "module N\nSub T(): x = \"Microsoft.Jet.OLEDB.4.0\": End Sub",
     "2 3 4 7"},
    {"ambiguous calls: own routines, qualified, locals, members of classes, private ones, arguments",
     "aufruf-mehrdeutig",
     "== project P excel\n== module A\nSub Log(s): End Sub\nFunction Zeile(): End Function\nSub Nur(): End "
     "Sub\nPrivate "
     "Sub Weg(): End Sub\n== module B\nSub Log(s): End Sub\nFunction Zeile(): Log 1: Zeile = 2: End Function\nSub "
     "Weg(): End Sub\n== class K\nSub Nur(): End Sub\n== module C\nSub S()\nLog Zeile\nCall A.Log(1)\nNur: Weg\n"
     "x = 1 + Zeile()\nApplication.Run \"Log\", 1\nEnd Sub\nSub T(Zeile): x = Zeile: Dim Log: Log = 1: End Sub",
     "10 10 13"},
    {"the ribbon and the code: several places without routine, routines without a place",
     "aufruf-ohne-routine rueckruf-ohne-menueband",
     "== project P excel\n== module M\nSub Da(c As IRibbonControl): End Sub\nSub Geladen(r As Office.IRibbonUI): End "
     "Sub\nSub Gerufen(c As IRibbonControl): Da c: Geladen Nothing: End Sub\n== binding Da -> Knopf 'A'\n"
     "== binding Gerufen -> Knopf 'B'\n== binding Fehlt -> Knopf 'C'\n== binding M.Fehlt -> Knopf "
     "'D'\n== binding Fehlt -> Knopf 'E'\n== project Q excel\n== module N\nSub Da(c As IRibbonControl): End "
     "Sub\nSub Ohne(c As IRibbonControl, ByRef an): End Sub\n== binding Da -> Knopf 'F'",
     "aufruf-ohne-routine@0 aufruf-ohne-routine@0 aufruf-ohne-routine@0 rueckruf-ohne-menueband@5"},
    {"pointers: call-backs through another module, results of own functions", "rueckruf-als-long zeiger-in-long",
     "== project P excel\n== module A\nPublic Declare PtrSafe Function EnumWindows Lib \"user32\" (ByVal f As LongPtr, "
     "ByVal l As LongPtr) As Long\n== module B\nFunction Adr() As LongPtr: Adr = 1: End Function\nSub S()\nDim n As "
     "Long, "
     "p As LongPtr\nn = Adr\np = Adr\nn = CLng(Adr)\nEnumWindows AddressOf C, 0: EnumWindows AddressOf D, 0\nEnd "
     "Sub\nFunction C(ByVal h As Long, ByVal l As LongPtr) As Long: End Function\nFunction D(ByVal h As LongPtr, ByVal "
     "l "
     "As LongPtr) As Long: End Function",
     "zeiger-in-long@5 rueckruf-als-long@8"},
    {"lists of names: arrays, suffixes, several statements of a line", "typ-nur-beim-letzten",
     "== module M\nDim a, b As Long\nDim c$, d As Long\nSub S(): Dim e: Dim f As Long: Dim g(), h, i As Date: End Sub",
     "1 3 3"},
    {"hidden names: own module only, no types, no members", "name-verdeckt",
     "== module M\nPrivate a As Long\nPublic Sub B(): End Sub\nType T: c As Long: End Type\nSub S(a): Dim b, c, d: End "
     "Sub\n== module N\nPublic d As Long",
     "4 4"},
    {"unused: by grade, events, labels that are jumped to, stubs of parameters",
     "routine-unbenutzt makro-ohne-aufruf parameter-unbenutzt marke-unbenutzt variable-nie-gelesen",
     "== project P word\n== class K\nPrivate Sub Class_Initialize(): End Sub\n== module M\nSub Start(): A 1: End "
     "Sub\nPrivate Sub A(p): End Sub\nPrivate Sub B(p): B p: End Sub\nSub C(): Application.Run \"D\": GoTo x\nx: y: "
     "Dim v: v = 1\nEnd Sub\nPrivate Sub D(): End Sub",
     "makro-ohne-aufruf@2 routine-unbenutzt@4 makro-ohne-aufruf@5 variable-nie-gelesen@6"},
    {"Resume Next: switched off, asked for errors, short, set again", "resume-next-bleibt-an",
     "== module M\nSub A(): On Error Resume Next: Kill 1: Kill 2: On Error GoTo 0: Kill 3: Kill 4: Kill 5: Kill 6: "
     "Kill "
     "7: Kill 8: Kill 9: End Sub\nSub B(): On Error Resume Next: Kill 1: Kill 2: Kill 3: Kill 4: Kill 5: Kill 6: Kill "
     "7: "
     "Kill 8: If Err Then Stop\nEnd Sub\nSub C(): On Error Resume Next: Kill 1: End Sub\nSub D(): On Local Error "
     "Resume "
     "Next: Kill 1: Kill 2: Kill 3: Kill 4: Kill 5: Kill 6: Kill 7: Kill 8: End Sub",
     "5"},
    {"error labels: exits in all branches, clean-up for all, jumps, a check for errors", "exit-vor-fehlermarke-fehlt",
     "== module M\nSub A(): On Error GoTo E\nIf x Then\nExit Sub\nElse\nGoTo F\nEnd If\nE: Resume Next\nF: End "
     "Sub\nSub "
     "B(): On Error GoTo E: Kill 1\nE: Close: MsgBox Err.Description: End Sub\nSub C(): On Error GoTo E: Kill 1\nE: If "
     "Err.Number <> 0 Then MsgBox Err.Description\nEnd Sub\nSub D(): On Error GoTo E: Kill 1\nE: Close: End Sub\nSub "
     "F(): "
     "On Error GoTo E: Err.Raise 5\nE: Resume Next: End Sub",
     "10"},
    {"ways: both branches leave, loops, inline Ifs, labels, conditional compilation, debugging", "unerreichbar",
     "== module M\nSub A()\nIf a Then\nExit Sub\nElseIf b Then\nExit Sub\nElse\nExit Sub\nEnd If\nKill 1\nEnd Sub\nSub "
     "B()\nDo\nKill 1\nLoop\nKill 2\nEnd Sub\nSub C()\nDo\nIf x Then Exit Do\nLoop\nKill 1\nIf x Then Exit Sub Else "
     "Exit "
     "Sub\nKill 2\nEnd Sub\nSub D(): GoTo L\nKill 1\nL: Exit Sub\nKill 2\nResume\nEnd Sub\nSub F()\n#If Mac Then\nExit "
     "Sub\n#End If\nKill 1: On Error GoTo H: Exit Sub\nH: Kill 2\nEnd Sub\nSub G()\nSelect Case x\nCase 1\nExit "
     "Sub\nCase 2: Kill 1\nEnd Select\nKill 2\nFor i = 1 To 2: For j = 1 To 2: Kill 3: Next j, i\nKill 4: If x Then If "
     "y "
     "Then Exit Sub Else Kill 5 Else Kill 6\nKill 7\nEnd Sub",
     "9 15 23 26 28"},
    {"loops that only an Exit, a jump or an error ends", "unerreichbar",
     "== module M\nSub A()\nDo While True: Kill 1: Loop\nKill 2\nEnd Sub\nSub B()\nWhile True\nIf x Then GoTo "
     "Raus\nWend\nRaus: Kill 2\nEnd Sub\nSub C()\nDo Until False\nIf x Then Exit Do\nLoop\nKill 2\nDo: Kill 1: Loop "
     "While True\nKill 3\nEnd Sub\nSub D()\nDo While True And x: Loop\nKill 1: While True = x: Wend\nKill 2\nOn Error "
     "GoTo H\nDo: Kill 1: Loop Until False\nH: Kill 3\nEnd Sub",
     "3 17"},
    {"assignments: read between, by reference, branches, errors, own value, static", "zuweisung-ungelesen",
     "== module M\nSub A(): Dim a, b, c, d, e As Object, f$: Static s: a = 1: a = 2: b = 1: b = b + 1: c = 1: Foo c: c "
     "= "
     "2: d = 1\nIf x Then d = 2\ne = 1: e = 2: s = 1: s = 2: f = \"x\": Mid(f, 1) = \"y\": f = \"z\"\nEnd Sub\nSub "
     "B(): "
     "Dim a: On Error Resume Next: a = 1: a = CLng(x): End Sub\nSub Foo(x): x = 1: End Sub\nSub C(): Dim a(1), i: a(0) "
     "= 1: "
     "a(0) = 2: i = 1\nFor i = 1 To 2: Next\nEnd Sub",
     "1"},
    {"loop variables: nested, behind the loop, before leaving", "zaehlvariable-geaendert",
     "== module M\nSub A(): Dim i, j: For i = 1 To 2: For j = 1 To 2\nj = 2\nNext: Next: i = 3: For i = 1 To 2: i = 9: "
     "Exit "
     "For\nNext: For i = 1 To 3: For i = 1 To 2: Next: Next\nEnd Sub",
     "2 4"},
    {"results: Set, members, ReDim, by reference, empty, raising, property, doubled header", "ergebnis-fehlt",
     "== module M\nFunction A() As Object: Set A = x: End Function\nFunction B() As T: B.x = 1: End Function\nFunction "
     "C(): "
     "ReDim C(1): End Function\nFunction D(): Foo D: End Function\nFunction E(): End Function\nFunction F(): Err.Raise "
     "5: End "
     "Function\nProperty Get G(): Beep: End Property\n#If Mac Then\nFunction H() As Long\n#Else\nFunction H() As "
     "LongPtr\n#End If\nH = 1\nEnd Function\nFunction I(): Dim v: v = I(): End Function\nType T: x As Long: End "
     "Type\nSub "
     "Foo(x): x = 1: End Sub\nProperty Get Currency() As String: Currency = Foo(1): End Property",
     "7 15"},
    {"jumps: within a loop, out of it, into With", "sprung-in-schleife",
     "== module M\nSub A()\nGoTo a\nFor i = 1 To 2\nGoTo a\na: Next\nWith x\nb: .y = 1\nIf z Then GoTo c\nEnd With\nc: "
     "GoTo b\nEnd Sub",
     "2 10"},
    {"sheets: sheet modules, other hosts, chains with With, own routines of the name",
     "blatt-stillschweigend cells-vom-falschen-blatt select-kette",
     "== project P excel\n== document Tabelle1\nSub A(): Range(\"A1\").Select: End Sub\n== module M\nSub B(): With "
     "Worksheets(1)\n.Range(Cells(1, 1), .Cells(2, 2)).Clear\nEnd With: With ActiveSheet\n.Range(Cells(1, 1), Cells(2, "
     "2)).Clear\nEnd With\nx = Range(\"A1\")\nEnd Sub\n== project Q word\n== module N\nSub C(): Range(\"A1\").Select: "
     "Selection.Copy: End Sub\n== project R excel\n== module O\nSub D(): Range(\"A1\").Select: End Sub\nFunction "
     "Range(x): "
     "Set Range = x: End Function",
     "cells-vom-falschen-blatt@3 blatt-stillschweigend@5 blatt-stillschweigend@7"},
    {"texts that tell their place: sheets, defined names, areas, other books and the own one",
     "blatt-stillschweigend verknuepfung-aussen",
     "== project P excel\n== module M\nSub A()\nRange(\"Daten!A1\").Clear\nRange(\"Umsatz\").Clear\nRange(\"Umsatz,"
     "$A$1\").Clear\nRange(\"A:C\").Clear\nRange(\"3:4\").Clear\nRange(\"Tabelle_1\").Clear\nRange(\"Umsatz\", "
     "x).Clear\n"
     "y = z <> \"[B.xls]Blatt!A1\"\nx.Range(\"[B.xlsm]Blatt!A1\").Clear\ny = \"=SUM('C:\\[B.xls]C'!A1)\"\n"
     "x.Formula = \"=[B.xls]\"\nEnd Sub",
     "blatt-stillschweigend@4 blatt-stillschweigend@5 blatt-stillschweigend@6 blatt-stillschweigend@8 "
     "verknuepfung-aussen@10 verknuepfung-aussen@11"},
    {"Set: arrays of values, default members, values of cells", "set-fehlt",
     "== project P excel\n== module M\nSub A(): Dim w As Worksheet, r As Range, c As New Collection, v: w = "
     "ActiveSheet: r = "
     "1: v = ActiveSheet\nSet w = ActiveSheet: w.Name = ActiveSheet.Name: r = Cells(1, 1)\nEnd Sub",
     "1"},
    {"switches: saved and given back, own routines, loops, errors, helpers", "schalter-bleibt-aus",
     "== project P excel\n== module M\nSub A(): Dim c: c = Application.Calculation: Application.Calculation = "
     "xlCalculationManual: Kill 1: Kill 2: Kill 3: Application.Calculation = c: End Sub\nSub B(): "
     "Application.EnableEvents = False: Kill 1: Kill 2: Kill 3: Ein\nEnd Sub\nSub Ein(): Application.EnableEvents = "
     "True: "
     "End Sub\nSub C(): On Error GoTo E: Application.EnableEvents = False: Kill 1: Kill 2: Kill 3: "
     "Application.EnableEvents = True: Exit Sub\nE: MsgBox Err.Description\nEnd Sub\nSub D(): With "
     "Application\n.EnableEvents = False\nDo While x\nKill 1: Kill 2: Kill 3\nLoop\n.EnableEvents = True\nEnd With: "
     "End "
     "Sub\nSub F(): DoCmd.SetWarnings False: DoCmd.RunSQL \"x\": Kill 1: Kill 2: Kill 3: DoCmd.SetWarnings True: End "
     "Sub",
     "5"},
    {"outside: names of the project's own, members, classes, namespaces, paths",
     "aussen-programm aussen-objekt aussen-mail aussen-netz pfad-fest aussen-datenbank aussen-office",
     "== project P excel\n== module M\nSub A(): VBA.Shell \"x\": o.Shell \"x\"\nSet a = "
     "CreateObject(\"Outlook.Application\"): "
     "Set b = CreateObject(s): Set c = New ADODB.Connection: Set d = New Excel.Application\nx = "
     "\"http://schemas.example/2006\": y = \"C:\\\": z = \"C:\\Daten\": w = \"select the one FROM\": v = \" Select a "
     "from "
     "b\"\nEnd "
     "Sub\n== project Q excel\n== module N\nSub Shell(x): End Sub\nSub B(): Shell 1: End Sub",
     "aussen-programm@1 aussen-mail@2 aussen-objekt@2 aussen-datenbank@2 pfad-fest@3 aussen-datenbank@3"},
    {"copies: other names, other order of locals, members of the names of locals", "doppelt",
     "== module M\nSub A(p): Dim a, b: a = 1: b = 2: Foo a, b, p.a: a = b * 2: b = a + p: Foo b, a, \"x\": If a > b "
     "Then b = "
     "a - 1: Foo a + 1\nEnd Sub\nSub B(Q): Dim y, x\nx = 1: y = 2 ' z\nFoo x, y, q.a: x = y * 2: y = x + Q: Foo y, x, "
     "\"x\": If x > y Then y = x - 1: Foo x + 1\nEnd Sub\nSub C(p): Dim a, b: a = 1: b = 2: Foo b, a, p.a: a = b * 2: "
     "b = a + "
     "p: Foo b, a, \"x\": If a > b Then b = a - 1: Foo a + 1\nEnd Sub\nSub D(Q): Dim y, x: x = 1: y = 2: Foo x, y, "
     "q.x: x = y "
     "* 2: y = x + Q: Foo y, x, \"x\": If x > y Then y = x - 1: Foo x + 1\nEnd Sub\nSub Foo(ParamArray x()): End Sub",
     "3"},
    {"SQL: capitals, small letters, messages", "aussen-datenbank",
     "== module M\nSub A()\nx = \"SELECT * FROM [\"\nx = \"select a, b from t\"\nx = \"Select an option from the "
     "list\"\nx = \"update t set a=1\"\nx = \"Update the whole set now\"\nx = \"insert into t (a) values (1)\"\nx = "
     "\"Delete from here\"\nx = \"DELETE FROM t\"\nx = \"Selected\"\nEnd Sub",
     "2 3 5 7 9"},
    {"silenced: behind, above, by other ids, all, continued lines, in strings, misspelled", "pfad-fest",
     "== module M\nSub A()\nx = \"C:\\Daten\" ' quillmate: ignore pfad-fest\n' quillmate: ignore aussen-datei, "
     "PFAD-FEST "
     "weil\n\nx = \"C:\\Daten\"\nx = \"C:\\Daten\" ' quillmate: ignore aussen-datei\nx = \"C:\\Daten\" ' quillmate: "
     "ignore\nx = 1 & _\n\"C:\\Daten\" ' quillmate: ignore pfad-fest\nx = \"C:\\Daten\": y = \"quillmate: "
     "ignore\"\nx = \"C:\\Daten\" ' Quillmate: ignore pfad-fets\nx = \"C:\\Daten\" ' Quillmate: Ignore Pfad-fest\nEnd "
     "Sub",
     "6 10 11"},
    {"text of another language", "pfad-fest option-explicit-fehlt",
     "== module M\nImports A\nNamespace B\nPublic Class C\nSub S(): x = \"C:\\Daten\": End Sub\nEnd Class\nEnd "
     "Namespace\nEnd Class\nEnd Namespace\nEnd Class",
     ""},
};

Selection SelectionOf(std::string_view ids, std::size_t& count) {
  Selection selection;
  selection.Clear();
  std::istringstream words{std::string(ids)};
  for (std::string id; words >> id; ++count) {
    const auto check = FindCheck(id);
    EXPECT_TRUE(check) << id;
    if (check) selection.Add(*check);
  }
  return selection;
}

std::string Listed(const WrittenProject& project, const std::vector<Finding>& findings, bool ids) {
  std::string text;
  for (const Finding& finding : findings) {
    text += text.empty() ? "" : " ";
    if (ids) text.append(InfoOf(finding.check).id).append("@");
    text += std::to_string(LineNumber(project, finding.module, finding.line));
  }
  return text;
}

TEST(Checks, Cases) {
  for (const FindingCase& test : kCases) {
    const WrittenProject project(test.project);
    std::size_t count = 0;
    const Selection selection = SelectionOf(test.ids, count);
    const auto index = symbols::ReferenceIndex::Build(project.sources);
    std::string words;
    const std::vector<Finding> findings = RunChecks(index, selection, 1);
    for (const Finding& finding : findings) words += finding.text + "\n";
    EXPECT_EQ(Listed(project, findings, count > 1), test.found) << test.title << "\n" << words;
  }
}

/// Every finding of every case, all checks at once: one thread or several, all findings in their order, each with words
/// and a place within its line.
TEST(Checks, TogetherAndInThreads) {
  symbols::Sources all;
  for (const FindingCase& test : kCases) {
    WrittenProject project(test.project);
    const auto first = static_cast<symbols::Index>(all.projects.size());
    for (auto& one : project.sources.projects) all.projects.push_back(std::move(one));
    for (auto& module : project.sources.modules) {
      module.project += first;
      all.modules.push_back(std::move(module));
    }
  }
  const auto index = symbols::ReferenceIndex::Build(std::move(all));
  Selection selection;
  for (const Check& check : AllChecks()) selection.Add(check.number);
  const std::vector<Finding> findings = RunChecks(index, selection, 1);
  const std::vector<Finding> again = RunChecks(index, selection, 3);
  EXPECT_GT(findings.size(), 100U);
  ASSERT_EQ(findings.size(), again.size());
  const std::atomic<bool> cancelled = true;
  EXPECT_TRUE(RunChecks(index, selection, 3, &cancelled).empty());
  for (std::size_t i = 0; i < findings.size(); ++i) {
    const Finding& finding = findings[i];
    EXPECT_EQ(std::tie(finding.module, finding.line, finding.column, finding.check, finding.text),
              std::tie(again[i].module, again[i].line, again[i].column, again[i].check, again[i].text));
    EXPECT_TRUE(finding.text.ends_with('.') || finding.text.ends_with("“")) << finding.text;
    EXPECT_FALSE(finding.advice.empty() || finding.subject.empty()) << finding.text;
    const language::Module& code = index.Code(finding.module);
    ASSERT_LE(finding.line, code.lines.size());
    EXPECT_LE(finding.column, code.LineText(finding.line).size()) << finding.text;
    EXPECT_EQ(finding.routine == symbols::kNone ? finding.routine : code.RoutineAt(finding.line), finding.routine);
  }
}

}  // namespace
}  // namespace quillmate::checks
