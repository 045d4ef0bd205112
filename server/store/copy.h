#pragma once

#include "server/store/connection.h"

#include <string>
#include <vector>

namespace velmora::server {

struct CopiedTable {
    std::string name;
    int64_t rows = 0;
};

// Makes what belongs to accounts in a PostgreSQL equal to what a SQLite file holds, and compares both row by row before
// it counts. Both have their newest schema. May be repeated until somebody uses the PostgreSQL. Music stays in the
// file. Throws StoreError or std::runtime_error with a text for the person who started the program; nothing is changed
// then.
std::vector<CopiedTable> copyAccounts(Connection &file, Connection &postgres);

} // namespace velmora::server
