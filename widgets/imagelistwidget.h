#pragma once

#include <QFont>
#include <QListWidget>

class ImageListWidgetItem;

// The list of every scrolling list: driven by the remote's arrow, page and home/end keys, wraps around at both ends,
// marks its current row with a picture, and runs a text that is too wide as a marquee. While a marquee runs, the row's
// own text is blank: read it through currentItemText().
//
// Whoever changes the current row or removes rows by program calls clearBg() on the current row first (it stops the
// marquee). The list wants a viewport of whole rows, as high as the page size says.
class ImageListWidget : public QListWidget {
    Q_OBJECT
public:
    explicit ImageListWidget(QWidget *parent = nullptr);
    ~ImageListWidget() override;

    QString currentItemText() const;
    void setPageSize(int rows); // rows a page key moves over, the row left included
    int pageSize() const { return m_pageSize; }

    void checkScroll();
    void clearScroll();
    void setFocusBg(QListWidgetItem *item);      // focused row, list has the focus
    void clearBg(QListWidgetItem *item);         // plain row
    void setFocusDisable(QListWidgetItem *item); // current row, list without focus
    // These hide QWidget's on purpose: the bar follows the keyboard focus.
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
    bool handleKey(int key); // true: the key is used up
    void leaveRow();
    void decorate(int row);
    void jumpTo(int row);
    QPixmap backdrop(const QRect &rect) const;
    void showBar(QListWidgetItem *item, const QPixmap &bar);

    bool m_isScrolling = false;
    ImageListWidgetItem *m_scrollLabel; // child
    int m_pageSize = 0;
    QString m_scrollText; // of the row under the marquee
    QFont m_font;
};
