#include <exception>
#include <stdexcept>
#include <utility>

#include <quillmate/codedb/index_files.h>
#include <quillmate/navigation/definition.h>
#include <quillmate/project/reason.h>
#include <quillmate/project/session.h>

namespace quillmate::project {
namespace {

namespace fs = std::filesystem;

/// Read in one go, so short that nobody notices.
constexpr std::size_t kPortion = 512 * 1024;
/// Kept of texts that nobody has asked for: five million lines.
constexpr std::size_t kMostAhead = 256 * 1024 * 1024;

}  // namespace

Session::Session(codedb::CodeDatabase& index, fs::path& folder, SessionListener& listener)
    : index_(index), folder_(folder), listener_(listener) {}

std::unique_ptr<Session::Content> Session::ReadContent(codedb::CodeDatabase& index, const fs::path& folder,
                                                       bool isSaved, std::size_t mostModules) {
  auto content = std::make_unique<Content>();
  auto tree = std::make_shared<navigation::ProjectTree>();
  // What has not been saved was written by the read right before.
  if (isSaved) {
    index.OpenCodeDatabase(folder);
  } else {
    index.OpenOwnCodeDatabase(folder);
  }
  navigation::FillModuleNodes(index, *tree);
  if (tree->nodes.size() > mostModules)
    throw files::Failure(ProjectReason::kManyModules, {}, {std::to_string(mostModules)});
  content->texts.Load(folder, tree->moduleCount);
  if (tree->moduleCount > 0) content->views.Load(content->texts);
  navigation::FillRoutineNodes(index, *tree);
  // The module that is shown first is read now: a project that can't be shown is not opened at all.
  if (!tree->nodes.empty()) content->views.View(codedb::ViewOf(tree->nodes.front().module));
  content->tree = std::move(tree);
  return content;
}

void Session::ReloadProject(const fs::path& folder, std::string title, bool isSaved, std::size_t mostModules) {
  std::unique_ptr<Content> content;
  try {
    content = ReadContent(index_, folder, isSaved, mostModules);
  } catch (...) {
    index_.CloseCodeDatabase();
    if (isLoaded_) index_.OpenCodeDatabase(folder_);
    throw;
  }
  folder_ = folder;
  isLoaded_ = true;
  Replace(std::move(content));
  SetTitle(std::move(title), isSaved);
  if (!Tree()->nodes.empty()) GoToNode(0);
}

void Session::Leave(const fs::path& scratch) {
  index_.CloseCodeDatabase();
  folder_ = scratch;
  isLoaded_ = false;
  Replace(std::make_unique<Content>());
  SetTitle({}, false);
}

void Session::MoveTo(const fs::path& folder, std::string title) {
  index_.OpenCodeDatabase(folder);
  folder_ = folder;
  Texts().MoveTo(folder);
  SetTitle(std::move(title), true);
}

void Session::Replace(std::unique_ptr<Content> content) {
  listener_.OnProjectLeaves();
  content_ = std::move(content);
  caret_.Forget();
  history_.Clear();
  module_.clear();
  routine_.clear();
  listener_.OnProjectChanged();
  listener_.OnPlaceChanged();
  listener_.OnHistoryChanged();
}

void Session::SetTitle(std::string title, bool isSaved) {
  title_ = std::move(title);
  isSaved_ = isSaved;
  listener_.OnTitleChanged();
}

std::string Session::Name() const { return isSaved_ ? title_ : title_.substr(0, title_.find(" [")); }

const std::vector<codedb::Line>& Session::StartLines() {
  if (content_->startLines.empty() && isLoaded_) content_->startLines = navigation::StartLines(index_, *Tree());
  return content_->startLines;
}

codedb::ModuleNumber Session::VisibleModule() const { return codedb::ModuleOf(content_->views.Current()); }

std::string Session::ModuleName() const {
  const int node = Tree()->Find(VisibleModule());
  return node < 0 ? module_ : Tree()->nodes[static_cast<std::size_t>(node)].text;
}

void Session::SetPlace(std::string module, std::string routine) {
  module_ = std::move(module);
  routine_ = std::move(routine);
  listener_.OnPlaceChanged();
}

void Session::ShowModule(codedb::ViewIndex view) {
  if (view.value < 0 || view.value >= Views().Count()) throw codedb::BrokenProject(folder_);
  Views().View(view);
  Views().SetCurrent(view);
}

void Session::GoToNode(int node) {
  const navigation::ProjectTree& tree = *Tree();
  const navigation::TreeNode& wanted = tree.nodes[static_cast<std::size_t>(node)];
  const bool isRoutine = wanted.parent >= 0;
  const navigation::TreeNode& module = isRoutine ? tree.nodes[static_cast<std::size_t>(wanted.parent)] : wanted;

  ShowModule(codedb::ViewOf(wanted.module));
  if (isRoutine) {
    const auto line = index_.StartOf(wanted.routine);
    if (line && line->value > 0) View().GoToLine(*line);
  } else {
    View().Select(0, 0);
  }
  caret_.Forget();
  SetPlace(module.text, isRoutine ? wanted.text : std::string());
  if (isRoutine) Visit();
  listener_.OnMoved(Reveal::kAtTop);
}

void Session::GoToMatch(codedb::ViewIndex view, const navigation::TextMatch& match) {
  ShowModule(view);
  View().Select(match.position, match.length, true);
  std::string routine = caret_.Refresh(index_, View(), view);
  SetPlace(ModuleName(), std::move(routine));
  listener_.OnMoved(Reveal::kWhenHidden);
}

void Session::JumpTo(codedb::ViewIndex view, const navigation::TextMatch& match) {
  navigation::Place from = CurrentPlace();
  from.caret = View().SelStart();
  from.selected = View().SelLength();
  ShowModule(view);
  View().Select(match.position, match.length, true);
  history_.ReplaceCurrent(std::move(from));
  std::string routine = caret_.Refresh(index_, View(), view);
  SetPlace(ModuleName(), std::move(routine));
  navigation::Place to = CurrentPlace();
  to.caret = match.position;
  to.selected = match.length;
  Visit(std::move(to));
  listener_.OnMoved(Reveal::kWhenHidden);
}

void Session::GoToRoutine(codedb::ViewIndex view, codedb::Line line, std::string routine) {
  ShowModule(view);
  if (line.value > 0) View().GoToLine(line);
  caret_.Forget();
  SetPlace(ModuleName(), std::move(routine));
  Visit();
  listener_.OnMoved(Reveal::kAtTop);
}

bool Session::GoToDefinition(std::string_view name) {
  const auto found = navigation::FindDefinition(index_, Views().Current(), name);
  if (!found) return false;
  navigation::Place from = CurrentPlace();
  if (!found->sameModule) ShowModule(codedb::ViewOf(found->moduleNumber));
  if (found->startLine.value > 0) View().GoToLine(found->startLine);
  history_.ReplaceCurrent(std::move(from));
  std::string routine = caret_.Refresh(index_, View(), Views().Current());
  SetPlace(ModuleName(), std::move(routine));
  Visit();
  View().SelectFirstWordOfLine();
  listener_.OnMoved(Reveal::kAtTop);
  return true;
}

navigation::Place Session::CurrentPlace() { return {Views().Current(), View().Caret(), module_, routine_}; }

void Session::Visit() {
  navigation::Place place = CurrentPlace();
  place.caret = View().SelStart();
  Visit(std::move(place));
}

void Session::Visit(navigation::Place place) {
  history_.Push(std::move(place));
  listener_.OnHistoryChanged();
}

bool Session::Step(const navigation::Place* place) {
  listener_.OnHistoryChanged();
  if (place == nullptr) return false;
  const navigation::Place to = *place;
  ShowModule(to.view);
  View().Select(to.caret, to.selected.value_or(0), to.selected.has_value());
  if (!to.selected) View().SelectFirstWordOfLine();
  caret_.Forget();
  SetPlace(to.module, to.routine);
  listener_.OnMoved(to.selected ? Reveal::kWhenHidden : Reveal::kAtTop);
  return true;
}

void Session::TrackCaret() {
  if (!isLoaded_) return;
  if (auto routine = caret_.Track(index_, View(), Views().Current())) SetPlace(module_, std::move(*routine));
}

bool Session::ReadAhead() { return isLoaded_ && Texts().ReadAhead(kPortion, kMostAhead); }

bool Session::WasReplaced() {
  // Nobody else writes where a project is that is not saved.
  if (!isSaved_) return false;
  const fs::file_time_type time = navigation::TimeOfIndex(folder_);
  // An index that is gone is another matter.
  if (time == Texts().Time() || time == told_ || time == fs::file_time_type::min()) return false;
  told_ = time;
  return true;
}

const fs::path& Session::Files() {
  Texts().CheckFolder();
  return folder_;
}

}  // namespace quillmate::project
