#include "module_generator.h"

#include <algorithm>

namespace quillmate::language {
namespace {

/// Names that are free at every place, and some that mean something at others.
constexpr std::string_view kNames[] = {"x",     "Zahl",   "größe",   "Übertrag$", "n&", "rs",  "o",    "m_Wert",
                                       "List1", "Remark", "Endwert", "[Feld 1]",  "a1", "iff", "subs", "straße!"};
constexpr std::string_view kMembers[] = {"Name", "Type", "End",   "Next",     "Print_", "Select", "Value",
                                         "Item", "To",   "[x y]", "Property", "If",     "Ä"};
constexpr std::string_view kLabels[] = {"Fehler", "Ende_1", "Err", "Beep", "Weiter"};

/// "$" and a letter stand for a name: v value, c called, l and s targets, f and e loop variables, n after Next, t
/// type, w created, k type asked for, a address, i read into, z erased, g label, r member, p target member, q called
/// member, h member of the With object, y key, b named argument, d and D declared variable and constant, L label, u
/// value of a constant expression. "%" and a letter begin a name that is there itself; "~" is a blank that is never
/// continued.
constexpr std::string_view kStatements[] = {
    "$l = $v + 1",
    "Set $S = $v",
    "$c $v, ($v), $v.$r",
    "Call $c($v, $b:=$v)",
    "$v.$q \"a\"\"b'c\", $v",
    "$c",
    "$v($v, $v - 1).$p = $v(1)($v)",
    "If $v Then $l = $v Else $c $v",
    "If Not $v And $v.$r = \"End Sub\" Then Exit Sub",
    "Dim $d As Long, $d(1 To $u) As $t",
    "Static $d As New $w",
    "Const $D = $u & \"x\"",
    "Set $S = New $w",
    "ReDim Preserve $m($v), $v.$M($v + 1)",
    "Erase $z, $z",
    "$l = TypeOf $v Is $k",
    "$c AddressOf $a, $v",
    "GoTo $g",
    "On Error GoTo $g",
    "On $v GoSub $g, $g",
    "Resume $g",
    "%vDebug.%cPrint $v; \"x\"; $v, $v",
    "Print #1, $v; %vTab(3); $v",
    "Line Input #$v, $i",
    "Get #1, $v, $i",
    "Open $v & \"x\" For Input As #1 Len = $v",
    "Close #1: $c",
    "$v.$q: $c: $c $v",
    "$l = #1/2/2020# - $v!$y",
    "$l = &HFF& Or $v",
    "%vMe.$q $v",
    "%vMe.%cLine ($v, $v)-($v, $v), $v, BF",
    "$l = $v Like \"*'*\"",
    "Name $v As $v",
    "%vMid($l, 2, $v) = $v",
    "%cError $v",
    "$l = %vIIf($v, -$v, $v ^ 2)",
    "RaiseEvent $j($v)",
    "Stop",
    "%vx.%lCaption = .$h",
    "$c -1",
    "$c , $v",
    "%cUnload $U",
    "%cDoEvents",
};

constexpr std::string_view kComments[] = {"' End Sub", "' say \"x",   "'",
                                          "' Sub X()", "'#If x Then", "Rem it's over: End Sub"};

std::string_view RoleOf(char place) {
  switch (place) {
    case 'c':
    case 'q':
      return "call";
    case 'l':
    case 'p':
      return "let";
    case 'S':
      return "set";
    case 'f':
      return "for";
    case 'e':
      return "for-each";
    case 'n':
      return "next";
    case 't':
      return "type";
    case 'w':
      return "new";
    case 'k':
      return "type-of";
    case 'a':
      return "address";
    case 'i':
      return "input";
    case 'z':
      return "erase";
    case 'm':
    case 'M':
      return "redim";
    case 'g':
      return "label";
    case 'b':
      return "named";
    case 'j':
      return "raise";
    case 'y':
      return "key";
    case 'U':
      return "unload";
    default:
      return "value";
  }
}

bool IsMember(char place) { return std::string_view("rpqhyM").find(place) != std::string_view::npos; }

bool IsWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

}  // namespace

// ------------------------------------------------------------------------------------------------------------- text

void ModuleGenerator::Write(std::string_view text) {
  module_.text += text;
  for (const char c : text) column_ += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

void ModuleGenerator::Break(bool continued) {
  if (continued) lineClass_ = lineClass_ == 'b' ? 'c' : lineClass_;
  module_.truth.lineClasses += lineClass_;
  module_.text += lineEnd_;
  ++line_;
  column_ = 1;
  if (!continued || lineClass_ != 'd') lineClass_ = 'b';
}

void ModuleGenerator::EndLine() {
  if (lineClass_ == 'c' && OneIn(8)) Write("  ' note \"x");
  if (OneIn(10)) Write("  ");
  Break(false);
}

/// Between two words: a blank or more, or a continuation.
void ModuleGenerator::Blank() {
  Write(OneIn(8) ? "  " : " ");
  if (!split_ || lineClass_ != 'c' || !OneIn(25)) return;
  Write(OneIn(2) ? "_" : "_ ");
  Break(true);
  Write("    ");
  lineClass_ = 'c';
}

/// A word of the language, in any case.
void ModuleGenerator::Word(std::string_view word) {
  std::string written(word);
  if (OneIn(8)) {
    for (char& c : written) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 0x20 : c);
  }
  Write(written);
}

void ModuleGenerator::Note(std::string_view name, std::string_view kind, std::vector<std::string>& list) {
  std::string item(name);
  item += ' ' + std::to_string(line_) + ':' + std::to_string(column_) + ' ';
  list.push_back(item.append(kind));
}

std::string ModuleGenerator::FreshName() { return "Neu_ß" + std::to_string(++names_); }

void ModuleGenerator::Name(char place) {
  std::string name;
  Truth& truth = module_.truth;
  if (place == 'd' || place == 'D') {
    name = FreshName();
    Note(name, place == 'd' ? "variable" : "constant", truth.declarations);
    return Write(name);
  }
  if (place == 'g') {
    name = kLabels[Below(std::size(kLabels))];
  } else if (IsMember(place)) {
    name = kMembers[Below(std::size(kMembers))];
  } else {
    name = kNames[Below(std::size(kNames))];
  }
  // A call with "[...]" or a suffix is no label and no type; keep those plain.
  if (std::string_view("ctwkgjabSfn").find(place) != std::string_view::npos && !IsWordCharacter(name.back()))
    name = "Plain";
  Note(name, RoleOf(place), truth.uses);
  if (place == 'm') Note(name, "redim", truth.declarations);
  Write(name);
}

void ModuleGenerator::Template(std::string_view pattern) {
  lineClass_ = pattern.empty() ? 'b' : pattern.front() == '#' ? 'd' : 'c';
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (c == '"') quoted = !quoted;
    if (quoted || c == '"') {
      Write({&c, 1});
    } else if (c == '$' && i + 1 < pattern.size()) {
      Name(pattern[++i]);
    } else if (c == '%') {
      const char place = pattern[i + 1];
      const std::size_t from = i + 2;
      for (i = from; i + 1 < pattern.size() && IsWordCharacter(pattern[i + 1]);) ++i;
      const std::string_view name = pattern.substr(from, i + 1 - from);
      Note(name, RoleOf(place), module_.truth.uses);
      Write(name);
    } else if (c == ' ') {
      Blank();
    } else if (c == '~') {
      Write(" ");
    } else if (IsWordCharacter(c)) {
      std::size_t end = i;
      while (end < pattern.size() && IsWordCharacter(pattern[end])) ++end;
      Word(pattern.substr(i, end - i));
      i = end - 1;
    } else {
      Write({&c, 1});
    }
  }
}

void ModuleGenerator::Line(std::string_view pattern) {
  Write(std::string(Below(3) * 2, ' '));
  Template(pattern);
  EndLine();
}

/// Lines that hold nothing, though some look as if they did.
void ModuleGenerator::Noise() {
  if (OneIn(4)) Break(false);
  if (!OneIn(4)) return;
  Write(kComments[Below(std::size(kComments))]);
  lineClass_ = 'k';
  if (OneIn(5)) {
    Write(" _");
    Break(true);
    Write("End Sub");
    lineClass_ = 'k';
  }
  Break(false);
}

// ------------------------------------------------------------------------------------------------------- structure

void ModuleGenerator::Declarations() {
  constexpr std::string_view kDeclarations[] = {
      "Private $d As Long, $d(1 To $u) As $t",
      "Public Const $D = 1, $D As String = \"End Sub\" & $u",
      "Dim $d",
      "Private WithEvents $d As $t",
      "Public $d As New $w",
      "Option Explicit",
      "Implements Plain2",
      "DefLng Q-R",
  };
  for (std::uint32_t count = Below(6); count > 0; --count) {
    const std::string_view pattern = kDeclarations[Below(std::size(kDeclarations))];
    if (pattern.starts_with("Implements")) {
      Word("Implements");
      Write(" ");
      Note("Plain2", "implements", module_.truth.uses);
      Write("Plain2");
      lineClass_ = 'c';
      EndLine();
    } else {
      Line(pattern);
    }
    Noise();
  }
  const auto member = [&](std::string_view name, std::string_view kind, std::string_view rest) {
    Write("  ");
    Note(name, kind, module_.truth.declarations);
    Write(name);
    Template(rest);
    EndLine();
    Noise();
  };
  if (OneIn(3)) {
    Template("Private Type~");
    Note("TYP", "type", module_.truth.declarations);
    Write("TYP");
    EndLine();
    for (const std::string_view name : {"End", "Type", "Sub", "Wert"}) member(name, "type-member", " As $t");
    Line("End Type");
  }
  if (OneIn(3)) {
    Template("Public Enum~");
    Note("LongPtr", "enum", module_.truth.declarations);
    Write("LongPtr");
    EndLine();
    for (const std::string_view name : {"[_First]", "Rot", "Grün"}) member(name, "enum-member", " = $u + 1");
    Line("End Enum");
  }
  split_ = false;
  if (OneIn(3)) {
    const std::string name = FreshName();
    for (const std::string_view line :
         {"#If VBA7 Then", "Private Declare PtrSafe Sub~", "#Else", "Private Declare Sub~", "#End If"}) {
      if (line == "#If VBA7 Then") {
        Write("#If ");
        Note("VBA7", "conditional", module_.truth.uses);
        Write("VBA7 Then");
        lineClass_ = 'd';
      } else {
        Template(line);
      }
      if (line.ends_with('~')) {
        Note(name, "declare-sub", module_.truth.declarations);
        Write(name);
        Template(" Lib \"k\" (ByVal~");
        Note("p", "parameter", module_.truth.declarations);
        Write("p");
        Template(" As Any)");
      }
      Break(false);
    }
  }
  split_ = true;
}

void ModuleGenerator::Statement(std::uint32_t depth) {
  const std::uint32_t kind = depth < 4 ? Below(14) : 13;
  const auto block = [&](std::string_view open, std::string_view close) {
    Line(open);
    Body(Below(3), depth + 1);
    Line(close);
  };
  switch (kind) {
    case 0:
      Line("If $v Then");
      Body(Below(3), depth + 1);
      if (OneIn(2)) Line("ElseIf $v = $v Then");
      if (OneIn(2)) Line("Else");
      Body(Below(2), depth + 1);
      return Line(OneIn(4) ? "EndIf" : "End If");
    case 1:
      return block("For $f = $v To $v Step -1", "Next $n");
    case 2:
      return block("For Each $e In $v.$r($v)", "Next");
    case 3:
      return block("Do While $v", "Loop");
    case 4:
      return block("With $v.$r", "End With");
    case 5:
      return block("Select Case $v: Case Is > $v, $v To 9", "End Select");
    default:
      return Line(kStatements[Below(std::size(kStatements))]);
  }
}

void ModuleGenerator::Body(std::uint32_t statements, std::uint32_t depth) {
  for (; statements > 0; --statements) {
    if (OneIn(12)) {
      const std::string label = FreshName();
      Note(label, "label", module_.truth.declarations);
      Write(label + ":");
      lineClass_ = 'c';
      if (OneIn(2)) EndLine();
    }
    Statement(depth);
    Noise();
  }
}

void ModuleGenerator::Header(std::string_view kind, std::string_view name) {
  constexpr std::string_view kModifiers[] = {"", "", "Public~", "Private~", "Friend~", "Static~", "Private Static~"};
  Template(kModifiers[Below(std::size(kModifiers))]);
  lineClass_ = 'c';
  Word(kind);
  Write(" ");
  std::string_view lower = kind == "Sub"            ? "sub"
                           : kind == "Function"     ? "function"
                           : kind == "Property Get" ? "get"
                           : kind == "Property Let" ? "let"
                                                    : "set";
  Note(name, lower, module_.truth.declarations);
  Write(name);
  Write(OneIn(6) ? " (" : "(");
  for (std::uint32_t count = Below(4), i = 0; i < count; ++i) {
    if (i > 0) Write(", ");
    Template(OneIn(2) ? "ByVal~" : "Optional~");
    const std::string parameter = FreshName();
    Note(parameter, "parameter", module_.truth.declarations);
    Write(parameter);
    Template(OneIn(2) ? " As $t" : " As Long = $u");
  }
  Write(")");
  if (lower == "function" || lower == "get") Template(" As~Long");
}

void ModuleGenerator::Routine() {
  constexpr std::string_view kKinds[] = {"Sub", "Function", "Property Get", "Property Let", "Property Set"};
  constexpr std::string_view kEnds[] = {"End Sub", "End Function", "End Property"};
  constexpr std::string_view kOddNames[] = {"Step", "Error", "Access", "Prüfe&", "Sub1", "Next_", "Property"};
  const std::string_view kind = kKinds[Below(std::size(kKinds))];
  const std::string name = OneIn(8) ? std::string(kOddNames[Below(std::size(kOddNames))]) : FreshName();
  const std::uint32_t first = line_;
  std::uint32_t headers = 1;
  if (OneIn(10)) {
    // All on one line.
    split_ = false;
    Header(kind, name);
    Template(": $c $v: ");
    Template(kEnds[Below(std::size(kEnds))]);
    split_ = true;
    module_.truth.routines.push_back(name + ' ' + std::to_string(first) + '-' + std::to_string(line_) + "*1");
    return EndLine();
  }
  std::uint32_t firstLine = first;
  if (OneIn(10)) {
    headers = 2;
    firstLine = first + 1;
    for (const std::string_view directive : {"#If Win64 Then", "#Else", "#End If"}) {
      if (directive == "#If Win64 Then") {
        Write("#If ");
        Note("Win64", "conditional", module_.truth.uses);
        Write("Win64 Then");
      } else {
        Write(directive);
      }
      lineClass_ = 'd';
      Break(false);
      if (directive == "#End If") break;
      Header(kind, name);
      EndLine();
    }
  } else {
    Header(kind, name);
    EndLine();
  }
  const std::uint32_t body = line_;
  Body(Below(8), 0);
  if (line_ > body) module_.bodies.emplace_back(body, line_ - 1);
  if (OneIn(10)) {
    Note("99", "label", module_.truth.declarations);
    Write("99 ");
  }
  Template(kEnds[Below(std::size(kEnds))]);
  module_.truth.routines.push_back(name + ' ' + std::to_string(firstLine) + '-' + std::to_string(line_) + '*' +
                                   std::to_string(headers));
  EndLine();
  Noise();
}

GeneratedModule ModuleGenerator::Next() {
  constexpr std::string_view kLineEnds[] = {"\r\n", "\n", "\r"};
  module_ = {};
  lineEnd_ = kLineEnds[Below(3)];
  line_ = column_ = 1;
  names_ = 0;
  lineClass_ = 'b';
  split_ = true;
  Noise();
  Declarations();
  for (std::uint32_t count = Below(6); count > 0; --count) Routine();
  return module_;
}

}  // namespace quillmate::language
