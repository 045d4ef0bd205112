#pragma once

#include <QByteArray>

namespace menusystem {

// Reads what the radio prints: keeps the end of it, and notices the crash reporter. One thread.
class OutputReader {
public:
    // Begins with the output of another process.
    void begin(qint64 pid);
    void read(const QByteArray &bytes);

    // The headline of the crash reporter's dump, empty while there is none. The dump counts only if it names the
    // process, because a track's title may contain any line.
    QByteArray crash() const { return m_crash; }
    // The last lines, at least `keptBytes` of them if there were so many.
    QByteArray tail() const { return m_tail; }

    static constexpr int keptBytes = 12 * 1024; // a crash reporter's dump takes two

private:
    void readLine(const QByteArray &line);

    QByteArray m_tail;
    QByteArray m_line; // without its end, at most maxLine bytes
    QByteArray m_pidLine;
    QByteArray m_headline; // the last one, whether or not a dump follows
    QByteArray m_crash;
};

} // namespace menusystem
