#pragma once

#include "server/serveroptions.h"

namespace velmora::server {

// What a file with the key of the media store holds; nothing when that is no two lines.
std::optional<StoreKey> readStoreKey(const std::filesystem::path &file);

// Everything that is wrong with what the service was told, in a sentence each, as far as that shows without a start:
// the lines of the configuration file, files and folders that are named, certificates, files with secrets that others
// may read. A problem of the file names its line.
std::vector<std::string> checkConfig(const ServerOptions &options);

} // namespace velmora::server
