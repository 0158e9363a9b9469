#pragma once

#include <string>
#include <string_view>

/// Module files for the tests, Windows-1252.
namespace quillmate::cli {

/// Standard module "Gruß": a Sub, a Declare, a continued Function header, a Sub that is never closed.
inline constexpr std::string_view kGreeting =
    "Attribute VB_Name = \"Gru\337\"\n"
    "Option Explicit\n"
    "Public Sub Anfang()\n"
    "    MsgBox \"Hallo {Welt}\" ' Gr\374\337e\n"
    "End Sub\n"
    "Private Declare Function Zeit Lib \"kernel32\" () As Long\n"
    "Function Summe(ByVal a As Long, _\n"
    "    ByVal b As Long) As Long\n"
    "Summe = a + b\n"
    "End Function\n"
    "Friend Sub Offen(): End Sub\n";

/// Class module "Karte" with a property, after a file header.
inline constexpr std::string_view kCard =
    "VERSION 1.0 CLASS\r\n"
    "BEGIN\r\n"
    "  MultiUse = -1  'True\r\n"
    "END\r\n"
    "Attribute VB_Name = \"Karte\"\r\n"
    "Private mName As String\r\n"
    "Property Get Name() As String\r\n"
    "Name = mName\r\n"
    "End Property\r\n";

/// More text than any buffer on the way holds.
inline std::string LongModule() {
  std::string code;
  for (int i = 0; i < 40000; ++i) {
    code += "' Zeile " + std::to_string(i) + "\n";
  }
  return code;
}

}  // namespace quillmate::cli
