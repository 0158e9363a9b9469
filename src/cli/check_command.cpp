#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/checks/checks.h>
#include <quillmate/files/paths.h>

#include "baseline.h"
#include "commands.h"
#include "findings_output.h"
#include "messages.h"
#include "output.h"
#include "read_files.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

using checks::Finding;
using symbols::ReferenceIndex;

constexpr std::string_view kBaselineHead = "quillmate-befunde 1";

checks::Selection SelectionOf(const Invocation& invocation) {
  checks::Selection selection;
  if (invocation.all) {
    for (const checks::Check& check : checks::AllChecks()) selection.Add(check.number);
  }
  if (!invocation.only.empty()) selection.Clear();
  for (const std::string& id : invocation.only) selection.Add(*checks::FindCheck(id));
  for (const std::string& id : invocation.except) selection.Remove(*checks::FindCheck(id));
  return selection;
}

std::string Listed(const Invocation& invocation, const ReferenceIndex& index, const std::vector<Finding>& findings) {
  if (invocation.json) return FindingsJson(index, findings);
  if (invocation.csv) return FindingsCsv(index, findings);
  return invocation.sarif ? FindingsSarif(index, findings) : FindingsText(index, findings);
}

/// Findings that are at least as bad as `--fail-on` says; with a list of known ones any new one counts.
std::size_t Failures(const Invocation& invocation, const std::vector<Finding>& findings) {
  if (invocation.failOn.empty()) return invocation.baseline ? findings.size() : 0;
  return static_cast<std::size_t>(std::ranges::count_if(findings, [&](const Finding& finding) {
    const checks::Severity severity = checks::InfoOf(finding.check).severity;
    for (const auto worst : {checks::Severity::kError, checks::Severity::kWarning, checks::Severity::kNote}) {
      if (severity == worst) return true;
      if (checks::Word(worst) == invocation.failOn.front()) break;
    }
    return false;
  }));
}

}  // namespace

void RunCheck(const Invocation& invocation) {
  if (int{invocation.json} + int{invocation.csv} + int{invocation.sarif} > 1) {
    throw UsageError("--json, --csv und --sarif schließen sich aus");
  }
  if (invocation.list) return WriteWhole(invocation.output, invocation.json ? ChecksJson() : ChecksText());
  std::multiset<std::string> known;
  if (invocation.baseline) known = ReadBaseline(*invocation.baseline, kBaselineHead);
  const ReferenceIndex index = ReadUnderstanding(invocation);
  std::vector<Finding> findings = checks::RunChecks(index, SelectionOf(invocation));
  if (invocation.writeBaseline) {
    std::vector<std::string> keys;
    keys.reserve(findings.size());
    for (const Finding& finding : findings) keys.push_back(FindingKey(index, finding));
    WriteBaseline(*invocation.writeBaseline, kBaselineHead, std::move(keys));
  }
  if (invocation.baseline) {
    std::erase_if(findings, [&](const Finding& finding) { return TakeKnown(known, FindingKey(index, finding)); });
    NoteRead(files::PathFromText(*invocation.baseline));
  }
  WriteWhole(invocation.output, Listed(invocation, index, findings));
  if (const std::size_t failures = Failures(invocation, findings); failures > 0) {
    const std::string what =
        invocation.baseline ? "Befunde, die nicht in der Liste stehen: " : "Befunde, die es nicht geben soll: ";
    throw CommandFailure(what + std::to_string(failures));
  }
}

}  // namespace quillmate::cli
