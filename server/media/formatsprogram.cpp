// velmora-media-formats: decodes music of kinds that velmora-media does not know, and transcodes it for the radios.
// Shut in like velmora-media. A program of its own, because libav is large and Debian's build of it is under the GPL.
#include "server/media/formats.h"
#include "server/media/requestloop.h"
#include "server/media/sandbox.h"

#include <cstdlib>
#include <cstring>

int main(int argc, char *argv[])
{
    using namespace velmora::media;
    SandboxRules rules;
    rules.mostMemory = uint64_t(1) << 30; // libav's libraries take a quarter of it
    if (argc > 1 && std::strcmp(argv[1], transcodingRole) == 0) {
        rules.mostFileBytes = uint64_t(2) << 30;
        rules.isBackground = false; // a listener waits for it
    }
    if (!enterSandbox(rules))
        return EXIT_FAILURE;
    return serveRequests([](const Request &request, const Files &files, FieldWriter &answer) {
        switch (static_cast<Operation>(request.operation)) {
        case Operation::Tags:
            return readFormatTags(files.read, answer);
        case Operation::Analysis:
            return analyseFormat(files.read, answer);
        case Operation::Transcode:
            return transcode(files.read, files.write, request.mostBytes, answer);
        case Operation::Picture:
        case Operation::Cover:
            break;
        }
        return refused(answer, "an unknown request");
    });
}
