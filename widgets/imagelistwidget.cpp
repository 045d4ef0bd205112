#include "widgets/imagelistwidget.h"

#include "viewcomponent/magicscrollbar.h"
#include "widgets/imagelistwidgetitem.h"
#include "widgets/marquee.h"

#include <QApplication>
#include <QDebug>
#include <QFile>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <QtMath>

#include <algorithm>

namespace {

constexpr QChar leftToRightIsolate(0x2066);
constexpr QChar rightToLeftIsolate(0x2067);
constexpr QChar popIsolate(0x2069);
constexpr int labelLeft = 40; // of the marquee within its row
constexpr int labelRight = 30;
constexpr int textLeft = 41; // of a row's text
constexpr int textRight = 20;

// Loaded through Qt's pixmap cache.
QPixmap focusBar()
{
    return QPixmap(QStringLiteral(":/images/FocusBar.png"));
}

// The file that a style sheet chooses for the same bar on this screen. Beside a marquee both are visible at once.
QPixmap sharpFocusBar()
{
    for (int times = qMin(qCeil(qApp->devicePixelRatio()), 9); times > 1; --times) {
        const QString path = QStringLiteral(":/images/FocusBar@%1x.png").arg(times);
        if (QFile::exists(path))
            return QPixmap(path);
    }
    return focusBar();
}

QPixmap plainBar()
{
    return QPixmap(QStringLiteral(":/images/FocusBar_Transparent.png"));
}

QPixmap selectedBar()
{
    return QPixmap(QStringLiteral(":/images/FocusBar_Selected.png"));
}

// Elides a long text before the mark at the right end of the current row's bar, in every row, so that no text changes
// when its row becomes the current one. A name of blanks is shown in quotation marks. A name of another direction than
// the list's keeps its own order in the row, its punctuation included, and begins at the same side as every other.
class RowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        QString text = option->text;
        if (!text.isEmpty() && text.trimmed().isEmpty())
            text = QLatin1Char('"') + text + QLatin1Char('"');
        text = option->fontMetrics.elidedText(text, Qt::ElideRight, option->rect.width() - textLeft - textRight);
        if (const bool isRightToLeft = text.isRightToLeft(); isRightToLeft != (option->direction == Qt::RightToLeft))
            text = (isRightToLeft ? rightToLeftIsolate : leftToRightIsolate) + text + popIsolate;
        option->text = text;
    }
};

} // namespace

ImageListWidget::ImageListWidget(QWidget *parent)
    : QListWidget(parent)
    , m_scrollLabel(new ImageListWidgetItem(this))
    , m_font(QStringLiteral("Arial"), 20)
{
    qDebug("new ImageListWidget...");
    m_font.setStyleStrategy(QFont::PreferAntialias);
    m_scrollLabel->setStyleSheet(QStringLiteral("border:none;border-image:none;color: rgb(0,0,0);"));
    m_scrollLabel->setFont(m_font);
    m_scrollLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_scrollLabel->setWordWrap(true);
    m_scrollLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_scrollLabel->hide();
    setVerticalScrollBar(new viewcomponent::MagicScrollBar(this));
    setFocusPolicy(Qt::ClickFocus); // the screens' focus rings move the focus, Tab never does
    setUniformItemSizes(true);
    setItemDelegate(new RowDelegate(this));
}

ImageListWidget::~ImageListWidget()
{
    qDebug("del ImageListWidget...");
    qDebug("del ImageListWidget.done..");
}

QString ImageListWidget::currentItemText() const
{
    qDebug("ImageListWidget,currentItemText...");
    const QListWidgetItem *item = currentItem();
    const QString text = item ? item->text() : QString();
    return text.isEmpty() ? m_scrollText : text;
}

void ImageListWidget::setPageSize(int rows)
{
    m_pageSize = rows;
}

// ---- marquee

void ImageListWidget::checkScroll()
{
    qDebug("ImageListWidget,checkScroll.event..");
    checkScroll(currentItem());
}

void ImageListWidget::checkScroll(QListWidgetItem *item)
{
    qDebug("ImageListWidget,checkScroll.item..");
    if (!item) {
        qDebug("ImageListWidget,checkScroll.invalid focusItem..");
        return;
    }
    const QString text = item->text();
    qDebug() << "ImageListWidget,checkScroll,text=" << text;
    const QRect row = visualItemRect(item);
    qDebug("rect_select.x() = %d,rect_select.y() = %d", row.x(), row.y());
    if (!marquee::runs(fontMetrics().horizontalAdvance(text)))
        return;

    qDebug("ImageListWidget,checkScroll,start scoll...");
    const QRect place = row.adjusted(labelLeft, 0, -labelRight, 0).translated(viewport()->pos());
    m_scrollLabel->setGeometry(place);
    m_scrollLabel->setBackdrop(backdrop(place.adjusted(0, 0, 1, 1))); // whole pixels of the screen, at any scale
    showBar(item, item->background().texture());
    m_scrollLabel->setText(text + QString(marquee::gapBlanks, QLatin1Char(' ')));
    m_scrollLabel->show();
    m_scrollLabel->startScroll();
    m_scrollText = text;
    m_isScrolling = true;
    item->setText(QString());
}

void ImageListWidget::clearScroll()
{
    qDebug("ImageListWidget,clearScroll.event..");
    clearScroll(currentItem());
}

void ImageListWidget::clearScroll(QListWidgetItem *item)
{
    qDebug("ImageListWidget,clearScroll.item..");
    if (!item) {
        qDebug("ImageListWidget,clearScroll.invalid focusItem..");
        return;
    }
    if (!m_isScrolling)
        return;
    qDebug("ImageListWidget,clearScroll,stop scroll...");
    m_scrollLabel->setText(QString());
    item->setText(m_scrollText);
    m_scrollLabel->hide();
    m_scrollLabel->stopScroll();
    m_scrollText.clear();
    m_isScrolling = false;
}

// The picture under the list at `rect`: the backgrounds of its ancestors. Null while the list is hidden.
QPixmap ImageListWidget::backdrop(const QRect &rect) const
{
    if (!isVisible() || rect.isEmpty())
        return QPixmap();
    const qreal ratio = devicePixelRatioF();
    QPixmap pixmap(rect.size() * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::black);
    QList<QWidget *> ancestors;
    for (QWidget *widget = parentWidget(); widget; widget = widget->isWindow() ? nullptr : widget->parentWidget())
        ancestors.prepend(widget);
    for (QWidget *ancestor : std::as_const(ancestors)) {
        const QRect source(mapTo(ancestor, rect.topLeft()), rect.size());
        ancestor->render(&pixmap, QPoint(), QRegion(source), QWidget::DrawWindowBackground);
    }
    return pixmap;
}

// ---- focus bars

void ImageListWidget::showBar(QListWidgetItem *item, const QPixmap &bar)
{
    if (item)
        m_scrollLabel->setBar(bar, QRect(QPoint(-labelLeft, 0), visualItemRect(item).size()));
}

void ImageListWidget::setFocusBg(QListWidgetItem *item)
{
    qDebug("ImageListWidget,setFocusBg...");
    if (!item) {
        qDebug("ImageListWidget,setFocusBg.invalid item..");
        return;
    }
    item->setData(Qt::BackgroundRole, QBrush(focusBar()));
    checkScroll(item);
    if (m_isScrolling)
        showBar(item, sharpFocusBar());
}

void ImageListWidget::clearBg(QListWidgetItem *item)
{
    qDebug("ImageListWidget,clearBg...");
    if (!item) {
        qDebug("ImageListWidget,clearBg.invalid item..");
        return;
    }
    if (m_plainBar.isNull())
        m_plainBar = plainBar();
    item->setData(Qt::BackgroundRole, QBrush(m_plainBar));
    clearScroll(item);
}

void ImageListWidget::setFocusDisable(QListWidgetItem *item)
{
    qDebug("ImageListWidget,setFocusDisable...");
    if (!item) {
        qDebug("ImageListWidget,setFocusDisable.invalid item..");
        return;
    }
    clearScroll(item);
    item->setData(Qt::BackgroundRole, QBrush(selectedBar()));
}

void ImageListWidget::setFocus()
{
    qDebug("ImageListWidget,setFocus...");
    setFocusBg(currentItem());
    QListWidget::setFocus(Qt::OtherFocusReason);
}

void ImageListWidget::clearFocus()
{
    qDebug("ImageListWidget,clearFocus...");
    setFocusDisable(currentItem());
    QListWidget::clearFocus();
}

void ImageListWidget::ensureFocusVisible()
{
    qDebug("ImageListWidget,ensureFocusVisible...");
    decorate(currentRow());
}

void ImageListWidget::clearCurrentItemText()
{
    qDebug("ImageListWidget,clearCurrentItemText...");
    clearScroll(currentItem());
    if (QListWidgetItem *item = currentItem())
        item->setText(QString());
}

// ---- keys

bool ImageListWidget::event(QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        qDebug("ImageListWidget,event,keyEvent->key()=%0x", static_cast<unsigned>(key));
        if (handleKey(key)) {
            event->accept();
            return true;
        }
    }
    return QListWidget::event(event);
}

// The target row is decorated before the base class makes it the current row.
bool ImageListWidget::handleKey(int key)
{
    const int row = currentRow();
    const int last = count() - 1;
    switch (key) {
    case Qt::Key_Down:
        if (row == last) {
            jumpTo(0);
            return true;
        }
        leaveRow();
        decorate(row + 1);
        return false;
    case Qt::Key_Up:
        if (row <= 0) {
            jumpTo(last);
            return true;
        }
        leaveRow();
        decorate(row - 1);
        return false;
    case Qt::Key_End:
        if (row == last)
            return true;
        leaveRow();
        decorate(last);
        return false;
    case Qt::Key_Home:
    case Qt::Key_MenuPB: // a key of the remote control
        if (row == 0)
            return true;
        leaveRow();
        setCurrentRow(0);
        decorate(0);
        return false;
    case Qt::Key_PageDown:
        if (row == last)
            return true;
        leaveRow();
        decorate(std::min(row + m_pageSize - 1, last));
        return false;
    case Qt::Key_PageUp:
        if (row == 0)
            return true;
        leaveRow();
        decorate(std::max(row - (m_pageSize - 1), 0));
        return false;
    default:
        return false;
    }
}

void ImageListWidget::leaveRow()
{
    clearScroll(item(currentRow()));
    clearBg(item(currentRow()));
}

void ImageListWidget::decorate(int row)
{
    QListWidgetItem *target = item(row);
    if (target)
        scrollToItem(target, QAbstractItemView::EnsureVisible);
    checkScroll(target);
    setFocusBg(target);
}

// Wraps around. The event is consumed, because the base class must not move the row a second time.
void ImageListWidget::jumpTo(int row)
{
    leaveRow();
    setCurrentRow(row);
    checkScroll(item(row));
    setFocusBg(item(row));
}

void ImageListWidget::keyboardSearch(const QString &)
{
}

// ---- mouse: a click only makes a row the current one; the base class knows nothing about bars and marquees

void ImageListWidget::mousePressEvent(QMouseEvent *event)
{
    QListWidgetItem *target = itemAt(event->position().toPoint());
    if (!target || target == currentItem())
        return;
    leaveRow();
    setCurrentItem(target);
    if (hasFocus())
        decorate(currentRow());
}

void ImageListWidget::mouseMoveEvent(QMouseEvent *)
{
}

void ImageListWidget::mouseReleaseEvent(QMouseEvent *)
{
}

void ImageListWidget::mouseDoubleClickEvent(QMouseEvent *)
{
}

void ImageListWidget::wheelEvent(QWheelEvent *event)
{
    event->accept(); // the marquee does not scroll with the rows
}
