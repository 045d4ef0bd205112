#pragma once

#include <QProgressBar>

// A progress bar whose lit part has round ends at any length. A style sheet draws square ends on a part that is shorter
// than its corners.
class RoundProgressBar : public QProgressBar {
    Q_OBJECT
public:
    explicit RoundProgressBar(QWidget *parent = nullptr);

    void setMuted(bool isMuted); // without the colour of sound: paused

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_isMuted = false;
};
