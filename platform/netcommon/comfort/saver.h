#pragma once

#include "saverdecider.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

namespace netcommon {

class SaverPicture;

// The screen saver of the device: the idle picture over the playing screen. The screens hear of it as of any screen
// saver, by IpcThread::signalScreenSaver. GUI thread.
class Saver : public QObject {
    Q_OBJECT
public:
    // clock: milliseconds, never backwards.
    Saver(std::function<qint64()> clock, QObject *parent);

    void setMinutes(int minutes); // without a key; 0: never
    // What the picture says of the sleep timer; empty: nothing.
    void setSleepText(std::function<QString()> text) { m_sleepText = std::move(text); }
    // A key was pressed. True: it has ended the picture, and does nothing else.
    bool keyPressed();
    // Black at once, until a key is pressed.
    void fallAsleep();
    // Does something with the screens, which take no keys while a screen saver runs.
    void behind(const std::function<void()> &action);
    bool isShown() const { return m_decider.look() != SaverDecider::Look::None; }

    // Looks whether it is time.
    void step();

private:
    SaverDecider::Facts facts() const;
    void show(SaverDecider::Look look);
    void lift();

    const std::function<qint64()> m_clock;
    SaverDecider m_decider;
    QPointer<SaverPicture> m_picture; // null: not shown, or gone with its screen
    qint64 m_shownSince = 0;          // valid while m_picture is there
    std::function<QString()> m_sleepText;
    int m_minutes = 10;
    QTimer m_tick;
};

} // namespace netcommon
