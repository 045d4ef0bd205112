#pragma once

#include <QListWidget>
#include <QStyledItemDelegate>

namespace home {

// How a row of Home's lists looks: its text, at the right end its value, and a tick before what is chosen. The amber
// bar is the focus.
class RowLook : public QStyledItemDelegate {
    Q_OBJECT
public:
    static constexpr int ValueRole = Qt::UserRole;
    static constexpr int TickRole = Qt::UserRole + 1;

    explicit RowLook(QListWidget *list);
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    QListWidget *const m_list; // the parent
};

// A list that uses the keys that move in it; all others go to its page.
class RowList : public QListWidget {
    Q_OBJECT
public:
    RowList(const char *name, const QRect &where, QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace home
