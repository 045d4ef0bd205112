#pragma once

#include <QProgressBar>

// A bar whose lit part has round ends however short it is; a style sheet squares what is shorter than its corners.
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
