#include "object_model.h"

#include <algorithm>

#include <quillmate/office/module_file.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::standin {
namespace {

using ComponentPointer = std::shared_ptr<Component>;
using ProjectPointer = std::shared_ptr<Project>;

constexpr const char* kOutOfRange = "Subscript out of range";
constexpr UINT kKilled = 3;

IDispatch* Object(Model& model, std::vector<Member> members) {
  return new DispatchObject(model.traffic, std::move(members));
}

int Number(const Arguments& arguments, std::size_t at) {
  VARIANT number;
  VariantInit(&number);
  if (at >= arguments.size() || FAILED(VariantChangeType(&number, const_cast<VARIANT*>(arguments[at]), 0, VT_I4)))
    throw Refused(kOutOfRange);
  return static_cast<int>(number.lVal);
}

/// An item by its number or its name, as collections have it.
template <typename Item>
const Item& Find(const std::vector<Item>& items, const Arguments& key) {
  if (!key.empty() && key[0]->vt == VT_BSTR) {
    const std::wstring wide(key[0]->bstrVal, SysStringLen(key[0]->bstrVal));
    const std::string name = text::CodeFromUtf16(std::u16string(wide.begin(), wide.end()));
    for (const Item& item : items) {
      if (text::EqualsIgnoreCase(item->name, name)) return item;
    }
    throw Refused(kOutOfRange);
  }
  const int number = Number(key, 0);
  if (number < 1 || static_cast<std::size_t>(number) > items.size()) throw Refused(kOutOfRange);
  return items[static_cast<std::size_t>(number) - 1];
}

/// Where a line starts, 1-based; the end of the code for the line after the last, after which the last break stands.
std::size_t StartOfLine(const std::string& code, int line) {
  std::size_t at = 0;
  for (int passed = 1; passed < line; ++passed) {
    const std::size_t found = code.find(text::kLineBreak, at);
    if (found == std::string::npos) return code.size() + text::kLineBreak.size();
    at = found + text::kLineBreak.size();
  }
  return at;
}

std::string Lines(Model& model, const Component& component, int first, int count) {
  ++model.traffic.lines;
  const Options& options = model.options;
  if (component.name == options.dieAt) TerminateProcess(GetCurrentProcess(), kKilled);
  if (component.name == options.hangAt) WaitForSingleObject(model.stop, INFINITE);
  if (first < 1 || count < 1 || first + count - 1 > office::CountLines(component.code)) throw Refused(kOutOfRange);
  if (component.name == options.shortenAt) --count;
  const std::size_t start = StartOfLine(component.code, first);
  return component.code.substr(start, StartOfLine(component.code, first + count) - text::kLineBreak.size() - start);
}

IDispatch* MakeCodeModule(Model& model, const ComponentPointer& component) {
  return Object(model, {{L"CountOfLines",
                         [&model, component](const Arguments&, VARIANT& result) {
                           // A module that was made shorter is found so when it is looked at again.
                           const bool shorter = component->name == model.options.shortenAt && model.traffic.lines > 0;
                           GiveNumber(result, office::CountLines(component->code) - (shorter ? 1 : 0));
                         }},
                        {L"Lines", [&model, component](const Arguments& arguments, VARIANT& result) {
                           GiveText(result, text::Utf16FromCode(
                                                Lines(model, *component, Number(arguments, 0), Number(arguments, 1))));
                         }}});
}

IDispatch* MakeComponent(Model& model, const ComponentPointer& component) {
  return Object(model,
                {{L"Name", [component](const Arguments&,
                                       VARIANT& result) { GiveText(result, text::Utf16FromCode(component->name)); }},
                 {L"Type", [component](const Arguments&, VARIANT& result) { GiveNumber(result, component->type); }},
                 {L"CodeModule", [&model, component](const Arguments&, VARIANT& result) {
                    if (component->name == model.options.withholdCode) throw Refused("Can't load the module");
                    GiveObject(result, MakeCodeModule(model, component));
                  }}});
}

IDispatch* MakeComponents(Model& model, const ProjectPointer& project) {
  return Object(model, {{L"Item",
                         [&model, project](const Arguments& key, VARIANT& result) {
                           GiveObject(result, MakeComponent(model, Find(project->components, key)));
                         }},
                        {L"Count", [project](const Arguments&, VARIANT& result) {
                           GiveNumber(result, static_cast<int>(project->components.size()));
                         }}});
}

void GiveUtf8(VARIANT& result, const std::string& utf8) {
  const std::wstring wide = std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
  GiveText(result, {wide.begin(), wide.end()});
}

IDispatch* MakeProject(Model& model, const ProjectPointer& project) {
  return Object(
      model,
      {{L"Name",
        [project](const Arguments&, VARIANT& result) { GiveText(result, text::Utf16FromCode(project->name)); }},
       {L"FileName",
        [project](const Arguments&, VARIANT& result) {
          if (!project->file.has_value()) throw Refused("Path not found");
          GiveUtf8(result, *project->file);
        }},
       {L"Protection", [project](const Arguments&, VARIANT& result) { GiveNumber(result, project->locked ? 1 : 0); }},
       {L"VBComponents", [&model, project](const Arguments&, VARIANT& result) {
          if (project->locked || project->name == model.options.withholdCode)
            throw Refused("Can't perform operation since the project is protected");
          GiveObject(result, MakeComponents(model, project));
        }}});
}

IDispatch* MakeProjectCollection(Model& model) {
  return Object(
      model,
      {{L"Item", [&model](const Arguments& key,
                          VARIANT& result) { GiveObject(result, MakeProject(model, Find(model.projects, key))); }},
       {L"Count",
        [&model](const Arguments&, VARIANT& result) { GiveNumber(result, static_cast<int>(model.projects.size())); }}});
}

IDispatch* MakeEditor(Model& model) {
  return Object(model, {{L"VBProjects", [&model](const Arguments&, VARIANT& result) {
                           GiveObject(result, MakeProjectCollection(model));
                         }}});
}

/// The first look at the version belongs to a listing, the next to a read: what the user does in between.
void CountAttaching(Model& model) {
  if (++model.attached != 2) return;
  const Options& options = model.options;
  const auto closed = std::find_if(model.projects.begin(), model.projects.end(),
                                   [&](const ProjectPointer& project) { return project->name == options.close; });
  if (closed != model.projects.end()) model.projects.erase(closed);
  for (const ProjectPointer& project : model.projects) {
    std::erase_if(project->components,
                  [&](const ComponentPointer& component) { return component->name == options.vanish; });
  }
}

}  // namespace

IDispatch* MakeApplication(Model& model) {
  return Object(model,
                {{L"Name", [&model](const Arguments&,
                                    VARIANT& result) { GiveText(result, text::Utf16FromCode(model.options.edition)); }},
                 {L"Version",
                  [&model](const Arguments&, VARIANT& result) {
                    CountAttaching(model);
                    GiveText(result, text::Utf16FromCode(model.options.version));
                  }},
                 {L"VBE",
                  [&model](const Arguments&, VARIANT& result) {
                    if (model.options.refuseAccess) {
                      throw Refused("Programmatic access to the Visual Basic project is not trusted\r\n");
                    }
                    GiveObject(result, MakeEditor(model));
                  }},
                 {L"Quit", [](const Arguments&, VARIANT&) { PostQuitMessage(0); }}});
}

}  // namespace quillmate::standin
