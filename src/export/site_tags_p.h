#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Comments that mark what they tell: `<summary>`, `@param name`, `\brief`.
namespace quillmate::output {

/// A comment taken apart. Texts are UTF-8 and plain; lines are separated by LF, an empty one is between paragraphs.
struct TaggedComment {
  struct Item {
    std::string_view title;  ///< German: "Parameter", "Rückgabe" ...
    std::string name;        ///< of a parameter, an error; may be empty
    std::string text;
  };

  std::string text;  ///< what it is about; the whole comment where nothing is marked
  std::vector<Item> items;

  bool IsEmpty() const { return text.empty() && items.empty(); }
};

/// Lines without apostrophes and the blanks around them; an empty one for each gap. Marks that are not known stay as
/// they are. Linear.
TaggedComment ReadTags(const std::vector<std::string>& lines);

}  // namespace quillmate::output
