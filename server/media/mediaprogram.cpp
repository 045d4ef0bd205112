// velmora-media: reads tags, pictures and sound of files that the service has opened for it. Everything that a file
// can do wrong it does here, in a process that has nothing else.
#include "server/media/reading.h"
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

namespace {

using namespace velmora::media;

// The next request and its file; nothing at the end or for anything that is no request.
std::optional<Request> receive(int *file)
{
    Request request;
    iovec part{&request, sizeof request};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
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
    if (got != sizeof request || !head || head->cmsg_level != SOL_SOCKET || head->cmsg_type != SCM_RIGHTS ||
        head->cmsg_len != CMSG_LEN(sizeof(int)))
        return std::nullopt;
    std::memcpy(file, CMSG_DATA(head), sizeof(int));
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

Verdict carryOut(const Request &request, int file, FieldWriter &answer)
{
    switch (static_cast<Operation>(request.operation)) {
    case Operation::Tags:
        return readTags(file, answer);
    case Operation::Picture:
        return readEmbeddedPicture(file, answer);
    case Operation::Cover:
        return readCoverFile(file, answer);
    case Operation::Analysis:
        return analyse(file, answer);
    }
    return refused(answer, "an unknown request");
}

} // namespace

int main()
{
    if (!enterSandbox())
        return EXIT_FAILURE;
    for (;;) {
        int file = -1;
        const std::optional<Request> request = receive(&file);
        if (!request)
            return EXIT_SUCCESS;
        FieldWriter answer;
        Verdict verdict{};
        try {
            verdict = carryOut(*request, file, answer);
        } catch (const std::exception &error) {
            verdict = refused(answer, error.what());
        }
        ::close(file);
        if (answer.size() > mostAnswerBytes)
            verdict = refused(answer, "it says too much");
        const AnswerHead head{request->sequence, static_cast<uint32_t>(verdict), static_cast<uint32_t>(answer.size())};
        if (!sendAll({reinterpret_cast<const char *>(&head), sizeof head}) || !sendAll(answer.all()))
            return EXIT_SUCCESS;
    }
}
