#include <array>

#include <quillmate/symbols/kinds.h>
#include <quillmate/text/operations.h>

namespace quillmate::symbols {
namespace {

struct Words {
  std::string_view english;
  std::string_view german;
};

constexpr Words kKinds[] = {
    {"module", "Modul"},
    {"class", "Klasse"},
    {"form", "Formular"},
    {"document", "Dokument"},
    {"sub", "Sub"},
    {"function", "Function"},
    {"property-get", "Property Get"},
    {"property-let", "Property Let"},
    {"property-set", "Property Set"},
    {"declare", "Declare"},
    {"event", "Ereignis"},
    {"variable", "Variable"},
    {"constant", "Konstante"},
    {"parameter", "Parameter"},
    {"type", "Typ"},
    {"type-member", "Typelement"},
    {"enum", "Aufzählung"},
    {"enum-member", "Aufzählungswert"},
    {"label", "Sprungmarke"},
    {"control", "Steuerelement"},
};
static_assert(std::size(kKinds) == kSymbolKindCount);

constexpr Words kUses[] = {
    {"call", "Aufruf"},     {"read", "liest"},
    {"write", "schreibt"},  {"type", "Typ"},
    {"address", "Adresse"}, {"implements", "implementiert"},
    {"raise", "löst aus"},  {"with-events", "behandelt"},
    {"label", "springt"},   {"named-argument", "benanntes Argument"},
};
static_assert(std::size(kUses) == kUseCount);

constexpr Words kCertainties[] = {
    {"sure", "sicher"}, {"ambiguous", "mehrdeutig"}, {"by-name", "dem Namen nach"}, {"string", "Text"},
    {"host", "Host"},   {"inactive", "inaktiv"},
};
static_assert(std::size(kCertainties) == kCertaintyCount);

constexpr Words kGrades[] = {
    {"certain", "sicher"}, {"host", "host"},        {"text", "text"},           {"possible", "möglich"},
    {"self", "selbst"},    {"inactive", "inaktiv"}, {"written", "geschrieben"},
};

constexpr std::string_view kVisibilities[] = {"public", "private", "friend", "global", "local"};

}  // namespace

std::string_view Word(SymbolKind kind) noexcept { return kKinds[static_cast<std::size_t>(kind)].english; }
std::string_view Word(Use use) noexcept { return kUses[static_cast<std::size_t>(use)].english; }
std::string_view Word(Certainty certainty) noexcept {
  return kCertainties[static_cast<std::size_t>(certainty)].english;
}
std::string_view Word(Grade grade) noexcept { return kGrades[static_cast<std::size_t>(grade)].english; }
std::string_view Word(Visibility visibility) noexcept { return kVisibilities[static_cast<std::size_t>(visibility)]; }

std::string_view GermanWord(Grade grade) noexcept { return kGrades[static_cast<std::size_t>(grade)].german; }
std::string_view GermanWord(SymbolKind kind) noexcept { return kKinds[static_cast<std::size_t>(kind)].german; }
std::string_view GermanWord(Use use) noexcept { return kUses[static_cast<std::size_t>(use)].german; }
std::string_view GermanWord(Certainty certainty) noexcept {
  return kCertainties[static_cast<std::size_t>(certainty)].german;
}

std::optional<Grade> GradeFromWord(std::string_view word) noexcept {
  for (std::size_t number = 0; number < std::size(kGrades); ++number) {
    if (text::EqualsIgnoreCase(word, kGrades[number].english) || text::EqualsIgnoreCase(word, kGrades[number].german)) {
      return static_cast<Grade>(number);
    }
  }
  return std::nullopt;
}

}  // namespace quillmate::symbols
