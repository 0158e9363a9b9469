#pragma once

#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace quillmate::bench {

/// Marked-up code with about 40 coloured spans per KB of code, as real modules have them.
inline std::string MarkedCode(std::size_t size) {
  static constexpr std::string_view kLines[] = {
      "|\237x||\237f|Private|n\237| |\237f|Sub|n\237| Rechnen(|\237f|ByVal|n\237| lngWert)|y\237|\r\n",
      "\t|\237f|Dim|n\237| strText |\237f|As|n\237| |\237f|String|n\237|\r\n",
      "\t|\237f|If|n\237| lngWert > 0 |\237f|And|n\237| |\237f|Not|n\237| blnFertig |\237f|Then|n\237|\r\n",
      "\t\tstrText = |\237s|\"Wert {\" |n\237|& lngWert & |\237s|\"} in \\\"|n\237|\r\n",
      "\t\tTabelle1.Cells(lngZeile, 4).Value = Zelle.Offset(0, 1).Value\r\n",
      "\t|\237k|' Die n\344chste Zeile schreibt den Bestand zur\374ck.|n\237|\r\n",
      "\t|\237f|End|n\237| |\237f|If|n\237|\r\n",
      "\t\tlngSumme = lngSumme + Bestand.Menge(lngArtikel) * Bestand.Preis(lngArtikel, lngLager)\r\n",
      "\t\tProtokoll.Schreiben lngArtikel, lngLager, lngSumme, Bestand.LetzteBuchung(lngArtikel)\r\n",
      "|\237x||\237f|End|n\237| |\237f|Sub|n\237||y\237|\r\n",
      "\r\n",
  };
  std::mt19937 random(1);
  std::string code;
  code.reserve(size + 200);
  while (code.size() < size) code += kLines[random() % std::size(kLines)];
  return code;
}

}  // namespace quillmate::bench
