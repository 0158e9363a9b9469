#include <algorithm>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "dump.h"
#include "module_generator.h"

namespace quillmate::language {
namespace {

template <class Record>
std::string Place(const Module& module, const Record& record, std::string_view kind) {
  std::string text(module.Spelling(record));
  text += ' ' + std::to_string(record.line) + ':' + std::to_string(record.column) + ' ';
  return text.append(kind);
}

Truth Read(const Module& module) {
  constexpr char kClasses[] = "bkcdah";
  Truth truth;
  for (const Routine& routine : module.routines) {
    truth.routines.push_back(std::string(module.Spelling(module.declarations[routine.declaration])) + ' ' +
                             std::to_string(routine.firstLine) + '-' + std::to_string(routine.lastLine) + '*' +
                             std::to_string(routine.variantCount));
  }
  for (const NameUse& use : module.uses) truth.uses.push_back(Place(module, use, RoleName(use.role)));
  for (const Declaration& declaration : module.declarations) {
    truth.declarations.push_back(Place(module, declaration, KindName(declaration.kind)));
  }
  for (const PhysicalLine& line : module.lines) truth.lineClasses += kClasses[static_cast<int>(line.lineClass)];
  return truth;
}

/// The first pair that differs, with the code around it.
std::string Difference(const std::vector<std::string>& expected, const std::vector<std::string>& found) {
  const std::size_t count = std::min(expected.size(), found.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (expected[i] != found[i]) return "expected " + expected[i] + ", found " + found[i];
  }
  if (expected.size() > count) return "missing " + expected[count];
  return found.size() > count ? "invented " + found[count] : "";
}

TEST(Generated, EveryNameOfThousandsOfModules) {
  ModuleGenerator generator(1);
  Workspace workspace;
  Module module;
  for (int i = 0; i < 3000 && !HasFailure(); ++i) {
    const GeneratedModule written = generator.Next();
    ParseModule(written.text, {}, workspace, module);
    const Truth found = Read(module);
    EXPECT_EQ(Difference(written.truth.routines, found.routines), "") << written.text;
    EXPECT_EQ(Difference(written.truth.uses, found.uses), "") << written.text;
    EXPECT_EQ(Difference(written.truth.declarations, found.declarations), "") << written.text;
    EXPECT_EQ(found.lineClasses, written.truth.lineClasses) << written.text;
    EXPECT_TRUE(module.problems.empty()) << written.text;
  }
}

/// Damage of one routine's body: lines or characters taken out, put in or doubled.
class Damage {
 public:
  explicit Damage(std::uint32_t seed) : random_(seed) {}

  std::string Apply(std::string body, std::string_view lineEnd) {
    for (std::uint32_t count = 1 + Below(3); count > 0; --count) Change(body, lineEnd);
    return body;
  }

 private:
  std::uint32_t Below(std::size_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

  void Change(std::string& body, std::string_view lineEnd) {
    constexpr std::string_view kLines[] = {
        "End Sub", "Sub Eingefügt(", "If x Then",      "Next", "\"",  "(((",   "End Type",    "With", "Type T",
        "Enum E",  "#If VBA7 Then",  "#If False Then", "[",    "' _", "x = _", "Select Case", ")",    "Dim"};
    constexpr std::string_view kCharacters[] = {"\"", "'", "(", ")", ":",    "_", " _", "#",
                                                "[",  "]", "!", ".", "\xC3", "&", "0",  "E"};
    const std::size_t at = Below(body.size() + 1);
    switch (Below(4)) {
      case 0:
        body.insert(at, kCharacters[Below(std::size(kCharacters))]);
        break;
      case 1:
        if (at < body.size()) body.erase(at, 1 + Below(5));
        break;
      case 2: {
        const std::size_t line = body.find(lineEnd, at);
        if (line == std::string::npos) break;
        body.insert(line + lineEnd.size(), std::string(kLines[Below(std::size(kLines))]) + std::string(lineEnd));
        break;
      }
      default: {
        const std::size_t from = body.find(lineEnd, at);
        if (from == std::string::npos) break;
        const std::size_t to = std::min(body.find(lineEnd, from + 1), body.size());
        body.erase(from, to - from);
        break;
      }
    }
  }

  std::mt19937 random_;
};

std::uint32_t LinesIn(std::string_view text) { return static_cast<std::uint32_t>(ParseModule(text).lines.size()); }

/// The lines of a text from `first` to `last`, breaks included.
std::pair<std::size_t, std::size_t> Stretch(const Module& module, std::uint32_t first, std::uint32_t last) {
  const std::size_t to = last < module.lines.size() ? module.lines[last].offset : module.text.size();
  return {module.lines[first - 1].offset, to};
}

TEST(Generated, DamageStaysInItsRoutine) {
  ModuleGenerator generator(2);
  Damage damage(3);
  int damaged = 0;
  while (damaged < 3000 && !HasFailure()) {
    const GeneratedModule written = generator.Next();
    const bool conditional =
        written.text.find("\n#") != std::string::npos || written.text.find("\r#") != std::string::npos;
    if (written.bodies.size() < 2 || conditional) continue;
    const Module whole = ParseModule(written.text);
    const auto [first, last] = written.bodies[static_cast<std::size_t>(damaged) % written.bodies.size()];
    const auto [from, to] = Stretch(whole, first, last);
    const std::string_view lineEnd = written.text.find("\r\n") != std::string::npos ? "\r\n"
                                     : written.text.find('\n') != std::string::npos ? "\n"
                                                                                    : "\r";
    const std::string before = written.text.substr(0, from);
    const std::string after = written.text.substr(to);
    const std::string text = before + damage.Apply(written.text.substr(from, to - from), lineEnd) + after;
    const Module module = ParseModule(text);
    ++damaged;
    const std::int64_t shift = static_cast<std::int64_t>(LinesIn(text)) - static_cast<std::int64_t>(whole.lines.size());
    std::map<std::string, int> found;
    for (const std::string& routine : Read(module).routines) ++found[routine];
    for (const Routine& routine : whole.routines) {
      const bool hit = routine.firstLine <= last && first <= routine.lastLine;
      if (hit) continue;
      const std::int64_t moved = routine.firstLine > last ? shift : 0;
      const std::string expected = std::string(whole.Spelling(whole.declarations[routine.declaration])) + ' ' +
                                   std::to_string(routine.firstLine + moved) + '-' +
                                   std::to_string(routine.lastLine + moved) + '*' +
                                   std::to_string(routine.variantCount);
      EXPECT_EQ(found.count(expected), 1U) << expected << '\n' << text;
    }
  }
}

}  // namespace
}  // namespace quillmate::language
