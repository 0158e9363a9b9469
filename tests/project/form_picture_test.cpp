#include <gtest/gtest.h>

#include <quillmate/project/form_picture.h>
#include <quillmate/symbols/project_sources.h>

namespace quillmate::project {
namespace {

/// "name type in parent at left,top Event Event" of each control, a line each.
std::string Describe(const FormPicture& form) {
  const auto number = [](const std::optional<double>& value) {
    return value ? std::to_string(static_cast<int>(*value)) : std::string("?");
  };
  std::string text;
  for (const FormControl& control : form.controls) {
    text += control.name + " " + control.type;
    if (control.parent >= 0) text += " in " + form.controls[static_cast<std::size_t>(control.parent)].name;
    if (control.left || control.top) text += " at " + number(control.left) + "," + number(control.top);
    for (const FormEvent& event : control.events) text += " " + event.name;
    text += "\n";
  }
  return text;
}

/// What the document tells of a form, without a source that shows its designer.
TEST(FormPicture, FactsTellPlacesFromTheControlAround) {
  codedb::Facts facts;
  facts.projects.resize(1);
  codedb::ModuleFacts& form = facts.modules.emplace_back();
  form.number = 1;
  form.name = "Maske";
  form.kind = "form";
  form.outsideName = "Die Maske";
  form.controlsKnown = true;
  form.code = "Private Sub cmdOk_Click()\nEnd Sub\nSub UserForm_Initialize()\nEnd Sub\nSub cmdWeg_Click()\nEnd Sub\n";
  const auto control = [](const char* name, const char* type, const char* parent, std::optional<std::int32_t> left,
                          std::optional<std::int32_t> top) {
    codedb::ControlFact fact;
    fact.name = name;
    fact.type = type;
    fact.parent = parent;
    fact.left = left;
    fact.top = top;
    return fact;
  };
  form.controls = {
      control("fra", "MSForms.Frame", "", 100, 200),
      control("seite", "Page", "fra", 10, 20),
      control("cmdOk", "CommandButton", "SEITE", 1, 2),
      control("ohne", "", "fra", {}, {}),
      control("cmdOk", "Doppelt", "", 9, 9),
      // A damaged file: controls in each other, one in itself.
      control("a", "", "b", 5, 5),
      control("b", "", "a", 7, 7),
      control("selbst", "", "selbst", 3, 3),
      control("Kopf", "PageHeader", "", 0, 0),
  };
  const codedb::ModuleFacts known = form;
  const auto index = symbols::ReferenceIndex::Build(symbols::SourcesFrom(facts));
  const auto picture = ReadForm(index, 0, &known);
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->title, "Die Maske");
  EXPECT_TRUE(picture->HasPlaces());
  EXPECT_FALSE(picture->isPartial);
  EXPECT_EQ(Describe(*picture),
            "fra Frame at 100,200\nseite Page in fra at 110,220\ncmdOk CommandButton in seite at 111,222 Click\n"
            "ohne  in fra\na  in b at 48,48\nb  in a at 48,48\nselbst  at 3,3\n");
  ASSERT_EQ(picture->events.size(), 1U);
  EXPECT_EQ(picture->events[0].name, "Initialize");
  ASSERT_EQ(picture->deadHandlers.size(), 1U);
  EXPECT_EQ(index.Name(picture->deadHandlers[0]), "cmdWeg_Click");
  EXPECT_FALSE(ReadForm(index, 0, nullptr)) << "nothing is known without them";
}

}  // namespace
}  // namespace quillmate::project
