#include "page.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>

namespace home {

namespace {

constexpr QRect panelPlace(64, 36, 1152, 584);
constexpr QRect stripPlace(64, 632, 1152, 52);

QFont fontOf(int points, bool isBold)
{
    QFont font(QStringLiteral("Arial"));
    font.setPointSize(points);
    font.setBold(isBold);
    return font;
}

} // namespace

// Surfaces are drawn, not pictures: sharp at every scale.
QString Page::styleSheet()
{
    return QStringLiteral(R"(
QLabel { color: rgb(255, 255, 255); }
QWidget#panel, QWidget#hintStrip {
    border: 2px solid #5B4472; border-radius: 16px;
    background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 rgba(43, 24, 57, 240), stop:1 rgba(29, 15, 40, 240)); }
QLabel[isHint="true"] {
    background-color: rgb(248, 246, 250); border-radius: 10px; padding-left: 44px; color: rgb(70, 54, 83); }
QLabel[isCaption="true"] { color: rgb(197, 197, 197); }
QLabel[isCounter="true"] { color: rgb(255, 180, 0); }
QPushButton {
    color: rgb(255, 255, 255); outline: none; border: 2px solid #7D6298; border-radius: 10px;
    background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #43295A, stop:1 #34204A); }
QPushButton:focus {
    color: rgb(0, 0, 0); border-color: #FFE3A6;
    background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #FFCB52, stop:1 #FFAC12); }
QListWidget { background: transparent; border: none; outline: 0; color: rgb(255, 255, 255); }
QLineEdit {
    color: rgb(0, 0, 0); background-color: #FFF8EA; padding: 0px 18px;
    border: 4px solid rgb(255, 180, 0); border-radius: 12px; }
)");
}

Page::Page()
{
    setWindowFlags(Qt::FramelessWindowHint);
    setFixedSize(1280, 720);
    for (const auto &[name, place] : {std::pair("panel", panelPlace), std::pair("hintStrip", stripPlace)}) {
        auto *surface = new QWidget(this);
        surface->setObjectName(QLatin1String(name));
        surface->setAttribute(Qt::WA_StyledBackground);
        surface->setGeometry(place);
    }
}

void Page::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        emit languageChanged();
    QWidget::changeEvent(event);
}

QRect Page::placed(const QRect &where) const
{
    return QStyle::visualRect(QGuiApplication::layoutDirection(), rect(), where);
}

void Page::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect(), QPixmap(QStringLiteral(":/images/Screen_Bg.png")));
}

void Page::keyPressEvent(QKeyEvent *event)
{
    if (!event->isAutoRepeat())
        m_pressed = event->key();
}

bool Page::endsPress(const QKeyEvent *event)
{
    if (event->isAutoRepeat() || event->key() != m_pressed)
        return false;
    m_pressed = 0;
    return true;
}

QLabel *Page::addLabel(const char *name, const QRect &where, int points, bool isBold)
{
    auto *label = new QLabel(this);
    label->setObjectName(QLatin1String(name));
    label->setGeometry(placed(where));
    label->setFont(fontOf(points, isBold));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    return label;
}

QPushButton *Page::addButton(const char *name, const QString &text, const QRect &where)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setGeometry(placed(where));
    button->setFont(fontOf(18, true));
    button->setAccessibleName(text);
    button->setAutoDefault(false);
    return button;
}

QLabel *Page::addHint(const char *name, const char *picture, const QString &text, int x, int width)
{
    QLabel *cap = addLabel(name, QRect(stripPlace.x() + x, stripPlace.y() + 8, width, 36), 14, true);
    cap->setProperty("isHint", true);
    cap->setText(text);
    auto *icon = new QLabel(cap);
    icon->setGeometry(QStyle::visualRect(cap->layoutDirection(), cap->rect(), QRect(7, 2, 32, 32)));
    icon->setPixmap(QPixmap(QStringLiteral(":/images/") + QLatin1String(picture)));
    return cap;
}

} // namespace home
