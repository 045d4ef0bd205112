#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace platform {

// The application's visible top-level widgets in the order in which they lie on the screen. Each platform library
// keeps its own. GUI thread only; the instance belongs to the application object.
class WindowStack : public QObject {
    Q_OBJECT
public:
    static WindowStack &instance();

    QList<QWidget *> bottomToTop() const;
    // Null when nothing shows.
    QWidget *top() const;
    // Whether this is a window of the screens: no tool tip, no menu, nothing that is kept off the screen.
    static bool isScreen(const QWidget *widget);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void changed();

private:
    explicit WindowStack(QObject *application);

    QList<QPointer<QWidget>> m_shown; // in the order of their showing
};

} // namespace platform
