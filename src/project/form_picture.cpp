#include <algorithm>
#include <charconv>
#include <exception>
#include <unordered_map>
#include <utility>

#include <quillmate/language/parse.h>
#include <quillmate/project/form_picture.h>
#include <quillmate/symbols/loose_ends.h>

namespace quillmate::project {
namespace {

using language::Index;
using language::kNone;

/// What a form's own handlers begin with.
constexpr std::string_view kOwnPrefixes[] = {"form",        "userform",     "mdiform",      "report",
                                             "usercontrol", "userdocument", "propertypage", "class"};

/// Twips of one unit of VB's ScaleMode: user, twip, point, pixel, character, inch, millimetre, centimetre.
constexpr double kTwips[] = {1, 1, 20, 15, 120, 1440, 56.7, 567};

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

std::optional<double> NumberOf(std::string_view text) {
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  return read.ec == std::errc() ? std::optional(value) : std::nullopt;
}

/// A text property without its quotes and without what is after it.
std::string TextOf(std::string_view value) {
  if (!value.starts_with('"')) return std::string(value);
  std::string text;
  for (std::size_t at = 1; at < value.size(); ++at) {
    if (value[at] == '"' && (at + 1 == value.size() || value[at + 1] != '"')) break;
    if (value[at] == '"') ++at;
    text += value[at];
  }
  return text;
}

/// The properties of a control that count here.
struct Properties {
  std::optional<double> left, top, width, height, clientWidth, clientHeight, scaleMode;
  std::string caption;
};

void Take(Properties& properties, std::string_view line) {
  const std::size_t sign = line.find('=');
  if (sign == std::string_view::npos) return;
  const std::string name = language::FoldName(Trimmed(line.substr(0, sign)));
  const std::string_view value = Trimmed(line.substr(sign + 1));
  const std::pair<const char*, std::optional<double>*> kNumbers[] = {{"left", &properties.left},
                                                                     {"top", &properties.top},
                                                                     {"width", &properties.width},
                                                                     {"height", &properties.height},
                                                                     {"clientwidth", &properties.clientWidth},
                                                                     {"clientheight", &properties.clientHeight},
                                                                     {"scalemode", &properties.scaleMode}};
  for (const auto& [key, number] : kNumbers) {
    if (name == key) *number = NumberOf(value);
  }
  if (name == "caption") properties.caption = TextOf(value);
}

/// Reads the properties of each control of a designer in the text, by its number.
std::vector<Properties> PropertiesIn(const language::Module& code) {
  std::vector<Properties> all(code.controls.size());
  if (code.controls.empty()) return all;
  std::unordered_map<std::uint32_t, Index> begins;
  for (Index i = 0; i < code.controls.size(); ++i) begins[code.controls[i].line] = i;
  std::vector<Index> open;
  for (std::uint32_t number = code.controls.front().line; number <= code.lines.size(); ++number) {
    const std::string_view line = Trimmed(code.LineText(number));
    const std::string word = language::FoldName(line.substr(0, line.find_first_of(" \t=")));
    const auto begun = begins.find(number);
    if (begun != begins.end()) {
      open.push_back(begun->second);
    } else if (word == "begin" || word == "beginproperty" || line.ends_with("= Begin")) {
      open.push_back(kNone);
    } else if (word == "end" || word == "endproperty") {
      open.pop_back();
    } else if (open.back() != kNone) {
      Take(all[open.back()], line);
    }
    if (open.empty()) break;
  }
  return all;
}

/// A part of an Access form or report, which is no control.
bool IsSection(std::string_view type) {
  const std::string folded = language::FoldName(type);
  return folded == "section" || folded.ends_with("header") || folded.ends_with("footer");
}

class Reader {
 public:
  Reader(const symbols::ReferenceIndex& index, symbols::Index module, const codedb::ModuleFacts* facts)
      : index_(index), code_(index.Code(module)), module_(module), facts_(facts) {}

  std::optional<FormPicture> Read() {
    if (code_.controls.empty() && (facts_ == nullptr || facts_->controls.empty())) return std::nullopt;
    ReadDesigner();
    if (facts_ != nullptr) ReadFacts();
    if (form_.title.empty()) form_.title = index_.Modules()[module_].outsideName;
    if (form_.title.empty()) form_.title = index_.Modules()[module_].name;
    form_.isPartial = !index_.Modules()[module_].controlsKnown;
    FindHandlers();
    FindMissing();
    for (const symbols::LooseEnd& end : symbols::FindLooseEnds(index_)) {
      const bool isDead = end.kind == symbols::LooseEnd::Kind::kHandlerWithoutControl;
      if (isDead && index_.SymbolAt(end.routine).module == module_) form_.deadHandlers.push_back(end.routine);
    }
    return std::move(form_);
  }

 private:
  void ReadDesigner() {
    if (code_.controls.empty()) return;
    const std::vector<Properties> all = PropertiesIn(code_);
    numbers_.assign(code_.controls.size(), -1);
    // By control: what its own children's places count from, and in which unit.
    struct Frame {
      double left = 0, top = 0, unit = 1;
      bool isKnown = true;
    };
    std::vector<Frame> frames(code_.controls.size());
    const Properties& own = all.front();
    form_.title = own.caption;
    form_.width = own.clientWidth ? own.clientWidth : own.width;
    form_.height = own.clientHeight ? own.clientHeight : own.height;
    frames[0].unit = UnitOf(own);
    double sectionTop = 0;
    for (Index i = 1; i < code_.controls.size(); ++i) {
      const language::Control& control = code_.controls[i];
      const Properties& properties = all[i];
      const Index around = control.parent == kNone ? 0 : control.parent;
      const Frame& frame = frames[around];
      if (IsSection(code_.Text(control.type))) {
        frames[i] = {0, sectionTop, 1, true};
        sectionTop += properties.height.value_or(0);
        numbers_[i] = numbers_[around];
        continue;
      }
      FormControl made;
      made.name = std::string(code_.Text(control.nameText));
      made.type = std::string(code_.Text(control.type));
      made.type.erase(0, made.type.rfind('.') + 1);
      made.caption = properties.caption;
      made.index = control.index;
      made.parent = numbers_[around];
      const bool isPlaced = frame.isKnown && !control.menu && (properties.left || properties.width);
      if (isPlaced) {
        // What a source leaves out is 0.
        made.left = frame.left + properties.left.value_or(0) * frame.unit;
        made.top = frame.top + properties.top.value_or(0) * frame.unit;
        if (properties.width) made.width = *properties.width * frame.unit;
        if (properties.height) made.height = *properties.height * frame.unit;
      }
      // Access tells every place from the section's corner.
      const bool isAccess = code_.facts.accessExport;
      frames[i] = isAccess ? frame : Frame{made.left.value_or(0), made.top.value_or(0), UnitOf(properties), isPlaced};
      numbers_[i] = static_cast<int>(form_.controls.size());
      form_.controls.push_back(std::move(made));
    }
    if (sectionTop > 0) form_.height = sectionTop;
  }

  static double UnitOf(const Properties& properties) {
    const auto mode = static_cast<std::size_t>(std::max(0.0, properties.scaleMode.value_or(1)));
    return mode < std::size(kTwips) ? kTwips[mode] : 1;
  }

  void ReadFacts() {
    std::unordered_map<std::string, int> known;
    for (std::size_t i = 0; i < form_.controls.size(); ++i) {
      known.emplace(language::FoldName(form_.controls[i].name), static_cast<int>(i));
    }
    const std::size_t first = form_.controls.size();
    std::vector<const codedb::ControlFact*> taken;
    for (const codedb::ControlFact& fact : facts_->controls) {
      if (IsSection(fact.type)) continue;
      if (!known.emplace(language::FoldName(fact.name), static_cast<int>(form_.controls.size())).second) continue;
      FormControl made;
      made.name = fact.name;
      made.type = fact.type.substr(fact.type.rfind('.') + 1);
      made.caption = fact.caption;
      made.left = fact.left;
      made.top = fact.top;
      made.width = fact.width;
      made.height = fact.height;
      form_.controls.push_back(std::move(made));
      taken.push_back(&fact);
    }
    for (std::size_t i = 0; i < taken.size(); ++i) {
      const auto parent = known.find(language::FoldName(taken[i]->parent));
      const int number = parent == known.end() ? -1 : parent->second;
      if (number != static_cast<int>(first + i)) form_.controls[first + i].parent = number;
    }
    for (std::size_t i = first; i < form_.controls.size(); ++i) AddPlaceOfParents(i, first, taken);
  }

  /// Facts tell places from the corner of what is around; `taken` are those of the controls from `first` on.
  void AddPlaceOfParents(std::size_t control, std::size_t first, const std::vector<const codedb::ControlFact*>& taken) {
    FormControl& made = form_.controls[control];
    // A damaged file may tell of controls that are in each other.
    std::size_t steps = taken.size();
    for (int at = made.parent; at >= static_cast<int>(first) && steps > 0; --steps) {
      const auto number = static_cast<std::size_t>(at);
      if (made.left) *made.left += taken[number - first]->left.value_or(0);
      if (made.top) *made.top += taken[number - first]->top.value_or(0);
      at = form_.controls[number].parent;
    }
  }

  /// Routines are handlers by their names.
  void FindHandlers() {
    std::unordered_map<std::string, std::vector<int>> byPrefix;
    for (std::size_t i = 0; i < form_.controls.size(); ++i) {
      byPrefix[language::FoldName(form_.controls[i].name)].push_back(static_cast<int>(i));
    }
    for (Index i = 0; i < numbers_.size(); ++i) {
      const language::Control& control = code_.controls[i];
      if (control.eventPrefix.length == 0) continue;
      byPrefix[language::FoldName(code_.Text(control.eventPrefix))].push_back(numbers_[i]);
    }
    const symbols::ModuleInfo& info = index_.Modules()[module_];
    for (symbols::SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
      if (!symbols::IsRoutine(index_.SymbolAt(symbol).kind)) continue;
      const std::string_view name = index_.Name(symbol);
      const std::size_t line = name.rfind('_');
      if (line == std::string_view::npos || line == 0) continue;
      const std::string prefix = language::FoldName(name.substr(0, line));
      const FormEvent event{std::string(name.substr(line + 1)), symbol, {}};
      const auto found = byPrefix.find(prefix);
      if (found != byPrefix.end()) {
        for (const int control : found->second) EventsOf(control).push_back(event);
      } else if (std::ranges::find(kOwnPrefixes, prefix) != std::end(kOwnPrefixes)) {
        form_.events.push_back(event);
      }
    }
  }

  std::vector<FormEvent>& EventsOf(int control) {
    return control < 0 ? form_.events : form_.controls[static_cast<std::size_t>(control)].events;
  }

  /// What the form itself says of its events.
  void FindMissing() {
    for (const language::EventProperty& property : code_.eventProperties) {
      std::string_view name = code_.Text(property.property);
      if (name.starts_with("On")) name.remove_prefix(2);
      std::vector<FormEvent>& events = EventsOf(numbers_[property.control]);
      const std::string_view value = code_.Text(property.value);
      const std::string folded = language::FoldName(name);
      const bool isThere =
          std::ranges::any_of(events, [&](const FormEvent& e) { return language::FoldName(e.name) == folded; });
      // Folding takes the brackets off.
      const bool isRoutine = language::FoldName(value) == language::FoldName("[Event Procedure]");
      if (isRoutine && isThere) continue;
      events.push_back({std::string(name), symbols::kNone, isRoutine ? std::string() : std::string(value)});
    }
  }

  const symbols::ReferenceIndex& index_;
  const language::Module& code_;
  symbols::Index module_;
  const codedb::ModuleFacts* facts_;
  FormPicture form_;
  /// By control of the designer: its number in the picture, -1 for the form.
  std::vector<int> numbers_;
};

}  // namespace

bool FormPicture::HasPlaces() const {
  return std::ranges::any_of(controls, [](const FormControl& control) { return control.left && control.top; });
}

std::optional<FormPicture> ReadForm(const symbols::ReferenceIndex& index, symbols::Index module,
                                    const codedb::ModuleFacts* facts) {
  return Reader(index, module, facts).Read();
}

std::optional<FormPicture> ReadFormOf(const Understanding& known, symbols::Index module,
                                      const std::filesystem::path& folder) {
  std::optional<codedb::Facts> facts;
  try {
    facts = codedb::ReadFacts(folder);
  } catch (const std::exception&) {
    // What the code itself tells is left.
  }
  const symbols::ModuleInfo& info = known.Index().Modules()[module];
  const codedb::ModuleFacts* own = nullptr;
  if (facts) {
    for (const codedb::ModuleFacts& one : facts->modules) {
      const bool isSame = one.project == static_cast<int>(info.project) && one.name == info.name;
      if (isSame) own = &one;
    }
  }
  return ReadForm(known.Index(), module, own);
}

}  // namespace quillmate::project
