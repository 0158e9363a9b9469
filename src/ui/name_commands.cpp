#include "name_commands.h"

#include <QMenu>
#include <algorithm>
#include <utility>

#include <quillmate/navigation/definition.h>
#include <quillmate/symbols/module_uses.h>

#include "qt_text.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

using symbols::SymbolId;

constexpr int kRest = 120;
/// More candidates than that are nothing to choose from.
constexpr std::size_t kMostCandidates = 30;

/// The procedures of one property count as one name.
std::vector<SymbolId> WithSiblings(const symbols::ReferenceIndex& index, const std::vector<SymbolId>& targets) {
  std::vector<SymbolId> all;
  for (const SymbolId target : targets) {
    all.push_back(target);
    const symbols::Symbol& symbol = index.SymbolAt(target);
    if (!symbols::IsProperty(symbol.kind)) continue;
    for (const SymbolId other : index.FindSymbols(symbol.module, index.Name(target))) {
      if (symbols::IsProperty(index.SymbolAt(other).kind)) all.push_back(other);
    }
  }
  std::ranges::sort(all);
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

/// By module, then place, each once.
std::vector<symbols::Reference> UsesOf(const symbols::ReferenceIndex& index, const std::vector<SymbolId>& targets) {
  if (targets.size() == 1) return index.ReferencesTo(targets.front());
  std::vector<symbols::Reference> uses;
  for (const SymbolId target : targets) {
    const std::vector<symbols::Reference> of = index.ReferencesTo(target);
    uses.insert(uses.end(), of.begin(), of.end());
  }
  const auto place = [](const symbols::Reference& use) { return std::pair(use.module, use.offset); };
  std::ranges::stable_sort(uses, {}, place);
  const auto same = [&](const symbols::Reference& a, const symbols::Reference& b) { return place(a) == place(b); };
  uses.erase(std::unique(uses.begin(), uses.end(), same), uses.end());
  return uses;
}

}  // namespace

NameCommands::NameCommands(const ListDesk& desk, CodeArea& code, CodeKnowledge& knowledge, UsePanel& uses,
                           CallPanel& hierarchy)
    : desk_(desk),
      interaction_(desk.interaction),
      session_(desk.session),
      code_(code),
      knowledge_(knowledge),
      uses_(uses),
      hierarchy_(hierarchy) {
  rest_.setSingleShot(true);
  rest_.setInterval(kRest);
  connect(&rest_, &QTimer::timeout, this, &NameCommands::LightOccurrences);
  for (auto moved : {&CodeArea::CaretMoved, &CodeArea::ZoomCaretMoved}) {
    connect(&code_, moved, &rest_, qOverload<>(&QTimer::start));
  }
  connect(&knowledge_, &CodeKnowledge::Arrived, &rest_, qOverload<>(&QTimer::start));
  connect(&code_, &CodeArea::LinkFollowed, this, [this] { interaction_.Guarded([this] { ShowDeclaration(); }); });
  connect(&uses_, &UsePanel::UseChosen, this, [this](const symbols::Reference& use) {
    interaction_.Guarded([this, use] {
      const auto known = Known();
      if (known != nullptr) GoToStretch(known->StretchOf(use));
    });
  });
  connect(&hierarchy_, &CallPanel::PlaceChosen, this,
          [this](const project::TextStretch& place) { interaction_.Guarded([this, place] { GoToStretch(place); }); });
  connect(&uses_, &UsePanel::CopyWanted, this, [this] { interaction_.Guarded([this] { CopyList(desk_, Texts()); }); });
  connect(&uses_, &UsePanel::SaveWanted, this, [this] { interaction_.Guarded([this] { SaveList(desk_, Texts()); }); });
  code_.SetAnswers({[this](std::size_t offset) -> std::optional<navigation::TextMatch> {
                      const Meant meant = MeantAt(offset);
                      if (meant.targets.empty()) return std::nullopt;
                      const codedb::ViewIndex view = session_.Views().Current();
                      return meant.known->Shown(session_.View(),
                                                meant.known->StretchOf(meant.known->ModuleOf(view), *meant.name));
                    },
                    [this](std::size_t offset) -> QString {
                      const Meant meant = MeantAt(offset);
                      return meant.targets.empty() ? QString() : DescribeSymbol(*meant.known, meant.targets.front());
                    }});
}

ListTexts NameCommands::Texts() { return {uses_.AsTable(), uses_.AsText(), uses_.Count()}; }

std::shared_ptr<const project::Understanding> NameCommands::Known() {
  auto known = knowledge_.Get();
  if (known == nullptr) Say(knowledge_.MissingText());
  return known;
}

NameCommands::Meant NameCommands::MeantAt(std::size_t offset) {
  Meant meant;
  if (!session_.IsLoaded() || (meant.known = knowledge_.Get()) == nullptr) return meant;
  meant.name = meant.known->NameAt(session_.Views().Current(), session_.View(), offset);
  if (meant.name) meant.targets = meant.name->targets;
  return meant;
}

void NameCommands::Say(const QString& text) { interaction_.ShowProgress(ToUtf8(text)); }

QString NameCommands::NameAtCaret() const {
  return FromCode(navigation::IdentifierAtCaret(session_.View().Text(), code_.Caret()));
}

void NameCommands::ShowDeclaration() {
  if (Known() == nullptr) return;
  const Meant meant = MeantAt(code_.Caret());
  if (meant.targets.empty()) {
    const QString name = NameAtCaret();
    Say(name.isEmpty() ? QStringLiteral("An der Schreibmarke steht kein Name.")
                       : QStringLiteral("„%1“ ist im Projekt nicht deklariert: ein Name der Sprache, des Hosts "
                                        "oder einer Bibliothek.")
                             .arg(name));
  } else if (meant.targets.size() == 1) {
    GoToSymbol(meant.targets.front());
  } else {
    ChooseAmong(meant);
  }
}

void NameCommands::ChooseAmong(const Meant& meant) {
  auto* menu = new QMenu(&code_);
  menu->setObjectName(QStringLiteral("mnuKandidaten"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const symbols::ReferenceIndex& index = meant.known->Index();
  for (std::size_t i = 0; i < meant.targets.size() && i < kMostCandidates; ++i) {
    const SymbolId target = meant.targets[i];
    QString caption = QualifiedName(index, target) + QStringLiteral(" (") + KindText(index, target) + QLatin1Char(')');
    menu->addAction(caption.replace(QLatin1Char('&'), QStringLiteral("&&")), this, [this, target, known = meant.known] {
      interaction_.Guarded([this, target, &known] {
        if (knowledge_.Get() == known) GoToSymbol(target);
      });
    });
  }
  const CodeEditor& editor = code_.Editor();
  menu->popup(editor.viewport()->mapToGlobal(editor.cursorRect().bottomLeft()));
  if (!menu->actions().isEmpty()) menu->setActiveAction(menu->actions().front());
}

void NameCommands::GoToSymbol(SymbolId symbol) {
  const auto known = Known();
  if (known == nullptr) return;
  const symbols::ReferenceIndex& index = known->Index();
  const symbols::Symbol& of = index.SymbolAt(symbol);
  if (of.line > 0) {
    GoToStretch(known->NameOf(symbol));
    return;
  }
  const auto view = known->ViewOf(of.module);
  if (view) session_.JumpTo(*view, {0, 0});
  if (!symbols::IsModule(of.kind)) {
    const QString type = FromUtf8(index.DeclaredType(symbol));
    Say(QStringLiteral("%1%2 ist ein Steuerelement von %3.")
            .arg(SymbolName(index, symbol), type.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(type),
                 ModuleText(index, of.module)));
  }
}

void NameCommands::GoToStretch(const project::TextStretch& stretch) {
  const auto known = Known();
  if (known == nullptr) return;
  const auto view = known->ViewOf(stretch.place.module);
  if (!view) {
    Say(QStringLiteral("Das Modul %1 hat keine Ansicht: Es besteht nur aus Deklarationen von höchstens zwei Zeilen.")
            .arg(ModuleText(known->Index(), stretch.place.module)));
    return;
  }
  const auto match = known->Shown(session_.Views().View(*view), stretch);
  if (match) {
    session_.JumpTo(*view, *match);
  } else {
    session_.JumpTo(*view, {0, 0});
    Say(QStringLiteral("Diese Zeile wird nicht angezeigt: Sie steht im Kopf der Datei."));
  }
}

void NameCommands::ShowUses() {
  if (Known() == nullptr) return;
  const Meant meant = MeantAt(code_.Caret());
  if (!meant.targets.empty()) {
    ListUses(meant.targets);
    return;
  }
  const QString name = NameAtCaret();
  Say(name.isEmpty() ? QStringLiteral("An der Schreibmarke steht kein Name.")
                     : QStringLiteral("„%1“ ist im Projekt nicht deklariert.").arg(name));
}

void NameCommands::ListUsesBetween(symbols::Index from, symbols::Index to) {
  const auto known = Known();
  if (known == nullptr) return;
  uses_.ShowUses(known,
                 QStringLiteral("%1 in %2").arg(ModuleText(known->Index(), to), ModuleText(known->Index(), from)),
                 symbols::UsesBetween(known->Index(), from, to));
}

void NameCommands::ListUses(const std::vector<SymbolId>& targets) {
  const auto known = Known();
  if (known == nullptr || targets.empty()) return;
  const std::vector<SymbolId> all = WithSiblings(known->Index(), targets);
  uses_.ShowUses(known, QualifiedName(known->Index(), targets.front()), UsesOf(known->Index(), all));
}

symbols::SymbolId NameCommands::RoutineAtCaret() {
  const auto known = Known();
  if (known == nullptr) return symbols::kNone;
  const symbols::ReferenceIndex& index = known->Index();
  const Meant meant = MeantAt(code_.Caret());
  const auto called = std::ranges::find_if(
      meant.targets, [&](SymbolId target) { return symbols::IsCallable(index.SymbolAt(target).kind); });
  if (called != meant.targets.end()) return *called;
  const auto place = known->PlaceAt(session_.Views().Current(), session_.View(), code_.Caret());
  const symbols::Index around = place ? index.Code(place->module).RoutineAt(place->line) : symbols::kNone;
  const SymbolId routine = around == symbols::kNone ? symbols::kNone : index.RoutineSymbol(place->module, around);
  if (routine == symbols::kNone) Say(QStringLiteral("An der Schreibmarke steht keine Routine."));
  return routine;
}

void NameCommands::ShowHierarchy() {
  const SymbolId routine = RoutineAtCaret();
  if (routine != symbols::kNone) hierarchy_.ShowRoutine(knowledge_.Get(), routine);
}

void NameCommands::StepThroughUses(int steps) {
  const symbols::Reference* use = uses_.Step(steps);
  if (use == nullptr) {
    Say(QStringLiteral("Es sind keine Verwendungen aufgelistet."));
  } else if (const auto known = Known()) {
    GoToStretch(known->StretchOf(*use));
  }
}

void NameCommands::GoToLine() {
  const navigation::CodeView& view = session_.View();
  const QString prompt = QStringLiteral("Zeile (1 bis %1)").arg(view.LineCount());
  const QString preset = QString::number(view.LineAt(code_.Caret()).value);
  const auto typed = interaction_.Desktop().AskText(QStringLiteral("Gehe zu Zeile"), prompt, preset);
  if (!typed) return;
  bool isNumber = false;
  const qlonglong line = typed->trimmed().toLongLong(&isNumber);
  if (!isNumber || line < 1 || static_cast<std::size_t>(line) > view.LineCount()) {
    interaction_.Show(QStringLiteral("Bitte eine Zahl von 1 bis %1 angeben.").arg(view.LineCount()).toStdString(),
                      MessageIcon::kExclamation);
    return;
  }
  session_.JumpTo(session_.Views().Current(), {view.LineStart(static_cast<std::size_t>(line) - 1), 0});
}

void NameCommands::LightOccurrences() {
  if (!session_.IsLoaded() || knowledge_.IsOnTheWay()) return;
  const Meant meant = MeantAt(code_.Caret());
  std::vector<navigation::TextMatch> matches;
  if (!meant.targets.empty()) {
    const symbols::ReferenceIndex& index = meant.known->Index();
    const symbols::Index module = meant.known->ModuleOf(session_.Views().Current());
    const auto add = [&](const project::TextStretch& stretch) {
      const auto match = meant.known->Shown(session_.View(), stretch);
      if (match && match->length > 0) matches.push_back(*match);
    };
    const std::vector<SymbolId> targets = WithSiblings(index, meant.targets);
    for (const SymbolId target : targets) {
      if (index.SymbolAt(target).module == module && index.SymbolAt(target).line > 0) add(meant.known->NameOf(target));
    }
    // Those of the module on screen, not all that the project has: there may be a million.
    const auto isMeant = [&targets](SymbolId target) { return std::ranges::binary_search(targets, target); };
    for (const symbols::Occurrence& one : index.Occurrences(module)) {
      if (!one.declares && std::ranges::any_of(one.targets, isMeant)) add(meant.known->StretchOf(module, one));
    }
    std::ranges::sort(matches, {}, &navigation::TextMatch::position);
  }
  code_.SetHighlights(matches);
}

}  // namespace quillmate::ui
