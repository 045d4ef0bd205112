// Forms, queries and cookies: the input is the text of all three.
#include "scratchfile.h"
#include "server/http/message.h"

using namespace velmora::server::http;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    Request request;
    for (const char *method : {"GET", "POST"}) {
        request.method = method;
        request.query = text;
        request.body = text;
        for (const char *name : {"email", "a", "", "code"})
            fuzz::require(request.parameter(name).size() <= text.size());
    }
    fuzz::require(decoded(text, true).size() <= text.size());
    fuzz::require(decoded(text, false).size() <= text.size());
    request.headers = {{"Cookie", text}};
    fuzz::require(request.cookie("velmora").size() <= text.size());
    return 0;
}
