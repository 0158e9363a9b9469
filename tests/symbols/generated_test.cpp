#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/language/parse.h>
#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/unused.h>

#include "symbols/generated_project.h"

namespace quillmate::symbols {
namespace {

using testing::EntityKind;
using testing::GeneratedProject;
using testing::GenerateProject;

std::string PlaceText(const ReferenceIndex& index, const Reference& reference) {
  std::string text = index.Modules()[reference.module].name + ":" + std::to_string(reference.line) + ":" +
                     std::to_string(reference.column) + " " + std::string(Word(reference.use)) + " " +
                     std::string(Word(reference.certainty));
  return reference.implicit ? text + " implicit" : text;
}

SymbolId SymbolOf(const ReferenceIndex& index, const testing::Entity& entity) {
  const ModuleInfo& module = index.Modules()[static_cast<Index>(entity.module)];
  if (entity.kind == EntityKind::kModule) return module.symbol;
  for (SymbolId symbol = module.symbol; symbol < module.endSymbol; ++symbol) {
    const Symbol& found = index.SymbolAt(symbol);
    if (entity.kind == EntityKind::kControl ? found.kind == SymbolKind::kControl && index.Name(symbol) == entity.name
                                            : found.line == entity.line && found.column == entity.column) {
      return symbol;
    }
  }
  return kNone;
}

std::string AllTexts(const Sources& sources) {
  std::string all;
  for (const ModuleSource& module : sources.modules)
    all.append("== ").append(module.name).append("\n").append(module.text);
  return all;
}

TEST(Generated, EveryUseIsFoundAndNoOther) {
  std::size_t uses = 0;
  for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
    const GeneratedProject project = GenerateProject(seed);
    const ReferenceIndex index = ReferenceIndex::Build(project.sources, {.threads = 1});
    std::vector<std::multiset<std::string>> expected(project.entities.size());
    for (const testing::WrittenUse& use : project.uses) {
      const Reference reference{
          static_cast<Index>(use.module), 0, 0, 0, use.line, use.column, 0, use.use, use.certainty, false, false};
      expected[static_cast<std::size_t>(use.entity)].insert(PlaceText(index, reference));
    }
    uses += project.uses.size();
    for (std::size_t entity = 0; entity < project.entities.size(); ++entity) {
      const SymbolId symbol = SymbolOf(index, project.entities[entity]);
      ASSERT_NE(symbol, kNone) << "seed " << seed << " " << project.entities[entity].name << "\n"
                               << AllTexts(project.sources);
      std::multiset<std::string> found;
      for (const Reference& reference : index.ReferencesTo(symbol)) found.insert(PlaceText(index, reference));
      ASSERT_EQ(found, expected[entity]) << "seed " << seed << " " << project.entities[entity].name << " at "
                                         << project.entities[entity].module << ":" << project.entities[entity].line
                                         << "\n"
                                         << AllTexts(project.sources);
    }
  }
  EXPECT_GT(uses, 20000U);
}

/// Everything that an index answers, as text.
std::string Answers(const ReferenceIndex& index) {
  std::string text;
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
    text.append(index.Name(symbol)).append(" ").append(Word(index.SymbolAt(symbol).kind)).append("\n");
    for (const Reference& reference : index.ReferencesTo(symbol)) text += "  " + PlaceText(index, reference) + "\n";
    for (const CallEdge& edge : CalleesOf(index, symbol)) text += "  ruft " + std::to_string(edge.routine) + "\n";
    for (const CallEdge& edge : CallersOf(index, symbol)) text += "  von " + std::to_string(edge.routine) + "\n";
  }
  for (const UnusedSymbol& unused : FindUnused(index)) {
    text += std::to_string(unused.symbol) + " " + std::string(Word(unused.grade)) + unused.reason + unused.place + "\n";
  }
  return text;
}

/// A line, a word or a byte that is moved, doubled, lost or replaced.
void Mutate(std::string& text, std::mt19937& random) {
  static constexpr std::string_view kPieces[] = {"#If False Then\r\n",
                                                 "#If Mac Then\r\n",
                                                 "#Else\r\n",
                                                 "#End If\r\n",
                                                 "End Sub\r\n",
                                                 "Sub Los()\r\n",
                                                 "With Me\r\n",
                                                 "End With\r\n",
                                                 "\"",
                                                 "(",
                                                 ")",
                                                 ".",
                                                 "!",
                                                 ":",
                                                 " _\r\n",
                                                 "\r\n",
                                                 "[",
                                                 "&",
                                                 "'",
                                                 "Implements ModB\r\n",
                                                 "Private WithEvents Wert As ModC\r\n",
                                                 "ReDim Menge(3)\r\n",
                                                 "Attribute Los.VB_UserMemId = 0\r\n",
                                                 "\xFF",
                                                 "Public Type Wert\r\n  Kunde As Wert\r\nEnd Type\r\n",
                                                 "Dim Satz As New Wert\r\n"};
  if (text.empty()) return;
  const std::size_t at = random() % text.size();
  switch (random() % 3) {
    case 0:
      text.erase(at, 1 + random() % 12);
      break;
    case 1: {
      const std::size_t from = random() % text.size();
      text.insert(at, text.substr(from, random() % 40));
      break;
    }
    default:
      text.insert(at, kPieces[random() % std::size(kPieces)]);
  }
}

TEST(Generated, ChangedProjectsGiveSoundAnswersOnAnyNumberOfThreads) {
  std::mt19937 random(7);
  for (std::uint32_t seed = 1; seed <= 500; ++seed) {
    GeneratedProject project = GenerateProject(seed);
    for (ModuleSource& module : project.sources.modules) {
      for (std::uint32_t count = random() % 8; count > 0; --count) Mutate(module.text, random);
    }
    const ReferenceIndex index = ReferenceIndex::Build(project.sources, {.threads = 1});
    if (seed % 10 == 0) {
      const ReferenceIndex other = ReferenceIndex::Build(project.sources, {.threads = 3});
      ASSERT_EQ(Answers(index), Answers(other)) << "seed " << seed;
    }
    for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
      for (const Reference& reference : index.ReferencesTo(symbol)) {
        // What is there is the name, but for handlers, default members and names in strings.
        if (reference.implicit || reference.use == Use::kImplements || reference.use == Use::kWithEvents) continue;
        const std::string_view spelled = index.Code(reference.module).text.substr(reference.offset, reference.length);
        const std::string name = language::FoldName(index.Name(symbol));
        if (index.SymbolAt(symbol).kind != SymbolKind::kLabel) {
          ASSERT_EQ(language::FoldName(spelled), name) << "seed " << seed << "\n" << AllTexts(project.sources);
        }
        const auto there = index.NameAt(reference.module, reference.line, reference.column);
        ASSERT_TRUE(there.has_value()) << "seed " << seed << " " << PlaceText(index, reference) << "\n"
                                       << AllTexts(project.sources);
        ASSERT_TRUE(std::ranges::find(there->targets, symbol) != there->targets.end() || there->declares)
            << "seed " << seed << " " << PlaceText(index, reference) << "\n"
            << AllTexts(project.sources);
      }
    }
  }
}

}  // namespace
}  // namespace quillmate::symbols
