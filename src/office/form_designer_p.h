#pragma once

#include <string>

#include <quillmate/office/document_facts.h>
#include <quillmate/office/storage.h>

#include "code_page_p.h"

namespace quillmate::office {

/// The designer data of a form, which is in a storage of its name beside the storage VBA, after the published format
/// [MS-OFORMS]:
///
///     \3VBFrame    text: the form's caption and size in twips
///     f            the form's own properties, the classes of foreign controls, a site for each control        2.2.10
///     o            the properties of the controls, one after the other in the order of the sites
///     i<id>        a storage for each frame, multi-page and page with an f and an o of its own
///
/// Properties are a block: version (16 bits), size (16 bits), a mask with a bit for each property, then the values that
/// are there, each aligned to its size, then points and texts.                                                    2.1.1
///
/// Files may be damaged or made to do harm. Bounds: no block reaches beyond its stream; storages nest 16 deep; all
/// together have no more than kMostFacts controls. What can't be read ends the list of its storage and is a notice.
void ReadFormDesigner(const Storage& storage, Storage::Id formStorage, const std::string& module,
                      const CodePage& codePage, DocumentFacts& facts);

}  // namespace quillmate::office
