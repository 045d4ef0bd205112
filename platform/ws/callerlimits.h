#pragma once

#include "commands.h"
#include "pace.h"

#include <optional>
#include <string>

// What ends a caller's endless loop: the answer after the same thing has failed too often. Time is an argument.
namespace velmora::ws {

// Callers answer VLM_WS_ERR_INVALID_AUTH_TOKEN with a partner login, a user login where one is needed, and the same
// request again. That is one renewal. Only one request may wait for a renewal: its caller would forget another one.
class RenewalLimit {
public:
    static constexpr int maxRenewals = 3; // in a row, of one kind of token

    // The service has refused the token of `command`. The code for the caller: VLM_WS_ERR_INVALID_AUTH_TOKEN where a
    // renewal may still help. Otherwise the latest login's own code, or VLM_WS_ERR_INVALID_AUTH_TOKEN_2 where that
    // login succeeded.
    VLM_WS_EXT_ERRCODE_T refused(const Command &command, Token token);
    // The service has answered a request with this token, and the token was not the problem.
    void accepted(Token token);
    // The caller was told `code`. Only logins count.
    void completed(const Command &command, VLM_WS_EXT_ERRCODE_T code);
    // A request waits for the logins of its caller. Others that need a token wait, too, while one of these is queued.
    bool isRenewing() const { return m_waiting != Token::None; }

private:
    VLM_WS_EXT_ERRCODE_T loginCode() const;

    int m_partnerRenewals = 0; // begun since a partner token was accepted
    int m_userRenewals = 0;    // begun since a user token was accepted
    VLM_WS_EXT_ERRCODE_T m_lastLogin = VLM_WS_ERR_OK;
    Token m_waiting = Token::None; // the token that the request under renewal lacks
    bool m_isPartnerDone = false;  // the partner login of that renewal has completed
};

// Ends with an error after three playlists in a row of one station from which nothing played. The library does not see
// the playback. It takes a playlist for unplayed when the station's next one is wanted sooner than three seconds for
// every playable entry (an empty one: sooner than ten seconds), and when no request named a track meanwhile. Media that
// fail slowly end with the same error after a minute: then a playlist counts as unplayed up to eleven seconds for every
// playable entry, as long as that is less than a quarter of its music.
class PlaylistLimit {
public:
    static constexpr int maxPlaylists = 3;
    static constexpr std::chrono::seconds maxTime{60};

    // A playlist of `station` is wanted at `now`. False: answer with an error; the count starts again.
    bool allows(const std::string &station, Clock::time_point now);
    // The service has sent one. `playable`: its entries with something to play; `music`: how long they last, as far as
    // it is known.
    void replied(const std::string &station, int playable, std::chrono::seconds music, Clock::time_point now);
    // A request named a track: somebody listens.
    void heard() { begin(); }

private:
    void begin();

    std::string m_station; // asked for last
    int m_unplayed = 0;    // playlists of it in a row, used up fast
    int m_playable = 0;    // entries of the last one
    std::chrono::seconds m_music{0};
    Clock::time_point m_replied;
    std::optional<Clock::time_point> m_unplayedSince; // the first reply of those in a row, fast or slow
};

} // namespace velmora::ws
