#pragma once

#include "viewcomponent/viewcomponent_global.h"

#include <QString>
#include <QWidget>

namespace viewcomponent {

// The buffering animation with its text: a child widget over `parent` that takes the keyboard focus while it shows,
// so that no key reaches a control under it. Its card is the child `bufferCard`, in the middle of a screen of 1280 x
// 720; the screen may move it. GUI thread only.
class VIEWCOMPONENT_EXPORT BufferDlg : public QWidget {
    Q_OBJECT
public:
    BufferDlg(const QString &text, QWidget *parent);
    ~BufferDlg() override;

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    struct Private;
    Private *d;
};

} // namespace viewcomponent
