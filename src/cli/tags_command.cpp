#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/startup/edition.h>
#include <quillmate/symbols/reference_index.h>

#include "commands.h"
#include "editor_place.h"
#include "messages.h"
#include "output.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

using symbols::ReferenceIndex;
using symbols::Symbol;
using symbols::SymbolId;
using symbols::SymbolKind;

/// What editors look up: no parameters, labels and locals.
bool IsTagged(const ReferenceIndex& index, SymbolId id) {
  const Symbol& symbol = index.SymbolAt(id);
  if (symbol.kind == SymbolKind::kParameter || symbol.kind == SymbolKind::kLabel) return false;
  if (symbol.visibility == symbols::Visibility::kLocal) return false;
  return !index.Modules()[symbol.module].file.empty() && index.SourceLine(symbol.module, symbol.line) != 0 &&
         symbol.line != 0;
}

/// Tab-separated fields: neither names nor files may hold what separates them.
std::string Field(std::string_view text) { return OneLine(text); }

/// "Name TAB Datei TAB Zeile;" TAB Angaben", the extended form that "!_TAG_FILE_FORMAT 2" announces, sorted by bytes.
std::string TagFile(const ReferenceIndex& index, const std::vector<SymbolId>& tagged) {
  std::vector<std::string> lines;
  for (const SymbolId id : tagged) {
    const Symbol& symbol = index.SymbolAt(id);
    std::string line = Field(index.Name(id)) + "\t" + Field(index.Modules()[symbol.module].file) + "\t" +
                       std::to_string(index.SourceLine(symbol.module, symbol.line)) + ";\"\t";
    line.append("kind:").append(symbols::Word(symbol.kind));
    line += "\tmodule:" + Field(index.Modules()[symbol.module].name);
    if (symbol.parent != symbols::kNone) {
      line.append("\t").append(symbols::Word(index.SymbolAt(symbol.parent).kind)).append(":");
      line += Field(index.Name(symbol.parent));
    }
    line.append("\taccess:").append(symbols::Word(symbol.visibility));
    if (const std::string type = index.DeclaredType(id); !type.empty()) line += "\ttyperef:typename:" + Field(type);
    lines.push_back(line + "\n");
  }
  std::ranges::sort(lines);
  std::string file =
      "!_TAG_FILE_ENCODING\tutf-8\t//\n"
      "!_TAG_FILE_FORMAT\t2\t/extended format/\n"
      "!_TAG_FILE_SORTED\t1\t/0=unsorted, 1=sorted, 2=foldcase/\n"
      "!_TAG_PROGRAM_NAME\tquillmate-cli\t//\n";
  file += "!_TAG_PROGRAM_VERSION\t" + startup::ProgramVersion() + "\t//\n";
  for (const std::string& line : lines) file += line;
  return file;
}

/// The form of Emacs: a section for each file, in it the line up to the name, the name and its place. Of a line
/// of megabytes, which may declare thousands of names, the beginning is enough to find it.
std::string EmacsTagFile(const ReferenceIndex& index, const std::vector<SymbolId>& tagged) {
  std::string file;
  for (std::size_t i = 0; i < tagged.size();) {
    const symbols::Index module = index.SymbolAt(tagged[i]).module;
    std::string section;
    for (; i < tagged.size() && index.SymbolAt(tagged[i]).module == module; ++i) {
      const Symbol& symbol = index.SymbolAt(tagged[i]);
      const language::Module& code = index.Code(module);
      const std::uint32_t start = code.lines[symbol.line - 1].offset;
      section += code.text.substr(start, std::min<std::size_t>(symbol.offset + symbol.length - start, kLongLine));
      section.append("\x7f").append(index.Name(tagged[i])).append("\x01");
      section += std::to_string(index.SourceLine(module, symbol.line)) + ",\n";
    }
    file += "\f\n" + index.Modules()[module].file + "," + std::to_string(section.size()) + "\n" + section;
  }
  return file;
}

}  // namespace

void RunTags(const Invocation& invocation) {
  const ReferenceIndex index = ReadUnderstanding(invocation);
  std::vector<SymbolId> tagged;
  for (SymbolId id = 0; id < index.SymbolCount(); ++id) {
    if (IsTagged(index, id)) tagged.push_back(id);
  }
  if (tagged.empty()) throw CommandFailure("Keine Deklaration liegt in einer Moduldatei, die ein Editor öffnen kann");
  WriteWhole(invocation.output, invocation.format == "emacs" ? EmacsTagFile(index, tagged) : TagFile(index, tagged));
}

}  // namespace quillmate::cli
