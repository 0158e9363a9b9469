#include <algorithm>
#include <optional>
#include <set>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/identity.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>

#include "exchange_p.h"
#include "system_p.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOld = "alt";
constexpr const char* kPlan = "plan";
constexpr const char* kBack = "zurueck";
constexpr std::string_view kTitle = "Quillmate 1";
constexpr std::string_view kEnd = "ende";
constexpr std::string_view kFreshLine = "neu ";
constexpr std::string_view kOldLine = "alt ";
constexpr std::string_view kFileLine = "datei ";

/// What a record says.
struct Plan {
  std::set<fs::path> fresh;
  std::set<fs::path> old;
  /// The one file that is written over, with its number; empty where files change their places.
  fs::path file;
  std::string number;
};

/// By which its file system knows a file; empty when there is none.
std::string NumberOf(const fs::path& file) {
  const std::optional<FileIdentity> identity = IdentityOf(file);
  if (!identity) return {};
  return std::to_string(identity->number[0]) + "-" + std::to_string(identity->number[1]);
}

std::string PlanText(const Plan& plan) {
  std::string text(kTitle);
  const auto line = [&text](std::string_view kind, const fs::path& path, const std::string& before = {}) {
    text.append("\n").append(kind).append(before).append(PathText(path));
  };
  for (const fs::path& name : plan.old) line(kOldLine, name);
  for (const fs::path& name : plan.fresh) line(kFreshLine, name);
  if (!plan.file.empty()) line(kFileLine, plan.file, plan.number + " ");
  return text.append("\n").append(kEnd).append("\n");
}

/// Whoever writes a record must not lead the program anywhere else: what is unpacked from an archive may hold one.
bool IsPlainName(const fs::path& name) {
  return name.has_filename() && name == name.filename() && name != "." && name != "..";
}

std::optional<Plan> ReadPlan(const fs::path& file) {
  const std::string text = ReadWholeFile(file);
  const std::vector<std::string_view> lines = text::Split(text, "\n");
  if (lines.size() < 3 || lines.front() != kTitle || lines[lines.size() - 2] != kEnd) return std::nullopt;
  Plan plan;
  for (auto line = lines.begin() + 1; line != lines.end() - 2; ++line) {
    const fs::path path = PathFromText(line->substr(line->find(' ') + 1));
    if (line->starts_with(kFileLine)) {
      const std::string_view rest = line->substr(kFileLine.size());
      plan.number = rest.substr(0, rest.find(' '));
      plan.file = PathFromText(rest.substr(std::min(plan.number.size() + 1, rest.size())));
    } else if (!IsPlainName(path)) {
      return std::nullopt;
    } else {
      (line->starts_with(kFreshLine) ? plan.fresh : plan.old).insert(path);
    }
  }
  return plan;
}

/// A file is written over from its own folder or from the one for temporary files, and only while it is the very file
/// that the record was made for.
bool MayFollow(const Plan& plan, const fs::path& place) {
  if (plan.file.empty()) return true;
  const auto folder = IdentityOf(place);
  return (folder == IdentityOf(plan.file.parent_path()) || folder == IdentityOf(TemporaryFolder())) &&
         !plan.number.empty() && NumberOf(plan.file) == plan.number;
}

/// From here on the next run would go on.
std::error_code WritePlan(const fs::path& work, const Plan& plan) {
  const fs::path draft = work / "entwurf";
  std::error_code error;
  OpenFile file = OpenToWrite(draft, WriteMode::kReplace, error);
  if (!error) error = file.Write(PlanText(plan));
  if (!error) error = file.Flush();
  if (!error) error = file.Close();
  if (!error) error = Rename(draft, work / kPlan, NewName::kFree);
  return error ? error : FlushFolder(work);
}

std::error_code CopyBytes(OpenFile& from, OpenFile& to) {
  std::string piece(std::size_t{1} << 16U, '\0');
  for (;;) {
    std::error_code error;
    const std::size_t got = from.Read(piece.data(), piece.size(), error);
    if (error || got == 0) return error;
    if ((error = to.Write({piece.data(), got}))) return error;
  }
}

/// The target is never shorter in between than it has to be: the room that it has is what a full disk leaves it. It is
/// cut off only when all bytes have reached the disk, since it might not grow again.
std::error_code CopyOver(const fs::path& from, const fs::path& to, WriteMode mode) {
  std::error_code error;
  OpenFile source = OpenToRead(from, error);
  if (error) return error;
  OpenFile target = OpenToWrite(to, mode, error);
  if (!error) error = CopyBytes(source, target);
  if (!error) error = target.Flush();
  if (!error) error = target.CutHere();
  if (!error) error = target.Flush();
  return error ? error : target.Close();
}

/// The steps between two states of a place.
class Steps {
 public:
  Steps(const fs::path& work, const fs::path& place, const Plan& plan) : work_(work), place_(place), plan_(plan) {}

  /// Forward, right after the record was made: nothing has to be looked for.
  std::error_code Begin() const {
    if (!plan_.file.empty()) return Forward();
    for (const fs::path& name : plan_.old) {
      std::error_code error = MoveAside(name);
      if (error == std::errc::no_such_file_or_directory) error.clear();
      if (!error && plan_.fresh.contains(name)) error = MoveIn(name);
      if (error) return error;
    }
    for (const fs::path& name : plan_.fresh) {
      if (plan_.old.contains(name)) continue;
      if (const std::error_code error = MoveIn(name)) return error;
    }
    return FlushFolder(place_);
  }

  std::error_code Forward() const {
    if (!plan_.file.empty()) return CopyOver(work_ / kFresh, plan_.file, WriteMode::kKeep);
    for (const fs::path& name : plan_.old) {
      if (const std::error_code error = SetAside(name)) return error;
      if (const std::error_code error = PutInPlace(name)) return error;
    }
    for (const fs::path& name : plan_.fresh) {
      if (const std::error_code error = PutInPlace(name)) return error;
    }
    return FlushFolder(place_);
  }

  /// The record is one of the way back before the first step of it.
  std::error_code Back() const {
    if (Exists(work_ / kPlan)) {
      if (const std::error_code error = Rename(work_ / kPlan, work_ / kBack, NewName::kFree)) return error;
    }
    if (!plan_.file.empty()) return CopyOver(work_ / kOld, plan_.file, WriteMode::kKeep);
    for (const fs::path& name : plan_.fresh) {
      if (const std::error_code error = TakeAway(name)) return error;
    }
    for (const fs::path& name : plan_.old) {
      if (!Exists(work_ / kOld / name)) continue;
      if (const std::error_code error = Rename(work_ / kOld / name, place_ / name, NewName::kReplaced)) return error;
    }
    return FlushFolder(place_);
  }

  /// What is left of the work folder can go.
  void Close() const noexcept {
    std::error_code ignored;
    RemovePath(work_ / kPlan, ignored);
    RemovePath(work_ / kBack, ignored);
  }

 private:
  bool IsInPlace(const fs::path& name) const { return plan_.fresh.contains(name) && !Exists(work_ / kFresh / name); }

  std::error_code SetAside(const fs::path& name) const {
    if (IsInPlace(name) || Exists(work_ / kOld / name) || !Exists(place_ / name)) return {};
    return MoveAside(name);
  }

  std::error_code MoveAside(const fs::path& name) const {
    const fs::path kept = work_ / kOld / name;
    if (plan_.fresh.contains(name) && !AddName(place_ / name, kept)) return {};
    return Rename(place_ / name, kept, NewName::kFree);
  }

  std::error_code PutInPlace(const fs::path& name) const {
    return !plan_.fresh.contains(name) || IsInPlace(name) ? std::error_code() : MoveIn(name);
  }

  std::error_code MoveIn(const fs::path& name) const {
    return Rename(work_ / kFresh / name, place_ / name, plan_.old.contains(name) ? NewName::kReplaced : NewName::kFree);
  }

  /// A new file that replaces none; the others are replaced by those that they have replaced.
  std::error_code TakeAway(const fs::path& name) const {
    if (plan_.old.contains(name) || !IsInPlace(name) || !Exists(place_ / name)) return {};
    return Rename(place_ / name, work_ / kFresh / name, NewName::kFree);
  }

  const fs::path& work_;
  const fs::path& place_;
  const Plan& plan_;
};

std::error_code CarryOutPlan(const fs::path& work, const fs::path& place, const Plan& plan) {
  if (const std::error_code error = WritePlan(work, plan)) {
    // Without the record under its name nothing has begun.
    std::error_code ignored;
    RemovePath(work / kPlan, ignored);
    return error;
  }
  const Steps steps(work, place, plan);
  const std::error_code error = steps.Begin();
  if (!error || !steps.Back()) steps.Close();
  return error;
}

}  // namespace

std::error_code CarryOut(const Exchange& exchange) {
  if (const std::error_code error = MakeFolder(exchange.work / kOld)) return error;
  Plan plan;
  plan.fresh.insert(exchange.fresh.begin(), exchange.fresh.end());
  plan.old.insert(exchange.old.begin(), exchange.old.end());
  return CarryOutPlan(exchange.work, exchange.place, plan);
}

std::error_code WriteOver(const fs::path& work, const fs::path& target) {
  if (const std::error_code error = CopyOver(target, work / kOld, WriteMode::kReplace)) return error;
  return CarryOutPlan(work, {}, {.fresh = {}, .old = {}, .file = target, .number = NumberOf(target)});
}

bool HasOpenExchange(const fs::path& work) noexcept { return Exists(work / kPlan) || Exists(work / kBack); }

void FinishExchange(const fs::path& work) {
  if (!HasOpenExchange(work)) return;
  const bool back = !Exists(work / kPlan);
  const std::optional<Plan> plan = ReadPlan(work / (back ? kBack : kPlan));
  const fs::path place = work.parent_path();
  if (!plan || !MayFollow(*plan, place)) return;
  const Steps steps(work, place, *plan);
  if ((!back && !steps.Forward()) || !steps.Back()) steps.Close();
}

}  // namespace quillmate::files
