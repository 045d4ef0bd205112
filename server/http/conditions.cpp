#include "server/http/conditions.h"

#include <charconv>

namespace velmora::server::http {

namespace {

bool readNumber(std::string_view text, uint64_t *value)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), *value);
    return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::string_view withoutWeakness(std::string_view tag)
{
    return tag.starts_with("W/") ? tag.substr(2) : tag;
}

// If-None-Match: a list of tags, compared weakly, or an asterisk. Our own tags have no commas.
bool matches(std::string_view list, std::string_view etag)
{
    while (!list.empty()) {
        std::string_view tag = list.substr(0, list.find(','));
        list.remove_prefix(std::min(tag.size() + 1, list.size()));
        tag.remove_prefix(std::min(tag.find_first_not_of(" \t"), tag.size()));
        tag = tag.substr(0, tag.find_last_not_of(" \t") + 1);
        if (tag == "*" || (!etag.empty() && withoutWeakness(tag) == withoutWeakness(etag)))
            return true;
    }
    return false;
}

// Nothing when it is no time as HTTP writes it.
std::optional<std::time_t> readTime(std::string_view text)
{
    std::tm parts{};
    const char *end = ::strptime(std::string(text).c_str(), "%a, %d %b %Y %H:%M:%S GMT", &parts);
    return end ? std::optional(::timegm(&parts)) : std::nullopt;
}

bool isNotModified(const Request &request, const Response &response)
{
    const std::string_view tags = request.header("If-None-Match");
    if (!tags.empty()) // then the time does not count
        return matches(tags, headerOf(response.headers, "ETag"));
    const auto since = readTime(request.header("If-Modified-Since"));
    const auto modified = readTime(headerOf(response.headers, "Last-Modified"));
    return since && modified && *modified <= *since;
}

bool isSameContent(std::string_view ifRange, const Response &response)
{
    return ifRange.empty() || ifRange == headerOf(response.headers, "ETag") ||
           ifRange == headerOf(response.headers, "Last-Modified");
}

} // namespace

RangeResult parseRange(std::string_view header, uint64_t size, ByteRange *range)
{
    constexpr std::string_view unit = "bytes=";
    if (!header.starts_with(unit) || header.find(',') != std::string_view::npos)
        return RangeResult::Whole;
    header.remove_prefix(unit.size());
    const size_t hyphen = header.find('-');
    if (hyphen == std::string_view::npos)
        return RangeResult::Whole;
    const std::string_view from = header.substr(0, hyphen);
    const std::string_view to = header.substr(hyphen + 1);
    uint64_t first = 0;
    uint64_t last = size - 1;
    if (from.empty()) { // the last so many bytes
        uint64_t count = 0;
        if (!readNumber(to, &count))
            return RangeResult::Whole;
        if (count == 0 || size == 0)
            return RangeResult::Unsatisfiable;
        first = size - std::min(count, size);
    } else {
        if (!readNumber(from, &first) || (!to.empty() && !readNumber(to, &last)))
            return RangeResult::Whole;
        if (!to.empty() && last < first)
            return RangeResult::Whole;
        if (first >= size)
            return RangeResult::Unsatisfiable;
        last = std::min(last, size - 1);
    }
    *range = {first, last};
    return RangeResult::Part;
}

void applyConditions(const Request &request, Response &response)
{
    if ((request.method != "GET" && request.method != "HEAD") || response.status != 200)
        return;
    if (isNotModified(request, response)) {
        response.status = 304;
        response.file.reset();
        response.body.clear();
        return;
    }
    const std::string_view header = request.header("Range");
    if (!response.file || header.empty() || request.method != "GET" ||
        !isSameContent(request.header("If-Range"), response))
        return;
    ByteRange range;
    const std::string size = std::to_string(response.file->size());
    switch (parseRange(header, response.file->size(), &range)) {
    case RangeResult::Whole:
        return;
    case RangeResult::Unsatisfiable:
        response.status = 416;
        response.setHeader("Content-Range", "bytes */" + size);
        response.file.reset();
        return;
    case RangeResult::Part:
        response.status = 206;
        response.setHeader("Content-Range",
                           "bytes " + std::to_string(range.first) + "-" + std::to_string(range.last) + "/" + size);
        response.first = range.first;
        response.count = range.last - range.first + 1;
    }
}

} // namespace velmora::server::http
