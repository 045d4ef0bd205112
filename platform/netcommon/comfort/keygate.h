#pragma once

#include <QObject>

#include <functional>

class QKeyEvent;

namespace netcommon {

// Sees every key of the remote before a screen does, after PC keys were translated, and every press of a mouse. The
// keys that the platform itself handles end here. It is installed before the translating filter, because filters run in
// reverse order. GUI thread.
class KeyGate : public QObject {
    Q_OBJECT
public:
    // True: the key is handled, and no screen gets it or its release. Called for presses, repeated ones too.
    using Handler = std::function<bool(int key, bool isAutoRepeat)>;
    KeyGate(QObject *application, Handler handler);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool take(const QKeyEvent &event, bool isPress);

    const Handler m_handler;
    int m_takenKey = 0; // its release is awaited; 0: none
};

} // namespace netcommon
