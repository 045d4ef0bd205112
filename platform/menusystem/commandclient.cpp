#include "commandclient.h"

#include "menusocket.h"

#include <QElapsedTimer>
#include <QFile>

#include <cstdio>
#include <poll.h>
#include <unistd.h>

namespace menusystem {

namespace {

namespace menu = netcommon::menu;

// Longer than the menu system waits for the radio.
constexpr int answerMs = 15000;

int fail(const QString &text)
{
    std::fprintf(stderr, "velmora-menu: %s\n", qPrintable(text));
    return 1;
}

bool waitForAnswer(int descriptor, menu::Packet &packet)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < answerMs) {
        pollfd watched{descriptor, POLLIN, 0};
        ::poll(&watched, 1, int(answerMs - clock.elapsed()));
        switch (menu::receive(descriptor, packet)) {
        case menu::Received::Packet:
            return true;
        case menu::Received::Closed:
            return false;
        case menu::Received::Nothing:
            break;
        }
    }
    return false;
}

} // namespace

int runCommand(const std::vector<Request> &requests, const QString &socket)
{
    QString reason;
    const int descriptor = menu::connectTo(QFile::encodeName(socket), &reason);
    if (descriptor < 0)
        return fail(QStringLiteral("no menu system runs at %1 (%2)").arg(socket, reason));
    int result = 0;
    std::uint32_t id = 0;
    for (const Request &request : requests) {
        menu::Packet answer;
        const auto message = menu::makeMessage(request.type, ++id, request.value, request.flag);
        if (!menu::send(descriptor, message, request.text) || !waitForAnswer(descriptor, answer)) {
            result = fail(QStringLiteral("the menu system does not answer"));
            break;
        }
        if (menu::AnswerValue(menu::field(answer.message, menu::valueOffset)) != menu::AnswerValue::Done) {
            result = fail(QString::fromUtf8(answer.text));
            break;
        }
        if (!answer.text.isEmpty())
            std::printf("%s\n", answer.text.constData());
    }
    ::close(descriptor);
    return result;
}

} // namespace menusystem
