#pragma once

#include <filesystem>
#include <string>

namespace velmora::server {

// An empty database for one test: a file in the test's folder, or a PostgreSQL's, according to the library that the
// test program links.
class TestDatabase {
public:
    TestDatabase();
    ~TestDatabase();
    TestDatabase(const TestDatabase &) = delete;
    TestDatabase &operator=(const TestDatabase &) = delete;
    const std::string &address() const { return m_address; } // empty: a file

    // All that is stored, as far as a text in it can be found.
    std::string content(const std::filesystem::path &dataDirectory) const;

private:
    std::string m_address;
};

} // namespace velmora::server
