#pragma once

#include "settingpane.h"

#include <QPointer>
#include <QThread>

namespace home {

// The sound outputs that GStreamer finds now, each as the sink that the radio plays to.
class OutputPane : public SettingPane {
    Q_OBJECT
public:
    OutputPane(platform::DeviceSettingsWatch *settings, QObject *parent);
    ~OutputPane() override;

    void open() override;

protected:
    QList<PaneRow> makeRows() override;

private:
    struct Output {
        QString name;
        QString sink; // as gst-launch-1.0 describes it
    };
    // May wait for a sound server: on a thread of its own.
    static QList<Output> find();

    QList<Output> m_outputs; // found last
    QPointer<QThread> m_search;
};

} // namespace home
