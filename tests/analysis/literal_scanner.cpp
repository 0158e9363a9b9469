#include "literal_scanner.h"

#include <algorithm>

#include <quillmate/text/operations.h>

namespace quillmate::literal {
namespace {

using analysis::ScanOptions;
using text::Join;
using text::ReplaceAll;
using text::TextAfterLast;
using text::TextBefore;
using text::Trim;
using text::TrimLeft;
using Lines = std::vector<std::string>;

const std::string Y = "\237";
const std::string CRLF = "\r\n";
const std::string TAB = "\t";
const std::string KeywordOpen = "|" + Y + "f|";
const std::string SpanClose = "|n" + Y + "|";
const std::string CommentOpen = "|" + Y + "k|";
const std::string StringOpen = "|" + Y + "s|";
const std::string HeaderLineOpen = "|" + Y + "x|";
const std::string HeaderLineClose = "|y" + Y + "|";
const std::string SpaceGuard = "|" + Y + "b|";
const std::string ContinuationGuard = "|" + Y + "u| ";
const std::string QuoteGuard = "|" + Y + "d|";
const std::string Char159Guard = Y + "|?";

const std::string kKeywords =
    " Option Base 1 , Option Private Module , Option Explicit , Option Compare Text , Option Compare Database , Access "
    ", And , As , Binary , Boolean , ByRef , Byte , ByVal , Call , Case , Cbool , Cbyte , Cint , Clng , Close , Const "
    ", Debug , Declare , DefBool , DefByte , DefCur , DefDate , DefDbl , DefDec , DefInt , DefLng , DefObj , DefSng , "
    "DefStr , DefVar , Dim , Do , Double , Else , ElseIf , Empty , End , Enum , Erase , Error , Event , Exit , "
    "Explicit , False , For , Friend , Function , Get , Global , GoSub , GoTo , If , Input , Integer , Is , LBound , "
    "Let , Lib , Lock , Long , Loop , Mid , New , Next , Not , Nothing , Null , Object , On , Open , Preserve , "
    "Optional , Or , ParamArray , Print , Private , Property , Public , Put , RaiseEvent , Random , Redim , Resume , "
    "Seek , Select , Set , Shared , Single , Static , Step , Stop , String , Sub , Then , To , True , Type , UBound , "
    "Unlock , Until , Variant , Wend , While , With , WithEvents , Write ";

Lines Split(const std::string& text, const std::string& separator) {
  const auto parts = text::Split(text, separator);
  return {parts.begin(), parts.end()};
}

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
std::string Left(const std::string& text, std::size_t n) { return text.substr(0, n); }
std::string Right(const std::string& text, std::size_t n) {
  return text.size() <= n ? text : text.substr(text.size() - n);
}
std::string Word(const std::string& word) { return KeywordOpen + word + SpanClose; }
std::string GuardBlanks(const std::string& text) { return ReplaceAll(text, " ", SpaceGuard); }

std::string StringCommentSplitter(const std::string& line) {
  std::string out;
  bool inString = false;
  std::size_t opening = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\'' && !inString) return out + CommentOpen + GuardBlanks(line.substr(i)) + SpanClose;
    if (line[i] == '"' && !inString) {
      inString = true;
      opening = i;
    } else if (line[i] == '"') {
      inString = false;
      out += StringOpen + GuardBlanks(line.substr(opening, i - opening + 1)) + SpanClose;
    } else if (!inString) {
      out += line[i];
    }
  }
  return out;
}

std::string MarkQuotes(const std::string& line) {
  Lines parts = Split(line, "\"");
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const bool last = i + 1 == parts.size();
    if (i % 2 == 1) {
      parts[i] = GuardBlanks(parts[i]);
    } else if (i == 0) {
      parts[i] += StringOpen;
    } else {
      parts[i] = SpanClose + parts[i] + (last ? "" : StringOpen);
    }
  }
  return Join(parts, "\"");
}

std::string StringsAndComments(const std::string& line) {
  const std::size_t q = line.find('"') + 1;   // 0 when absent
  const std::size_t a = line.find('\'') + 1;  // 0 when absent
  if (q == 0 && a == 0) return line;
  if (a >= 1 && (q == 0 || a < q)) {
    return line.substr(0, a - 1) + CommentOpen + GuardBlanks(line.substr(a - 1)) + SpanClose;
  }
  return a == 0 ? MarkQuotes(line) : StringCommentSplitter(line);
}

std::string MarkKeywords(std::string text) {
  for (const std::string& padded : Split(kKeywords, ",")) {
    const std::string entry = padded.substr(1, padded.size() - 2);
    const std::string marked = ReplaceAll(Word(entry), " ", SpanClose + " " + KeywordOpen);
    text = ReplaceAll(text, padded, " " + marked + " ");
  }
  return text;
}

/// Steps 1 to 8: the marked text in front of the passes over the routines.
std::string MarkText(const std::string& code, const ScanOptions& options) {
  std::string text = CRLF + code + CRLF;
  if (options.indent) text = Reflow(text);
  if (options.removeEmptyLines) {
    while (Contains(text, CRLF + CRLF)) text = ReplaceAll(text, CRLF + CRLF, CRLF);
  }
  text = ReplaceAll(text, Y, Char159Guard);
  text = ReplaceAll(text, "\"\"", QuoteGuard);
  text = ReplaceAll(text, "_" + CRLF, ContinuationGuard);
  text = ReplaceAll(text, "(", " ( ");
  text = ReplaceAll(text, ")", " ) ");
  text = ReplaceAll(text, ",", " , ");
  text = ReplaceAll(text, TAB, " " + TAB + " ");
  Lines lines = Split(text, CRLF);
  for (std::string& line : lines) line = StringsAndComments(line);
  text = ReplaceAll(Join(lines, CRLF), CRLF, " " + CRLF + " ");
  text = MarkKeywords(text);
  text = ReplaceAll(text, SpaceGuard, " ");
  text = ReplaceAll(text, " " + TAB + " ", TAB);
  text = ReplaceAll(text, " " + CRLF + " ", CRLF);
  text = ReplaceAll(text, " ) ", ")");
  text = ReplaceAll(text, " ( ", "(");
  return ReplaceAll(text, " , ", ",");
}

std::string Prefix(const std::string& kind, std::int64_t number) {
  const std::string digits = "00000000" + std::to_string(number);
  return Y + kind + Right(digits, std::max<std::size_t>(8, digits.size() - 8)) + "|";
}

std::string BareLine(const std::string& line) {
  return ReplaceAll(ReplaceAll(ReplaceAll(line, ContinuationGuard, ""), TAB, ""), " ", "");
}

/// One pass over all lines for one kind of routine; `scan` is null in display mode.
std::string HeaderPass(const std::string& text, const std::string& kind, int base, const ScanOptions& options,
                       Scan* scan) {
  const std::string mark = Word(kind);
  if (!Contains(text, mark)) return text;
  Lines lines = Split(text, CRLF);
  bool inRoutine = false;
  for (std::string& line : lines) {
    const bool routineLine = Contains(line, mark) && !Contains(line, Word("Exit"));
    if (routineLine && inRoutine) {
      line = (scan ? Prefix("*E", scan->counter) : "") + HeaderLineOpen + line + HeaderLineClose;
      inRoutine = false;
    } else if (routineLine) {
      if (scan) ++scan->counter;
      Routine routine;
      routine.visibility = Contains(line, Word("Friend")) ? 3 : Contains(line, Word("Private")) ? 2 : 1;
      const bool declare = Contains(line, Word("Declare"));
      bool skipped = false;
      if (declare) {
        routine.kind = base + 10;
        routine.name = TextAfterLast(TextBefore(BareLine(line), KeywordOpen + "Lib"), "|");
      } else {
        routine.kind = base;
        if (kind == "Property") {
          if (Contains(line, Word("Get"))) routine.kind = 4;
          if (Contains(line, Word("Set"))) routine.kind = 5;
          if (Contains(line, Word("Let"))) routine.kind = 3;
          skipped = routine.kind == base;
        }
        routine.name = TextAfterLast(TextBefore(BareLine(line), "("), "|");
      }
      if (!skipped) {
        inRoutine = !declare;
        routine.headerLines = static_cast<int>((line.size() - ReplaceAll(line, ContinuationGuard, "").size()) / 5 + 1);
        if (scan) {
          routine.number = scan->counter;
          scan->routines.push_back(routine);
        }
        line = (scan ? Prefix("*A", scan->counter) : "") + HeaderLineOpen + line + HeaderLineClose;
        if (options.emptyLineBeforeRoutines) line = CRLF + line;
      }
    }
    const std::string exempt = scan ? Y + "*" : HeaderLineOpen;
    if (options.indent && options.indentBodies && inRoutine && !line.starts_with(exempt)) line = TAB + line;
  }
  return Join(lines, CRLF);
}

std::string HeaderPasses(std::string text, const ScanOptions& options, Scan* scan) {
  text = HeaderPass(text, "Sub", 1, options, scan);
  text = HeaderPass(text, "Function", 2, options, scan);
  return HeaderPass(text, "Property", 99, options, scan);
}

Routine& Find(Scan& scan, std::int64_t number) {
  return *std::find_if(scan.routines.begin(), scan.routines.end(),
                       [&](const Routine& r) { return r.number == number; });
}

}  // namespace

Scan ScanForIndex(const std::string& code, const ScanOptions& options, std::int64_t counter) {
  Scan scan;
  scan.counter = counter;
  std::string text = HeaderPasses(MarkText(code, options), options, &scan);
  // Up to here byte 159 of the code is guarded, so a line that begins like a prefix has one. None of the
  // replacements that follow reaches over a line break, so they are made line by line.
  Lines stored;
  for (std::string line : Split(text, CRLF)) {
    const bool prefixed = line.starts_with(Y + "*");
    line = ReplaceAll(ReplaceAll(ReplaceAll(line, Char159Guard, Y), ContinuationGuard, "_" + CRLF), QuoteGuard, "\"\"");
    if (prefixed) {
      Routine& routine = Find(scan, std::stoll(line.substr(3, 8)));
      const auto number = static_cast<std::int64_t>(stored.size());  // the empty first line goes
      (line[2] == 'A' ? routine.start : routine.end) = number;
      line = line.substr(12);
    }
    for (const std::string& physical : Split(line, CRLF)) stored.push_back(physical);
  }
  for (Routine& routine : scan.routines) {
    if (routine.kind > 10 && routine.start > 0) routine.end = routine.start + routine.headerLines - 1;
  }
  scan.text = Join(stored, CRLF).substr(2);
  scan.size = static_cast<std::int64_t>(Split(scan.text, CRLF).size()) - 1;
  return scan;
}

std::string ScanForDisplay(const std::string& code, const ScanOptions& options) {
  std::string text = HeaderPasses(MarkText(code, options), options, nullptr);
  text = ReplaceAll(ReplaceAll(text, ContinuationGuard, "_" + CRLF), QuoteGuard, "\"\"");
  text = text.size() < 4 ? "" : text.substr(2, text.size() - 4);
  return ReplaceAll(text, Char159Guard, Y);
}

namespace {

struct Level {
  int level = 0;
  int offset = 0;
};

void ClassifyLine(const std::string& line, Level& s) {
  const auto is = [&](const std::string& word) { return Left(line, word.size()) == word; };
  const auto endsOrBlank = [&](std::size_t n) { return line.size() == n || line[n] == ' '; };
  const auto act = [&](int offset, int step) {
    s.offset = offset;
    s.level += step;
  };
  s.offset = 0;
  const bool opens = is("For ") || is("If ") || is("Public Type") || is("Private Type") || is("Type") || is("While ") ||
                     is("With ") || (is("Do") && endsOrBlank(2));
  const bool closes = Left(line, 9) == "End With" || is("End If") || is("End Type") ||
                      ((is("Loop") || is("Next") || is("Wend")) && endsOrBlank(4));
  if (is("Case ") || line == "Else") {
    act(1, 0);
  } else if (opens) {
    act(1, 1);
  } else if (is("Select Case ")) {
    act(2, 2);
  } else if (closes) {
    act(0, -1);
  } else if (is("End Select")) {
    act(0, -2);
  } else if (is("End Sub") || is("End Function") || is("End Property")) {
    s.level = 0;
  }
}

bool SingleLineIf(const Lines& lines, std::size_t i, const std::string& l) {
  std::string logical = l;
  std::string taken = l;
  for (std::size_t k = i + 1; Right(taken, 2) == " _" && k < lines.size(); ++k) {
    taken = lines[k];
    logical += taken;
  }
  logical = ReplaceAll(logical, " _", "");
  if (logical.find('\'', 2) != std::string::npos) {
    bool inQuotes = false;
    for (std::size_t p = logical.size(); p >= 3; --p) {
      if (logical[p - 1] == '"') inQuotes = !inQuotes;
      if (logical[p - 1] == '\'' && !inQuotes) {
        logical = Trim(logical.substr(0, p - 1));
        break;
      }
    }
  }
  return Right(logical, 4) != "Then";
}

}  // namespace

std::string Reflow(const std::string& text) {
  Lines lines = Split(ReplaceAll(text, TAB, ""), CRLF);
  Level s;
  std::string previous;
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    const std::string l(TrimLeft(lines[i]));
    if (l.empty()) {
      lines[i] = "";
      continue;
    }
    if (Right(previous, 2) == " _") {
      s.offset = -1;
    } else if (Left(l, 3) != "If " || Right(l, 4) == "Then" || !SingleLineIf(lines, i, l)) {
      ClassifyLine(l, s);
    }
    previous = l;
    const int tabs = s.level - s.offset;
    lines[i] = std::string(static_cast<std::size_t>(std::max(tabs, 0)), '\t') + l;
  }
  return Join(lines, CRLF);
}

}  // namespace quillmate::literal
