#include "note_commands.h"

#include <algorithm>
#include <utility>

#include <quillmate/text/windows1252.h>

#include "note_dialog.h"
#include "qt_text.h"

namespace quillmate::ui {

using codedb::Note;

NoteCommands::NoteCommands(QWidget& window, Interaction& interaction, ProjectSession& session, CodeArea& code,
                           CodeKnowledge& knowledge, NotePanel& panel)
    : window_(window), interaction_(interaction), session_(session), code_(code), knowledge_(knowledge), panel_(panel) {
  connect(&session_, &ProjectSession::ProjectChanged, this, &NoteCommands::TakeProject);
  connect(&session_, &ProjectSession::TitleChanged, this, &NoteCommands::TakeFolder);
  connect(&code_, &CodeArea::PlaceShown, this, &NoteCommands::ShowMarks);
  connect(&knowledge_, &CodeKnowledge::Arrived, this, [this] {
    ShowMarks();
    if (panel_.isVisible()) FillPanel();
  });
  connect(&code_.Main(), &CodeEditor::MarkClicked, this,
          [this](int line) { interaction_.Guarded([this, line] { ToggleBookmarkAt(line); }); });
  connect(&panel_, &NotePanel::Chosen, this, [this](int row) {
    interaction_.Guarded([this, row] {
      if (static_cast<std::size_t>(row) < rows_.size()) GoTo(rows_[static_cast<std::size_t>(row)]);
    });
  });
  connect(&panel_, &NotePanel::RemoveWanted, this, [this](int row) {
    interaction_.Guarded([this, row] {
      if (static_cast<std::size_t>(row) >= rows_.size()) return;
      const Note note = notes_[rows_[static_cast<std::size_t>(row)].note];
      Change(note, [](Note& of) {
        of.text.clear();
        of.isBookmark = false;
      });
    });
  });
  connect(&panel_, &NotePanel::Left, this, [this] { code_.Editor().setFocus(); });
}

void NoteCommands::TakeProject() {
  notes_.clear();
  rows_.clear();
  panel_.hide();
  folder_ = session_.Folder();
  if (session_.IsLoaded()) interaction_.Attempt([this] { notes_ = codedb::LoadNotes(folder_); });
}

/// The project was saved into another folder, perhaps over one that has notes.
void NoteCommands::TakeFolder() {
  if (!session_.IsLoaded() || !session_.IsSaved() || folder_ == session_.Folder()) return;
  folder_ = session_.Folder();
  interaction_.Attempt([this] {
    // Those that are not saved yet must outlast a file that can't be read.
    const std::vector<Note> there = codedb::LoadNotes(folder_);
    notes_ = codedb::JoinNotes(std::move(notes_), there);
    if (!notes_.empty()) codedb::SaveNotes(folder_, notes_);
    ShowMarks();
  });
}

bool NoteCommands::IsReady() {
  if (session_.IsLoaded() && !knowledge_.IsOnTheWay()) return true;
  interaction_.ShowProgress(ToUtf8(knowledge_.MissingText()));
  return false;
}

int NoteCommands::CaretLine() const { return static_cast<int>(session_.View().LineFromChar(code_.Caret())); }

std::string NoteCommands::ProjectOf(codedb::ViewIndex view) {
  const auto known = knowledge_.IsOnTheWay() ? nullptr : knowledge_.Get();
  const symbols::Index module = known == nullptr ? symbols::kNone : known->ModuleOf(view);
  return module == symbols::kNone ? std::string()
                                  : known->Index().Projects()[known->Index().Modules()[module].project].name;
}

std::string NoteCommands::ModuleOf(codedb::ViewIndex view) {
  const int node = session_.Tree()->Find(codedb::ModuleOf(view));
  return node < 0 ? std::string() : text::Utf8FromCode(session_.Tree()->nodes[static_cast<std::size_t>(node)].text);
}

std::vector<project::RoutineLines> NoteCommands::RoutinesOf(codedb::ViewIndex view) {
  const auto known = knowledge_.IsOnTheWay() ? nullptr : knowledge_.Get();
  const symbols::Index module = known == nullptr ? symbols::kNone : known->ModuleOf(view);
  return module == symbols::kNone ? std::vector<project::RoutineLines>() : project::RoutinesOf(*known, module);
}

std::vector<NoteCommands::Placed> NoteCommands::PlacedIn(codedb::ViewIndex view) {
  const std::string module = ModuleOf(view);
  const std::string project = ProjectOf(view);
  const auto known = knowledge_.IsOnTheWay() ? nullptr : knowledge_.Get();
  const bool several = known != nullptr && known->Index().Projects().size() > 1;
  std::vector<Note> own;
  std::vector<Placed> placed;
  for (std::size_t i = 0; i < notes_.size(); ++i) {
    // A project that is alone may have been renamed.
    if (notes_[i].module != module || (several && notes_[i].project != project)) continue;
    own.push_back(notes_[i]);
    placed.push_back({i, view, {}});
  }
  if (own.empty()) return placed;
  const std::vector<project::NotePlace> places = project::PlacesOf(own, session_.Views().View(view), RoutinesOf(view));
  for (std::size_t i = 0; i < places.size(); ++i) placed[i].place = places[i];
  std::ranges::stable_sort(placed, {}, [](const Placed& p) { return p.place.line; });
  return placed;
}

std::vector<NoteCommands::Placed> NoteCommands::PlacedAll() {
  std::vector<Placed> all;
  std::vector<char> isPlaced(notes_.size());
  if (notes_.empty()) return all;
  const navigation::ProjectTree& tree = *session_.Tree();
  std::vector<std::string> modules;
  for (const Note& note : notes_) modules.push_back(text::CodeFromUtf8(note.module));
  std::ranges::sort(modules);
  for (const navigation::TreeNode& node : tree.nodes) {
    if (node.parent >= 0 || !std::ranges::binary_search(modules, node.text)) continue;
    for (const Placed& placed : PlacedIn(codedb::ViewOf(node.module))) {
      if (std::exchange(isPlaced[placed.note], 1) == 0) all.push_back(placed);
    }
  }
  for (std::size_t i = 0; i < notes_.size(); ++i) {
    if (isPlaced[i] == 0) all.push_back({i, std::nullopt, {}});
  }
  return all;
}

std::vector<LineMark> NoteCommands::MarksOf(codedb::ViewIndex view) {
  std::vector<LineMark> marks;
  for (const Placed& placed : PlacedIn(view)) {
    const Note& note = notes_[placed.note];
    if (marks.empty() || marks.back().line != placed.place.line) marks.push_back({placed.place.line, false, {}});
    LineMark& mark = marks.back();
    mark.isBookmark = mark.isBookmark || note.isBookmark;
    if (note.text.empty()) continue;
    if (!mark.note.isEmpty()) mark.note += QLatin1Char('\n');
    mark.note += FromUtf8(note.text);
  }
  return marks;
}

std::vector<output::SiteNote> NoteCommands::NotesOfSite() {
  std::vector<output::SiteNote> notes;
  for (const Placed& placed : PlacedAll()) {
    const Note& note = notes_[placed.note];
    if (!placed.view || note.text.empty()) continue;
    notes.push_back({codedb::ModuleOf(*placed.view), {placed.place.line + 1}, note.text});
  }
  std::ranges::stable_sort(notes, {}, &output::SiteNote::module);
  return notes;
}

void NoteCommands::ShowMarks() {
  if (!session_.IsLoaded() || !code_.Main().ShowsModule()) return;
  code_.Main().SetMarks(MarksOf(session_.Views().Current()));
}

Note NoteCommands::At(int line) {
  for (const Placed& placed : PlacedIn(session_.Views().Current())) {
    if (placed.place.line == line) return notes_[placed.note];
  }
  const codedb::ViewIndex view = session_.Views().Current();
  return project::NoteAt(ProjectOf(view), ModuleOf(view), session_.View(), RoutinesOf(view), line);
}

void NoteCommands::Change(const Note& place, const std::function<void(Note&)>& change) {
  // Another window may have the same project.
  if (session_.IsSaved()) notes_ = codedb::LoadNotes(folder_);
  std::vector<Note> notes = notes_;
  const auto same = [&place](const Note& note) { return note.SamePlace(place); };
  auto found = std::ranges::find_if(notes, same);
  if (found == notes.end()) found = notes.insert(notes.end(), place);
  change(*found);
  if (found->text.empty() && !found->isBookmark) notes.erase(found);
  if (session_.IsSaved()) codedb::SaveNotes(folder_, notes);
  notes_ = std::move(notes);
  ShowMarks();
  if (panel_.isVisible()) FillPanel();
}

void NoteCommands::ToggleBookmarkAt(int line) {
  if (IsReady()) Change(At(line), [](Note& note) { note.isBookmark = !note.isBookmark; });
}

void NoteCommands::ToggleBookmark() { ToggleBookmarkAt(CaretLine()); }

void NoteCommands::GoTo(const Placed& placed) {
  if (!placed.view) {
    interaction_.ShowProgress("Das Modul dieser Notiz gibt es im Projekt nicht mehr.");
    return;
  }
  const navigation::CodeView& view = session_.Views().View(*placed.view);
  session_.JumpTo(*placed.view, {view.LineStart(static_cast<std::size_t>(placed.place.line)), 0});
}

void NoteCommands::StepThroughBookmarks(int steps) {
  if (!IsReady()) return;
  std::vector<Placed> marks = PlacedAll();
  std::erase_if(marks, [this](const Placed& placed) { return !placed.view || !notes_[placed.note].isBookmark; });
  if (marks.empty()) {
    interaction_.ShowProgress("Es sind keine Lesezeichen gesetzt.");
    return;
  }
  // The tree lists the modules in the order of their nodes, not of their numbers.
  const auto rank = [this](codedb::ViewIndex view, int line) {
    return std::pair(session_.Tree()->Find(codedb::ModuleOf(view)), line);
  };
  const auto here = rank(session_.Views().Current(), CaretLine());
  const auto of = [&](const Placed& placed) { return rank(*placed.view, placed.place.line); };
  if (steps > 0) {
    const auto next = std::ranges::upper_bound(marks, here, {}, of);
    GoTo(next == marks.end() ? marks.front() : *next);
  } else {
    const auto next = std::ranges::lower_bound(marks, here, {}, of);
    GoTo(next == marks.begin() ? marks.back() : *std::prev(next));
  }
}

void NoteCommands::EditNote() {
  if (!IsReady()) return;
  const int line = CaretLine();
  const codedb::ViewIndex view = session_.Views().Current();
  const Note before = At(line);
  const Note now = project::NoteAt(ProjectOf(view), ModuleOf(view), session_.View(), RoutinesOf(view), line);
  const QString place = FromUtf8(now.module) +
                        (now.routine.empty() ? QString() : QLatin1Char('.') + FromUtf8(now.routine)) +
                        QStringLiteral(", Zeile %1").arg(line + 1);
  auto* dialog = new NoteDialog(&window_, place, FromUtf8(now.line), FromUtf8(before.text));
  connect(dialog, &NoteDialog::Written, this,
          [this, before, now](const QString& text) { interaction_.Guarded([&] { WriteNote(before, now, text); }); });
  connect(&session_, &ProjectSession::ProjectLeaves, dialog, &QDialog::reject);
  dialog->open();
}

/// A note that had lost its line belongs to the one that it was written beside from now on.
void NoteCommands::WriteNote(const Note& place, const Note& now, const QString& text) {
  Change(place, [&](Note& note) {
    const bool isBookmark = note.isBookmark;
    note = now;
    note.isBookmark = isBookmark;
    note.text = ToUtf8(text);
  });
}

void NoteCommands::FillPanel() {
  rows_ = PlacedAll();
  std::vector<NoteRow> rows;
  for (const Placed& placed : rows_) {
    const Note& note = notes_[placed.note];
    NoteRow row;
    row.place = FromUtf8(note.module) + (note.routine.empty() ? QString() : QLatin1Char('.') + FromUtf8(note.routine));
    row.line = placed.view ? placed.place.line + 1 : 0;
    row.isBookmark = note.isBookmark;
    row.isNote = !note.text.empty();
    row.text = FromUtf8(note.text.empty() ? note.line : note.text);
    row.hint = FromUtf8(note.line);
    if (!placed.view) {
      row.hint = QStringLiteral("Das Modul gibt es im Projekt nicht mehr. Die Zeile war: ") + row.hint;
    } else if (!placed.place.found) {
      row.hint = QStringLiteral("Die Zeile gibt es nicht mehr: ") + row.hint;
    }
    if (!note.project.empty()) row.hint += QStringLiteral("\nProjekt: ") + FromUtf8(note.project);
    rows.push_back(std::move(row));
  }
  panel_.ShowRows(rows);
}

void NoteCommands::ShowList() {
  if (!IsReady()) return;
  FillPanel();
  panel_.show();
  panel_.raise();
  panel_.widget()->setFocus();
}

}  // namespace quillmate::ui
