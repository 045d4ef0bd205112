// Linked into the measured programs only. Reports on standard output what happened and when, as
// "bench,WHAT,DETAIL,monotonic microseconds,microseconds of CPU time of the process so far". The radio's own code is
// the product's, unchanged.
#ifdef BENCH_SERVICE
#include "service/velmorawebservice.h"
#endif

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QWidget>

#include <chrono>
#include <cstdio>

#include <sys/resource.h>

namespace {

long long microseconds(const timeval &time)
{
    return time.tv_sec * 1000000LL + time.tv_usec;
}

void say(const char *what, const char *detail)
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("bench,%s,%s,%lld,%lld\n", what, detail,
                static_cast<long long>(std::chrono::duration_cast<std::chrono::microseconds>(now).count()),
                microseconds(usage.ru_utime) + microseconds(usage.ru_stime));
    std::fflush(stdout);
}

class Observer : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && !m_hasPainted && watched->isWidgetType()) {
            const auto *widget = static_cast<QWidget *>(watched);
            // The backdrop of the canvas is painted before the first screen, which is what the viewer waits for.
            if (widget->isWindow() && widget->width() >= 1280 &&
                !qstrcmp(widget->metaObject()->className(), m_screen)) {
                m_hasPainted = true;
                // Delivered when the whole window is painted and flushed.
                QMetaObject::invokeMethod(
                    this, [] { say("painted", m_screen); }, Qt::QueuedConnection);
            }
        } else if (event->type() == QEvent::KeyRelease || event->type() == QEvent::KeyPress) {
            // The first receiver counts: a key that is handed on to a parent is the same key.
            auto *key = static_cast<QKeyEvent *>(event);
            if (watched->isWindowType())
                say(event->type() == QEvent::KeyPress ? "press" : "release",
                    QByteArray::number(key->key(), 16).constData());
        }
        return QObject::eventFilter(watched, event);
    }

private:
    static constexpr const char *m_screen = BENCH_SCREEN;
    bool m_hasPainted = false;
};

void installObserver()
{
    say("application", "");
    auto *const observer = new Observer(qApp);
    qApp->installEventFilter(observer);
#ifdef BENCH_SERVICE
    // Called on the library's thread, at the moment of the arrival.
    QObject::connect(
        VelmoraWebService::getInstance(), &VelmoraWebService::signalGetStationListDone, observer,
        [] { say("stationlist", ""); }, Qt::DirectConnection);
#endif
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(installObserver)
