#pragma once

#include <string>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/office/module_file.h>

namespace quillmate::host {

/// What a module's own text tells of it. `code` is set only where Windows-1252 can't hold all of it.
codedb::ModuleFacts FactsOfFile(office::ModuleFile file);

/// "standard", "class" ...: the word of the facts for a component type.
std::string KindWord(int componentType);

/// Fills in what the hidden lines say: kind, predeclared, exposed, the tables of attributes and controls. What the
/// source itself knows stays.
void ReadHiddenLines(codedb::ModuleFacts& facts);

}  // namespace quillmate::host
