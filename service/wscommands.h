#pragma once

// What the adapter knows of every request of the web-service library, by its command identifier.
namespace wscommands {

constexpr int count = 36; // identifiers 0 to 35

struct Command {
    const char *name;        // of the library function without its prefix; null for the reserved 19 and 20
    bool isPartnerTokenOnly; // the request needs a new partner login, and no user login
};

// Any number; a number outside 0 to 35 gives the entry of a reserved command.
const Command &command(int id);
// Whether a token renewal sends the request again. It drops the others. Any number.
bool isSentAgain(int id);

} // namespace wscommands
