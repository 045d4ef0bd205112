#include "callerlimits.h"

#include <algorithm>

namespace velmora::ws {

using namespace std::chrono_literals;

VLM_WS_EXT_ERRCODE_T RenewalLimit::refused(const Command &command, Token token)
{
    // The caller would drop these requests after its logins, unanswered.
    if (!VLM_WS_IS_SENT_AGAIN(command.id))
        return command.id == VLM_WS_MSGID_PARTNER_LOGIN ? VLM_WS_ERR_INVALID_AUTH_TOKEN_2 : loginCode();
    // The user login of a renewal: it must not take the place of the request that waits for it.
    if (command.id == VLM_WS_MSGID_USER_LOGIN && isRenewing() && m_isPartnerDone)
        return loginCode();
    int &renewals = token == Token::User ? m_userRenewals : m_partnerRenewals;
    if (renewals == maxRenewals) {
        renewals = 0;
        return loginCode();
    }
    ++renewals;
    m_waiting = token;
    m_isPartnerDone = false;
    return VLM_WS_ERR_INVALID_AUTH_TOKEN;
}

void RenewalLimit::accepted(Token token)
{
    if (token == Token::Partner)
        m_partnerRenewals = 0;
    if (token == Token::User)
        m_userRenewals = 0;
    if (token == m_waiting)
        m_waiting = Token::None;
}

void RenewalLimit::completed(const Command &command, VLM_WS_EXT_ERRCODE_T code)
{
    if (command.id == VLM_WS_MSGID_PARTNER_LOGIN) {
        m_lastLogin = code;
        m_isPartnerDone = true;
    }
    if (command.id == VLM_WS_MSGID_USER_LOGIN && code != VLM_WS_ERR_INVALID_AUTH_TOKEN) {
        m_lastLogin = code;
        m_waiting = Token::None;
    }
}

VLM_WS_EXT_ERRCODE_T RenewalLimit::loginCode() const
{
    return m_lastLogin == VLM_WS_ERR_OK ? VLM_WS_ERR_INVALID_AUTH_TOKEN_2 : m_lastLogin;
}

void PlaylistLimit::begin()
{
    m_unplayed = 0;
    m_unplayedSince.reset();
}

bool PlaylistLimit::allows(const std::string &station, Clock::time_point now)
{
    const std::chrono::seconds fast = m_playable > 0 ? m_playable * 3s : 10s;
    const std::chrono::seconds slow = std::max(fast, std::min<std::chrono::seconds>(m_playable * 11s, m_music / 4));
    const auto passed = now - m_replied;
    if (station != m_station || passed >= slow)
        begin();
    else if (passed >= fast)
        m_unplayed = 0;
    m_station = station;
    if (m_unplayed < maxPlaylists && !(m_unplayedSince && now - *m_unplayedSince >= maxTime))
        return true;
    begin();
    return false;
}

void PlaylistLimit::replied(const std::string &station, int playable, std::chrono::seconds music, Clock::time_point now)
{
    if (station != m_station)
        return;
    ++m_unplayed;
    if (!m_unplayedSince)
        m_unplayedSince = now;
    m_playable = playable;
    m_music = music;
    m_replied = now;
}

} // namespace velmora::ws
