#pragma once

#include "temporarydirectory.h"

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace velmora {

// A PostgreSQL of Debian's package in a temporary folder, reached through a socket in it. It ends with the object, and
// with the process.
class PostgresServer {
public:
    enum class Disk { Ignored, Synced };

    // Where its programs are; nothing without the package.
    static std::optional<std::filesystem::path> programs();

    // Throws std::runtime_error when it does not start.
    explicit PostgresServer(Disk disk = Disk::Ignored);
    ~PostgresServer();
    PostgresServer(const PostgresServer &) = delete;
    PostgresServer &operator=(const PostgresServer &) = delete;

    // The address of a database that exists.
    std::string address(const std::string &database) const;
    std::string makeDatabase(); // its address; empty databases for one test each
    void dropDatabase(const std::string &address);

    // Starts it again after kill(). Returns when it answers.
    void start();
    // As a crash: SIGKILL to all of it.
    void kill();

private:
    pid_t run(const std::string &program, const std::vector<std::string> &arguments) const;
    void stop(int signal);
    void command(const std::string &sql) const;

    TemporaryDirectory m_folder;
    const Disk m_disk;
    pid_t m_process = -1;
    int m_made = 0;
};

} // namespace velmora
