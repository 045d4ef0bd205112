#pragma once

#include "server/store/connection.h"

namespace velmora::server {

// The schema of what belongs to accounts. Music stands in the SQLite file of the catalogue; accounts refer to tracks
// and ads by their ids, which are never given to others.
int newestPostgresSchema();

// Brings the schema up to date under a lock that all processes share, one transaction a step. Throws StoreError when
// the database was changed by a newer program in a way that this one cannot work with; it is then left untouched.
//
// A step expands (tables, columns with defaults, indices: the program before this one does not mind) or contracts
// (takes away what the program before this one still uses: a release after its expansion).
void migratePostgres(Connection &db);

} // namespace velmora::server
