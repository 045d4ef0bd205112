#include "server/media/requestloop.h"

#include "server/media/sandbox.h"

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
extern "C" const char *__asan_default_options()
{
    return "detect_leaks=0:handle_segv=0:allocator_may_return_null=1";
}
#endif

namespace velmora::media {

namespace {

// The next request and its one or two files; nothing at the end or for anything that is no request.
std::optional<Request> receive(Files &files)
{
    Request request;
    iovec part{&request, sizeof request};
    alignas(cmsghdr) char control[CMSG_SPACE(2 * sizeof(int))] = {};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    ssize_t got = 0;
    do {
        got = ::recvmsg(socketDescriptor, &message, MSG_CMSG_CLOEXEC);
    } while (got < 0 && errno == EINTR);
    const cmsghdr *head = CMSG_FIRSTHDR(&message);
    if (got != sizeof request || !head || head->cmsg_level != SOL_SOCKET || head->cmsg_type != SCM_RIGHTS)
        return std::nullopt;
    std::memcpy(&files.read, CMSG_DATA(head), sizeof(int));
    if (head->cmsg_len == CMSG_LEN(2 * sizeof(int)))
        std::memcpy(&files.write, CMSG_DATA(head) + sizeof(int), sizeof(int));
    else if (head->cmsg_len != CMSG_LEN(sizeof(int)))
        return std::nullopt;
    return request;
}

bool sendAll(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t sent = ::write(socketDescriptor, bytes.data(), bytes.size());
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(sent));
    }
    return true;
}

} // namespace

int serveRequests(const std::function<Verdict(const Request &, const Files &, FieldWriter &)> &carryOut)
{
    for (;;) {
        Files files;
        const std::optional<Request> request = receive(files);
        if (!request)
            return EXIT_SUCCESS;
        FieldWriter answer;
        Verdict verdict{};
        try {
            verdict = carryOut(*request, files, answer);
        } catch (const std::exception &error) {
            verdict = refused(answer, error.what());
        }
        ::close(files.read);
        if (files.write >= 0)
            ::close(files.write);
        if (answer.size() > mostAnswerBytes)
            verdict = refused(answer, "it says too much");
        const AnswerHead head{request->sequence, static_cast<uint32_t>(verdict), static_cast<uint32_t>(answer.size())};
        if (!sendAll({reinterpret_cast<const char *>(&head), sizeof head}) || !sendAll(answer.all()))
            return EXIT_SUCCESS;
    }
}

} // namespace velmora::media
