#pragma once

#include <QtGlobal>

namespace netcommon {

// Decides when the idle picture covers the playing screen. All times are milliseconds of one clock.
class SaverDecider {
public:
    enum class Look {
        None,
        Picture,
        Black // nothing has played for twenty minutes, or the sleep timer has ended
    };
    struct Facts {
        qint64 now;
        int minutes;            // without a key until the picture; 0: never
        bool isOnPlayingScreen; // the playing screen is uppermost
        bool isSounding;
    };
    static constexpr qint64 blackAfterMs = 20 * 60 * 1000;

    explicit SaverDecider(qint64 now);

    // About once a second while it shows; otherwise when nextLook() says so, or when a fact has changed.
    Look step(const Facts &facts);
    // Milliseconds until step() can have news.
    qint64 nextLook(const Facts &facts) const;
    // A key was pressed. True: it has ended the picture, and does nothing else.
    bool keyPressed(qint64 now);
    // Black from the next step on, until a key is pressed.
    void fallAsleep();
    Look look() const { return m_look; }

private:
    Look m_look = Look::None;
    qint64 m_lastKey;
    qint64 m_lastSound;
    bool m_isAsleep = false;
};

} // namespace netcommon
