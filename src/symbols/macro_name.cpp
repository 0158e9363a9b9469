#include <algorithm>

#include <quillmate/language/parse.h>

#include "macro_name_p.h"

namespace quillmate::symbols {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return text.substr(0, 0);  // still points into the text
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsNameCharacter(char c) noexcept {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsName(std::string_view text) {
  return !text.empty() && !(text[0] >= '0' && text[0] <= '9') && std::all_of(text.begin(), text.end(), IsNameCharacter);
}

/// The stretch of `text` that names project, module and routine: after "=" and "!", before blanks and "(".
std::string_view QualifiedName(std::string_view text, std::string_view* book = nullptr) {
  text = Trim(text);
  if (!text.empty() && text.front() == '=') text = Trim(text.substr(1));
  bool quoted = false;
  std::size_t bang = std::string_view::npos;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\'') quoted = !quoted;
    if (text[at] == '!' && !quoted) bang = at;
    if ((text[at] == '(' || text[at] == '"') && !quoted) break;
  }
  if (bang == std::string_view::npos && !text.empty() && text.front() == '\'') {
    // All of it in quotes: the arguments belong to the text, and so may the book.
    text.remove_prefix(1);
    if (!text.empty() && text.back() == '\'') text.remove_suffix(1);
    const std::size_t end = text.find_first_of("(\" ");
    bang = text.substr(0, end).rfind('!');
  }
  if (bang != std::string_view::npos) {
    if (book != nullptr) *book = Trim(text.substr(0, bang));
    text.remove_prefix(bang + 1);
  }
  if (!text.empty() && text.front() == '\'') text.remove_prefix(1);
  return text.substr(0, text.find_first_of("( \t\"',"));
}

std::string_view FileName(std::string_view path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

int Rank(const ModuleTable& table, Local local) {
  const SymbolKind kind = KindOf(table, local);
  if (kind != SymbolKind::kSub && kind != SymbolKind::kFunction) return 3;
  const bool hidden = VisibilityOf(table, local) == Visibility::kPrivate;
  if (table.kind == SymbolKind::kModule) return hidden ? 1 : 0;
  return table.kind == SymbolKind::kDocument ? 2 : 3;
}

}  // namespace

MacroName ParseMacroName(std::string_view text) {
  MacroName name;
  std::string_view book;
  std::string_view qualified = QualifiedName(text, &book);
  if (book.size() > 1 && book.front() == '\'' && book.back() == '\'') book = book.substr(1, book.size() - 2);
  if (book != "[0]") name.book = book;
  std::string* parts[] = {&name.routine, &name.module, &name.project};
  for (std::string* part : parts) {
    const std::size_t dot = qualified.rfind('.');
    const std::string_view last = dot == std::string_view::npos ? qualified : qualified.substr(dot + 1);
    if (!IsName(last)) return {};
    *part = language::FoldName(last);
    if (dot == std::string_view::npos) return name;
    qualified = qualified.substr(0, dot);
  }
  return {};
}

bool IsFile(const ProjectTable& project, std::string_view book) {
  return language::FoldName(FileName(book)) == language::FoldName(FileName(project.fileName));
}

std::vector<MacroTarget> FindMacro(const Tables& tables, Index project, Index from, const MacroName& name) {
  std::vector<MacroTarget> targets;
  if (name.routine.empty()) return targets;
  const ProjectTable& own = tables.projects[project];
  if (!name.book.empty() && !own.fileName.empty() && !IsFile(own, name.book)) return targets;
  if (!name.project.empty() && language::HashName(name.project) != own.nameHash) return targets;
  const NameHash routine = language::HashName(name.routine);
  if (!name.module.empty()) {
    const Index module = tables.FindModule(project, language::HashName(name.module));
    if (module == kNone) return targets;
    const ModuleTable& table = tables.modules[module];
    for (Local local = table.Find(routine); local != kNone; local = table.next[local]) {
      if (Rank(table, local) < 3 && !table.IsInactive(local)) targets.push_back({module, local});
    }
    return targets;
  }
  return FindMacros(tables, project, from, routine);
}

std::vector<MacroTarget> FindMacros(const Tables& tables, Index project, Index from, NameHash routine) {
  std::vector<MacroTarget> targets;
  int best = 3;
  const Index first = tables.projects[project].macroNames.Find(routine);
  for (Index at = first; at != kNone; at = tables.exports[at].next) {
    const Exported& group = tables.exports[at];
    const ModuleTable& table = tables.modules[group.module];
    for (Local local = group.first; local != kNone; local = table.next[local]) {
      if (table.IsInactive(local)) continue;
      int rank = Rank(table, local);
      if (rank == 3) continue;
      if (group.module == from) rank = -1;
      if (rank > best) continue;
      if (rank < best) targets.clear();
      best = rank;
      targets.push_back({group.module, local});
    }
  }
  return targets;
}

std::string LiteralText(std::string_view literal) {
  if (!literal.empty() && literal.front() == '"') literal.remove_prefix(1);
  if (!literal.empty() && literal.back() == '"') literal.remove_suffix(1);
  std::string text;
  text.reserve(literal.size());
  for (std::size_t at = 0; at < literal.size(); ++at) {
    text += literal[at];
    if (literal[at] == '"' && at + 1 < literal.size() && literal[at + 1] == '"') ++at;
  }
  return text;
}

namespace {

bool IsNumber(char c) noexcept { return (c >= '0' && c <= '9') || c == '-'; }

/// "Eins,Zwei": calls `visit` for each name of a list of nothing but names.
void ForEachListed(std::string_view list, char separator, const std::function<void(std::string_view)>& visit) {
  if (list.find(separator) == std::string_view::npos) return;
  for (const bool check : {true, false}) {
    std::string_view rest = list;
    for (bool more = true; more;) {
      const std::size_t end = rest.find(separator);
      more = end != std::string_view::npos;
      const std::string_view name = Trim(rest.substr(0, end));
      if (more) rest.remove_prefix(end + 1);
      if (!check) visit(name);
      if (check && !IsName(name)) return;
    }
  }
}

}  // namespace

void ForEachMention(std::string_view literal, const std::function<void(std::string_view)>& visit) {
  if (literal.size() > 1 && literal.back() == '"') literal.remove_suffix(1);
  if (!literal.empty()) literal.remove_prefix(1);
  std::string_view whole = QualifiedName(literal);
  const char* const behind = whole.data() + whole.size();
  const std::string_view rest = Trim(literal.substr(static_cast<std::size_t>(behind - literal.data())));
  std::string_view found;
  // "Makro ""a""", "'Makro 1, 2'": with its arguments.
  const bool arguments = !rest.empty() && (rest.front() == '"' || (literal.front() == '\'' && IsNumber(rest.front())));
  if (!whole.empty() && (rest.empty() || rest.front() == '(' || rest == "'" || arguments)) {
    const std::size_t dot = whole.rfind('.');
    found = dot == std::string_view::npos ? whole : whole.substr(dot + 1);
    if (IsName(found)) visit(found);
  }
  for (std::size_t open = literal.find('('); open != std::string_view::npos; open = literal.find('(', open + 1)) {
    std::size_t begin = open;
    while (begin > 0 && IsNameCharacter(literal[begin - 1])) --begin;
    const std::string_view name = literal.substr(begin, open - begin);
    if (IsName(name) && name.data() != found.data()) visit(name);
  }
  for (const char separator : {',', ';', '|'}) ForEachListed(literal, separator, visit);
}

std::pair<std::uint32_t, std::uint32_t> PlaceOfMacroName(std::string_view literal) {
  std::string_view inner = literal;
  if (!inner.empty() && inner.front() == '"') inner.remove_prefix(1);
  if (!inner.empty() && inner.back() == '"') inner.remove_suffix(1);
  const std::string_view qualified = QualifiedName(inner);
  const std::size_t dot = qualified.rfind('.');
  const std::string_view name = dot == std::string_view::npos ? qualified : qualified.substr(dot + 1);
  if (name.empty()) return {0, static_cast<std::uint32_t>(literal.size())};
  return {static_cast<std::uint32_t>(name.data() - literal.data()), static_cast<std::uint32_t>(name.size())};
}

}  // namespace quillmate::symbols
