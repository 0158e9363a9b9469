#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// Where code and what is outside of it have lost each other. Told only where the sources know the outside whole:
/// all controls of the module, or everything that the document says of its macros (ProjectSource::outsideKnown).
namespace quillmate::symbols {

struct LooseEnd {
  enum class Kind : std::uint8_t {
    kHandlerWithoutControl,  ///< "cmdAlt_Click" of a control that the form or sheet no longer has
    kCallbackWithoutRibbon,  ///< a Sub that takes an IRibbonControl or IRibbonUI, which no ribbon names
    kBindingWithoutRoutine   ///< a button, key, ribbon or event property that calls a routine that is not there
  };

  Kind kind = Kind::kHandlerWithoutControl;
  Index project = 0;
  /// kNone for a binding.
  SymbolId routine = kNone;
  /// The control that is missing, or the macro as the document writes it; empty for a call-back.
  std::string name;
  /// Of a binding: its place in German words, "Schaltfläche 'Start' auf Blatt Kunden".
  std::string place;

  bool operator==(const LooseEnd&) const = default;
};

/// Handlers and call-backs in the order of the symbols, then the bindings in the order of the sources. Handlers that
/// are called or bound all the same are left out.
std::vector<LooseEnd> FindLooseEnds(const ReferenceIndex& index);

}  // namespace quillmate::symbols
