#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QStringList>

// Captures the log while it exists: every line of any thread, in order; nothing is printed. One at a time.
class LogCapture {
public:
    LogCapture()
    {
        current = this;
        m_previous = qInstallMessageHandler(&LogCapture::take);
    }
    ~LogCapture()
    {
        qInstallMessageHandler(m_previous);
        const QMutexLocker lock(&mutex);
        current = nullptr;
    }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    QStringList lines() const
    {
        const QMutexLocker lock(&mutex);
        return m_lines;
    }
    bool contains(const QString &text) const { return !lines().filter(text).isEmpty(); }

private:
    static inline QMutex mutex;
    static inline LogCapture *current = nullptr;
    static void take(QtMsgType, const QMessageLogContext &, const QString &line)
    {
        const QMutexLocker lock(&mutex);
        if (current)
            current->m_lines.append(line);
    }

    QtMessageHandler m_previous = nullptr;
    QStringList m_lines;
};
