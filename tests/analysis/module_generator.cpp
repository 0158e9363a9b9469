#include "module_generator.h"

#include <initializer_list>
#include <iterator>
#include <span>

namespace quillmate::testing {
namespace {

const char* const kShortPieces[] = {
    " ",   " ",    " ",    "  ",    "\t",    "(",     ")",    ",",     "\"",   "\"",    "\"\"",
    "'",   ":",    "?",    "_",     "_\r\n", "\r\n",  "\r\n", "\r",    "\n",   "\237",  "|",
    "*",   "u| ",  "d|",   "\237d", "\"?",   "Sub",   "Sub ", " Sub ", "End ", "Exit ", " Lib ",
    "Lib", "Not ", "As ",  "sub ",  "SUB ",  "If ",   "Then", "Else",  "For ", "Next",  "Next ",
    "Do",  "Do ",  "Loop", "Wend",  "With ", "Case ", "Type", "Type ", "Rem ", "Foo",   "x",
    "a",   "1",    "0",    "=",     "&",     ".",     "#If ", "'|",    "'\"",  "\"'",   "\0"};
const char* const kPieces[] = {
    " _\r\n",       "|\237f|",      "|n\237|",       "|\237x|",       "|y\237|",       "|\237u| ",      "|\237d|",
    "|\237b|",      "|\237k|",      "|\237s|",       "\237|?",        "\237u| ",       "|n\237",        "\"a\"?",
    "Function",     "Function ",    "Property ",     "Property Get ", "Property Let ", "Property Set ", "End Sub",
    "End Function", "End Property", "Exit Sub",      "Private ",      "Public ",       "Friend ",       "Static ",
    "Declare ",     "Declare Sub ", "Option Base 1", "Option ",       "Explicit ",     "Not Not ",      "As Long",
    "If a Then",    " Then ",       "ElseIf ",       "End If",        "While ",        "End With",      "Select Case ",
    "End Select",   "End Type",     "Public Type ",  "Private Type ", "B\344r",        "\"\"\"\"",      "x = \"\""};
const char* const kLongPieces[] = {"\237*A00000001|",          "\237*E00000001|",       "Declare Function ",
                                   "Option Explicit",          "Option Private Module", "Option Compare Text",
                                   "Option Compare Database ", "\"text mit Sub drin\"", "' Kommentar, Sub (x)",
                                   "Foo(ByVal a As Long, b)"};

const char* const kShortStatements[] = {
    "",          "",           "Do",         "Else",       "Next",         "Loop",         "Wend",
    "    ",      "If a _",     "End If",     "Next i",     "End Sub",      "While z",      "Exit Sub",
    "With Foo",  "End With",   "End Type",   "DoEvents",   "\tx\t= 1",     "Else ' so",    "Case 1, 2",
    "Case Else", "Do While x", "End Select", "Type Linie", "End Function", "End Property", "Loop Until y"};
const char* const kStatements[] = {
    "Option Explicit",
    "Private Sub Foo()",
    "Public Function Bar(ByVal x As Long) As Long",
    "Property Get Wert() As Long",
    "Property Let Wert(ByVal n As Long)",
    "Friend Property Set Wert(o)",
    "Private Declare PtrSafe Function GetTick Lib \"kernel32\" Alias \"GetTickCount\" () As Long",
    "Declare Sub Sleep _\r\n  Lib \"kernel32\" _\r\n  (ByVal ms As Long)",
    "Sub Kurz(): x = 1: End Sub",
    "Public Property Wert()",
    "Sub OhneKlammer",
    "Friend Sub F(a, _\r\n    b, _\r\n    c) ' (x)",
    "If a > b Then",
    "If a Then b = 1",
    "If a And _\r\n   b Then ' Kommentar",
    "If x = \"Then\" Then c = 2 'Then",
    "ElseIf b Then",
    "For i = 1 To 10",
    "End With ' Foo",
    "Select Case n",
    "Public Type Punkt",
    "Debug.Print \"Hallo, 'Welt'\" & x ' und \"mehr\"",
    "s = \"a\"\"b\" & \"\"",
    "MsgBox \"offen",
    "MsgBox \"offen 'so",
    "x = Not Not y",
    "On Error GoTo Fehler",
    "Fehler: Resume Next",
    "Rem Sub im Kommentar",
    "Dim a As Long, b As String",
    "z = f(Sub, Function)",
    "Function Sub Property",
    "Print\"a\"?Then"};

using Texts = std::span<const char* const>;

/// One of several lists that count as one.
const char* TextAt(std::initializer_list<Texts> lists, std::size_t number) {
  for (const Texts& list : lists) {
    if (number < list.size()) return list[number];
    number -= list.size();
  }
  return "";
}

}  // namespace

std::string ModuleGenerator::Soup(std::size_t pieces) {
  std::string text;
  for (std::size_t i = 0; i < pieces; ++i) {
    constexpr std::size_t kAll = std::size(kShortPieces) + std::size(kPieces) + std::size(kLongPieces);
    const char* piece = TextAt({kShortPieces, kPieces, kLongPieces}, Below(kAll));
    text += *piece == '\0' ? std::string(1, '\0') : std::string(piece);
  }
  return text;
}

std::string ModuleGenerator::Statement() {
  std::string text(Below(3) * 2, ' ');
  text += TextAt({kShortStatements, kStatements}, Below(std::size(kShortStatements) + std::size(kStatements)));
  if (Below(12) == 0) text += Soup(1 + Below(3));
  return text;
}

std::string ModuleGenerator::Line() { return Below(8) == 0 ? Soup(1 + Below(10)) : Statement(); }

std::string ModuleGenerator::Next() {
  if (Below(50) == 0) return Soup(Below(4));
  if (Below(4) == 0) return Soup(20 + Below(60));
  std::string text;
  const std::size_t lines = 1 + Below(30);
  for (std::size_t i = 0; i < lines; ++i) text += Line() + (i + 1 < lines || Below(2) == 0 ? "\r\n" : "");
  if (Below(200) == 0) text += std::string(5000 + Below(5000), 'x') + Soup(200);
  return text;
}

}  // namespace quillmate::testing
