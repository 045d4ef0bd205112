#include "testdatabase.h"

#include <fstream>

namespace velmora::server {

TestDatabase::TestDatabase() = default;
TestDatabase::~TestDatabase() = default;

std::string TestDatabase::content(const std::filesystem::path &dataDirectory) const
{
    std::string stored;
    for (const auto &entry : std::filesystem::directory_iterator(dataDirectory)) {
        std::ifstream file(entry.path(), std::ios::binary);
        stored.append(std::istreambuf_iterator<char>(file), {});
    }
    return stored;
}

} // namespace velmora::server
