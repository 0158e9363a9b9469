#include <algorithm>
#include <iterator>
#include <vector>

#include <quillmate/language/parse.h>

#include "library_names_p.h"
#include "library_p.h"

namespace quillmate::symbols::library {
namespace {

template <typename Visit>
void ForEachName(std::string_view names, Visit visit) {
  while (!names.empty()) {
    const std::size_t blank = names.find(' ');
    const std::string_view name = names.substr(0, blank);
    if (!name.empty()) visit(name);
    names.remove_prefix(blank == std::string_view::npos ? names.size() : blank + 1);
  }
}

NameHash HashOf(std::string_view name) { return language::HashName(language::FoldName(name)); }

/// Names to records of one kind.
template <typename Record>
class Table {
 public:
  Record& operator[](NameHash name) {
    Index& number = names_.Grow(name);
    if (number == kNone) {
      number = static_cast<Index>(records_.size());
      records_.emplace_back();
    }
    return records_[number];
  }
  const Record* Find(NameHash name) const noexcept {
    const Index number = names_.Find(name);
    return number == kNone ? nullptr : &records_[number];
  }

 private:
  HashTable names_;
  std::vector<Record> records_;
};

struct Target {
  StringTarget byPosition[3] = {};  ///< [0]: assigned
};

struct HostObject {
  bool everyClass = false;
  std::uint16_t bases = 0;
};

struct Tables {
  Table<Global> globals;
  Table<Class> classes;
  Table<Result> members;
  Table<std::uint16_t> bases;
  Table<Target> targets;
  Table<std::uint8_t> entryPoints;
  Table<HostObject> hostObjects;
  Table<char> scopes, events, callbacks;
  std::vector<std::string_view> prefixes;

  Tables();
};

Tables::Tables() {
  for (const GlobalNames& row : kGlobals) {
    ForEachName(row.names, [&](std::string_view name) {
      Global& global = globals[HashOf(name)];
      // What may be anything in one host may be anything where nobody knows the host.
      if (global.hosts == 0 || row.result > global.result) global.result = row.result;
      global.hosts |= row.hosts;
    });
  }
  for (const ClassNames& row : kClasses) {
    ForEachName(row.names, [&](std::string_view name) {
      Class& known = classes[HashOf(name)];
      if (!known.known) known = {true, row.result};
    });
  }
  ForEachName(kLateMembers, [&](std::string_view name) { members[HashOf(name)] = Result::kLate; });
  ForEachName(kElementMembers, [&](std::string_view name) { members[HashOf(name)] = Result::kElements; });
  for (const BaseNames& row : kBaseMembers) {
    ForEachName(row.names, [&](std::string_view name) { bases[HashOf(name)] |= row.bases; });
  }
  for (const StringTargetNames& row : kStringTargets) {
    ForEachName(row.names, [&](std::string_view name) { targets[HashOf(name)].byPosition[row.position] = row.target; });
  }
  for (const EntryPoints& row : kEntryPoints) {
    ForEachName(row.names, [&](std::string_view name) { entryPoints[HashOf(name)] |= row.hosts; });
  }
  for (const HostObjects& row : kHostObjects) {
    ForEachName(row.names, [&](std::string_view name) {
      HostObject& object = hostObjects[HashOf(name)];
      object.everyClass = object.everyClass || row.bases == 0;
      object.bases |= row.bases;
    });
  }
  ForEachName(kScopes, [&](std::string_view name) { scopes[HashOf(name)] = 1; });
  ForEachName(kEventNames, [&](std::string_view name) { events[HashOf(name)] = 1; });
  ForEachName(kCallbackTypes, [&](std::string_view name) { callbacks[HashOf(name)] = 1; });
  ForEachName(kConstantPrefixes, [&](std::string_view name) { prefixes.push_back(name); });
}

const Tables& All() {
  static const Tables tables;
  return tables;
}

}  // namespace

std::uint8_t HostBit(Host host) noexcept {
  switch (host) {
    case Host::kExcel:
      return kExcel;
    case Host::kWord:
      return kWord;
    case Host::kAccess:
      return kAccess;
    case Host::kPowerPoint:
      return kPowerPoint;
    case Host::kVb6:
      return kVb6;
    case Host::kUnknown:
      break;
  }
  return kAll;
}

TypeRef TypeOf(Result result) noexcept {
  if (result == Result::kLate) return TypeRef::Of(TypeKind::kObject);
  return TypeRef::Library(result == Result::kElements);
}

Global FindGlobal(NameHash name) noexcept {
  const Global* global = All().globals.Find(name);
  return global == nullptr ? Global{} : *global;
}

bool LooksLikeConstant(std::string_view spelling) noexcept {
  const auto isUpper = [](char c) { return c >= 'A' && c <= 'Z'; };
  // VbMethod, VbGet: some are written with a capital.
  if (spelling.size() > 2 && spelling.starts_with("Vb") && isUpper(spelling[2])) return true;
  std::size_t lower = 0;
  while (lower < spelling.size() && spelling[lower] >= 'a' && spelling[lower] <= 'z') ++lower;
  if (lower == 0 || lower == spelling.size() || !isUpper(spelling[lower])) return false;
  for (const std::string_view prefix : All().prefixes) {
    if (spelling.substr(0, lower) == prefix) return true;
  }
  return false;
}

Class FindClass(NameHash name) noexcept {
  const Class* known = All().classes.Find(name);
  return known == nullptr ? Class{} : *known;
}

bool IsScope(NameHash name) noexcept { return All().scopes.Find(name) != nullptr; }

Result MemberResult(NameHash member) noexcept {
  const Result* result = All().members.Find(member);
  return result == nullptr ? Result::kPlain : *result;
}

std::uint16_t BasesWith(NameHash member) noexcept {
  const std::uint16_t* bases = All().bases.Find(member);
  return bases == nullptr ? std::uint16_t{0} : *bases;
}

StringTarget FindStringTarget(NameHash callee, unsigned position, bool assigned) noexcept {
  if (position > 2) return StringTarget::kNone;
  const Target* target = All().targets.Find(callee);
  if (target == nullptr) return StringTarget::kNone;
  if (assigned) return target->byPosition[0];
  return position == 0 ? StringTarget::kNone : target->byPosition[position];
}

std::uint8_t EntryPointHosts(NameHash name) noexcept {
  const std::uint8_t* hosts = All().entryPoints.Find(name);
  return hosts == nullptr ? std::uint8_t{0} : *hosts;
}

bool IsEventName(NameHash name) noexcept { return All().events.Find(name) != nullptr; }

bool IsCallbackType(NameHash type) noexcept { return All().callbacks.Find(type) != nullptr; }

bool MarksTest(std::string_view comment) noexcept {
  return std::any_of(std::begin(kTestMarks), std::end(kTestMarks),
                     [=](std::string_view mark) { return comment.find(mark) != std::string_view::npos; });
}

bool IsHostObject(NameHash prefix, std::uint16_t bases) noexcept {
  const HostObject* object = All().hostObjects.Find(prefix);
  return object != nullptr && (object->everyClass || (object->bases & bases) != 0);
}

}  // namespace quillmate::symbols::library
