#include <string>

#include "access_forms_p.h"
#include "fuzz.h"

namespace quillmate::fuzz {

using namespace office;

namespace {

/// A database with one form, whose streams are all the same.
class OneForm final : public Storage {
 public:
  explicit OneForm(std::string_view bytes) : bytes_(bytes) {}
  std::uint64_t Size() const noexcept override { return bytes_.size(); }
  std::vector<Item> List(Id) const override { return {}; }
  std::optional<Id> FindStorage(Id storage, std::string_view) const override { return storage + 1; }
  std::optional<Id> FindStream(Id, std::string_view name) const override { return name == "DirData" ? 1 : 0; }
  Stream ReadStream(Id stream, std::uint64_t) const override {
    constexpr std::string_view kList("\0\0\0\0\4\6F\0\0\0\0\0", 12);
    return {std::string(stream == 1 ? kList : bytes_), true};
  }

 private:
  std::string_view bytes_;
};

}  // namespace

/// The input is what a database stores of a form, and its list of forms.
void Check(std::string_view bytes) {
  const VbaProject project;
  const ProjectNames names(project);
  DocumentFacts facts;
  FactsCollector collector(facts, names);
  ReadAccessForms(OneForm(bytes), CodePage(1252), collector);
  Expect(facts.controls.size() <= bytes.size());
  Expect(ReadAccessFolder(bytes).size() <= bytes.size());
}

}  // namespace quillmate::fuzz
