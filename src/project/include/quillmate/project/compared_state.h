#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <quillmate/project/reason.h>
#include <quillmate/symbols/compare.h>
#include <quillmate/symbols/compare_words.h>
#include <quillmate/symbols/sources.h>

/// The states of a project that are compared, read from wherever they are.
namespace quillmate::project {

struct StateRequest {
  /// An Office file, a module file, a VB project, a folder of such files, or a folder that holds a saved project.
  std::filesystem::path path;
  /// Where a project runs that does not tell.
  symbols::Host assumed = symbols::Host::kUnknown;
  /// How the user knows the paths in a text, where the files were taken from elsewhere; empty: as they are.
  std::function<std::string(std::string text)> shown{};
  /// Gets a German line for everything that can't be read; empty: nobody wants to know.
  std::function<void(const std::string& line)> complain{};
  /// Gets every file that is going to be read: nobody may write to it.
  std::function<void(const std::filesystem::path& file)> opened{};
  /// Called before each module of a source; what it throws ends the reading. Counts from 0.
  std::function<void(std::size_t module)> step{};
  /// Set from another thread: the answer is of no use then.
  const std::atomic<bool>* cancelled = nullptr;
};

struct ReadState {
  symbols::ComparedState state;
  /// Something of it could not be read, and was complained of.
  bool isWhole = true;
  /// The modules have the numbers of Understanding. Not where the text of one of a saved project is gone.
  bool hasAllModules = true;
};

/// Throws files::Failure when there is nothing to compare, and for a saved project that is damaged.
ReadState ReadComparedState(const StateRequest& request);

/// How far a comparison is, told across threads.
struct CompareProgress {
  enum Stage { kReadsOld, kReadsNew, kCompares, kDone };
  std::atomic<bool> cancelled = false;
  /// Whoever waits for it is told. From kCompares on no file is read any more.
  std::atomic<Stage> stage = kReadsOld;
  /// Modules of the state that is being read.
  std::atomic<std::size_t> modules = 0;
};

struct CompareRequest {
  std::filesystem::path oldPath, newPath;
  symbols::Host assumed = symbols::Host::kUnknown;
  symbols::CompareOptions options;
};

/// A comparison with all that it speaks of.
struct ComparedProjects {
  ReadState oldSide, newSide;
  symbols::Comparison comparison;
  /// What could not be read, German lines.
  std::vector<std::string> oldProblems, newProblems;
  /// Everything that was read.
  std::vector<std::filesystem::path> files;

  symbols::ComparedStates States() const { return {comparison, oldSide.state.index, newSide.state.index}; }
};

/// Reads both states and compares them; in a thread of its own as a rule. False when it was cancelled: `result` is of
/// no use then. Throws like ReadComparedState.
bool CompareProjects(const CompareRequest& request, CompareProgress& progress, ComparedProjects& result);

}  // namespace quillmate::project
