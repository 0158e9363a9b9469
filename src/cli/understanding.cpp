#include "understanding.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/source_text.h>
#include <quillmate/startup/edition.h>
#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

#include "messages.h"
#include "sources.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// A module file as UTF-8: what is none is read as everywhere else.
std::string DecodeModuleFile(std::string bytes) {
  if (bytes.starts_with(kByteOrderMark))
    return text::WellFormedUtf8(std::string_view(bytes).substr(kByteOrderMark.size()));
  if (text::IsValidUtf8(bytes) && !bytes.starts_with("\xFF\xFE") && !bytes.starts_with("\xFE\xFF")) return bytes;
  return text::Utf8FromCode(files::DecodeSourceText(bytes));
}

language::ModuleKind KindOf(int componentType) {
  switch (componentType) {
    case host::kClassModule:
      return language::ModuleKind::kClass;
    case host::kMSForm:
      return language::ModuleKind::kForm;
    case host::kHostDocument:
      return language::ModuleKind::kDocument;
    case host::kOtherComponent:
      return language::ModuleKind::kUserControl;
    default:
      return language::ModuleKind::kStandard;
  }
}

/// Where a project's code runs, by the file it lies in.
symbols::Host HostOf(const std::string& file) {
  struct Row {
    std::string_view extensions;
    symbols::Host host;
  };
  static constexpr std::array kRows{Row{" .xlsm .xlsb .xltm .xlam .xls .xla .xlt ", symbols::Host::kExcel},
                                    Row{" .docm .dotm .doc .dot ", symbols::Host::kWord},
                                    Row{" .pptm .potm .ppam .ppsm .ppt .pps .pot ", symbols::Host::kPowerPoint},
                                    Row{" .mdb .accdb .mda .accda .mde .accde ", symbols::Host::kAccess},
                                    Row{" .vbp ", symbols::Host::kVb6}};
  std::string extension = files::PathText(files::PathFromText(file).extension());
  for (char& c : extension) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
  for (const Row& row : kRows) {
    if (!extension.empty() && row.extensions.find(" " + extension + " ") != std::string_view::npos) return row.host;
  }
  return symbols::Host::kUnknown;
}

/// Module files alone don't tell whose they are.
symbols::Host HostOfEdition(int edition) {
  switch (edition) {
    case startup::kWord:
      return symbols::Host::kWord;
    case startup::kAccess:
      return symbols::Host::kAccess;
    case startup::kPowerPoint:
      return symbols::Host::kPowerPoint;
    case startup::kVisualBasic:
      return symbols::Host::kVb6;
    default:
      return symbols::Host::kExcel;
  }
}

/// Forms of VB tell that a folder of module files is a VB project.
bool HoldsVbForms(const std::vector<symbols::ModuleSource>& modules, std::size_t first) {
  return std::any_of(modules.begin() + static_cast<std::ptrdiff_t>(first), modules.end(), [](const auto& module) {
    const std::string_view head = std::string_view(module.text).substr(0, 4096);
    return head.starts_with("VERSION") && head.find("Begin VB.") != std::string_view::npos;
  });
}

class Collector {
 public:
  Collector(host::HostAutomation& host, symbols::Host edition) : host_(host), edition_(edition) {}

  void AddProject(int number) {
    const host::HostProject project = host_.Project(number);
    if (project.locked) return;
    symbols::ProjectSource source;
    source.name = text::Utf8FromCode(project.name);
    source.file = project.fileName.value_or(std::string());
    source.host = HostOf(source.file);
    const std::size_t first = sources.modules.size();
    const int count = host_.ComponentCount(number);
    for (int component = 1; component <= count; ++component) AddModule(number, component);
    if (source.host == symbols::Host::kUnknown && HoldsVbForms(sources.modules, first))
      source.host = symbols::Host::kVb6;
    source.hostAssumed = source.host == symbols::Host::kUnknown;
    if (source.hostAssumed) source.host = edition_;
    if (source.host == symbols::Host::kVb6) source.dialect = language::Dialect::kVb6;
    sources.projects.push_back(std::move(source));
  }

  symbols::Sources sources;

 private:
  void AddModule(int project, int number) {
    const host::HostComponent component = host_.Component(project, number);
    symbols::ModuleSource module;
    module.project = static_cast<symbols::Index>(sources.projects.size());
    module.name = text::Utf8FromCode(component.name);
    module.file = component.file;
    try {
      if (component.file.empty()) {
        module.text = text::Utf8FromCode(host_.Lines(project, component.name, number, component.lineCount));
        module.kind = KindOf(component.type);
      } else {
        module.text = DecodeModuleFile(files::ReadWholeFile(files::PathFromText(component.file)));
        module.linesOfFile = true;
        if (component.type != host::kStdModule) module.kind = KindOf(component.type);
      }
    } catch (const std::exception& error) {
      Complain(error.what());
      return;
    }
    sources.modules.push_back(std::move(module));
  }

  host::HostAutomation& host_;
  const symbols::Host edition_;
};

}  // namespace

symbols::ReferenceIndex ReadUnderstanding(const Invocation& invocation) {
  Sources inputs(invocation);
  const int projects = inputs.ListAll();
  Collector collector(inputs.Host(), HostOfEdition(invocation.edition));
  for (int project = 1; project <= projects; ++project) collector.AddProject(project);
  inputs.Host().Release();
  if (collector.sources.modules.empty()) throw CommandFailure("Die Eingabe enthält kein lesbares Modul");
  return symbols::ReferenceIndex::Build(std::move(collector.sources));
}

}  // namespace quillmate::cli
