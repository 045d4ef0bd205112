#pragma once

#include "arena.h"
#include "commands.h"

namespace velmora::ws {

// Copies a command's parameters, in their order, into `memory`. Null where the command has none. Throws std::bad_alloc.
void *copyParams(const Command &command, const void *params, Arena &memory);

// Whether every text among the parameters is valid UTF-8.
bool hasValidText(const Command &command, const void *params);

// The JSON object that is sent for a command. `deviceKey` goes into partnerLogin only. The parameters are valid UTF-8.
SecretText requestBody(const Command &command, const void *params, const SecretText &deviceKey);

} // namespace velmora::ws
