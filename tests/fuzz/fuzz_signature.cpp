#include <quillmate/office/macro_signature.h>

#include "fuzz.h"

namespace quillmate::fuzz {

void Check(std::string_view bytes) {
  const office::MacroSignature signature = office::ReadMacroSignature(bytes);
  // Two texts of at most 1,000 bytes each, which Latin-1 may double.
  Expect(signature.signer.size() <= 5000 && signature.issuer.size() <= 5000);
  Expect(signature.from.empty() || signature.from.size() == 10);
  Expect(!signature.signer.empty() || signature.issuer.empty());
}

}  // namespace quillmate::fuzz
