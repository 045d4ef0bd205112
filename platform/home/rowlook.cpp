#include "rowlook.h"

#include <QKeyEvent>
#include <QPainter>

namespace home {

namespace {

constexpr int margin = 14;
constexpr int tickWidth = 26;
constexpr int valueGap = 16;

} // namespace

RowLook::RowLook(QListWidget *list)
    : QStyledItemDelegate(list)
    , m_list(list)
{
}

void RowLook::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool isCurrent = m_list->currentIndex() == index;
    const bool hasFocus = isCurrent && m_list->hasFocus();
    const QRect row = option.rect;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isCurrent) {
        QLinearGradient surface(row.topLeft(), row.bottomLeft());
        surface.setColorAt(0, hasFocus ? QColor(0xFF, 0xCB, 0x52) : QColor(0x4A, 0x2F, 0x60));
        surface.setColorAt(1, hasFocus ? QColor(0xFF, 0xAC, 0x12) : QColor(0x3A, 0x24, 0x50));
        painter->setPen(hasFocus ? QPen(QColor(0xFF, 0xE3, 0xA6), 2) : QPen(Qt::NoPen));
        painter->setBrush(surface);
        painter->drawRoundedRect(QRectF(row).adjusted(1, 1, -1, -1), 10, 10);
    }
    // Places are counted from the end at which the language begins.
    const auto placed = [&](const QRect &place) { return QStyle::visualRect(option.direction, row, place); };
    QRect text = row.adjusted(margin, 0, -margin, 0);
    painter->setFont(m_list->font());
    painter->setPen(hasFocus ? Qt::black : Qt::white);
    if (m_list->property("hasTicks").toBool()) {
        if (index.data(TickRole).toBool()) {
            painter->setPen(QPen(hasFocus ? Qt::black : Qt::white, 3));
            const QPointF at(placed(QRect(text.left(), row.top(), 18, row.height())).left(), row.center().y());
            painter->drawPolyline(QPolygonF{at + QPointF(0, 1), at + QPointF(6, 7), at + QPointF(17, -6)});
        }
        text.setLeft(text.left() + tickWidth);
    }
    const QFontMetrics metrics(m_list->font());
    const QString value = index.data(ValueRole).toString();
    if (!value.isEmpty()) {
        const QString shown = metrics.elidedText(value, Qt::ElideRight, text.width() * 2 / 3);
        painter->setPen(hasFocus ? Qt::black : QColor(197, 197, 197));
        painter->drawText(placed(text), int(Qt::AlignRight | Qt::AlignVCenter), shown);
        text.setRight(text.right() - metrics.horizontalAdvance(shown) - valueGap);
    }
    painter->setPen(hasFocus ? Qt::black : Qt::white);
    painter->drawText(placed(text), int(Qt::AlignLeft | Qt::AlignVCenter),
                      metrics.elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideRight, text.width()));
    painter->restore();
}

RowList::RowList(const char *name, const QRect &where, QWidget *parent)
    : QListWidget(parent)
{
    setObjectName(QLatin1String(name));
    setGeometry(where);
    setItemDelegate(new RowLook(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    QFont font(QStringLiteral("Arial"));
    font.setPointSize(18);
    setFont(font);
    // As a whole: at a fractional scale the edge of a row lies in a pixel outside of it.
    connect(this, &QListWidget::currentRowChanged, viewport(), qOverload<>(&QWidget::update));
}

void RowList::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        QListWidget::keyPressEvent(event);
        break;
    default:
        event->ignore();
    }
}

} // namespace home
