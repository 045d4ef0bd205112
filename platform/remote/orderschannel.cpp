#include "orderschannel.h"

#include "devicestate.h"
#include "orders.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <sodium.h>
#include <thread>
#include <unistd.h>

namespace remote {

namespace menu = netcommon::menu;
using velmora::ws::SecretText;
using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

constexpr int codeTooMany = 5004;
constexpr int codeBadToken = 5097;
constexpr auto answerPatience = 70s; // the service answers after fifty seconds
constexpr milliseconds firstPause = 1s;
constexpr milliseconds longestPause = 60s;
constexpr milliseconds absentPause = 10min; // a service without remotes
constexpr milliseconds keyPause = 5s;       // until the radio has made its key
constexpr char keyFile[] = "device";

// Between half and all of it, so that radios that lost one service together do not come back together.
milliseconds spread(milliseconds pause)
{
    const auto half = std::uint32_t(pause.count() / 2);
    return milliseconds(half + randombytes_uniform(half + 1));
}

QByteArray randomChannel()
{
    unsigned char bytes[16];
    randombytes_buf(bytes, sizeof bytes);
    return QByteArray(reinterpret_cast<const char *>(bytes), sizeof bytes)
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

SecretText secret(const QByteArray &text)
{
    return {text.constData(), size_t(text.size())};
}

void say(const char *text)
{
    std::fprintf(stderr, "velmora-remote: %s\n", text);
}

} // namespace

OrdersChannel::OrdersChannel(const velmora::ws::Config &config, const QByteArray &menuSocket)
    : m_config(config)
    , m_menuSocket(menuSocket)
    , m_channel(randomChannel())
    , m_calls(config, answerPatience)
    , m_reporter(config, m_token, menuSocket)
{
}

OrdersChannel::~OrdersChannel()
{
    if (m_menu >= 0)
        ::close(m_menu);
}

void OrdersChannel::run()
{
    for (;;)
        std::this_thread::sleep_for(m_token.get().empty() ? signIn() : ask());
}

OrdersChannel::Pause OrdersChannel::failed()
{
    m_pause = std::clamp(2 * m_pause, firstPause, longestPause);
    return spread(m_pause);
}

OrdersChannel::Pause OrdersChannel::signIn()
{
    // The library makes the key; two programs must not make two.
    std::error_code error;
    if (!std::filesystem::exists(m_config.stateDir / keyFile, error))
        return keyPause;
    const SecretText key = velmora::ws::loadDeviceState(m_config.stateDir, "/sys/class/net").key;
    SecretText body;
    body.reserve(key.size() + 64);
    body.append(R"({"deviceKey":")").append(key).append(R"("})");
    const ServiceAnswer answer = m_calls.call("partnerLogin", {}, std::move(body));
    if (answer.kind == ServiceAnswer::Kind::Absent)
        return absentPause;
    const QByteArray token = answer.data[QStringLiteral("partnerToken")].toString().toLatin1();
    if (answer.kind == ServiceAnswer::Kind::Failed || answer.code != 0 || token.isEmpty())
        return failed();
    m_token.set(secret(token));
    return 0ms;
}

OrdersChannel::Pause OrdersChannel::ask()
{
    const QJsonObject question{{QStringLiteral("channel"), QString::fromLatin1(m_channel)},
                               {QStringLiteral("epoch"), m_epoch},
                               {QStringLiteral("after"), m_last},
                               {QStringLiteral("isWatched"), m_reporter.isWatched()}};
    const SecretText token = m_token.get();
    const ServiceAnswer answer =
        m_calls.call("remoteOrders", token, secret(QJsonDocument(question).toJson(QJsonDocument::Compact)));
    if (answer.kind == ServiceAnswer::Kind::Absent)
        return absentPause;
    if (answer.kind == ServiceAnswer::Kind::Failed)
        return failed();
    if (answer.code == codeBadToken) {
        m_token.refuse(token);
        return failed();
    }
    if (answer.code == codeTooMany) {
        m_epoch.clear(); // asks anew, as the newest
        return spread(std::chrono::seconds(std::clamp(answer.data[QStringLiteral("retryAfter")].toInt(), 2, 600)));
    }
    if (answer.code != 0)
        return failed();
    const QString epoch = answer.data[QStringLiteral("epoch")].toString();
    if (m_epoch.isEmpty())
        say("telephones can press this radio's keys");
    const bool isNew = epoch != m_epoch;
    m_epoch = epoch;
    const QJsonArray orders = answer.data[QStringLiteral("orders")].toArray();
    for (const auto &order : orders)
        passOn(order.toObject());
    m_last = answer.data[QStringLiteral("last")].toInteger();
    m_reporter.setWatched(answer.data[QStringLiteral("isWatched")].toBool(),
                          isNew || answer.data[QStringLiteral("wantsReport")].toBool());
    if (!orders.isEmpty())
        m_reporter.lookSoon();
    m_pause = 0ms;
    return 0ms;
}

void OrdersChannel::passOn(const QJsonObject &order)
{
    const auto request = requestFor(order);
    if (!request)
        return;
    // Twice: the first connection may be one whose menu system has gone.
    for (int attempt = 0; attempt < 2; ++attempt) {
        QString reason;
        if (m_menu < 0)
            m_menu = menu::connectTo(m_menuSocket, &reason);
        menu::Packet ignored; // answers to earlier requests
        while (m_menu >= 0 && menu::receive(m_menu, ignored) == menu::Received::Packet) {
        }
        if (m_menu >= 0 && menu::send(m_menu, request->message, request->text))
            return;
        if (m_menu >= 0)
            ::close(std::exchange(m_menu, -1));
    }
}

} // namespace remote
