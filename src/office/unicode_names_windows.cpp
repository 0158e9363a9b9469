#include <windows.h>

#include "unicode_names_p.h"

namespace quillmate::office {

char32_t UpperCaseCharacter(char32_t character) {
  // The system changes units, none of those beyond the first plane.
  if (character > 0xFFFF) return character;
  const auto unit = static_cast<wchar_t>(character);
  wchar_t upper = unit;
  const int length = LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &unit, 1, &upper, 1, nullptr, nullptr, 0);
  return length == 1 ? upper : character;
}

}  // namespace quillmate::office
