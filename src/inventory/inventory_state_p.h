#pragma once

#include <quillmate/inventory/inventory.h>

#include "schema_p.h"
#include "sqlite_p.h"

namespace quillmate::inventory {

struct Inventory::State {
  explicit State(const std::filesystem::path& file) : database(file, Database::Mode::kRead) { CheckSchema(database); }
  Database database;
};

}  // namespace quillmate::inventory
