#include "server/media/mediaworker.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora::media {

namespace {

using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr int mostFiles = 1000; // of one process, so that nothing that leaks goes on for ever
constexpr auto tagsTime = 5s;
constexpr auto pictureTime = 5s;
constexpr int socketInChild = 3;

std::chrono::nanoseconds processorTime(pid_t process)
{
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0)
        return 0ns;
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// Whether the process computes or waits for a processor, not for a file.
bool isRunnable(pid_t process)
{
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(stat, line);
    const size_t name = line.rfind(") ");
    return name != std::string::npos && line[name + 2] == 'R';
}

} // namespace

// How long a worker may take for one request. On a busy machine a file is not to blame for the wait: a worker that is
// runnable, or had a twentieth of the time on a processor, gets more, until it had all of it there.
class MediaWorker::Patience {
public:
    Patience(pid_t process, std::chrono::milliseconds longest)
        : m_process(process)
        , m_longest(longest)
        , m_until(SteadyClock::now() + longest)
        , m_end(SteadyClock::now() + mostTimes * longest)
        , m_atStart(processorTime(process))
        , m_before(m_atStart)
    {
    }

    // Until it is time to ask again; 0: the time is over.
    std::chrono::milliseconds left()
    {
        const auto now = SteadyClock::now();
        if (now >= m_until) {
            const auto used = processorTime(m_process);
            const bool isBusy = isRunnable(m_process) || used - m_before >= m_longest / 20;
            if (!isBusy || used - m_atStart >= m_longest || now >= m_end)
                return 0ms;
            m_before = used;
            m_until = now + m_longest;
        }
        return std::chrono::ceil<std::chrono::milliseconds>(m_until - now);
    }

private:
    static constexpr int mostTimes = 20;
    const pid_t m_process;
    const std::chrono::nanoseconds m_longest;
    SteadyClock::time_point m_until;
    const SteadyClock::time_point m_end; // whatever the worker does
    const std::chrono::nanoseconds m_atStart;
    std::chrono::nanoseconds m_before; // at the last extension
};

MediaWorker::MediaWorker(std::filesystem::path program, const char *role)
    : m_program(std::move(program))
    , m_role(role)
    , m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

MediaWorker::~MediaWorker()
{
    end();
    if (m_wake >= 0)
        ::close(m_wake);
}

std::filesystem::path MediaWorker::besideThisProgram(const char *name)
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / name;
}

void MediaWorker::interrupt()
{
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_wake, &one, sizeof one);
}

bool MediaWorker::start()
{
    if (m_process > 0)
        return true;
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    for (int descriptor = 0; descriptor < socketInChild; ++descriptor)
        posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], socketInChild);
    posix_spawn_file_actions_addclosefrom_np(&actions, socketInChild + 1);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    const std::string name = m_program.filename();
    char *const arguments[] = {const_cast<char *>(name.c_str()), const_cast<char *>(m_role), nullptr};
    char *const environment[] = {nullptr};
    const int result = ::posix_spawn(&m_process, m_program.c_str(), &actions, &attributes, arguments, environment);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (result != 0) {
        ::close(ends[0]);
        m_process = -1;
        return false;
    }
    m_socket = ends[0];
    m_files = 0;
    return true;
}

void MediaWorker::end()
{
    if (m_socket >= 0)
        ::close(m_socket);
    m_socket = -1;
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    m_process = -1;
}

bool MediaWorker::send(const Request &request, int file, int to) const
{
    iovec part{const_cast<Request *>(&request), sizeof request};
    const int files[2] = {file, to};
    const size_t bytes = to >= 0 ? sizeof files : sizeof file;
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof files)] = {};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = CMSG_SPACE(bytes);
    cmsghdr *head = CMSG_FIRSTHDR(&message);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(bytes);
    std::memcpy(CMSG_DATA(head), files, bytes);
    ssize_t sent = 0;
    do {
        sent = ::sendmsg(m_socket, &message, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent == sizeof request;
}

int MediaWorker::receive(void *buffer, size_t count, Patience &patience) const
{
    auto *to = static_cast<char *>(buffer);
    while (count > 0) {
        const std::chrono::milliseconds left = patience.left();
        if (left == 0ms)
            return 0;
        pollfd waits[2] = {{m_socket, POLLIN, 0}, {m_wake, POLLIN, 0}};
        const int ready = ::poll(waits, 2, static_cast<int>(left.count()));
        if (ready < 0 && errno != EINTR)
            return -1;
        if (ready <= 0)
            continue;
        if (waits[1].revents != 0)
            return -2;
        const ssize_t got = ::recv(m_socket, to, count, 0);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return -1;
        to += got;
        count -= static_cast<size_t>(got);
    }
    return 1;
}

Outcome MediaWorker::ask(Request request, int file, int to, std::chrono::milliseconds longest,
                         std::vector<Field> *fields, std::string *problem)
{
    if (m_files >= mostFiles)
        end();
    if (!start()) {
        *problem = m_program.filename().string() + " cannot be started";
        return Outcome::NoWorker;
    }
    Patience patience(m_process, longest);
    request.sequence = ++m_sequence;
    const bool isFirst = m_files++ == 0;
    AnswerHead head;
    std::string bytes;
    int result = send(request, file, to) ? receive(&head, sizeof head, patience) : -1;
    if (result == 1) {
        if (head.sequence != request.sequence || head.length > mostAnswerBytes) {
            result = -2;
        } else {
            bytes.resize(head.length);
            result = receive(bytes.data(), bytes.size(), patience);
        }
    }
    const std::optional<std::vector<Field>> read = result == 1 ? readFields(bytes) : std::nullopt;
    if (result == 1 && read) {
        *fields = *read;
        if (head.verdict == static_cast<uint32_t>(Verdict::Done))
            return Outcome::Done;
        *problem = problemOf(*read);
        return head.verdict == static_cast<uint32_t>(Verdict::NoRoom) ? Outcome::NoRoom : Outcome::Refused;
    }
    // A process that leaves by itself at its first file could not enter its sandbox; no file makes it do that.
    int status = 0;
    if (isFirst && result == -1 && ::waitpid(m_process, &status, 0) == m_process) {
        m_process = -1;
        if (WIFEXITED(status)) {
            end();
            *problem = m_program.filename().string() + " cannot be started";
            return Outcome::NoWorker;
        }
    }
    end();
    *problem = result == 0 ? "reading it took too long" : "reading it failed badly";
    return result == 0 ? Outcome::TooSlow : Outcome::Crashed;
}

namespace {

// The answer out of the fields of a request that succeeded; `impossible` where they hold none.
template <auto parse, typename Answer>
Outcome take(Outcome outcome, const std::vector<Field> &fields, Answer *answer, const char *impossible,
             std::string *problem)
{
    if (outcome != Outcome::Done)
        return outcome;
    auto read = parse(fields);
    if (!read) {
        *problem = impossible;
        return Outcome::Refused;
    }
    *answer = *std::move(read);
    return Outcome::Done;
}

} // namespace

Outcome MediaWorker::readTags(int file, MediaTags *tags, std::string *problem, uint64_t folder)
{
    std::vector<Field> fields;
    const Outcome outcome =
        ask({static_cast<uint32_t>(Operation::Tags), 0, 0, folder}, file, -1, tagsTime, &fields, problem);
    return take<tagsOf>(outcome, fields, tags, "what it says of itself is impossible", problem);
}

Outcome MediaWorker::readPicture(Operation operation, int file, std::string *jpeg, std::string *problem)
{
    std::vector<Field> fields;
    const Outcome outcome = ask(operation, file, pictureTime, &fields, problem);
    return take<jpegOf>(outcome, fields, jpeg, "an impossible picture", problem);
}

Outcome MediaWorker::analyse(int file, double seconds, MediaAnalysis *analysis, std::string *problem)
{
    std::vector<Field> fields;
    const auto longest = 60s + std::chrono::seconds(static_cast<int64_t>(seconds / 60));
    const Outcome outcome = ask(Operation::Analysis, file, longest, &fields, problem);
    return take<analysisOf>(outcome, fields, analysis, "what was heard in it is impossible", problem);
}

Outcome MediaWorker::transcode(int file, int to, double seconds, uint64_t mostBytes, uint64_t *bytes,
                               std::string *problem)
{
    constexpr const char *impossible = "what was made of it is impossible";
    std::vector<Field> fields;
    const auto longest = 60s + std::chrono::seconds(static_cast<int64_t>(seconds / 6));
    const Outcome outcome = take<writtenBytesOf>(
        ask({static_cast<uint32_t>(Operation::Transcode), 0, mostBytes}, file, to, longest, &fields, problem), fields,
        bytes, impossible, problem);
    if (outcome != Outcome::Done || *bytes <= mostBytes)
        return outcome;
    *problem = impossible;
    return Outcome::Refused;
}

} // namespace velmora::media
