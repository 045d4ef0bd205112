#pragma once

#include <cstdint>

namespace velmora::server {

class Database;

// The schema's newest version, kept in the file as its user version; 0 is an empty file.
int newestSchemaVersion();
int64_t schemaVersion(Database &db);

// Brings the schema up to date, one transaction a step. Throws StoreError when the file was written by a newer program
// (it is then left untouched) or when a step fails (the file keeps the version before that step). `upTo`: for tests,
// which make files of an older version.
void migrate(Database &db, int upTo = newestSchemaVersion());

} // namespace velmora::server
