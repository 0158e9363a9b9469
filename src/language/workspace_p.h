#pragma once

#include <quillmate/language/parse.h>

#include "lexer_p.h"
#include "names_p.h"
#include "parser_p.h"

namespace quillmate::language {

struct Workspace::Data {
  NamePool names;
  Lexer lexer;
  Parser parser;
};

}  // namespace quillmate::language
