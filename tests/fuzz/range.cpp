// Parts of files. The input is a Range header, a line end, and conditional headers, one a line.
#include "scratchfile.h"
#include "server/http/conditions.h"
#include "server/http/file.h"

#include <sstream>

using namespace velmora::server::http;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const auto file = [] {
        const std::string content(1000, 'x');
        return File::open(fuzz::onlyFile("file", reinterpret_cast<const uint8_t *>(content.data()), content.size()));
    }();
    std::istringstream text(std::string(reinterpret_cast<const char *>(data), size));
    Request request;
    request.method = "GET";
    std::string line;
    const char *names[] = {"Range",    "If-Range",           "If-None-Match", "If-Modified-Since",
                           "If-Match", "If-Unmodified-Since"};
    for (const char *name : names)
        if (std::getline(text, line))
            request.headers.emplace_back(name, line);
    for (const uint64_t length : {uint64_t(0), uint64_t(1), uint64_t(1000), UINT64_MAX}) {
        ByteRange range;
        if (parseRange(request.header("Range"), length, &range) == RangeResult::Part)
            fuzz::require(range.first <= range.last && range.last < length);
    }
    Response response;
    response.setFile(file, "audio/flac");
    applyConditions(request, response);
    fuzz::require(response.first + response.count <= file->size());
    return 0;
}
