#include "viewcomponent/bufferdlg.h"

#include "loaderpicture.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QTimer>

#include <array>

namespace viewcomponent {

namespace {

constexpr QRect cardPlace(430, 294, 420, 132);
constexpr QRect loaderPlace(114, 34, 191, 21);
constexpr QRect textPlace(20, 68, 380, 40);

class Card : public QWidget {
public:
    explicit Card(QWidget *parent)
        : QWidget(parent)
    {
        setObjectName(QStringLiteral("bufferCard"));
        setGeometry(cardPlace);
    }

protected:
    // The picture is held only while it is seen.
    void showEvent(QShowEvent *) override { m_picture = sharpPicture(pictureName(), size(), devicePixelRatioF()); }

    void hideEvent(QHideEvent *) override { m_picture = QPixmap(); }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        if (!m_picture.isNull()) {
            painter.drawPixmap(rect(), m_picture);
            return;
        }
        painter.setRenderHint(QPainter::Antialiasing);
        QLinearGradient inside(0, 0, 0, height());
        inside.setColorAt(0, QColor(0x3A, 0x21, 0x50));
        inside.setColorAt(1, QColor(0x26, 0x13, 0x38));
        painter.setBrush(inside);
        painter.setPen(QPen(QColor(0x8E, 0x6F, 0xAE), 3));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 20, 20);
    }

private:
    static QString pictureName() { return QStringLiteral(":/images/Buffer_Bg.png"); }
    QPixmap m_picture;
};

} // namespace

// Follows the parent's size, animates the frames while the dialog is visible, and gives the focus back when it hides.
struct BufferDlg::Private : public QObject {
    Private(BufferDlg *owner, const QString &text)
        : q(owner)
        , card(new Card(owner))
        , loader(new QLabel(card))
        , label(new QLabel(text, card))
    {
        loader->setObjectName(QStringLiteral("animationLabel"));
        loader->setGeometry(loaderPlace);
        label->setObjectName(QStringLiteral("textLabel"));
        label->setGeometry(textPlace);
        label->setAlignment(Qt::AlignCenter);
        label->setFont(QFont(QStringLiteral("Arial"), 18));
        label->setStyleSheet(QStringLiteral("color: rgb(255, 255, 255); background: transparent;"));
        timer.setInterval(loaderFrameMs);
        connect(&timer, &QTimer::timeout, this, [this] { showFrame((frame + 1) % loaderFrames); });
        q->installEventFilter(this);
        if (q->parentWidget())
            q->parentWidget()->installEventFilter(this);
    }

    void showFrame(int number)
    {
        frame = number;
        QPixmap &picture = pictures[size_t(number)];
        if (picture.isNull())
            picture = loaderPicture(number, q->devicePixelRatioF());
        loader->setPixmap(picture);
    }

    void cover()
    {
        if (q->parentWidget())
            q->setGeometry(q->parentWidget()->rect());
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == q && event->type() == QEvent::Hide && !event->spontaneous()) {
            timer.stop();
            // Only if the focus was not moved in the meantime.
            if (q->window()->focusWidget() == q && focusBefore && focusBefore->isVisibleTo(q->window()))
                focusBefore->setFocus(Qt::OtherFocusReason);
            focusBefore.clear();
        } else if (watched == q->parentWidget() && event->type() == QEvent::Resize) {
            cover();
        }
        return false;
    }

    BufferDlg *const q;
    Card *const card;
    QLabel *const loader;
    QLabel *const label;
    QTimer timer;
    int frame = 0;
    std::array<QPixmap, loaderFrames> pictures; // filled as they are needed
    QPointer<QWidget> focusBefore;              // had the focus before the dialog was shown
};

BufferDlg::BufferDlg(const QString &text, QWidget *parent)
    : QWidget(parent)
    , d(new Private(this, text))
{
    setObjectName(QStringLiteral("BufferDlg"));
    setFocusPolicy(Qt::StrongFocus);
    d->cover();
}

BufferDlg::~BufferDlg()
{
    if (isVisible())
        hide(); // gives the focus back while the object is still complete
    delete d;
}

void BufferDlg::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    d->cover();
    d->focusBefore = window()->focusWidget() == this ? nullptr : window()->focusWidget();
    d->showFrame(0);
    d->timer.start();
    raise();
    setFocus(Qt::OtherFocusReason);
}

// Ignored keys go to the dialog below, which knows that the animation is visible; none reaches a control.
void BufferDlg::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
}

void BufferDlg::keyReleaseEvent(QKeyEvent *event)
{
    event->ignore();
}

} // namespace viewcomponent
