#pragma once

#include "remotekeytable.h"

#include <QObject>

namespace netcommon {

// Turns the keys of a PC's keyboard into the remote's, for the whole application. It is installed by the library
// itself when the application object is made, and lives as long as that. GUI thread only.
//
// It filters windows, before a widget gets the key, so that each key is translated once, however many widgets it is
// then passed to. Keys that are sent directly to a widget are left alone.
class RemoteKeys : public QObject {
    Q_OBJECT
public:
    // Presses and releases a key in the window that has the focus, as if it had come from the keyboard. `isTyped`: a
    // key of a PC's keyboard, which is translated; otherwise the remote's own code. False when no screen takes keys.
    static bool press(int key, bool isTyped);
    // Types the text, one key a character.
    static bool type(const QString &text);
    // A key of an infrared or CEC remote; as the other two, and `isAutoRepeat` while it is held.
    static void deliver(int key, bool isPress, bool isAutoRepeat);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend void installRemoteKeys();
    explicit RemoteKeys(QObject *application);
    void listenToRemotes();

    keys::HeldKeys m_held;
    bool m_hasBegun = false; // the first key has arrived
};

} // namespace netcommon
