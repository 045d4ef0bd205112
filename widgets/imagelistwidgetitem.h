#pragma once

#include <QLabel>
#include <QPixmap>
#include <QStaticText>
#include <QTransform>

class QTimer;

// The marquee of an ImageListWidget: a label over one row that runs the row's text to the left, a right-to-left text to
// the right. It paints its part of the row's bar and of what lies under the list itself. So it is opaque, and a step
// paints nothing under it. The text fades at both edges.
class ImageListWidgetItem : public QLabel {
    Q_OBJECT
public:
    explicit ImageListWidgetItem(QWidget *parent);

    void setText(const QString &text); // replaces the label's own text, which is not drawn
    // The ground under the text: the backdrop from the label's upper left corner, and the row's whole bar at `place`,
    // in the label's coordinates. The bar is drawn as the row draws it, so that both match at any scale.
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
    void resizeEvent(QResizeEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void resetScroll();
    void layOut();
    void paintGround(QPainter &painter);
    void drawGround(QPainter &painter);
    QPixmap fadedGround(const QRect &edge, bool isLeft);
    QRect leftEdge() const;
    QRect rightEdge() const;
    bool isFaded(const QRect &edge) const; // text may be cut there
    void forgetGround();

    QString m_text; // the row's text and the gap behind it
    // Laid out again only when the text or the font changes: a layout at every step would be the costly part.
    QStaticText m_line;
    int m_lineHeight = 0;
    int m_textWidth = 0; // without the gap
    int m_bandWidth = 0; // with it
    bool m_isRightToLeft = false;
    QPixmap m_backdrop;
    QPixmap m_bar;
    QRect m_barPlace;
    QPixmap m_ground; // backdrop and bar in pixels of the screen; made when first painted
    QTransform m_toGround;
    QPixmap m_leftFade; // the ground, opaque at the outside; made when first painted
    QPixmap m_rightFade;
    int m_offset = 0;
    int m_timerId = 0;              // 0: the text stands still
    QTimer *m_delayTimer = nullptr; // child, made by the first startScroll()
};
