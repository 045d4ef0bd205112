#pragma once

#include <QLabel>
#include <QPixmap>
#include <QStaticText>

class QTimer;

// The marquee of an ImageListWidget: a label over one row that runs the row's text to the left. It paints its part of
// the row's bar and of what lies under the list itself, so that it is opaque and a step uncovers one column only.
class ImageListWidgetItem : public QLabel {
    Q_OBJECT
public:
    explicit ImageListWidgetItem(QWidget *parent);

    void setText(const QString &text); // replaces the label's own text, which is not drawn
    // What is painted under the text: the backdrop from the label's upper left corner, and the whole bar of the row at
    // `place`, in the label's coordinates. It is drawn as the row draws it, so that both fit at any scale.
    void setBackdrop(const QPixmap &backdrop);
    void setBar(const QPixmap &bar, const QRect &place);
    QSize sizeHint() const override;
    void startScroll();
    void stopScroll();

public slots:
    void startTimerEngine();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void resetScroll();
    void layOut();

    QString m_text; // the row's text and the gap behind it
    // Both are made anew when the text or the font changes: laying out a line thirty times a second is what costs.
    QStaticText m_line;
    int m_bandWidth = 0;
    QPixmap m_backdrop;
    QPixmap m_bar;
    QRect m_barPlace;
    int m_offset = 0;
    int m_timerId = 0;              // 0: the text stands still
    QTimer *m_delayTimer = nullptr; // child, made by the first startScroll()
};
