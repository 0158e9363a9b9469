#pragma once

#include "access_database_p.h"
#include "facts_collector_p.h"

namespace quillmate::office {

/// Queries, linked tables and macros by name, forms and reports with their controls, and who calls functions from
/// queries, properties, macros and ribbons. `storage` holds forms, reports and macros; it may be missing. `codePage` is
/// the project's. The layout of macros is nowhere described: only calls of functions that the project has are taken out
/// of them, in UTF-16.
void ReadAccessFacts(AccessDatabase& database, const Storage* storage, int codePage, FactsCollector& collector);

}  // namespace quillmate::office
