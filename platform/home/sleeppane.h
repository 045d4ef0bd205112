#pragma once

#include "menucommand.h"
#include "pane.h"

namespace home {

// The sleep timer, which the platform keeps beside the radio.
class SleepPane : public Pane {
    Q_OBJECT
public:
    explicit SleepPane(QObject *parent);

    void open() override;

private:
    void order(netcommon::menu::SleepOrder order, std::uint32_t minutes = 0);
    void show(const QString &state);

    MenuCommand m_command;
};

} // namespace home
