#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include <quillmate/navigation/code_view.h>

namespace quillmate::navigation {
namespace {

/// Marked-up code with about 40 coloured spans per KB of code, as real modules have them.
std::string MarkedCode(std::size_t size) {
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

std::string CodeOf(const benchmark::State& state) {
  return MarkedCode(static_cast<std::size_t>(state.range(0)) * 1'000'000);
}

void Strip(benchmark::State& state) {
  const std::string code = CodeOf(state);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(StripMarkers(code));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(code.size()));
}

void OpenView(benchmark::State& state) {
  const std::string text = StripMarkers(CodeOf(state)).text;
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(CodeView(text).LineCount());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void GoToEveryLine(benchmark::State& state) {
  CodeView view(StripMarkers(CodeOf(state)).text);
  const long lines = static_cast<long>(view.LineCount());
  for ([[maybe_unused]] auto round : state) {
    for (long line = 1; line <= lines + 1; ++line) view.GoToLine(line);
  }
  state.SetItemsProcessed(state.iterations() * lines);
}

BENCHMARK(Strip)->Arg(1)->Arg(10)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenView)->Arg(1)->Arg(10)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(GoToEveryLine)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmate::navigation
