#pragma once

/// The colours that all pages of the program share, as the beginnings of literals of style sheets.
#define QUILLMATE_LIGHT_PAGE \
  "color-scheme:light;--ground:#fff;--text:#1b1d21;--soft:#f6f7f9;--line:#d8dbe1;--dim:#5a606b;--link:#0b57c2;"
#define QUILLMATE_DARK_PAGE \
  "color-scheme:dark;--ground:#16181d;--text:#d9dce2;--soft:#1d2026;--line:#363b45;--dim:#9aa1ad;--link:#86b4ff;"
