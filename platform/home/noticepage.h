#pragma once

#include "page.h"
#include "waiting.h"

#include <memory>

namespace home {

// What stands on the screen while the radio does not run: it waits for the service, or for a person.
class NoticePage : public Page {
    Q_OBJECT
public:
    enum class Kind {
        Waiting, // for the service
        Again,   // the service answers, and yet the radio has failed several times
        Stopped, // the radio has crashed too often
    };
    NoticePage(Kind kind, const ServicePlace &place);

signals:
    void wantsHome();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    void tryAgain();

    Waiting *m_waiting = nullptr; // a child; null unless this page waits for the service
    QPushButton *m_again = nullptr;
    QPushButton *m_settings = nullptr;
};

} // namespace home
