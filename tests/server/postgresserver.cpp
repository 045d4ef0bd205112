#include "postgresserver.h"

#include <libpq-fe.h>

#include <csignal>
#include <deque>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <memory>
#include <pwd.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace velmora {

namespace {

// PostgreSQL refuses to run as root.
const passwd *unprivilegedUser()
{
    if (::geteuid() != 0)
        return nullptr;
    const passwd *user = ::getpwnam("postgres");
    return user ? user : ::getpwnam("nobody");
}

// What it said at last, before the folder is removed. The reason comes some lines before the end.
std::string lastLines(const std::filesystem::path &log)
{
    constexpr size_t most = 20;
    std::ifstream file(log);
    std::deque<std::string> last;
    for (std::string line; std::getline(file, line);) {
        last.push_back(line);
        if (last.size() > most)
            last.pop_front();
    }
    std::string text;
    for (const std::string &line : last)
        text += "\n  " + line;
    return text;
}

} // namespace

std::optional<std::filesystem::path> PostgresServer::programs()
{
    std::error_code error;
    std::optional<std::filesystem::path> newest;
    for (const auto &version : std::filesystem::directory_iterator("/usr/lib/postgresql", error)) {
        const std::filesystem::path folder = version.path() / "bin";
        if (std::filesystem::exists(folder / "initdb", error) && (!newest || folder > *newest))
            newest = folder;
    }
    return newest;
}

PostgresServer::PostgresServer(Disk disk)
    : m_disk(disk)
{
    if (const passwd *user = unprivilegedUser();
        user && ::chown(m_folder.path().c_str(), user->pw_uid, user->pw_gid) != 0)
        throw std::runtime_error("the folder of PostgreSQL cannot be given away");
    int status = -1;
    ::waitpid(run("initdb", {"-D", "data", "-U", "velmora", "-A", "trust", "-E", "UTF8", "--locale=C", "--no-sync"}),
              &status, 0);
    if (status != 0)
        throw std::runtime_error("initdb fails");
    start();
}

PostgresServer::~PostgresServer()
{
    stop(SIGQUIT); // no orderly end: the folder is removed
}

pid_t PostgresServer::run(const std::string &program, const std::vector<std::string> &arguments) const
{
    const std::string file = *programs() / program;
    const std::string log = m_folder / (program + ".log");
    std::vector<char *> argv{const_cast<char *>(file.c_str())};
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);
    const passwd *user = unprivilegedUser();
    const pid_t process = ::fork();
    if (process != 0)
        return process;
    ::setpgid(0, 0);
    if (user && (::setgroups(0, nullptr) != 0 || ::setgid(user->pw_gid) != 0 || ::setuid(user->pw_uid) != 0))
        ::_exit(126);
    ::prctl(PR_SET_PDEATHSIG, SIGQUIT); // after setuid(), which forgets it
    const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    // It counts open files against its own limit, and a benchmark has thousands.
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    if (::chdir(m_folder.path().c_str()) == 0)
        ::execv(file.c_str(), argv.data());
    ::_exit(127);
}

void PostgresServer::start()
{
    const std::string synced = m_disk == Disk::Synced ? "on" : "off";
    m_process = run("postgres", {"-D", "data", "-k", m_folder.path().string(), "-c", "listen_addresses=", "-c",
                                 "fsync=" + synced, "-c", "full_page_writes=" + synced, "-c", "max_connections=60"});
    while (PQping(address("postgres").c_str()) != PQPING_OK) {
        if (::waitpid(m_process, nullptr, WNOHANG) != 0)
            throw std::runtime_error("PostgreSQL does not start:" + lastLines(m_folder / "postgres.log"));
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

void PostgresServer::stop(int signal)
{
    if (m_process <= 0)
        return;
    ::kill(signal == SIGKILL ? -m_process : m_process, signal);
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
}

void PostgresServer::kill()
{
    // Its processes are leaders of groups of their own. It begins none after they have been counted.
    ::kill(m_process, SIGSTOP);
    const std::string number = std::to_string(m_process);
    std::ifstream children("/proc/" + number + "/task/" + number + "/children");
    std::vector<pid_t> all;
    for (pid_t child = 0; children >> child;)
        all.push_back(child);
    stop(SIGKILL);
    for (const pid_t child : all)
        ::kill(child, SIGKILL);
}

std::string PostgresServer::address(const std::string &database) const
{
    return "postgresql:///" + database + "?user=velmora&host=" + m_folder.path().string();
}

std::string PostgresServer::makeDatabase()
{
    const std::string name = "test" + std::to_string(++m_made);
    command("CREATE DATABASE " + name);
    return address(name);
}

void PostgresServer::dropDatabase(const std::string &address)
{
    const size_t begin = address.find("///") + 3;
    command("DROP DATABASE " + address.substr(begin, address.find('?') - begin) + " WITH (FORCE)");
}

void PostgresServer::command(const std::string &sql) const
{
    const std::unique_ptr<PGconn, decltype(&PQfinish)> db(PQconnectdb(address("postgres").c_str()), &PQfinish);
    const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(db.get(), sql.c_str()), &PQclear);
    if (PQresultStatus(result.get()) != PGRES_COMMAND_OK)
        throw std::runtime_error("PostgreSQL refuses \"" + sql + "\": " + PQerrorMessage(db.get()));
}

} // namespace velmora
