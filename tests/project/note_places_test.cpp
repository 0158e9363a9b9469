#include <random>

#include <gtest/gtest.h>

#include <quillmate/project/note_places.h>

namespace quillmate::project {
namespace {

/// A view of lines, each a letter, with blanks around them.
navigation::CodeView ViewOf(std::string_view letters) {
  std::string text;
  for (const char letter : letters) text += std::string("\t ") + letter + "  \r\n";
  return navigation::CodeView(text);
}

TEST(NotePlaces, LinesAreFoundAgainByWhatTheySay) {
  const std::vector<RoutineLines> routines = {{1, 1, 4, "Eins"}, {6, 6, 8, "Zwei"}};
  const navigation::CodeView view = ViewOf("oaxxxyaxx\304");
  const auto note = [](const char* routine, const char* line, int occurrence) {
    return codedb::Note{"P", "M", routine, line, occurrence, {}, true};
  };
  const struct {
    codedb::Note note;
    int line;
    bool found;
  } kRows[] = {
      {note("Eins", "x", 0), 2, true},   {note("Eins", "x", 2), 4, true},
      {note("Eins", "x", 9), 4, true},    // of equal lines the last one that is left
      {note("Eins", "x", -1), 2, true},   // a damaged file
      {note("Zwei", "x", 1), 8, true},    // counted in its own routine
      {note("", "o", 0), 0, true},        // outside of all
      {note("", "x", 0), 0, false},       // there only within routines: the top of the module
      {note("Zwei", "y", 0), 6, false},   // the routine's header
      {note("Weg", "x", 0), 0, false},    // the routine is gone
      {note("", "\303\204", 0), 9, true}  // UTF-8 in notes, Windows-1252 in code
  };
  std::vector<codedb::Note> notes;
  for (const auto& row : kRows) notes.push_back(row.note);
  const std::vector<NotePlace> places = PlacesOf(notes, view, routines);
  ASSERT_EQ(places.size(), notes.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    EXPECT_EQ(places[i].line, kRows[i].line) << i;
    EXPECT_EQ(places[i].found, kRows[i].found) << i;
  }
}

/// Whatever the lines say: a note that is put beside one is found beside that one.
TEST(NotePlaces, EachLineHasAPlaceOfItsOwn) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    std::string letters(1 + random() % 12, ' ');
    for (char& letter : letters) letter = static_cast<char>('a' + random() % 3);
    const navigation::CodeView view = ViewOf(letters);
    std::vector<RoutineLines> routines;
    for (int line = static_cast<int>(random() % 3); line < static_cast<int>(letters.size());) {
      const int last = std::min(line + static_cast<int>(random() % 4), static_cast<int>(letters.size()) - 1);
      routines.push_back({line, line, last, std::string(1, static_cast<char>('A' + line))});
      line = last + 1 + static_cast<int>(random() % 2);
    }
    std::vector<codedb::Note> notes;
    for (int line = 0; line < static_cast<int>(letters.size()); ++line) {
      notes.push_back(NoteAt("P", "M", view, routines, line));
    }
    const std::vector<NotePlace> places = PlacesOf(notes, view, routines);
    for (std::size_t line = 0; line < letters.size(); ++line) {
      EXPECT_TRUE(places[line].found && places[line].line == static_cast<int>(line)) << letters << " line " << line;
    }
  }
}

}  // namespace
}  // namespace quillmate::project
