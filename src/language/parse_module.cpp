#include <algorithm>
#include <limits>

#include <quillmate/language/parse.h>

#include "workspace_p.h"

namespace quillmate::language {
namespace {

/// A copy of the text that can be read a little beyond its end.
std::string_view Readable(std::string_view text, std::vector<char>& copy) {
  copy.resize(text.size() + kReadAhead);
  std::copy(text.begin(), text.end(), copy.begin());
  std::fill(copy.end() - kReadAhead, copy.end(), '\0');
  return {copy.data(), text.size()};
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
  data.parser.Parse(Readable(text, data.text), options, data.names, data.lexer, module);
}

Module ParseModule(std::string_view text, const ParseOptions& options) {
  Workspace workspace;
  Module module;
  ParseModule(text, options, workspace, module);
  return module;
}

}  // namespace quillmate::language
