#pragma once

#include "platform/netcommon/device/menumessages.h"

#include <QJsonObject>
#include <QString>

namespace faults {

// An open connection to the menu system, for what velmora-menu asks on its command line: ten questions a second would
// start ten programs a second.
class MenuLine {
public:
    explicit MenuLine(const QString &socket);
    ~MenuLine();
    MenuLine(const MenuLine &) = delete;
    MenuLine &operator=(const MenuLine &) = delete;

    // As `velmora-menu status`; empty when there is no answer within ten seconds.
    QJsonObject status();
    bool key(int key); // a Qt key code
    // As `velmora-menu network down` and `up`.
    bool network(bool isUp);
    int answerMs() const { return m_answerMs; } // how long the last answer took

private:
    bool ask(netcommon::menu::MessageType type, std::uint32_t value, QByteArray *answer);

    int m_descriptor = -1;
    std::uint32_t m_id = 0;
    int m_answerMs = 0;
};

} // namespace faults
