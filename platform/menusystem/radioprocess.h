#pragma once

#include <QProcess>

namespace menusystem {

// The radio, or a page in its place, as a child process: its files are private to the user, and it dies with this
// process. Its output and errors come together. Owned by the server.
class RadioProcess : public QProcess {
    Q_OBJECT
public:
    explicit RadioProcess(QObject *parent = nullptr);

    // `scale`: logical to real pixels.
    void startRadio(const QStringList &program, const QString &socket, double scale, bool isWindowed);
    // As in a shell: the exit code, 128 plus the signal's number, or 127 when the radio could not be started.
    int resultCode() const;
};

} // namespace menusystem
