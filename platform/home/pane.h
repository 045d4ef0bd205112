#pragma once

#include "answer.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>

namespace home {

// One line of a pane. A row without `choose` only tells something.
struct PaneRow {
    QString text;
    QString value = {};     // at the right end
    bool isCurrent = false; // what counts now: it has a tick
    std::function<void()> choose = {};
};

// A text to be typed on the on-screen keyboard.
struct TextQuestion {
    QString title;
    QString text; // what the field holds at first
    bool isSecret = false;
    std::function<void(const QString &)> answered; // not called when the person goes back
};

// The content of one entry of Home. Panes know no widgets; HomePage shows them. It opens a pane when its entry becomes
// current and closes it when another does. GUI thread; HomePage owns them.
class Pane : public QObject {
    Q_OBJECT
public:
    Pane(const QString &title, const QString &text, QObject *parent)
        : QObject(parent)
        , m_title(title)
        , m_text(text)
    {
    }

    QString title() const { return m_title; }
    QString text() const { return m_text; }
    const QList<PaneRow> &rows() const { return m_rows; }

    // How far below its first rows the pane is; goBack() goes one step up, and returns false at the top.
    virtual int depth() const { return 0; }
    virtual bool goBack() { return false; }

    virtual void open() {}
    virtual void close() {}

signals:
    void changed(); // text or rows
    void asks(const home::TextQuestion &question);
    void answered(home::Answer answer);

protected:
    // Both report the change.
    void setRows(const QList<PaneRow> &rows)
    {
        m_rows = rows;
        emit changed();
    }
    void setText(const QString &text)
    {
        m_text = text;
        emit changed();
    }

private:
    const QString m_title;
    QString m_text;
    QList<PaneRow> m_rows;
};

} // namespace home
