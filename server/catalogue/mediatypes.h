#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace velmora::server {

// What radios decode by themselves. Music of other types is transcoded for them.
inline constexpr std::array<std::string_view, 4> radioMediaTypes = {"audio/flac", "audio/mpeg", "audio/ogg",
                                                                    "audio/wav"};
inline constexpr const char *transcodedMediaType = "audio/flac";

inline bool isPlayedByRadios(std::string_view mediaType)
{
    return std::find(radioMediaTypes.begin(), radioMediaTypes.end(), mediaType) != radioMediaTypes.end();
}

// The same as a condition on a column.
inline std::string isPlayedByRadiosSql(const std::string &column)
{
    std::string list;
    for (const std::string_view type : radioMediaTypes) {
        list += list.empty() ? "'" : ", '";
        list.append(type).append("'");
    }
    return column + " IN (" + list + ")";
}

} // namespace velmora::server
