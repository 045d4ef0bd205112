#pragma once

#include <QFont>
#include <QListWidget>
#include <QPixmap>

class ImageListWidgetItem;

// The widget of every scrolling list. It is driven by the remote's arrow, page and home/end keys, wraps around at both
// ends, marks its current row with a picture, and scrolls a text that is too wide as a marquee. While a marquee runs,
// the row's own text is blank: read it through currentItemText().
//
// Code that changes the current row or removes rows calls clearBg() on the current row first, which stops the marquee.
// The height of the viewport is a whole number of rows, the page size.
class ImageListWidget : public QListWidget {
    Q_OBJECT
public:
    explicit ImageListWidget(QWidget *parent = nullptr);
    ~ImageListWidget() override;

    QString currentItemText() const;
    void setPageSize(int rows); // rows that a page key moves by, the current row included
    int pageSize() const { return m_pageSize; }

    void checkScroll();
    void clearScroll();
    void setFocusBg(QListWidgetItem *item);      // focused row, list has the focus
    void clearBg(QListWidgetItem *item);         // plain row
    void setFocusDisable(QListWidgetItem *item); // current row, list without focus
    // These hide the functions of QWidget on purpose: the bar follows the keyboard focus.
    void setFocus();
    void clearFocus();
    void ensureFocusVisible();
    void clearCurrentItemText();

    void keyboardSearch(const QString &search) override; // does nothing: number keys must not move the row

public slots:
    void checkScroll(QListWidgetItem *item);
    void clearScroll(QListWidgetItem *item);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    bool handleKey(int key); // true: the event is consumed
    void leaveRow();
    void decorate(int row);
    void jumpTo(int row);
    QPixmap backdrop(const QRect &rect) const;
    void showBar(QListWidgetItem *item, const QPixmap &bar);

    bool m_isScrolling = false;
    QPixmap m_plainBar;                 // of every row but the current one; null until a row needs it
    ImageListWidgetItem *m_scrollLabel; // child
    int m_pageSize = 0;
    QString m_scrollText; // of the row under the marquee
    QFont m_font;
};
