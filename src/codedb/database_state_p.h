#pragma once

#include <memory>

#include <quillmate/codedb/code_database.h>

#include "connection_p.h"

namespace quillmate::codedb {

struct CodeDatabase::State {
  std::shared_ptr<Connection> connection;

  Connection& Opened() const {
    if (!connection) throw DatabaseError(DatabaseReason::kMisuse, "Es ist keine Datenbank geöffnet");
    return *connection;
  }
};

}  // namespace quillmate::codedb
