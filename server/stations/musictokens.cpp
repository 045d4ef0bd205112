#include "server/stations/musictokens.h"

#include "server/catalogue/catalogue.h"

#include <nlohmann/json.hpp>

#include <charconv>

namespace velmora::server {

namespace {

using nlohmann::json;

constexpr const char *kindOfTokens = "music";
constexpr size_t markLength = 8;     // hexadecimal digits
constexpr size_t longestStyle = 400; // bytes in a token

std::string markOf(const std::string &name)
{
    return tokenHash(name).substr(0, markLength);
}

} // namespace

const char *musicKindName(MusicKind kind)
{
    switch (kind) {
    case MusicKind::Artist:
        return "artist";
    case MusicKind::Track:
        return "track";
    case MusicKind::Album:
        return "album";
    case MusicKind::Style:
        break;
    }
    return "style";
}

int64_t idOf(const std::string &target)
{
    int64_t id = 0;
    std::from_chars(target.data(), target.data() + target.size(), id);
    return id;
}

MusicKind musicKindOf(const std::string &name)
{
    for (const MusicKind kind : {MusicKind::Artist, MusicKind::Track, MusicKind::Album}) {
        if (name == musicKindName(kind))
            return kind;
    }
    return MusicKind::Style;
}

std::string MusicTokens::tokenFor(AccountId account, MusicKind kind, int64_t id, const std::string &name)
{
    return m_tokens.seal(account, kindOfTokens, json::array({musicKindName(kind), id, markOf(name)}));
}

std::string MusicTokens::tokenForStyle(AccountId account, const std::string &style)
{
    // A name may be longer than a token may be.
    const bool isLong = style.size() > longestStyle;
    return m_tokens.seal(
        account, kindOfTokens,
        json::array({musicKindName(MusicKind::Style), isLong ? "" : style, isLong ? tokenHash(style) : ""}));
}

std::optional<Music> MusicTokens::find(AccountId account, const std::string &token)
{
    const std::optional<json> content = m_tokens.open(account, kindOfTokens, token);
    if (!content || content->size() != 3)
        return std::nullopt;
    const json &kind = content->at(0), &target = content->at(1), &mark = content->at(2);
    if (kind == musicKindName(MusicKind::Style) && target.is_string()) {
        if (target != "")
            return Music{MusicKind::Style, target.get<std::string>()};
        for (const std::string &style : m_catalogue.styles()) {
            if (mark == tokenHash(style))
                return Music{MusicKind::Style, style};
        }
        return std::nullopt;
    }
    if (!target.is_number_integer())
        return std::nullopt;
    const auto id = target.get<int64_t>();
    const std::string text = std::to_string(id);
    if (kind == musicKindName(MusicKind::Album))
        return Music{MusicKind::Album, text};
    if (kind == musicKindName(MusicKind::Artist) && mark == markOf(m_catalogue.artistName(id)))
        return Music{MusicKind::Artist, text};
    const std::optional<Track> track = m_catalogue.track(id);
    if (kind == musicKindName(MusicKind::Track) && track && mark == markOf(track->song))
        return Music{MusicKind::Track, text};
    return std::nullopt;
}

} // namespace velmora::server
