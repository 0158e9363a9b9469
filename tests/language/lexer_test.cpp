#include <string>

#include <gtest/gtest.h>

#include <quillmate/language/parse.h>

namespace quillmate::language {
namespace {

std::string LineClasses(const Module& module) {
  constexpr char kLetters[] = "bkcdah";
  std::string classes;
  for (const PhysicalLine& line : module.lines) {
    classes += kLetters[static_cast<int>(line.lineClass)];
    if (line.trailingComment) classes += '\'';
    if (line.continues) classes += '_';
  }
  return classes;
}

/// One word for each token: its kind's letter and its text; logical lines parted by " / ".
std::string Tokens(const Module& module) {
  constexpr char kLetters[] = "nifsdoDcu";
  std::string text;
  for (std::size_t i = 0, line = 0; i < module.tokens.size(); ++i) {
    while (line + 1 < module.logicalLines.size() && module.logicalLines[line + 1].firstToken <= i) {
      text += text.empty() ? "/ " : " / ";
      ++line;
    }
    const Token& token = module.tokens[i];
    if (!text.empty() && text.back() != ' ') text += ' ';
    text += kLetters[static_cast<int>(token.kind)];
    text += module.text.substr(token.offset, token.length);
  }
  return text;
}

ParseOptions WithTokens() {
  ParseOptions options;
  options.keepTokens = true;
  return options;
}

TEST(Lexer, Tokens) {
  const struct {
    const char* code;
    const char* tokens;
  } kCases[] = {
      {"x = y_\nz", "nx o= ny_ / nz"},
      {"a = _\n  b", "na o= nb"},
      {"s = s & t & \"a\"\"b'c\" ' \"no\"", "ns o= ns o& nt o& s\"a\"\"b'c\" c' \"no\""},
      {"n& = a&+1 And &HFF& Or &O17 Or &17", "nn& o= na& o+ i1 nAnd i&HFF& nOr i&O17 nOr i&17"},
      {"s&t: s&\"x\": \"n\"&1: \"a\" &hWnd: Foo &H10",
       "ns o& nt o: ns o& s\"x\" o: s\"n\" o& i1 o: s\"a\" o& nhWnd o: nFoo i&H10"},
      {"a!b!c ![x] x! y", "na o! nb o! nc o! n[x] nx! ny"},
      {"t = #12:30:00 PM#: u = #1/1/2020# + #March 3, 2001 4:05 am#",
       "nt o= d#12:30:00 PM# o: nu o= d#1/1/2020# o+ d#March 3, 2001 4:05 am#"},
      {"Close #1: Close#2: Print #1, 2, #3", "nClose o# i1 o: nClose o# i2 o: nPrint o# i1 o, i2 o, o# i3"},
      {"x# = 1#: y = 1.5e-3# * .5 - 1. + 10^", "nx# o= i1# o: ny o= f1.5e-3# o* f.5 o- f1. o+ i10^"},
      {"x^2 + (x)^2 - 2^3: n^ = 5", "nx o^ i2 o+ o( nx o) o^ i2 o- i2 o^ i3 o: nn^ o= i5"},
      {"x = 1: Rem done: y = 2\nRemark = 1: o.Rem", "nx o= i1 o: cRem done: y = 2 / nRemark o= i1 o: no o. nRem"},
      {"' note _\nEnd Sub _\nx = 1\ny", "c' note _ cEnd Sub _ cx = 1 / ny"},
      {"x = 1 + _ ' why\ny", "nx o= i1 o+ u_ c' why / ny"},
      {"s = \"abc _\n  & d", "ns o= s\"abc o& nd"},
      {"[Preis Neu] = [a[1]b] & [x", "n[Preis Neu] o= n[a[1]b] o& u[ nx"},
      {"If a >= b <> c =< d := 1", "nIf na o>= nb o<> nc o=< nd o:= i1"},
      {"#If Win64 Then\n  # Const a = 1", "D# nIf nWin64 nThen / D# nConst na o= i1"},
      {"Prüf_ung§ = ‹x›\u00a0+\u3000ä", "nPrüf_ung§ o= u‹ nx u› o+ nä"},
      {"a {b} @ | \\ ?", "na u{ nb u} u@ u| o\\ o?"},
      {"f(a:=1, b : = 2)", "nf o( na o:= i1 o, nb o: = i2 o)"},
      {"10 Rem x\n20 Remark", "i10 cRem x / i20 nRemark"},
      {"a\fb\x19"
       "c",
       "na nb nc"},
  };
  for (const auto& [code, tokens] : kCases) EXPECT_EQ(Tokens(ParseModule(code, WithTokens())), tokens) << code;
}

TEST(Lexer, LineClasses) {
  const struct {
    const char* code;
    const char* classes;
  } kCases[] = {
      {"", ""},
      {"x", "c"},
      {"x\n", "c"},
      {"x\r\n\r\n' a\r\ny ' b\r\n", "cbkc'"},
      {"x\ry\n\rz\r\r\n", "ccbcb"},
      {"x = _\n _\n 1 ' k _\n mehr\n\n", "c_c_c'_kb"},
      {"#If a _\n Then ' k\n#End If", "d_d'd"},
      {" \t\n\x1a", "bb"},
      {"Rem a _\n\nx", "k_bc"},
      {"a _\n\nb", "c_bc"},
      {"a\u00a0_\nb", "cc"},
      {"_\na", "cc"},
  };
  for (const auto& [code, classes] : kCases) EXPECT_EQ(LineClasses(ParseModule(code)), classes) << code;
}

}  // namespace
}  // namespace quillmate::language
