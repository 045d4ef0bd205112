#include "bench/serviceprogram.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <numeric>
#include <sched.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

using nlohmann::json;
using velmora::server::HttpClient;

namespace {

std::filesystem::path madeFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "velmora-bench-XXXXXX").string();
    if (!::mkdtemp(name.data()))
        throw std::runtime_error("no folder for the service's data");
    return name;
}

} // namespace

double since(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

ScratchFolder::ScratchFolder()
    : path(madeFolder())
{
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

Server::Server(const std::filesystem::path &data, const std::vector<std::string> &options, const std::string &cores)
{
    std::vector<std::string> words{BENCH_SERVER, "--listen", "127.0.0.1:0", "--data", data, "--demo-tracks", "1"};
    words.insert(words.end(), options.begin(), options.end());
    if (!cores.empty())
        words.insert(words.begin(), {"taskset", "-c", cores});
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    m_pid = ::fork();
    if (m_pid == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO); // a line a request
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    m_output = ::fdopen(ends[0], "r");
    const std::string line = lineWith("listening on ");
    m_port = std::stoi(line.substr(line.rfind(':') + 1));
}

Server::~Server()
{
    end(SIGTERM);
    std::fclose(m_output);
}

void Server::kill()
{
    end(SIGKILL);
}

void Server::end(int signal)
{
    if (m_pid <= 0)
        return;
    ::kill(m_pid, signal);
    ::waitpid(m_pid, nullptr, 0);
    m_pid = -1;
}

std::string Server::lineWith(const std::string &text)
{
    char line[512];
    while (std::fgets(line, sizeof line, m_output)) {
        if (std::strstr(line, text.c_str()))
            return line;
    }
    throw std::runtime_error("the server did not say: " + text);
}

void Server::untilMusicIsMade()
{
    int made = 0;
    int total = 1;
    while (made < total)
        std::sscanf(lineWith("demo catalogue: ").c_str(), "demo catalogue: %d of %d", &made, &total);
}

double Server::megabytes(const char *line) const
{
    std::ifstream file("/proc/" + std::to_string(m_pid) + "/status");
    for (std::string text; std::getline(file, text);) {
        if (text.starts_with(line))
            return std::stod(text.substr(std::strlen(line) + 1)) / 1024;
    }
    return 0;
}

double Server::megabytesFor(const std::function<void()> &work) const
{
    std::ofstream("/proc/" + std::to_string(m_pid) + "/clear_refs") << "5"; // the peak begins anew
    const double before = megabytes();
    work();
    return megabytes("VmHWM") - before;
}

double Server::cpuSeconds() const
{
    std::ifstream file("/proc/" + std::to_string(m_pid) + "/stat");
    std::string word;
    double ticks = 0;
    for (int i = 1; i <= 15 && file >> word; ++i)
        ticks += i >= 14 ? std::stod(word) : 0;
    return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

size_t Server::sockets() const
{
    std::error_code error;
    size_t count = 0;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/" + std::to_string(m_pid) + "/fd", error))
        count += std::filesystem::read_symlink(entry, error).native().starts_with("socket:");
    return count;
}

Servers::Servers(const std::filesystem::path &data, const std::string &database, size_t processes)
    : m_data(data)
    , m_database(database)
    , m_ports(processes, 0)
{
    start();
}

void Servers::start()
{
    for (int &port : m_ports) {
        std::vector<std::string> options{"--no-demo", "--trusted-proxy", "127.0.0.1", "--listen",
                                         "127.0.0.1:" + std::to_string(port)};
        if (!m_database.empty())
            options.insert(options.end(), {"--database", m_database});
        m_servers.push_back(std::make_unique<Server>(m_data, options));
        port = m_servers.back()->port();
    }
}

void Servers::kill()
{
    for (const auto &server : m_servers)
        server->kill();
    m_servers.clear();
}

double Servers::cpuSeconds() const
{
    return std::accumulate(m_servers.begin(), m_servers.end(), 0.0,
                           [](double sum, const auto &server) { return sum + server->cpuSeconds(); });
}

void allowManyConnections()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

namespace {

std::string textOf(const std::filesystem::path &file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Up to the character that ends it; empty when `begin` is not there.
std::string partAfter(const std::string &text, const std::string &begin, char end)
{
    const size_t at = text.find(begin);
    if (at == std::string::npos)
        return {};
    const size_t first = at + begin.size();
    return text.substr(first, text.find(end, first) - first);
}

std::string signUpToken(const std::filesystem::path &outbox, const std::string &address)
{
    std::error_code error;
    for (const auto &mail : std::filesystem::directory_iterator(outbox, error)) {
        const std::string text = textOf(mail);
        if (text.find("To: <" + address + ">") != std::string::npos && text.ends_with("--\r\n")) // whole
            return partAfter(text, "/confirm?token=", '\r');
    }
    return {};
}

} // namespace

void openSignUpLink(HttpClient &client, const std::filesystem::path &data, const std::string &address)
{
    std::string token;
    for (const auto begin = std::chrono::steady_clock::now(); token.empty() && since(begin) < 20;)
        token = signUpToken(data / "outbox", address);
    client.send("GET /confirm?token=" + token + " HTTP/1.1\r\nHost: radio\r\n\r\n");
    const auto page = client.receive();
    const std::string cookie = partAfter(page.header("Set-Cookie") + ";", "", ';');
    const std::string body = "csrf=" + partAfter(page.body, "name=\"csrf\" value=\"", '"') + "&token=" + token;
    client.send("POST /confirm HTTP/1.1\r\nHost: radio\r\nCookie: " + cookie +
                "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    if (const int status = client.receive().status; status != 200)
        throw std::runtime_error("the link for " + address + " was answered with " + std::to_string(status));
}

json call(HttpClient &client, const std::string &function, const json &parameters, const std::string &token)
{
    const std::string body = parameters.dump();
    client.send("POST /v1/" + function + " HTTP/1.1\r\nHost: radio\r\nAuthorization: Bearer " + token +
                "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    const json answer = json::parse(client.receive().body, nullptr, false);
    if (answer.value("code", -1) != 0)
        throw std::runtime_error(function + ": " + answer.dump());
    return answer.value("data", json::object());
}

} // namespace bench
