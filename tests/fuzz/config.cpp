// The owner's configuration file.
#include "scratchfile.h"
#include "server/library/libraryconfig.h"

using namespace velmora::server;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const ConfigFile file = parseConfigFile({reinterpret_cast<const char *>(data), size});
    for (const ConfigEntry &entry : file.entries)
        fuzz::require(entry.line > 0 && !entry.value.empty());
    std::vector<ConfigProblem> problems;
    const LibraryConfig config = takeLibraryConfig(file, &problems);
    for (const auto &folder : config.folders)
        fuzz::require(folder.is_absolute());
    fuzz::require(config.rescanMinutes >= 0 && config.workers >= 0 && config.transcodeMegabytes >= 0);
    for (const ConfigProblem &problem : problems)
        fuzz::require(problem.line > 0 && !problem.text.empty());
    return 0;
}
