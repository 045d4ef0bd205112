#pragma once

#include "server/store/connection.h"

namespace velmora::server {

// The partitions of a table, one a day, named by it: plays_20270115. A day counts from 1970 (dayOf()). Each call is
// made within a transaction and throws StoreError.

// Does nothing when there is one.
void makePostgresDay(Connection &db, const std::string &table, int64_t day);
// Drops the oldest partition that holds a day before this one. False when there was none.
bool dropPostgresDay(Connection &db, const std::string &table, int64_t before);

} // namespace velmora::server
