#include "symbols/generated_project.h"

#include <algorithm>
#include <array>

namespace quillmate::symbols::testing {
namespace {

/// Few names, so that everything is called alike and hides something else. None is a word of the language or of a
/// library.
constexpr std::array<std::string_view, 14> kNames = {"Wert",   "Menge",  "Kunde", "Preis_Neu", "Größe",
                                                     "Knoten", "Los",    "alt",   "neu",       "Zeiger",
                                                     "x1",     "Straße", "tmp",   "Satz"};

enum class ModuleShape : std::uint8_t { kStandard, kClass, kForm };

class Generator {
 public:
  explicit Generator(std::uint32_t seed) : random_(seed) {}

  GeneratedProject Run() {
    project_.sources.projects.emplace_back().name = "Projekt";
    const int modules = 2 + Pick(4);
    for (int module = 0; module < modules; ++module) InventModule(module);
    for (int module = 0; module < modules; ++module) WriteModule(module);
    return std::move(project_);
  }

 private:
  struct Routine {
    int entity = -1;
    std::vector<int> parameters, locals;
    int label = -1;
  };

  int Pick(int count) { return static_cast<int>(random_() % static_cast<std::uint32_t>(count)); }
  bool Chance(int percent) { return Pick(100) < percent; }
  std::string Name() { return std::string(kNames[static_cast<std::size_t>(Pick(static_cast<int>(kNames.size())))]); }
  Entity& At(int entity) { return project_.entities[static_cast<std::size_t>(entity)]; }

  // ------------------------------------------------------------------------------------------------- inventing

  int Add(Entity entity) {
    project_.entities.push_back(std::move(entity));
    return static_cast<int>(project_.entities.size()) - 1;
  }

  /// A name that the module's own level does not have yet.
  std::string FreeName(int module) {
    std::string name = Name();
    for (int tries = 0; tries < 40 && TakenInModule(module, name); ++tries) name = Name() + (tries > 20 ? "9" : "");
    return TakenInModule(module, name) ? name + std::to_string(project_.entities.size()) : name;
  }

  bool TakenInModule(int module, const std::string& name) const {
    return std::any_of(project_.entities.begin(), project_.entities.end(), [&](const Entity& e) {
      return e.module == module && e.routine < 0 && e.name == name && e.kind != EntityKind::kTypeMember;
    });
  }

  void InventModule(int module) {
    const auto shape = module == 0 ? ModuleShape::kStandard : static_cast<ModuleShape>(Pick(3));
    shapes_.push_back(shape);
    ModuleSource& source = project_.sources.modules.emplace_back();
    source.name = "Mod" + std::string(1, static_cast<char>('A' + module));
    source.kind = shape == ModuleShape::kStandard ? language::ModuleKind::kStandard
                  : shape == ModuleShape::kClass  ? language::ModuleKind::kClass
                                                  : language::ModuleKind::kForm;
    source.controlsKnown = true;
    moduleEntities_.push_back(Add({EntityKind::kModule, source.name, module}));
    const auto add = [&](EntityKind kind) {
      return Add({kind, FreeName(module), module, -1, -1, Chance(40), -1, 0, 0});
    };
    if (shape == ModuleShape::kForm) {
      const int control = add(EntityKind::kControl);
      At(control).isPrivate = false;
      source.controls.push_back({At(control).name, "", false});
    }
    for (int count = Pick(3); count > 0; --count) {
      const bool record = Chance(60);
      const int block = add(record ? EntityKind::kType : EntityKind::kEnum);
      if (shape != ModuleShape::kStandard && record) At(block).isPrivate = true;
      for (int members = 1 + Pick(3); members > 0; --members) {
        const bool isPrivate = At(block).isPrivate;
        const std::string name = record ? Name() + std::to_string(members) : FreeName(module);
        Add({record ? EntityKind::kTypeMember : EntityKind::kEnumMember, name, module, -1, block, isPrivate});
      }
    }
    for (int count = 1 + Pick(4); count > 0; --count) At(add(EntityKind::kVariable)).type = TypeFor(module);
    if (Chance(60)) {
      const int constant = add(EntityKind::kConstant);
      if (shape != ModuleShape::kStandard) At(constant).isPrivate = true;
    }
    if (shape != ModuleShape::kStandard && Chance(50)) At(add(EntityKind::kEvent)).isPrivate = false;
    for (int count = 1 + Pick(4); count > 0; --count) InventRoutine(module);
  }

  /// A class or a type that the module sees by an unambiguous name, or none.
  int TypeFor(int module) {
    std::vector<int> types;
    for (int entity = 0; entity < static_cast<int>(project_.entities.size()); ++entity) {
      const Entity& e = At(entity);
      if (e.kind == EntityKind::kModule && shapes_[static_cast<std::size_t>(e.module)] != ModuleShape::kStandard) {
        types.push_back(entity);
      }
      if (e.kind == EntityKind::kType && e.module == module) types.push_back(entity);
    }
    return types.empty() || Chance(50) ? -1 : types[static_cast<std::size_t>(Pick(static_cast<int>(types.size())))];
  }

  void InventRoutine(int module) {
    constexpr EntityKind kKinds[] = {EntityKind::kSub, EntityKind::kFunction, EntityKind::kGet};
    const EntityKind kind = kKinds[Pick(3)];
    const std::string name = FreeName(module);
    const bool isPrivate = Chance(30);
    for (const bool second : {false, true}) {
      if (second && (kind != EntityKind::kGet || Chance(30))) break;
      Routine routine;
      routine.entity = Add({second ? EntityKind::kLet : kind, name, module, -1, -1, isPrivate});
      const auto addOwn = [&](EntityKind own, std::vector<int>& list) {
        for (int tries = 0; tries < 10; ++tries) {
          const std::string chosen = Name();
          const auto same = [&](int other) { return At(other).name == chosen; };
          if (chosen == name || std::any_of(routine.parameters.begin(), routine.parameters.end(), same) ||
              std::any_of(routine.locals.begin(), routine.locals.end(), same)) {
            continue;
          }
          list.push_back(Add({own, chosen, module, routine.entity, routine.entity, true, TypeFor(module)}));
          return;
        }
      };
      const int parameters = kind == EntityKind::kGet ? (second ? 1 : 0) : Pick(3);
      for (int count = parameters; count > 0; --count) addOwn(EntityKind::kParameter, routine.parameters);
      for (int count = Pick(3); count > 0; --count) addOwn(EntityKind::kLocal, routine.locals);
      if (Chance(40)) routine.label = Add({EntityKind::kLabel, Name(), module, routine.entity, routine.entity});
      routines_.push_back(routine);
    }
  }

  // --------------------------------------------------------------------------------------------- what a name means

  /// Everything that a bare name means in a routine: the tiers, one after the other, by looking at all there is.
  std::vector<int> Meaning(const std::string& name, int module, int routine) {
    std::vector<int> found;
    const auto collect = [&](auto counts) {
      for (int entity = 0; entity < static_cast<int>(project_.entities.size()); ++entity) {
        if (At(entity).name == name && counts(At(entity))) found.push_back(entity);
      }
      return !found.empty();
    };
    const auto isValue = [](const Entity& e) {
      return e.kind != EntityKind::kTypeMember && e.kind != EntityKind::kType && e.kind != EntityKind::kEvent &&
             e.kind != EntityKind::kLabel && e.kind != EntityKind::kModule;
    };
    if (collect([&](const Entity& e) { return isValue(e) && e.routine == routine && e.routine >= 0; })) return found;
    if (collect([&](const Entity& e) { return isValue(e) && e.module == module && e.routine < 0; })) return found;
    collect([&](const Entity& e) {
      const bool standard = shapes_[static_cast<std::size_t>(e.module)] == ModuleShape::kStandard;
      const bool ofEnum = e.kind == EntityKind::kEnum || e.kind == EntityKind::kEnumMember;
      return isValue(e) && e.routine < 0 && !e.isPrivate && (standard || ofEnum);
    });
    return found;
  }

  bool MeansOnly(int entity, int module, int routine) {
    const std::vector<int> found = Meaning(At(entity).name, module, routine);
    return !found.empty() && std::all_of(found.begin(), found.end(), [&](int other) {
      const bool property = At(other).kind == EntityKind::kGet || At(other).kind == EntityKind::kLet;
      return other == entity || (property && At(other).module == At(entity).module && IsProperty(entity));
    });
  }
  bool IsProperty(int entity) { return At(entity).kind == EntityKind::kGet || At(entity).kind == EntityKind::kLet; }

  // ---------------------------------------------------------------------------------------------------- writing

  std::string& Text() { return project_.sources.modules[static_cast<std::size_t>(module_)].text; }
  void Write(std::string_view text) {
    Text() += text;
    for (const char c : text) {
      if (c == '\n') {
        ++line_;
        column_ = 1;
      } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80) {
        ++column_;
      }
    }
  }
  void Declare(int entity) {
    At(entity).line = line_;
    At(entity).column = column_;
    Write(At(entity).name);
  }
  /// Case never matters.
  std::string Respelled(std::string name) {
    if (Chance(20)) {
      for (char& c : name) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 0x20) : c;
    }
    return name;
  }
  void WriteUse(int entity, Use use, Certainty certainty = Certainty::kSure) {
    project_.uses.push_back({entity, module_, line_, column_, use, certainty});
    Write(Respelled(At(entity).name));
  }

  void WriteTypeClause(int type) {
    if (type < 0) return Write(Chance(50) ? " As Long" : "");
    Write(" As ");
    WriteUse(type, Use::kType);
  }

  void WriteModule(int module) {
    module_ = module;
    line_ = column_ = 1;
    Write("Option Explicit\r\n");
    for (int entity = 0; entity < static_cast<int>(project_.entities.size()); ++entity) {
      if (At(entity).module == module && At(entity).routine < 0) WriteDeclaration(entity);
    }
    for (const Routine& routine : routines_) {
      if (At(routine.entity).module == module) WriteRoutine(routine);
    }
  }

  void WriteDeclaration(int entity) {
    const std::string_view scope = At(entity).isPrivate ? "Private " : "Public ";
    switch (At(entity).kind) {
      case EntityKind::kVariable:
        Write(scope);
        Declare(entity);
        WriteTypeClause(At(entity).type);
        return Write("\r\n");
      case EntityKind::kConstant:
        Write(scope);
        Write("Const ");
        Declare(entity);
        return Write(" = 5 ' Wert Los\r\n");
      case EntityKind::kEvent:
        Write("Event ");
        Declare(entity);
        return Write("()\r\n");
      case EntityKind::kType:
      case EntityKind::kEnum: {
        const bool record = At(entity).kind == EntityKind::kType;
        Write(scope);
        Write(record ? "Type " : "Enum ");
        Declare(entity);
        Write("\r\n");
        for (int member = entity + 1; member < static_cast<int>(project_.entities.size()); ++member) {
          if (At(member).parent != entity) continue;
          Write("  ");
          Declare(member);
          Write(record ? " As Long\r\n" : "\r\n");
        }
        return Write(record ? "End Type\r\n" : "End Enum\r\n");
      }
      default:
        return;
    }
  }

  void WriteRoutine(const Routine& routine) {
    routine_ = routine.entity;
    const Entity header = At(routine.entity);
    Write(header.isPrivate ? "Private " : Chance(50) ? "Public " : "");
    const char* const words[] = {"Sub ", "Function ", "Property Get ", "Property Let "};
    Write(words[static_cast<int>(header.kind) - static_cast<int>(EntityKind::kSub)]);
    Declare(routine.entity);
    Write("(");
    for (std::size_t at = 0; at < routine.parameters.size(); ++at) {
      Write(at > 0 ? (Chance(20) ? ", _\r\n    ByVal " : ", ByVal ") : "ByVal ");
      Declare(routine.parameters[at]);
      WriteTypeClause(At(routine.parameters[at]).type);
    }
    Write(")\r\n");
    for (const int local : routine.locals) {
      Write("  Dim ");
      Declare(local);
      WriteTypeClause(At(local).type);
      Write("\r\n");
    }
    for (int count = 2 + Pick(6); count > 0; --count) WriteStatement(routine);
    if (routine.label >= 0) {
      Declare(routine.label);
      Write(":\r\n");
    }
    const char* const ends[] = {"End Sub\r\n", "End Function\r\n", "End Property\r\n", "End Property\r\n"};
    Write(ends[static_cast<int>(header.kind) - static_cast<int>(EntityKind::kSub)]);
    routine_ = -1;
  }

  void WriteStatement(const Routine& routine) {
    switch (Pick(9)) {
      case 0:
        if (routine.label < 0) return;
        Write("  On Error GoTo ");
        WriteUse(routine.label, Use::kLabel);
        return Write("\r\n");
      case 1:
        return WriteRaise();
      case 2:
        return WriteCall();
      case 3:
        return WriteBlock();
      case 4:
        return WriteWith();
      case 5:
        return WriteAmbiguous();
      default:
        return WriteAssignment();
    }
  }

  void WriteRaise() {
    for (int entity = 0; entity < static_cast<int>(project_.entities.size()); ++entity) {
      if (At(entity).module != module_ || At(entity).kind != EntityKind::kEvent) continue;
      Write("  RaiseEvent ");
      WriteUse(entity, Use::kRaise);
      return Write(" ' Los\r\n");
    }
  }

  bool IsReadable(int entity) {
    const EntityKind kind = At(entity).kind;
    if (kind == EntityKind::kFunction || kind == EntityKind::kGet) return entity != routine_;
    if (kind == EntityKind::kLet) return false;
    return kind == EntityKind::kConstant || kind == EntityKind::kEnumMember || IsWritable(entity);
  }
  bool IsWritable(int entity) {
    const EntityKind kind = At(entity).kind;
    if (At(entity).type >= 0) return false;
    return kind == EntityKind::kVariable || kind == EntityKind::kParameter || kind == EntityKind::kLocal ||
           kind == EntityKind::kTypeMember || kind == EntityKind::kControl || kind == EntityKind::kLet;
  }
  static bool HasBody(EntityKind kind) {
    return kind == EntityKind::kSub || kind == EntityKind::kFunction || kind == EntityKind::kGet ||
           kind == EntityKind::kLet;
  }

  /// Writes the way to an entity and its name; false, with nothing written, when there is none from here.
  bool WritePath(int entity, Use use, int depth = 0) {
    const Entity target = At(entity);
    const int own = module_;
    const bool inRoutine = target.routine >= 0;
    if (inRoutine && target.routine != routine_) return false;
    const ModuleShape shape = shapes_[static_cast<std::size_t>(target.module)];
    if (target.kind != EntityKind::kTypeMember && MeansOnly(entity, own, routine_) &&
        !(IsProperty(entity) && IsProperty(routine_) && At(routine_).name == target.name) && Chance(70)) {
      WriteUse(entity, use);
      return true;
    }
    if (inRoutine || depth > 2) return false;
    if (target.kind == EntityKind::kTypeMember) return WriteThroughObject(entity, target.parent, use, depth);
    const bool visible = !target.isPrivate || target.module == own;
    if (!visible) return false;
    if (target.kind == EntityKind::kEnumMember) {
      if (!MeansOnly(target.parent, own, routine_)) return false;
      WriteUse(target.parent, Use::kType);
      Write(".");
      WriteUse(entity, use);
      return true;
    }
    if (target.kind == EntityKind::kConstant && shape != ModuleShape::kStandard) return false;
    const int module = moduleEntities_[static_cast<std::size_t>(target.module)];
    if (shape == ModuleShape::kStandard) {
      WriteUse(module, Use::kType);
    } else if (target.module == own) {
      Write("Me");
    } else if (shape == ModuleShape::kForm && Chance(50)) {
      WriteUse(module, Use::kRead);
    } else {
      return WriteThroughObject(entity, module, use, depth);
    }
    Write(Chance(15) ? " _\r\n    ." : ".");
    WriteUse(entity, use);
    return true;
  }

  /// A variable of the type, and the member after it.
  bool WriteThroughObject(int entity, int type, Use use, int depth) {
    std::vector<int> objects;
    for (int other = 0; other < static_cast<int>(project_.entities.size()); ++other) {
      if (At(other).type == type && !HasBody(At(other).kind)) objects.push_back(other);
    }
    std::shuffle(objects.begin(), objects.end(), random_);
    for (const int object : objects) {
      if (!WritePath(object, Use::kRead, depth + 1)) continue;
      Write(".");
      WriteUse(entity, use);
      return true;
    }
    return false;
  }

  /// One of those that `counts`, tried in random order.
  template <typename Counts>
  bool WriteAny(Counts counts, Use variable, Use routine) {
    for (int tries = 0; tries < 8; ++tries) {
      const int entity = Pick(static_cast<int>(project_.entities.size()));
      if (!counts(entity)) continue;
      if (WritePath(entity, HasBody(At(entity).kind) ? routine : variable)) return true;
    }
    return false;
  }

  void WriteExpression() {
    for (int count = 1 + Pick(2); count > 0; --count) {
      if (!WriteAny([&](int e) { return IsReadable(e); }, Use::kRead, Use::kCall)) Write("\"Los\"");
      Write(count > 1 ? (Chance(50) ? " + " : " & ") : "");
    }
  }

  void WriteAssignment() {
    Write("  ");
    const bool found = WriteAny([&](int e) { return IsWritable(e) && e != routine_; }, Use::kWrite, Use::kCall);
    Write(found ? " = " : "Debug.Print ");
    WriteExpression();
    Write("\r\n");
  }

  void WriteCall() {
    const std::size_t before = Text().size();
    Write(Chance(30) ? "  Call " : "  ");
    int called = -1;
    const bool found = WriteAny(
        [&](int e) {
          if (At(e).kind != EntityKind::kSub) return false;
          called = e;
          return true;
        },
        Use::kRead, Use::kCall);
    if (!found) return Write(Text().size() - before > 2 ? "Debug.Print\r\n" : "Beep\r\n");
    const bool parentheses = Text().compare(before, 6, "  Call") == 0;
    const auto routine =
        std::find_if(routines_.begin(), routines_.end(), [&](const Routine& r) { return r.entity == called; });
    if (!routine->parameters.empty() && Chance(60)) {
      Write(parentheses ? "(" : " ");
      WriteUse(routine->parameters.front(), Use::kNamedArgument);
      Write(":=");
      WriteExpression();
      Write(parentheses ? ")" : "");
    }
    Write("\r\n");
  }

  void WriteBlock() {
    Write("  If ");
    WriteExpression();
    Write(" Then\r\n  ");
    WriteAssignment();
    Write("  Else: ");
    WriteAssignment();
    Write("  End If\r\n");
  }

  /// With an object of a class or a type; inside it one member after a dot.
  void WriteWith() {
    std::vector<int> members;
    for (int entity = 0; entity < static_cast<int>(project_.entities.size()); ++entity) {
      if (!IsWritable(entity) || At(entity).routine >= 0) continue;
      const Entity& e = At(entity);
      const bool ofClass = shapes_[static_cast<std::size_t>(e.module)] == ModuleShape::kClass && !e.isPrivate;
      if (e.kind == EntityKind::kTypeMember || ofClass) members.push_back(entity);
    }
    if (members.empty()) return;
    const int member = members[static_cast<std::size_t>(Pick(static_cast<int>(members.size())))];
    const int type = At(member).kind == EntityKind::kTypeMember
                         ? At(member).parent
                         : moduleEntities_[static_cast<std::size_t>(At(member).module)];
    for (int object = 0; object < static_cast<int>(project_.entities.size()); ++object) {
      if (At(object).type != type || HasBody(At(object).kind) || !MeansOnly(object, module_, routine_)) continue;
      Write("  With ");
      WriteUse(object, Use::kRead);
      Write("\r\n    .");
      WriteUse(member, HasBody(At(member).kind) ? Use::kCall : Use::kWrite);
      Write(" = ");
      WriteExpression();
      return Write("\r\n  End With\r\n");
    }
  }

  /// A bare name that several modules have.
  void WriteAmbiguous() {
    const std::string name = Name();
    const std::vector<int> found = Meaning(name, module_, routine_);
    const auto simple = [&](int e) { return IsReadable(e) && At(e).kind != EntityKind::kLet && !IsProperty(e); };
    if (found.size() < 2 || !std::all_of(found.begin(), found.end(), simple)) return;
    Write("  Debug.Print ");
    for (const int entity : found) {
      const Use use = HasBody(At(entity).kind) ? Use::kCall : Use::kRead;
      project_.uses.push_back({entity, module_, line_, column_, use, Certainty::kAmbiguous});
    }
    Write(name);
    Write("\r\n");
  }

  std::mt19937 random_;
  GeneratedProject project_;
  std::vector<ModuleShape> shapes_;
  std::vector<int> moduleEntities_;
  std::vector<Routine> routines_;
  int module_ = 0;
  int routine_ = -1;
  std::uint32_t line_ = 1, column_ = 1;
};

}  // namespace

GeneratedProject GenerateProject(std::uint32_t seed) { return Generator(seed).Run(); }

}  // namespace quillmate::symbols::testing
