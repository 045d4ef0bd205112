#pragma once

#include <QProcess>
#include <QTimer>

namespace menusystem {

// velmora-remote, through which telephones press the radio's keys, as a child process. It is started anew with each
// start of the radio, whose service may be another one by then, and goes on while a page is shown. It dies with this
// process.
class PhoneChannel : public QObject {
    Q_OBJECT
public:
    PhoneChannel();
    ~PhoneChannel() override;

    // Soon: nothing shall delay the radio's first picture.
    void startFor(const QString &socket);

private:
    void start();

    QString m_socket;
    QProcess m_process;
    QTimer m_later;
};

} // namespace menusystem
