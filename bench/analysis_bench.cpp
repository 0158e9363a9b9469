#include <string>

#include <benchmark/benchmark.h>

#include <quillmate/analysis/reflow.h>
#include <quillmate/analysis/scanner.h>

namespace {

using namespace quillmate::analysis;

/// A routine of the usual mix: declarations, comments, strings, calls, blocks. About 35 bytes a line.
constexpr const char* kRoutine =
    "' Bucht einen Zugang und schreibt das Protokoll fort\r\n"
    "Public Function ZugangBuchen(ByVal Artikel As String, ByVal Menge As Long) As Boolean\r\n"
    "    Dim Zeile As Long, Bestand As Double\r\n"
    "    Dim Blatt As Worksheet\r\n"
    "    On Error GoTo Fehler\r\n"
    "\r\n"
    "    Set Blatt = ThisWorkbook.Worksheets(\"Bestand\")\r\n"
    "    Zeile = ZeileSuchen(Blatt, Artikel)  ' 0, wenn der Artikel fehlt\r\n"
    "    If Zeile = 0 Then\r\n"
    "        MsgBox \"Artikel '\" & Artikel & \"' fehlt.\", vbExclamation, _\r\n"
    "               \"Lager\"\r\n"
    "        Exit Function\r\n"
    "    End If\r\n"
    "    For Zeile = Zeile To Zeile + 10\r\n"
    "        Select Case Blatt.Cells(Zeile, 3).Value\r\n"
    "            Case 1, 2, 3: Bestand = Bestand + Menge\r\n"
    "            Case Else\r\n"
    "                Debug.Print \"unbekannt: \"; Zeile\r\n"
    "        End Select\r\n"
    "    Next Zeile\r\n"
    "    Blatt.Cells(Zeile, 4).Value = Bestand\r\n"
    "    ProtokollSchreiben \"Zugang\", Artikel, Menge, Now\r\n"
    "    ZugangBuchen = True\r\n"
    "    Exit Function\r\n"
    "\r\n"
    "Fehler:\r\n"
    "    FehlerMelden \"ZugangBuchen\", Err.Number, Err.Description\r\n"
    "End Function\r\n"
    "\r\n";

std::string Code(std::int64_t megabytes) {
  const std::string routine = kRoutine;
  std::string code;
  const auto size = static_cast<std::size_t>(megabytes) * 1000000;
  code.reserve(size + routine.size());
  while (code.size() < size) code += routine;
  return code;
}

void Scan(benchmark::State& state, const ScanOptions& options) {
  const std::string code = Code(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(ScanForIndex(code, options, {}));
  state.SetBytesProcessed(static_cast<std::int64_t>(code.size()) * state.iterations());
}

void ScanPlain(benchmark::State& state) { Scan(state, {}); }
void ScanAllOptions(benchmark::State& state) { Scan(state, {true, true, true, true}); }

/// The same amount in modules of 35 kB, as projects have it.
void ScanSmallModules(benchmark::State& state) {
  const std::string whole = Code(1);
  const std::string code = whole.substr(0, 35000);
  const std::int64_t modules = state.range(0) * 1000000 / 35000;
  for (auto _ : state) {
    for (std::int64_t i = 0; i < modules; ++i) benchmark::DoNotOptimize(ScanForIndex(code, {}, {}));
  }
  state.SetBytesProcessed(35000 * modules * state.iterations());
}

void Reflow(benchmark::State& state) {
  const std::string code = Code(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(ReflowModule(code));
  state.SetBytesProcessed(static_cast<std::int64_t>(code.size()) * state.iterations());
}

BENCHMARK(ScanPlain)->Arg(1)->Arg(10)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(ScanSmallModules)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(ScanAllOptions)->Arg(1)->Arg(10)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(Reflow)->Arg(1)->Arg(10)->Arg(40)->Unit(benchmark::kMillisecond);

}  // namespace
