#include <cerrno>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <quillmate/files/failure.h>

namespace quillmate::files {

/// A room's reasons.
enum class Mishap { kPlain = 1, kNamesPath, kDetails, kInFront, kAround };

namespace {

constexpr std::array kWords{
    ReasonWords<Mishap>{Mishap::kPlain, "Das ging nicht"},
    ReasonWords<Mishap>{Mishap::kNamesPath, "In %p fehlt %1"},
    ReasonWords<Mishap>{Mishap::kDetails, "%2 vor %1 und %3."},
    ReasonWords<Mishap>{Mishap::kInFront, "Zu spät"},
    ReasonWords<Mishap>{Mishap::kAround, "%c, und das bei %1"},
};
static_assert(IsComplete(kWords, Mishap::kAround));

}  // namespace

std::error_code make_error_code(Mishap mishap) noexcept {
  static const ReasonCategory category("mishap", kWords);
  return {static_cast<int>(mishap), category};
}

}  // namespace quillmate::files

template <>
struct std::is_error_code_enum<quillmate::files::Mishap> : std::true_type {};

namespace quillmate::files {
namespace {

const std::filesystem::path kPath = "ordner.d";

TEST(Failure, IsToldInTheWordsOfItsCode) {
  const Failure plain(Mishap::kPlain);
  const Failure full(FileAction::kWrite, kPath, ENOSPC);
  const struct {
    Failure failure;
    const char *text, *withBreak;
  } cases[] = {
      {plain, "Das ging nicht", "Das ging nicht"},
      {Failure(Mishap::kPlain, kPath), "ordner.d: Das ging nicht", "ordner.d\nDas ging nicht"},
      {Failure(Mishap::kNamesPath, kPath, {"%p %1"}), "In ordner.d fehlt %p %1", "In ordner.d fehlt %p %1"},
      {Failure(Mishap::kDetails, {}, {"a", "b"}), "b vor a und .", "b vor a und ."},
      {Failure(Mishap::kInFront, plain, kPath), "ordner.d: Zu spät: Das ging nicht",
       "ordner.d\nZu spät: Das ging nicht"},
      {Failure(Mishap::kAround, full, {}, {"Nacht"}),
       "ordner.d kann nicht geschrieben werden: Der Datenträger ist voll, und das bei Nacht",
       "ordner.d kann nicht geschrieben werden: Der Datenträger ist voll, und das bei Nacht"},
      {full, "ordner.d kann nicht geschrieben werden: Der Datenträger ist voll", "ordner.d\nDer Datenträger ist voll"},
      {plain.At(kPath), "ordner.d: Das ging nicht", "ordner.d\nDas ging nicht"},
      {Failure(std::error_code(4711, std::system_category())), "Fehler 4711 des Betriebssystems",
       "Fehler 4711 des Betriebssystems"},
      {Failure(std::error_code()), "Der Grund ist unbekannt", "Der Grund ist unbekannt"},
      {Failure(FileReason::kNoFolder, kPath), "ordner.d: Das ist kein Ordner", "ordner.d\nDas ist kein Ordner"},
  };
  for (const auto& c : cases) {
    EXPECT_STREQ(c.failure.what(), c.text);
    EXPECT_EQ(FailureText(c.failure, "\n"), c.withBreak);
  }
}

TEST(Failure, KnowsItsCodesAndWhoseTheyAre) {
  const Failure inner(FileAction::kRead, kPath, ENOENT);
  const Failure outer(Mishap::kInFront, inner);
  EXPECT_TRUE(outer.Is(Mishap::kInFront));
  EXPECT_TRUE(outer.Is(std::make_error_code(std::errc::no_such_file_or_directory)));
  EXPECT_FALSE(outer.Is(Mishap::kPlain));
  EXPECT_FALSE(inner.Is(Mishap::kInFront));
  EXPECT_EQ(inner.Code(), std::errc::no_such_file_or_directory);
  EXPECT_EQ(inner.Path(), kPath);
  EXPECT_EQ(inner.At("anders").Path(), "anders");
  EXPECT_TRUE(IsOfSystem(inner));
  EXPECT_FALSE(IsOfSystem(outer));
  EXPECT_TRUE(IsOfSystem(std::bad_alloc()));
  EXPECT_FALSE(IsOfSystem(std::runtime_error("x")));
}

TEST(Failure, OthersHaveTheSameWords) {
  const std::filesystem::filesystem_error refused("Kern", kPath, std::make_error_code(std::errc::no_space_on_device));
  EXPECT_EQ(FailureText(refused), "ordner.d: Der Datenträger ist voll");
  EXPECT_EQ(FailureText(std::bad_alloc()), "Der Arbeitsspeicher reicht nicht aus");
  EXPECT_EQ(FailureText(std::runtime_error("selbst gesagt")), "selbst gesagt");
}

}  // namespace
}  // namespace quillmate::files
