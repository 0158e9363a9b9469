#pragma once

#include <string_view>

#include <quillmate/office/document_facts.h>

namespace quillmate::office {

/// The signer of a macro project, out of whatever holds its signature: a part "vbaProjectSignature*.bin", or the
/// property of a compound file's summary [MS-OSHARED] 2.3.2. All of them carry the same message of signed data
/// [RFC 2315, RFC 5652] with the certificates; it is looked for by its object identifier, so that the frame around it
/// does not matter. Nothing is verified: neither the sum over the code nor who issued the certificate.
///
/// Empty texts when the bytes hold no such message, or none that can be read.
MacroSignature ReadMacroSignature(std::string_view bytes);

}  // namespace quillmate::office
