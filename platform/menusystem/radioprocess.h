#pragma once

#include <QProcess>

#include <functional>

namespace menusystem {

// What a person has chosen on this device. The environment wins, as it does over the library's own file.
void addDeviceSettings(QProcessEnvironment &environment);
// Whether the environment, the device's settings or the library's configuration file name a service.
bool isServiceKnown();
// For QProcess::setChildProcessModifier: the child's files are private to the user, no signal is blocked in it, and it
// gets SIGKILL when this process ends.
std::function<void()> diesWithThisProcess();

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
