#include <algorithm>
#include <limits>

#include <quillmate/language/parse.h>

#include "workspace_p.h"

namespace quillmate::language {
namespace {

/// A copy of the text that can be read a little beyond its end.
std::string_view Readable(std::string_view text, Workspace::Data& data) {
  const std::size_t size = text.size() + kReadAhead;
  if (size > data.capacity) {
    data.text = std::make_unique_for_overwrite<char[]>(size);
    data.capacity = size;
  }
  std::copy(text.begin(), text.end(), data.text.get());
  std::fill_n(data.text.get() + text.size(), kReadAhead, '\0');
  return {data.text.get(), text.size()};
}

}  // namespace

Workspace::Workspace() : data_(std::make_unique<Data>()) {}
Workspace::~Workspace() = default;
Workspace::Workspace(Workspace&&) noexcept = default;
Workspace& Workspace::operator=(Workspace&&) noexcept = default;

void ParseModule(std::string_view text, const ParseOptions& options, Workspace& workspace, Module& module) {
  Workspace::Data& data = workspace.data();
  module.Clear();
  text = text.substr(0, std::numeric_limits<std::uint32_t>::max() - kReadAhead);
  module.text = text;
  data.names.Start(module);
  data.parser.Parse(Readable(text, data), options, data.names, data.lexer, module);
  data.names.Finish();
}

Module ParseModule(std::string_view text, const ParseOptions& options) {
  Workspace workspace;
  Module module;
  ParseModule(text, options, workspace, module);
  return module;
}

}  // namespace quillmate::language
