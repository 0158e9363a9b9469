#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <quillmate/navigation/code_views.h>
#include <quillmate/navigation/search.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "editor_place.h"
#include "json.h"
#include "messages.h"
#include "names.h"
#include "output.h"
#include "pattern.h"
#include "project_input.h"
#include "provenance.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

using navigation::TextMatch;
using MatchVisitor = std::function<void(const TextMatch& match)>;
/// Hands out the matches in a view's text.
using Matcher = std::function<void(std::string_view text, const MatchVisitor& visit)>;

/// Blanks around a text don't count, as in the window; those around an expression do.
Matcher MatcherOf(const Invocation& invocation, const std::string& searched) {
  if (invocation.regex) {
    const auto pattern = std::make_shared<Pattern>(searched, invocation.wholeWord);
    return [pattern](std::string_view text, const MatchVisitor& visit) { pattern->ForEachMatch(text, visit); };
  }
  const std::string code = CodeName(std::string(text::Trim(searched))).value_or(std::string());
  return [code, wholeWord = invocation.wholeWord](std::string_view text, const MatchVisitor& visit) {
    navigation::ForEachMatch(text, code, wholeWord, visit);
  };
}

struct Hit {
  codedb::ModuleNumber moduleNumber;
  const std::string& moduleName;
  codedb::Line line;
  const navigation::CodeView& view;
  const TextMatch& match;
};

/// Gives each hit as soon as it is found, since a text that is found everywhere makes a long list.
void ForEachHit(ProjectInput& input, const Matcher& matcher, const std::function<void(const Hit& hit)>& visit) {
  codedb::CodeDatabase& database = input.Database();
  navigation::CodeViews views;
  views.Load(input.Folder(), database.ModuleCount());
  for (codedb::ViewIndex i; i.value < views.Count(); ++i.value) {
    const navigation::CodeView& view = views.View(i);
    const codedb::ModuleNumber number = codedb::ModuleOf(i);
    std::optional<std::string> name;
    matcher(view.Text(), [&](const TextMatch& match) {
      if (!name) name = ModuleName(database, number);
      visit({number, *name, view.LineAt(match.position), view, match});
    });
    views.Forget(i);
  }
}

void ListAsJson(ProjectInput& input, const Matcher& matcher, Output& output) {
  const Provenance provenance(input.Folder());
  std::string json;
  JsonLines lines(json);
  ForEachHit(input, matcher, [&](const Hit& hit) {
    const navigation::LinePiece piece = LineAround(hit.view, hit.match);
    lines.Next();
    JsonObject object(json);
    object.Number("mod_num", hit.moduleNumber.value).Text("mod_name", hit.moduleName);
    object.Number("line", hit.line.value).Text("text", piece.text);
    provenance.Append(object, json, hit.moduleNumber);
    object.Number("source_line", provenance.SourceLine(hit.moduleNumber, hit.line));
    if (piece.cutBefore || piece.cutBehind) object.True("cut");
    object.End();
    output.Write(std::exchange(json, {}));
  });
  lines.End();
  output.Write(json + "\n");
}

void ListAsText(ProjectInput& input, const Matcher& matcher, Output& output) {
  constexpr std::string_view kCut = "…";
  ForEachHit(input, matcher, [&](const Hit& hit) {
    const navigation::LinePiece piece = LineAround(hit.view, hit.match);
    std::string line = text::Utf8FromCode(hit.moduleName) + ":" + std::to_string(hit.line.value) + ": ";
    if (piece.cutBefore) line += kCut;
    line += text::Utf8FromCode(piece.text);
    if (piece.cutBehind) line += kCut;
    output.Write(line += '\n');
  });
}

/// A line of megabytes is named once: it would be looked through for each hit.
void ListForEditors(ProjectInput& input, const Matcher& matcher, Output& output) {
  const EditorPlaces places(input.Database(), input.Folder());
  std::pair<codedb::ModuleNumber, codedb::Line> before;
  ForEachHit(input, matcher, [&](const Hit& hit) {
    const std::size_t line = hit.view.LineFromChar(hit.match.position);
    const std::size_t start = hit.view.LineStart(line);
    const std::size_t end = line + 1 < hit.view.LineCount() ? hit.view.LineStart(line + 1) - 2 : hit.view.Length();
    const bool isNew = std::exchange(before, {hit.moduleNumber, hit.line}) != std::pair(hit.moduleNumber, hit.line);
    if (end - start > kLongLine && !isNew) return;
    const std::string_view shown = std::string_view(hit.view.Text()).substr(start, end - start);
    output.Write(places.Line(hit.moduleNumber, hit.moduleName, hit.line, shown, hit.match.position - start));
  });
}

}  // namespace

/// The first input is what to look for.
void RunSearch(const Invocation& invocation) {
  Invocation project = invocation;
  project.inputs.erase(project.inputs.begin());
  project.everyModule = invocation.regex || !invocation.format.empty();
  const std::string& searched = invocation.inputs.front();
  if (invocation.regex ? searched.empty() : text::Trim(searched).empty()) throw UsageError("Der Suchtext ist leer");
  const Matcher matcher = MatcherOf(invocation, searched);
  ProjectInput input(project, RunOptions(project));
  Output output(invocation.output);
  (invocation.json ? ListAsJson : invocation.format.empty() ? ListAsText : ListForEditors)(input, matcher, output);
  output.Finish();
}

}  // namespace quillmate::cli
