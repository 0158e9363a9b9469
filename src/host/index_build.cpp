#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

#include <quillmate/codedb/index_files.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "index_build_p.h"

namespace quillmate::host {
namespace {

std::string OneLine(std::string_view text) {
  std::string line = text::ReplaceAll(text::ReplaceAll(text, "\r\n", " "), "\n", " ");
  std::replace(line.begin(), line.end(), '\r', ' ');
  return line;
}

std::string SubjectOf(const HostModuleNode& node) {
  return node.file.empty() ? text::Utf8FromCode(node.text) : node.file;
}

}  // namespace

struct IndexBuild::Pending {
  Ticked ticked;
  std::string name;
  HostAutomation* host;
  std::optional<ReadModule> module{};
};

IndexBuild::IndexBuild(codedb::CodeDatabase& database, const ReadRequest& request)
    : database_(database), request_(request), facts_(request) {}

void IndexBuild::Add(const Ticked& ticked, std::string name, HostAutomation* host,
                     const std::function<Reading()>& start) {
  while (work_.IsFull()) work_.FinishFirst();
  if (request_.progress) request_.progress("Modul: " + text::Utf8FromCode(name));
  const auto pending = std::make_shared<Pending>(Pending{ticked, std::move(name), host});
  const auto finish = [this, pending](const std::exception_ptr& failure) { Take(*pending, failure); };
  Reading reading;
  try {
    reading = start();
  } catch (const files::Failure&) {
    reading = [failure = std::current_exception()]() -> ReadModule { std::rethrow_exception(failure); };
  }
  work_.Add(
      [pending, reading = std::move(reading)] {
        pending->module.emplace(reading());
        return pending->module->scan.Size();
      },
      finish);
}

void IndexBuild::Finish() {
  work_.FinishAll();
  if (modules_ == 0 && !leftOut_.empty()) throw files::Failure(HostReason::kNothingRead, {}, {leftOut_.back()});
}

std::string IndexBuild::Detail(std::string_view reason) const {
  const std::string inFront = subject_.empty() ? std::string() : subject_ + ": ";
  return reason.starts_with(inFront) ? OneLine(reason) : inFront + OneLine(reason);
}

void IndexBuild::Take(Pending& pending, const std::exception_ptr& failure) {
  subject_ = SubjectOf(*pending.ticked.module);
  if (failure) {
    // What comes later, rows and texts that can't be written, ends the read.
    try {
      std::rethrow_exception(failure);
    } catch (const files::Failure& error) {
      LeaveOut(pending, error.what());
    }
  } else {
    Insert(pending);
  }
  subject_.clear();
}

void IndexBuild::LeaveOut(const Pending& pending, std::string_view reason) {
  leftOut_.push_back(Detail(reason));
  facts_.AddOmission(pending.ticked, pending.host, OneLine(reason));
}

void IndexBuild::Insert(Pending& pending) {
  ReadModule& module = *pending.module;
  state_.module.number = {modules_ + 1};
  state_.module.name = std::move(pending.name);
  state_.module.kind = module.kind;
  module.scan.Insert(database_, state_);
  ++modules_;
  module.facts.number = modules_;
  facts_.Add(*pending.ticked.project, pending.host, pending.ticked.module->position, std::move(module.facts));
  Store(pending);
}

/// Writes the module's text, which its number names: a long one at once, so that it need not wait in memory.
void IndexBuild::Store(Pending& pending) {
  constexpr std::size_t kLong = std::size_t{1} << 20U;
  if (const std::string& text = pending.module->scan.MarkedText(); text.size() >= kLong) {
    codedb::WriteModuleText(request_.folder, state_.module.number, text);
    return pending.module.reset();
  }
  const auto scan = std::make_shared<analysis::ScannedModule>(std::move(pending.module->scan));
  pending.module.reset();
  work_.Add(
      [scan, number = state_.module.number, &folder = request_.folder] {
        codedb::WriteModuleText(folder, number, scan->MarkedText());
        return std::size_t{0};
      },
      [this, subject = subject_](const std::exception_ptr& failure) {
        if (!failure) return;
        subject_ = subject;
        std::rethrow_exception(failure);
      });
}

}  // namespace quillmate::host
