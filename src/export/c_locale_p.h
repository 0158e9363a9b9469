#pragma once

#ifndef _WIN32
#include <locale.h>
#endif

namespace quillmate::output {

/// While it lives numbers of the C library are written with a point in this thread, whatever language the program runs
/// in. On Windows the library for spreadsheets is built so that it needs none.
class CLocale {
 public:
  CLocale(const CLocale&) = delete;
  CLocale& operator=(const CLocale&) = delete;
#ifdef _WIN32
  CLocale() {}
  ~CLocale() {}
#else
  CLocale() : neutral_(newlocale(LC_NUMERIC_MASK, "C", locale_t{})), before_(uselocale(neutral_)) {}
  ~CLocale() {
    uselocale(before_);
    if (neutral_ != locale_t{}) freelocale(neutral_);
  }

 private:
  locale_t neutral_;
  locale_t before_;
#endif
};

}  // namespace quillmate::output
