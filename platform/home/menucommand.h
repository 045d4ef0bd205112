#pragma once

#include "menumessages.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace home {

// Sends a command to the menu system that has started this program, as a shell would. GUI thread.
class MenuCommand : public QObject {
    Q_OBJECT
public:
    explicit MenuCommand(QObject *parent);
    ~MenuCommand() override;

    // answered() follows. A new command replaces one under way.
    void send(netcommon::menu::MessageType type, std::uint32_t value, std::uint32_t flag);

signals:
    // `text`: the reply, or why it was not done.
    void answered(bool isDone, const QString &text);

private:
    void read();
    void end(bool isDone, const QString &text);
    void close();

    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace home
