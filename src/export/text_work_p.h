#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/numbers.h>
#include <quillmate/export/sink.h>
#include <quillmate/workers/ordered_work.h>

namespace quillmate::output {

/// Converts marked-up texts on all cores and hands the results to a sink in their order, on this thread.
class TextWork {
 public:
  using Converter = std::function<void(std::string_view markedText, const Sink& sink)>;

  /// `convert` is called on any thread, for texts and for parts of them (see pieces_p.h).
  TextWork(Converter convert, const Sink& sink) : convert_(std::move(convert)), sink_(sink) {}

  /// Goes to the sink as it is.
  void AddBytes(std::string_view bytes) { bytes_.append(bytes); }
  /// A text that is converted at once.
  void AddShortText(std::string_view markedText);
  void AddText(std::string markedText);
  void AddModule(const std::filesystem::path& folder, codedb::ModuleNumber module);
  /// Waits for the rest. What could not be read is thrown here or by an Add.
  void Finish();

 private:
  void Add(std::function<void(const Sink&)> produce);
  std::string TakeSpare();

  Converter convert_;
  const Sink& sink_;
  /// What goes out in front of the next text.
  std::string bytes_;
  /// Results that the sink has had.
  std::vector<std::string> spare_;
  workers::OrderedWork work_;
};

}  // namespace quillmate::output
