#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::server {

// One request's parameters. A required one that is missing or of another type throws ApiError (Malformed); an optional
// one of another type counts as missing.
class Parameters {
public:
    static constexpr size_t mostBytes = 64 * 1024;
    static constexpr int mostLevels = 16;
    static constexpr size_t mostMembers = 64;

    // Throws ApiError when the text is not one JSON object within these limits.
    static Parameters parse(std::string_view text);

    std::string text(const char *name) const;
    bool flag(const char *name) const;
    std::optional<std::string> optionalText(const char *name) const;
    std::optional<bool> optionalFlag(const char *name) const;
    std::optional<int64_t> optionalInteger(const char *name) const;

private:
    const nlohmann::json *find(const char *name) const;

    nlohmann::json m_object;
};

} // namespace velmora::server
