#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <memory>
#include <optional>

// One line of the observer in a measured program.
struct Observation {
    QByteArray what;
    QByteArray detail;
    qint64 atUs = 0;  // monotonic clock
    qint64 cpuUs = 0; // of the whole process since it began
};

// Microseconds of the clock that observations carry.
qint64 nowUs();

// A program with an observer in it. It ends with this object.
class Watched {
public:
    Watched(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment);
    ~Watched();
    // The next observation of this kind; others are skipped. Empty after the time limit, or if the program has ended.
    std::optional<Observation> next(const QByteArray &what, const QByteArray &detail, int milliseconds);
    void forget(); // all observations so far
    qint64 pid() const { return m_process.processId(); }
    QProcess &process() { return m_process; }
    // The program's output so far.
    QByteArray log() const { return m_log; }

private:
    QProcess m_process;
    QByteArray m_rest;
    QByteArray m_log;
    QList<Observation> m_seen;
    void read();
};

// A device of its own: private root, station service on loopback with the demo catalogue, and the radio on it.
class Device {
public:
    Device();
    ~Device();
    // Starts the service and sets the device up with the demo account. False on failure, which standard error explains.
    // music: options of the service that say what it plays; empty: the demo catalogue.
    bool prepare(const QStringList &music = {});
    // Plays into nothing in real time. The radio's output says when tracks begin: "firstsample", "lastsample".
    static constexpr char observedSink[] = "benchsink";
    std::unique_ptr<Watched> startRadio(const QByteArray &audioSink, bool hasMenu);
    bool key(const QStringList &names); // through the menu system
    QByteArray status();
    QString path(const QString &name) const { return m_root.filePath(name); }
    QProcessEnvironment environment() const;
    QString anyTrack() const;                         // a file of the service's music
    static qint64 radioPid(const QByteArray &status); // 0: none

private:
    bool makeDemoMusic(const QString &tracksOfStyle) const;

    QTemporaryDir m_root;
    QProcess m_server;
    QString m_serverUrl;
    QString m_library; // the service's data: the rendered demo music is kept there from run to run
};

// Of another process, from /proc. 0 when it has gone.
double cpuSeconds(qint64 pid);
double threadCpuSeconds(qint64 pid, qint64 thread);

// Memory in megabytes. A shared page counts by its share: divided by the number of programs that map it.
struct Memory {
    double proportional = 0; // all of it
    double privatePart = 0;  // pages that no other program maps
    double sharedPart = 0;   // the rest
    double anonymous = 0;    // neither file nor shared memory: heap, stacks, data written by the program
};
Memory memoryOf(qint64 pid);
