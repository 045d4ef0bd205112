// The service's reader of requests. The first byte says in what pieces the bytes arrive.
#include "scratchfile.h"
#include "server/http/limits.h"
#include "server/http/requestparser.h"

using namespace velmora::server::http;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    const size_t piece = 1 + data[0];
    const std::string all(reinterpret_cast<const char *>(data) + 1, size - 1);
    const Limits limits;
    std::string input;
    size_t at = 0;
    while (at < all.size()) { // one request after another on the same connection
        RequestParser parser(limits);
        auto state = RequestParser::State::NeedsMore;
        while (state == RequestParser::State::NeedsMore || state == RequestParser::State::HeadersRead) {
            if (state == RequestParser::State::HeadersRead) {
                parser.isContinueExpected();
                parser.isKeptAlive();
                if (parser.hasBody())
                    parser.setMostBody(4096);
            } else {
                if (at == all.size())
                    return 0;
                input += all.substr(at, piece);
                at = std::min(all.size(), at + piece);
            }
            const size_t before = input.size();
            state = parser.take(input);
            fuzz::require(input.size() <= before);
        }
        if (state == RequestParser::State::Failed) {
            fuzz::require(parser.failure() >= 400 && parser.failure() < 600);
            return 0;
        }
        const Request &request = parser.request();
        fuzz::require(request.path.starts_with('/') || request.path == "*");
        fuzz::require(request.body.size() <= 4096);
        if (!parser.isKeptAlive())
            return 0;
    }
    return 0;
}
