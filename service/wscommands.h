#pragma once

// What the adapter knows of every request of the web-service library, by its command identifier.
namespace wscommands {

enum { Count = 36 }; // identifiers 0 to 35

struct Command {
    const char *name;        // of the library function without its prefix; null for the reserved 19 and 20
    bool isRetried;          // sent again after a token renewal; the others are dropped by it
    bool isPartnerTokenOnly; // a new partner login is enough to send it again
};

// The reserved command's entry for anything that is not 0 to 35.
const Command &command(int id);

} // namespace wscommands
