#include <algorithm>
#include <string_view>

#include <quillmate/codedb/codes.h>
#include <quillmate/symbols/exact_routines.h>

namespace quillmate::symbols {

using language::DeclarationKind;
using language::ModuleKind;

std::vector<ExactRoutine> ExactRoutines(const language::Module& module) {
  std::vector<ExactRoutine> found;
  for (const language::Routine& routine : module.routines) {
    found.push_back({routine.declaration, routine.firstLine, routine.headerLastLine, routine.lastLine});
  }
  for (std::size_t i = 0; i < module.declarations.size(); ++i) {
    const language::Declaration& declaration = module.declarations[i];
    if (declaration.kind != DeclarationKind::kDeclareSub && declaration.kind != DeclarationKind::kDeclareFunction) {
      continue;
    }
    found.push_back({static_cast<Index>(i), declaration.firstLine, declaration.lastLine, declaration.lastLine});
  }
  std::ranges::stable_sort(found, {}, &ExactRoutine::first);
  return found;
}

std::string ExactName(const language::Module& module, const ExactRoutine& routine) {
  const std::string_view name = module.Spelling(module.declarations[routine.declaration]);
  return std::string(name.empty() ? std::string_view("(ohne Namen)") : name);
}

int IndexKind(ModuleKind kind) {
  switch (kind) {
    case ModuleKind::kStandard:
      return codedb::kStandard;
    case ModuleKind::kClass:
      return codedb::kClass;
    case ModuleKind::kForm:
      return codedb::kForm;
    case ModuleKind::kDocument:
      return codedb::kDocument;
    default:
      return codedb::kOtherKind;
  }
}

int IndexKind(DeclarationKind kind) {
  switch (kind) {
    case DeclarationKind::kFunction:
      return codedb::kFunction;
    case DeclarationKind::kPropertyLet:
      return codedb::kLet;
    case DeclarationKind::kPropertyGet:
      return codedb::kGet;
    case DeclarationKind::kPropertySet:
      return codedb::kSet;
    case DeclarationKind::kDeclareSub:
      return codedb::kDeclareSub;
    case DeclarationKind::kDeclareFunction:
      return codedb::kDeclareFunction;
    default:
      return codedb::kSub;
  }
}

int IndexVisibility(Visibility visibility) {
  switch (visibility) {
    case Visibility::kPrivate:
      return codedb::kPrivate;
    case Visibility::kFriend:
      return codedb::kFriend;
    default:
      return codedb::kPublic;
  }
}

}  // namespace quillmate::symbols
