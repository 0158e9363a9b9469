#include <algorithm>
#include <atomic>
#include <memory>

#include <quillmate/checks/metrics.h>
#include <quillmate/symbols/workers.h>

namespace quillmate::checks {
namespace {

using symbols::Index;
using symbols::kNone;
using symbols::ReferenceIndex;
using symbols::SymbolId;
using symbols::Use;

ModuleNumbers ModuleOf(const language::Module& code) {
  const language::LineCounts& counts = code.counts;
  ModuleNumbers numbers;
  numbers.code = counts.code;
  numbers.comment = counts.comment;
  numbers.blank = counts.blank;
  numbers.lines = counts.code + counts.comment + counts.blank + counts.directive;
  return numbers;
}

std::uint32_t ParametersOf(const language::Module& code, Index declaration) {
  return code.declarations[declaration].childCount;
}

RoutineNumbers RoutineOf(const language::Module& code, Index module, Index number) {
  const language::Routine& routine = code.routines[number];
  RoutineNumbers numbers;
  numbers.module = module;
  numbers.routine = number;
  numbers.lines = routine.lastLine - routine.firstLine + 1;
  numbers.code = routine.metrics.codeLines;
  numbers.comment = routine.metrics.commentLines;
  numbers.statements = routine.metrics.statements;
  numbers.complexity = routine.metrics.complexity;
  numbers.nesting = routine.metrics.nesting;
  numbers.parameters = ParametersOf(code, routine.declaration);
  return numbers;
}

bool IsCallOf(const ReferenceIndex& index, const symbols::BoundUse& use) {
  if (use.target == kNone || use.certainty != symbols::Certainty::kSure) return false;
  return (use.use == Use::kCall || use.use == Use::kAddress) && IsCallable(index.SymbolAt(use.target).kind);
}

/// Numbers of the routines of one module, and of calls into others.
class ModuleMeter {
 public:
  ModuleMeter(const ReferenceIndex& index, const std::vector<std::size_t>& firstRoutines, Metrics& metrics,
              std::atomic<std::uint32_t>* fanIn)
      : index_(index), firstRoutines_(firstRoutines), metrics_(metrics), fanIn_(fanIn) {}

  void Run(Index module, std::vector<symbols::BoundUse>& uses) {
    const language::Module& code = index_.Code(module);
    metrics_.modules[module] = ModuleOf(code);
    if (code.routines.empty()) return;
    index_.BindUses(module, uses);
    for (Index routine = 0; routine < code.routines.size(); ++routine) {
      RoutineNumbers& numbers = metrics_.routines[firstRoutines_[module] + routine];
      numbers = RoutineOf(code, module, routine);
      numbers.fanOut = CountCalls(code.routines[routine], routine, module, uses);
    }
  }

 private:
  std::uint32_t CountCalls(const language::Routine& routine, Index number, Index module,
                           const std::vector<symbols::BoundUse>& uses) {
    const SymbolId self = index_.RoutineSymbol(module, number);
    called_.clear();
    for (Index use = routine.firstUse; use < routine.endUse; ++use) {
      if (IsCallOf(index_, uses[use]) && uses[use].target != self) called_.push_back(uses[use].target);
    }
    std::ranges::sort(called_);
    called_.erase(std::unique(called_.begin(), called_.end()), called_.end());
    for (const SymbolId target : called_) {
      const symbols::Symbol& symbol = index_.SymbolAt(target);
      if (!IsRoutine(symbol.kind)) continue;
      fanIn_[firstRoutines_[symbol.module] + symbol.routine].fetch_add(1, std::memory_order_relaxed);
    }
    return static_cast<std::uint32_t>(called_.size());
  }

  const ReferenceIndex& index_;
  const std::vector<std::size_t>& firstRoutines_;
  Metrics& metrics_;
  std::atomic<std::uint32_t>* fanIn_;
  std::vector<SymbolId> called_;
};

}  // namespace

Metrics Measure(const ReferenceIndex& index, unsigned threads) {
  const std::size_t count = index.Modules().size();
  std::vector<std::size_t> firstRoutines(count + 1, 0);
  for (Index module = 0; module < count; ++module) {
    firstRoutines[module + 1] = firstRoutines[module] + index.Code(module).routines.size();
  }
  Metrics metrics;
  metrics.modules.resize(count);
  metrics.routines.resize(firstRoutines.back());
  const auto fanIn = std::make_unique<std::atomic<std::uint32_t>[]>(metrics.routines.size());
  const unsigned workers = symbols::WorkerCount(threads, count);
  std::vector<std::vector<symbols::BoundUse>> uses(workers);
  std::vector<ModuleMeter> meters(workers, ModuleMeter(index, firstRoutines, metrics, fanIn.get()));
  symbols::ForEachPiece(workers, count, [&](unsigned worker, std::size_t module) {
    meters[worker].Run(static_cast<Index>(module), uses[worker]);
  });
  for (std::size_t routine = 0; routine < metrics.routines.size(); ++routine) {
    metrics.routines[routine].fanIn = fanIn[routine].load();
  }
  return metrics;
}

const MetricDefinition kModuleDefinitions[4] = {
    {"lines", "Zeilen", "Alle Zeilen, die der Editor zeigt, Zeilen der bedingten Kompilierung eingeschlossen."},
    {"code", "Code",
     "Zeilen mit mindestens einem Zeichen Code; ein Kommentar dahinter ändert nichts. Inaktive zählen mit."},
    {"comment", "Kommentar", "Zeilen, die nur aus Kommentar bestehen."},
    {"blank", "leer", "Zeilen ohne etwas darin."},
};

const MetricDefinition kRoutineDefinitions[9] = {
    {"lines", "Zeilen", "Vom Kopf der Routine bis zu ihrer End-Zeile."},
    {"code", "Code", "Zeilen mit mindestens einem Zeichen Code, inaktive eingeschlossen."},
    {"comment", "Kommentar", "Zeilen, die nur aus Kommentar bestehen."},
    {"statements", "Anweisungen",
     "Ausführbare Einheiten. Nicht gezählt werden Marken, Dim, Const, Static, End ..., Else, Case, Next, Loop und "
     "Wend; ein einzeiliges If zählt eins und dazu seine Teile."},
    {"complexity", "Komplexität",
     "Nach McCabe: 1, dazu eins für jedes If, ElseIf, Case (außer Case Else), For, For Each, While und Do oder Loop "
     "mit "
     "Bedingung und für jedes Ziel von On ... GoTo. And, Or, IIf und GoTo zählen nicht."},
    {"nesting", "Tiefe",
     "Die tiefste Schachtelung von If, Select, For, Do, While und With; ein einzeiliges If zählt eins."},
    {"parameters", "Parameter", "Parameter des Kopfs, auch freiwillige."},
    {"fan_in", "Aufrufer", "Verschiedene andere Routinen, die sie sicher aufrufen."},
    {"fan_out", "Aufgerufene", "Verschiedene andere Routinen und Declares des Projekts, die sie sicher aufruft."},
};

}  // namespace quillmate::checks
