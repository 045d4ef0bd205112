#pragma once

#include "arena.h"
#include "commands.h"

#include <chrono>
#include <string_view>

namespace velmora::ws {

// Limits of a reply; whatever passes them ends with VLM_WS_ERR_REPLY_TOO_LARGE.
constexpr std::size_t maxReplyBytes = 4 * 1024 * 1024;
constexpr int maxReplyDepth = 32;
constexpr int maxReplyValues = 200'000; // a small reply text can still blow up to a large tree

struct Reply {
    VLM_WS_EXT_ERRCODE_T code = VLM_WS_ERR_MALFORMED_REPLY;
    void *record = nullptr;             // in the arena, whole or null; never with a code other than 0
    SecretText token;                   // of the session that a login has opened
    int32_t expiresIn = 0;              // seconds, with `token`
    std::chrono::seconds retryAfter{0}; // with VLM_WS_ERR_TOO_MANY_REQUESTS; 0: not said
};

// Reads the body of an answer. Any other shape than the agreed one is malformed. Throws std::bad_alloc only.
Reply parseReply(const Command &command, long httpStatus, std::string_view body, Arena &memory);

} // namespace velmora::ws
