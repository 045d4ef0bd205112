#pragma once

#include "app/playerdialog.h"

#include <memory>

class QPushButton;
class QTimer;

namespace Ui {
class MenuDlg;
}

// The pop-up list of actions over the player screen. It does no work: an entry closes the menu and reports its index.
class MenuDlg : public TrackMenuDialog {
    Q_OBJECT
public:
    explicit MenuDlg(QWidget *parent = nullptr);
    ~MenuDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

signals:
    void signalRetuenBtn(); // spelled so: Back was pressed

public slots:
    void menudoBookmarkArtist();
    void menudoBookmarkSong();
    void doWhyPlaying(); // no button is connected to it, and it sends the index of sleep (deliberate)
    void menucreatestation();
    void menudeletestation();
    void menurenamestation();
    void menusleep();
    void menuwhy();
    void menusignout();
    void menuexitvelmora();
    void destroyedWindow();
    void handletimer();
    void runtimer();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    static constexpr int entryCount = 10;

    void choose(const char *slot, int index);
    void moveHighlight(int step);
    void setHighlighted(int position, bool isHighlighted);

    const std::unique_ptr<Ui::MenuDlg> ui;
    QPushButton *m_entries[entryCount]; // of the form, from top to bottom
    int m_position = 0;
    QTimer *const m_closeTimer; // child
};
