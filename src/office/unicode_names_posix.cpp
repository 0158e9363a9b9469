#include <unicode/uchar.h>

#include "unicode_names_p.h"

namespace quillmate::office {

char32_t UpperCaseCharacter(char32_t character) {
  return static_cast<char32_t>(u_toupper(static_cast<UChar32>(character)));
}

}  // namespace quillmate::office
