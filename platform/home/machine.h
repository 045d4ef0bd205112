#pragma once

#include <QObject>

namespace home {

// What the machine lets this user do, as logind says. Without logind nothing. GUI thread.
class Machine : public QObject {
    Q_OBJECT
public:
    explicit Machine(QObject *parent);

    void ask(); // known() follows; not when there is no logind
    bool mayRestart() const { return m_mayRestart; }
    bool maySwitchOff() const { return m_maySwitchOff; }

signals:
    void known();

private:
    void ask(const char *method, bool *permission);

    bool m_mayRestart = false;
    bool m_maySwitchOff = false;
    int m_answers = 0;
};

} // namespace home
