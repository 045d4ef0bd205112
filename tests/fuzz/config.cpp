// The owner's configuration of the library.
#include "scratchfile.h"
#include "server/library/libraryconfig.h"

using namespace velmora::server;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto result = parseLibraryConfig({reinterpret_cast<const char *>(data), size});
    if (const auto *config = std::get_if<LibraryConfig>(&result)) {
        for (const auto &folder : config->folders)
            fuzz::require(folder.is_absolute());
        fuzz::require(config->rescanMinutes >= 0 && config->workers >= 0 && config->transcodeMegabytes >= 0);
    } else {
        fuzz::require(!std::get<std::string>(result).empty());
    }
    return 0;
}
