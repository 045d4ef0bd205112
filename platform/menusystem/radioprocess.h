#pragma once

#include <QProcess>

namespace menusystem {

// The radio as a child process: its files are nobody else's, and it dies with this process. Owned by the server.
class RadioProcess : public QProcess {
    Q_OBJECT
public:
    explicit RadioProcess(QObject *parent = nullptr);

    // `scale`: logical to real pixels.
    void startRadio(const QStringList &program, const QString &socket, double scale, bool isWindowed);
    // As a shell counts: the exit code, or 128 and the signal's number; 127 when it could not be started.
    int resultCode() const;
};

} // namespace menusystem
