#pragma once

#include <filesystem>

namespace velmora::server {

// A backup is one file, readable by its owner only: the database as it was at one moment, with the keys in it, and the
// small files beside it that cannot be made again. Not in it: music, pictures of albums and transcodes, which are made
// again. Both functions throw std::runtime_error or StoreError, with a text for the person who started the program.

// Also while a service uses the folder. The file is replaced when the new backup is whole and on the disk.
void writeBackup(const std::filesystem::path &dataFolder, const std::filesystem::path &file);

// The caller holds the folder's lock (DataFolder). What the folder held is put aside; the answer says where, and is
// empty when it held nothing. After an error the folder is as it was.
std::filesystem::path restoreBackup(const std::filesystem::path &file, const std::filesystem::path &dataFolder);

} // namespace velmora::server
