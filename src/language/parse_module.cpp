#include <algorithm>
#include <limits>

#include <quillmate/language/parse.h>

#include "workspace_p.h"

namespace quillmate::language {
namespace {

/// Room for what a module of this size holds as a rule: growing step by step would copy all of it time and again.
void Reserve(Module& module) {
  const std::size_t size = module.text.size();
  module.lines.reserve(size / 32);
  module.logicalLines.reserve(size / 32);
  module.uses.reserve(size / 24);
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
  Reserve(module);
  data.names.Start(module);
  data.parser.Parse(text, options, data.names, data.lexer, module);
  data.names.Finish();
}

Module ParseModule(std::string_view text, const ParseOptions& options) {
  Workspace workspace;
  Module module;
  ParseModule(text, options, workspace, module);
  return module;
}

}  // namespace quillmate::language
