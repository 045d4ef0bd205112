#pragma once

#include <QTimer>
#include <QWidget>

namespace netcommon {

// The bar that shows the volume for two seconds. It is a child of the screen on top and lies over its controls, takes
// no focus and no key, and goes with its screen. GUI thread.
class VolumeBar : public QWidget {
    Q_OBJECT
public:
    explicit VolumeBar(QWidget *screen);

    void showVolume(int percent, bool isMuted);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_percent = 0;
    bool m_isMuted = false;
    QTimer m_hide;
};

} // namespace netcommon
