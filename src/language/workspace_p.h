#pragma once

#include <cstddef>
#include <memory>

#include <quillmate/language/parse.h>

#include "lexer_p.h"
#include "names_p.h"
#include "parser_p.h"

namespace quillmate::language {

struct Workspace::Data {
  std::unique_ptr<char[]> text;  ///< the source with kReadAhead zeros behind it
  std::size_t capacity = 0;
  NameTable names;
  Lexer lexer;
  Parser parser;
};

}  // namespace quillmate::language
