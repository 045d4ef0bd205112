// velmora-media: reads tags, pictures and sound of files that the service has opened for it. Everything that a file
// can do wrong it does here, in a process that has nothing else.
#include "server/media/charsets.h"
#include "server/media/requestloop.h"
#include "server/media/sandbox.h"

#include <cstdlib>

int main()
{
    using namespace velmora::media;
    openCharsets();
    if (!enterSandbox())
        return EXIT_FAILURE;
    FolderCharset charset;
    return serveRequests([&](const Request &request, const Files &files, FieldWriter &answer) {
        switch (static_cast<Operation>(request.operation)) {
        case Operation::Tags:
            charset.enter(request.folder);
            return readTags(files.read, charset, answer);
        case Operation::Picture:
            return readEmbeddedPicture(files.read, answer);
        case Operation::Cover:
            return readCoverFile(files.read, answer);
        case Operation::Analysis:
            return analyse(files.read, answer);
        case Operation::Transcode:
            break;
        }
        return refused(answer, "an unknown request");
    });
}
