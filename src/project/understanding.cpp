#include <algorithm>
#include <utility>

#include <quillmate/codedb/code_database.h>
#include <quillmate/navigation/project_texts.h>
#include <quillmate/project/understanding.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::project {
namespace {

/// A line of a view without its break, UTF-8.
std::string ShownText(const navigation::CodeView& view, std::size_t line) {
  const std::size_t start = view.LineStart(line);
  const std::size_t end = line + 1 < view.LineCount() ? view.LineStart(line + 1) : view.Length();
  std::string_view text = std::string_view(view.Text()).substr(start, end - start);
  while (text.ends_with('\n') || text.ends_with('\r')) text.remove_suffix(1);
  return text::IsAscii(text) ? std::string(text) : text::Utf8FromCode(text);
}

}  // namespace

Understanding::Understanding(symbols::ReferenceIndex index, std::vector<symbols::ModulePlaces> places,
                             std::vector<OutlineDifference> differences)
    : index_(std::move(index)), places_(std::move(places)), differences_(std::move(differences)) {
  for (std::size_t module = 0; module < places_.size(); ++module) {
    if (places_[module].Number() <= 0) continue;
    const auto view = static_cast<std::size_t>(places_[module].Number() - 1);
    if (view >= modules_.size()) modules_.resize(view + 1, symbols::kNone);
    modules_[view] = static_cast<symbols::Index>(module);
  }
}

symbols::Index Understanding::ModuleOf(codedb::ViewIndex view) const noexcept {
  const auto at = static_cast<std::size_t>(view.value);
  return view.value < 0 || at >= modules_.size() ? symbols::kNone : modules_[at];
}

std::optional<codedb::ViewIndex> Understanding::ViewOf(symbols::Index module) const noexcept {
  if (module >= places_.size() || places_[module].Number() <= 0) return std::nullopt;
  return codedb::ViewOf(codedb::ModuleNumber{places_[module].Number()});
}

std::uint32_t Understanding::ShownLine(symbols::Index module, std::uint32_t line) const noexcept {
  return module < places_.size() ? places_[module].ShownLine(line) : 0;
}

std::optional<TextPlace> Understanding::PlaceAt(codedb::ViewIndex index, const navigation::CodeView& view,
                                                std::size_t offset) const {
  const symbols::Index module = ModuleOf(index);
  if (module == symbols::kNone) return std::nullopt;
  const std::size_t shown = view.LineFromChar(offset);
  const std::uint32_t line = places_[module].TextLineOfShown(static_cast<std::uint32_t>(shown) + 1);
  const language::Module& code = index_.Code(module);
  if (line == 0 || line > code.lines.size()) return std::nullopt;
  const auto column = static_cast<std::uint32_t>(offset - view.LineStart(shown)) + 1;
  return TextPlace{module, line, symbols::MapColumn(ShownText(view, shown), code.LineText(line), column)};
}

std::optional<symbols::Occurrence> Understanding::NameAt(codedb::ViewIndex index, const navigation::CodeView& view,
                                                         std::size_t offset) const {
  const auto place = PlaceAt(index, view, offset);
  if (!place) return std::nullopt;
  auto name = index_.NameAt(place->module, place->line, place->column);
  if (!name && place->column > 1) name = index_.NameAt(place->module, place->line, place->column - 1);
  return name;
}

std::optional<navigation::TextMatch> Understanding::Shown(const navigation::CodeView& view,
                                                          const TextStretch& stretch) const {
  const TextPlace& place = stretch.place;
  const std::uint32_t line = ShownLine(place.module, place.line);
  if (line == 0 || line > view.LineCount()) return std::nullopt;
  const std::string shown = ShownText(view, line - 1);
  const std::string_view original = index_.Code(place.module).LineText(place.line);
  const bool isSame = original == shown;
  const auto mapped = [&](std::uint32_t column) {
    return (isSame ? column : symbols::MapColumn(original, shown, column)) - 1;
  };
  const std::size_t start = view.LineStart(line - 1);
  const std::size_t from = std::min<std::size_t>(start + mapped(place.column), view.Length());
  const std::size_t to = std::min<std::size_t>(start + mapped(place.column + stretch.length), view.Length());
  return navigation::TextMatch{from, to - from};
}

std::uint32_t Understanding::Characters(symbols::Index module, std::uint32_t offset,
                                        std::uint32_t length) const noexcept {
  const std::string_view name = index_.Code(module).text.substr(offset, length);
  // Every byte but those that continue a character.
  return static_cast<std::uint32_t>(std::count_if(name.begin(), name.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

TextStretch Understanding::NameOf(symbols::SymbolId symbol) const {
  const symbols::Symbol& declared = index_.SymbolAt(symbol);
  if (declared.line == 0) return {{declared.module, 0, 0}, 0};
  return {{declared.module, declared.line, declared.column},
          Characters(declared.module, declared.offset, declared.length)};
}

TextStretch Understanding::StretchOf(const symbols::Reference& use) const {
  return {{use.module, use.line, use.column}, Characters(use.module, use.offset, use.length)};
}

TextStretch Understanding::StretchOf(symbols::Index module, const symbols::Occurrence& occurrence) const {
  return {{module, occurrence.line, occurrence.column}, Characters(module, occurrence.offset, occurrence.length)};
}

std::shared_ptr<const Understanding> MakeUnderstanding(const UnderstandingRequest& request,
                                                       UnderstandingProgress& progress) {
  symbols::ProjectSources loaded;
  std::vector<codedb::ModuleRecord> records;
  {
    codedb::CodeDatabase database;
    database.OpenCodeDatabase(request.folder);
    records = database.ReadIndex();
    if (!progress.cancelled) loaded = symbols::LoadSources(database, request.folder, request.assumed);
  }
  const bool isSame = navigation::TimeOfIndex(request.folder) == request.time;
  progress.steps = 2 * loaded.sources.modules.size();
  if (progress.readingEnded) progress.readingEnded();
  if (!isSame || progress.cancelled) return nullptr;

  symbols::BuildOptions options;
  options.cancelled = &progress.cancelled;
  options.progress = &progress.done;
  auto index = symbols::ReferenceIndex::Build(std::move(loaded.sources), options);
  if (progress.cancelled) return nullptr;
  std::vector<OutlineDifference> differences = CompareOutlines(index, loaded.places, records);
  return std::make_shared<Understanding>(std::move(index), std::move(loaded.places), std::move(differences));
}

}  // namespace quillmate::project
