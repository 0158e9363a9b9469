#include <string>

#include <quillmate/export/compare_html.h>
#include <quillmate/symbols/compare_words.h>

#include "commands.h"
#include "compare_forms.h"
#include "compare_state.h"
#include "messages.h"
#include "output.h"
#include "project_input.h"

namespace quillmate::cli {
namespace {

void CheckUsage(const Invocation& invocation) {
  if (invocation.inputs.size() != 2) throw UsageError("compare vergleicht zwei Stände: ALT und NEU");
  if (int{invocation.json} + int{invocation.markdown} + int{invocation.stat} > 1) {
    throw UsageError("--json, --md und --stat schließen sich aus");
  }
  if (invocation.htmlFile && (invocation.htmlFile->empty() || *invocation.htmlFile == "-")) {
    throw UsageError("Hinter --html fehlt die Datei");
  }
}

void Write(const Invocation& invocation, const ComparedStates& states) {
  const bool form = invocation.json || invocation.markdown || invocation.stat;
  // A report in a file needs nothing beside it.
  if (invocation.htmlFile && !form && !invocation.output) return;
  Output output(invocation.output);
  if (invocation.json) {
    WriteComparisonJson(states, output);
  } else if (invocation.markdown) {
    WriteComparisonMarkdown(states, output);
  } else if (invocation.stat) {
    WriteComparisonStat(states, output);
  } else {
    WriteComparisonText(states, output);
  }
  output.Finish();
}

void WriteReport(const Invocation& invocation, const ComparedStates& states) {
  if (!invocation.htmlFile) return;
  Output report(invocation.htmlFile);
  output::WriteCompareHtml(states, {invocation.inputs[0], invocation.inputs[1]},
                           [&](std::string_view bytes) { report.Write(bytes); });
  report.Finish();
}

void NameNotCompared(const ComparedStates& states) {
  const auto name = [](const symbols::ReferenceIndex& index, symbols::Index module, std::string_view side) {
    Complain("Nicht verglichen: Modul " + index.Modules()[module].name + "; der " + std::string(side) +
             " Stand ist nicht ganz lesbar");
  };
  for (const symbols::Index module : states.comparison.notCompared.oldModules) name(states.oldIndex, module, "neue");
  for (const symbols::Index module : states.comparison.notCompared.newModules) name(states.newIndex, module, "alte");
}

}  // namespace

void RunCompare(const Invocation& invocation) {
  CheckUsage(invocation);
  CheckOutput(invocation);
  const project::ReadState oldSide = ReadComparedState(invocation, invocation.inputs[0]);
  const project::ReadState newSide = ReadComparedState(invocation, invocation.inputs[1]);
  const symbols::Comparison comparison = symbols::Compare(oldSide.state, newSide.state, {.ignore = invocation.ignore});
  const ComparedStates states{comparison, oldSide.state.index, newSide.state.index};
  const bool whole = oldSide.isWhole && newSide.isWhole;
  WriteReport(invocation, states);
  const int status = !whole ? kExitNotCompared : comparison.equal ? int{kExitDone} : int{kExitDifferent};
  try {
    Write(invocation, states);
  } catch (const ReaderGone&) {
    throw CommandEnd{status};
  }
  if (!whole) NameNotCompared(states);
  throw CommandEnd{status};
}

}  // namespace quillmate::cli
