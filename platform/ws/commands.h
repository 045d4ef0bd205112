#pragma once

#include "velmora_ws.h"

#include <cstddef>
#include <span>

// What the library knows of each command, in one table: name, session, parameters, shape of the reply.
namespace velmora::ws {

enum class Token { None, Partner, User };

enum class FieldKind {
    Text,
    Flag,           // int32_t, a JSON boolean
    Number,         // int32_t
    OptionalNumber, // int32_t, 0 is not sent
    Unsent,         // int32_t, kept in the record only
    LoginDevice     // userLogin's last parameter: 7 raw address bytes with the type "user", else a text
};

// One parameter: a member of the command's VLM_WS_*_PARAMS_T.
struct Field {
    const char *key;
    FieldKind kind;
    std::size_t offset;
    bool isRequired = false; // texts only: null is refused
};

enum class ReplyShape {
    None,
    PartnerLogin,
    UserLogin,
    Station,
    StationList, // the Tapestry station comes first
    GenreList,
    Playlist,
    AdMetadata,
    ActivationCode,
    Search,
    Explanation,
    DeviceInfo,
    UserInfo,
    Checksum,
    IsEnabled,
    IsProtected
};

struct Command {
    VLM_WS_MSGID_T id;
    const char *function; // last part of the address
    Token token;
    ReplyShape reply;
    std::size_t paramsSize; // 0: `params` is null
    std::span<const Field> fields;
    // Changes something at the service: a repetition must not change it twice.
    bool isChange = false;

    // Needs the partner session only, and callers do not send it again: the library renews that session itself.
    bool renewsPartner() const { return token == Token::Partner && !VLM_WS_IS_SENT_AGAIN(id); }
};

// Null for an identifier without a command.
const Command *findCommand(uint32_t id);

// Whether one of the command's parameters names a track.
bool namesTrack(const Command &command);

// Whether every parameter that the command cannot do without is there. `params` is the command's structure.
bool hasRequiredParams(const Command &command, const void *params);

} // namespace velmora::ws
