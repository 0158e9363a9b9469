#include <algorithm>
#include <array>
#include <map>

#include <quillmate/language/parse.h>
#include <quillmate/text/operations.h>

#include "api_table_p.h"

namespace quillmate::checks {
namespace {

/// Read by the front end.
constexpr std::string_view kDeclarations =
#include "api_declarations_p.inc"
    ;

struct Table {
  language::Module code;
  std::vector<ApiFunction> functions;
  std::map<std::string, const ApiFunction*, std::less<>> byName;
};

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return lower;
}

/// "user32" of "USER32.DLL".
std::string LibraryStem(std::string_view library) {
  std::string stem = Lower(library);
  if (stem.ends_with(".dll")) stem.resize(stem.size() - 4);
  return stem;
}

/// The name without the letter for its kind of text.
std::string_view Stem(std::string_view name) {
  const bool marked = name.size() > 2 && (name.back() == 'A' || name.back() == 'W') && name[name.size() - 2] >= 'a';
  return marked ? name.substr(0, name.size() - 1) : name;
}

ApiFunction Take(const language::Module& code, const language::Declaration& declared) {
  ApiFunction api;
  api.name = code.Spelling(declared);
  api.head = declared.kind == language::DeclarationKind::kDeclareSub ? "Sub" : "Function";
  const std::string_view line = code.LineText(declared.line);
  const std::size_t lib = line.find("Lib "), open = line.find('(');
  api.lib = line.substr(lib, open - lib - 1);
  api.rest = line.substr(open);
  api.result = declared.type;
  for (std::uint32_t i = 0; i < declared.childCount; ++i) {
    const language::Declaration& parameter = code.declarations[declared.firstChild + i];
    api.parameters.push_back({code.Spelling(parameter), parameter.type,
                              (parameter.flags & language::declaration_flag::kByVal) != 0,
                              parameter.type == language::BuiltinType::kLongPtr});
  }
  return api;
}

const Table& TheTable() {
  static const Table table = [] {
    Table made;
    made.code = language::ParseModule(kDeclarations);
    for (const language::Declaration& declared : made.code.declarations) {
      const bool function = declared.kind == language::DeclarationKind::kDeclareFunction;
      if (function || declared.kind == language::DeclarationKind::kDeclareSub) {
        made.functions.push_back(Take(made.code, declared));
      }
    }
    return made;
  }();
  return table;
}

const std::map<std::string, const ApiFunction*, std::less<>>& ByName() {
  static const auto names = [] {
    std::map<std::string, const ApiFunction*, std::less<>> made;
    for (const ApiFunction& api : TheTable().functions) {
      made.emplace(Lower(api.name), &api);
      const std::size_t alias = api.lib.find("Alias \"");
      if (alias == std::string_view::npos) continue;
      const std::string_view exported = api.lib.substr(alias + 7, api.lib.size() - alias - 8);
      made.emplace(Lower(exported), &api);
      made.emplace(Lower(Stem(exported)), &api);
    }
    return made;
  }();
  return names;
}

struct Callback {
  std::string_view api;
  std::string_view signature;
};
constexpr std::array kCallbacks{Callback{"SetTimer", "PLPL-"},           Callback{"EnumWindows", "PPL"},
                                Callback{"EnumChildWindows", "PPL"},     Callback{"EnumThreadWindows", "PPL"},
                                Callback{"SetWindowsHookEx", "LPPP"},    Callback{"SetWindowLong", "PLPPP"},
                                Callback{"SetWindowLongPtr", "PLPPP"},   Callback{"EnumFontFamilies", "PPLPL"},
                                Callback{"EnumFontFamiliesEx", "PPLPL"}, Callback{"EnumDisplayMonitors", "PPPPL"}};

constexpr std::array kPointerNames = std::to_array<std::string_view>(
    {"hwnd",    "hwindow",   "howner",   "hparent", "hchild",   "hdlg",     "hdesktop", "hdc",      "hsrcdc",
     "hdestdc", "hmemdc",    "hinst",    "hmod",    "hlib",     "hdll",     "hprocess", "hthread",  "htoken",
     "hsnap",   "hevent",    "hmutex",   "hpipe",   "hstd",     "hfile",    "hfind",    "hmem",     "hglobal",
     "hlocal",  "hheap",     "hrsrc",    "hmenu",   "hsub",     "hbit",     "hbmp",     "hdib",     "hpic",
     "himage",  "himl",      "hicon",    "hcurs",   "hfont",    "hbrush",   "hpen",     "hpal",     "hrgn",
     "hgdiobj", "hobj",      "hmonitor", "htheme",  "hkey",     "hhook",    "hhk",      "hprinter", "hdev",
     "hdrop",   "hinternet", "hinet",    "hopen",   "hconnect", "hsession", "hrequest", "hftp",     "hcrypt",
     "hprov",   "hconv",     "hwave",    "hmidi",   "hitem",    "lparam",   "wparam",   "pfn",      "pidl"});

/// "lpParameters", "lpszName", never "lPixel".
bool IsLongPointer(std::string_view name) {
  if (!name.starts_with("lp") || name.size() < 3) return false;
  const std::string_view rest = name.substr(2);
  if (rest[0] >= 'A' && rest[0] <= 'Z') return true;
  return std::ranges::any_of(std::to_array<std::string_view>({"sz", "str", "dw", "fn", "sec", "v"}),
                             [=](std::string_view start) { return rest.starts_with(start); });
}

}  // namespace

const ApiFunction* FindApi(std::string_view exported, std::string_view library) {
  auto found = ByName().find(Lower(exported));
  if (found == ByName().end()) found = ByName().find(Lower(Stem(exported)));
  if (found == ByName().end()) return nullptr;
  constexpr std::size_t kQuote = 5;  // after `Lib "`
  const std::string_view own = found->second->lib.substr(kQuote, found->second->lib.find('"', kQuote) - kQuote);
  return LibraryStem(own) == LibraryStem(library) ? found->second : nullptr;
}

std::string DeclarationOf(const ApiFunction& api, std::string_view name) {
  std::string text = "Declare PtrSafe ";
  text.append(api.head).append(" ").append(name).append(" ").append(api.lib);
  if (!text::EqualsIgnoreCase(std::string(api.name), name) && api.lib.find("Alias") == std::string_view::npos) {
    text.append(" Alias \"").append(api.name).append("\"");
  }
  return text.append(" ").append(api.rest);
}

std::optional<std::string_view> CallbackOf(std::string_view api) {
  const std::string name = Lower(Stem(api));
  const auto* const found = std::ranges::find_if(kCallbacks, [&](const auto& c) { return Lower(c.api) == name; });
  return found == kCallbacks.end() ? std::nullopt : std::optional(found->signature);
}

bool SoundsLikePointer(std::string_view name) {
  const std::string lower = Lower(name);
  return IsLongPointer(name) ||
         std::ranges::any_of(kPointerNames, [&](std::string_view start) { return lower.starts_with(start); });
}

}  // namespace quillmate::checks
