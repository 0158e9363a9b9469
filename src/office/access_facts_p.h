#pragma once

#include "access_database_p.h"
#include "facts_collector_p.h"

namespace quillmate::office {

/// Queries, linked tables and macros by name, and who calls functions from queries, from properties of forms and
/// reports and from macros. `storage` holds forms, reports and macros; it may be missing. The layout of their streams
/// is nowhere described: only calls of functions that the project has are taken out of them, as they stand there in
/// UTF-16.
void ReadAccessFacts(AccessDatabase& database, const Storage* storage, FactsCollector& collector);

}  // namespace quillmate::office
