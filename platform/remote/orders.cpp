#include "orders.h"

#include "remotekeytable.h"

namespace remote {

namespace {

namespace menu = netcommon::menu;
using menu::MessageType;

constexpr int mostRow = 10'000;

menu::Packet packet(MessageType type, std::uint32_t value, std::uint32_t flag = 0, const QByteArray &text = {})
{
    return {menu::makeMessage(type, 0, value, flag), text};
}

// The whole number of that name within these bounds.
std::optional<std::uint32_t> number(const QJsonObject &order, const char *name, int least, int most)
{
    const QJsonValue value = order[QLatin1String(name)];
    const int whole = value.toInt(least - 1);
    return whole >= least && whole <= most ? std::optional(std::uint32_t(whole)) : std::nullopt;
}

std::optional<menu::Packet> sleepRequest(const QString &word)
{
    using menu::SleepOrder;
    if (word == QLatin1String("off"))
        return packet(MessageType::Sleep, 0, std::uint32_t(SleepOrder::Off));
    if (word == QLatin1String("track"))
        return packet(MessageType::Sleep, 0, std::uint32_t(SleepOrder::Track));
    bool isNumber = false;
    const uint minutes = word.toUInt(&isNumber);
    if (!isNumber || minutes < menu::leastSleepMinutes || minutes > menu::mostSleepMinutes)
        return std::nullopt;
    return packet(MessageType::Sleep, minutes, std::uint32_t(SleepOrder::Minutes));
}

} // namespace

std::optional<menu::Packet> requestFor(const QJsonObject &order)
{
    if (const QJsonValue key = order[QStringLiteral("key")]; key.isString()) {
        const auto *known = netcommon::keys::keyByName(key.toString());
        if (!known)
            return std::nullopt;
        return packet(MessageType::Key, std::uint32_t(known->key), known->isTyped ? menu::typedKey : menu::phoneKey);
    }
    if (order.contains(QStringLiteral("volume"))) {
        const auto percent = number(order, "volume", 0, 100);
        return percent ? std::optional(packet(MessageType::Volume, *percent)) : std::nullopt;
    }
    if (const QJsonValue sleep = order[QStringLiteral("sleep")]; sleep.isString())
        return sleepRequest(sleep.toString());
    if (order.contains(QStringLiteral("station"))) {
        const auto row = number(order, "station", 0, mostRow);
        const QByteArray name = order[QStringLiteral("name")].toString().toUtf8();
        return row ? std::optional(packet(MessageType::Station, *row, 0, name)) : std::nullopt;
    }
    const auto field = number(order, "field", 1, INT32_MAX);
    if (!field)
        return std::nullopt;
    if (order[QStringLiteral("done")].toBool())
        return packet(MessageType::Field, *field, menu::fieldDone);
    const QJsonValue text = order[QStringLiteral("text")];
    return text.isString() ? std::optional(packet(MessageType::Field, *field, 0, text.toString().toUtf8()))
                           : std::nullopt;
}

} // namespace remote
