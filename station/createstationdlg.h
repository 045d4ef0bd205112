#pragma once

#include "service/wsreply.h"
#include "station/stationtextdlg.h"

#include <viewcomponent/mcommonstyle.h>

#include <QMap>

#include <memory>

namespace Ui {
class CreateStationDlg;
}

// Makes a station from an artist or a track that the listener has searched for.
class CreateStationDlg : public StationTextDlg {
    Q_OBJECT
public:
    // mode 1: afterwards fetches the station list and hands it to the player screen; 0: emits signalUpdateStationList.
    explicit CreateStationDlg(int mode, QWidget *parent = nullptr);
    ~CreateStationDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

signals:
    void signalSearchResultWidgetItemClicked(QString strKey);

protected:
    void keyReleaseEvent(QKeyEvent *event) override;

private slots:
    void searchStation(QString content);
    void searchStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void createStation(QString strMusicToken);
    void createStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void getStationListDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void showNum(int index);
    void selectAble();
    void recoverInitInputState();
    void changeInitInputState();
    void showDigitHint(int pageNum);

private:
    enum class FocusArea { None, Keyboard, List };

    void showSearchContent(const wsreply::SearchResult &result);
    void showArtists(const QList<wsreply::SearchArtist> &artists);
    void showSongs(const QList<wsreply::SearchTrack> &tracks);
    void dropRows();
    void beginRows();
    void addRow(const QString &text, const QString &token, const QIcon &icon);
    void endRows();
    void getStationList();
    void updateStationList(HANDLE_T h_handle);
    void focusKeyboard();
    void focusList();

    std::unique_ptr<Ui::CreateStationDlg> ui;
    viewcomponent::MCommonStyle m_listStyle;
    const int m_mode;
    FocusArea m_focusArea = FocusArea::None;
    bool m_isSelectAble = false;     // false: the key that confirmed the search must not choose a row
    QMap<QString, QString> m_tokens; // displayed text -> music token; of two equal rows the last
};
