#pragma once

#include "app/playerport.h"
#include "app/velmoraparentwidget.h"
#include "player/feedbackrules.h"
#include "player/focusring.h"
#include "player/screencover.h"
#include "player/stationrecord.h"
#include "player/trackhistory.h"
#include "service/wshandle.h"

#include <QIcon>
#include <QPropertyAnimation>

#include <memory>

class ImageListWidget;
class PlayerDialog;
class QListWidgetItem;
class QPushButton;
class VelmoraWebService;

namespace Ui {
class VelmoraMainDlg;
}

namespace netcommon {
class HttpDownload;
class PlaybackThread;
} // namespace netcommon

// Results of the player's commands (spelled so).
enum VELMORA_APP_ERROE_CODE_E {
    VELMORA_APP_DONE = 0,
    VELMORA_APP_INVALID = 1, // no entry, no playlist, or refused
    VELMORA_APP_SKIP_LIMIT = 2,
    VELMORA_APP_NO_PLAYLIST = 3
};

// The player screen: stations on the left, what plays in the middle, what was heard on the right. One instance from the
// first successful login to sign-out or exit. GUI thread only; platform and service report by queued signals.
//
// One class, one file a topic; the blocks below stand in the order of the files.
class VelmoraMainDlg : public VelmoraParentWidget, public PlayerPort {
    Q_OBJECT
public:
    static VelmoraMainDlg *getInstance(); // made on first use, and again after sign-out
    ~VelmoraMainDlg() override;

    // --- PlayerPort
    VelmoraParentWidget *screen() override { return this; }
    void stopCurrentSong() override;
    void playCurrentSong() override;
    void fillFromStationList(HANDLE_T h_handle) override;
    void restartIdleTimer() override;
    void signOutAfterError() override;

    // --- velmoramaindlg_focus.cpp
    int showMsgbox(int type, const QString &text) override;
    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

signals:
    void signalPlaySong();
    void signalStationListWidgetItemClicked();
    void signalPlayBtn();
    void signalNextBtn();
    void signalStopBtn();
    void signalPauseBtn();
    void signalUpdatePlaybackinfo(int type, int hours, int mins, int secs); // nobody listens (deliberate)
    void signalDownLoadPic(char *pcUrl); // direct connections only: the text dies with the reply
    void signalMovePlaybackWidget();
    void signalThumbUpSong();
    void signalThumbDownSong();
    void signalSleepSong();
    void signalMenuSong();
    void signalAddSongBookmark();
    void signalAddArtistBookmark();
    void signalExplainTrack();
    void signalCreateStation();
    void signalDeleteStation();
    void signalRenameStation();
    void signalTapestryStation();
    void signalDestoryDialog(); // spelled so: ends an open explanation

public slots:
    // --- velmoramaindlg_stations.cpp
    void fillupStationListBox(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void fillupStationListBox_Ex(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag, bool fg_autoplay);
    void showStationNum(int index);
    void updateStationList(HANDLE_T h_handle);
    void updateStationName(QString newStationName);

    // --- velmoramaindlg_playback.cpp (the fetching slots in velmoramaindlg_playlist.cpp)
    int getPlayList();
    int getPlayListNormal();
    void getPlayListDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void getAdMetadataDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    bool checkinvalidURL(char *ps_url, char *ps_compare);
    int gotoPlaySong();
    int playSong();
    int pauseSong();
    int stopSong();
    int nextSong();
    void playFromPause();
    void gotoPlayNextSong();
    void slotGotoPlayNextSong();
    void updateFileEof();
    void playResult(int ret);
    void handlePlayURLOk();
    void checkwaterline();

    // --- velmoramaindlg_feedback.cpp
    void thumbUpSong();
    void thumbDownSong();
    void sleepSong();
    void addSongBookmark();
    void addArtistBookmark();
    void explainTrack();
    void addFeedbackDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void sleepSongDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void addBookmarkDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void explainTrackDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void slotDestroyDialog();
    void destroyedDialog();

    // --- velmoramaindlg_nowplaying.cpp
    void initPlaybackInfoByStop();
    void updateTotalTime(int hours, int mins, int secs);
    void updateCurrentTime(int hours, int mins, int secs);
    void updateProgressBar(int percent);
    void showPlaylistNum(int index);
    void showPlaylistHistorythumb(int index);
    void downloadPicfromVelmora(char *pcUrl);
    void responseDownloadDone(int result, QString strInfo);
    void updatePlaylistItem();
    void handlePlayOk();
    void handlePauseOk();
    void movePlaybackWidget();

    // --- velmoramaindlg_focus.cpp
    void resetFocus(); // gives the keys to the screen on top, and this one its focus unless it is covered
    void menuSong();
    void hanleMenuOp(int index); // spelled so
    void showAboutVelmora();

    // --- velmoramaindlg_manage.cpp
    void createStation();
    void delStation();
    void deleteStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void renameStation();
    void tapestryStation();
    void signout();
    void handleFatalErr(int errType); // logs; the dialog that reports the error starts the sign-out itself

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    VelmoraMainDlg();
    static VelmoraMainDlg *m_instance;

    std::unique_ptr<Ui::VelmoraMainDlg> ui; // reset by the destructor, before what its signals reach
    VelmoraWebService *const m_webService;
    bool m_isGoing = false; // closed; deletion is on its way

    // --- velmoramaindlg.cpp
    void showUserName();
    void leave();
    // Takes the focus off, shows a warning unless a fatal message is up, gives the focus back. False: this screen is
    // gone.
    bool warn(const QString &text);
    // Shows a message, unless a fatal one is up, and then leaves the application.
    void showAndLeave(int type, const QString &text);
    // Shows the message of a failed completion and does what the code demands. True: the screen goes on; false: it ends
    // or is gone.
    bool reportError(VLM_WS_EXT_ERRCODE_T e_ret, const QString &fallback);

    // --- stations
    void wireStations();
    static bool caseInsensitiveLessThan(VLM_STATION_MAP_T *a, VLM_STATION_MAP_T *b);
    void fillStationInfoList(HANDLE_T h_handle);
    void sortStations();
    void releaseStationInfoList(bool isAll, int index);
    void focusStation(bool fgAutoPlay);
    void addStationRows();
    void addStationRow(const QString &name, const QIcon &icon);
    void focusStationWithoutPlaying(int foundRow);
    void makeStationRowCurrent(int row);
    const VLM_STATION_MAP_T *stationOfRow(int row) const; // null: there is none
    QString stationRowText(int row) const;                // also while its marquee runs
    void rememberLastStation(const QString &stationToken);
    void showStationIcon(int row, bool isPlaying);
    const QIcon &cachedIcon(const char *path);

    stationrecord::List m_stationInfoList; // element i is row i + 1
    WsHandle m_stationlist_handle;         // element 0 of its reply is row 0
    QString m_strCurrentStationToken;      // plays or is being started
    struct {
        int selectedStationIndex = 0; // row of the station that plays
        int deleteStationIndex = 0;   // row to focus after a deletion; 0 none
        int renametationIndex = 0;    // spelled so: row that was renamed; 0 none
        bool isGetPlaylistWait = false;
        struct {
            int result = -1; // negative: failed
            QString strInfo; // the local file
        } download_info_t;
    } m_playing_station_info_t;
    QHash<QByteArray, QIcon> m_icons; // by resource path

    // --- playback
    void wirePlayback();
    int requestPlaylist(const VLM_STATION_MAP_T *station, bool isChosen);
    void showPlayingStation();
    void getAdMetaData(int index);
    bool hasPlayingEntry() const;
    bool isPlayingAd() const;
    void endPlayback();
    void leaveEntryUnstarted();
    void startFilePlay();
    void stopFilePlay();
    void pauseFilePlay();
    void showStartedEntry();
    void giveUpOnBuffer();
    int playbackState() const;

    struct {
        int playingSongIndex = -1; // plays or is being started
        bool isThumbUpAble = true;
        bool isThumbDownAble = true;
        bool isSleepAble = true;
        bool isBookMarkSongAble = true;
        bool isBookMarkArtistAble = true;
    } m_playing_song_info_t;
    WsHandle m_playlist_handle;
    const VLM_WS_PLAYLIST_T *m_playlist = nullptr; // of that handle
    WsHandle m_adMetadata_handle;
    bool m_isplayready = true;        // false from the start of a track until its play result
    bool m_isFeedbackBusy = false;    // a thumbs up waits for its reply: track changes wait too
    bool m_isPlayPending = false;     // a track change waits for that reply
    bool m_isNeedNewPlaylist = false; // the next track change fetches a fresh playlist
    bool m_isAdMetadataDone = false;
    bool m_isEntryUnstarted = false; // the request for the entry failed; until the next track change
    bool m_isPlayURLOk = false;
    bool m_isPaused = false; // the play button shows the play picture
    bool m_isLowWater = true;
    bool m_isFileEof = false;
    bool m_isGotoNext = false;
    int m_totalSeconds = 0;
    QTimer *m_waterlineTimer;                                    // 500 ms
    std::unique_ptr<netcommon::PlaybackThread> m_playbackThread; // ended and waited for by the destructor
    static int m_lowWaterTicks;                                  // one for the process

    // --- feedback
    void wireFeedback();
    // The track that the action is about. Null when the action is refused; a message has been shown where one is due.
    const VLM_TRACK_MAP_T *trackForAction(feedbackrules::Action action, bool isPermitted);
    void bookmark(bool isArtist);
    // Evaluates the result of a request. True: sent, and the animation shows. False: not sent, `refusal` was shown;
    // this screen may be gone.
    bool wasSent(VLM_WS_EXT_ERRCODE_T ret, HANDLE_T h_handle, const QString &animation, const QString &refusal);
    void feedbackSucceeded(bool isUp);
    void setRatedRowsThumb(trackhistory::Thumb thumb);
    void showExplanation(const QString &text);
    static QString skipLimitText();
    // Counts a skip that was performed; an empty token counts nothing.
    static void recordSkip(const QString &stationToken);

    bool m_isExplanationOpen = false;
    QString m_feedbackSkipToken; // station whose skip the pending thumbs down will use; empty: none
    QString m_sleepSkipToken;    // the same for a pending sleep
    int m_ratedRow = 0;          // history row of the track whose rating is pending

    // --- now playing
    void wireNowPlaying();
    void initPlaybackInfo();
    void updatePlaybackInfo();
    void addPlaylistItem(QString text);
    void showHistoryIcon(const QPixmap &picture);
    void showPaused(bool isPaused);
    void showCoverThumb();
    void showEntryTexts(const QString &song, const QString &artist, const QString &album, bool isAd);
    void showStationLine();

    trackhistory::Thumb m_historyThumbs[trackhistory::capacity] = {}; // 0 the oldest row
    QString m_strTotalTime;
    std::unique_ptr<QPropertyAnimation> m_playbackAnimation; // null: has not run yet
    std::unique_ptr<netcommon::HttpDownload> m_download;
    bool m_isDownloadExpected = false;
    bool m_isPlayingRowPlain = false; // a pause took the mint from the icon of the playing row

    // --- focus
    void wireFocus();
    void moveFocusOnFedbackBtn(bool isLeftToRight); // spelled so
    void moveFocusTo(focusring::Position position);
    void showFocused(focusring::Position position);
    void showUnfocused(focusring::Position position);
    ImageListWidget *listAt(focusring::Position position) const; // null for none
    QPushButton *buttonAt(focusring::Position position) const;   // null for none
    void showAnimation(const QString &text);
    // `ended` is called when the dialog reports its destruction.
    void openDialog(PlayerDialog *dialog, const QPoint &place, void (VelmoraMainDlg::*ended)());
    screencover::Cover cover() const;
    void activateTopScreen();

    focusring::Position m_focusPosition = focusring::Position::None;
    int m_openBoxes = 0; // calls of showMsgbox() that have not returned
    bool m_hasBeenShown = false;
    QList<PlayerDialog *> m_dialogs; // children: menu, about, why; each until it reports its destruction

    // --- manage
    void wireManage();
    // The row that a menu action is about. -1 for the Tapestry row, after showing `refusal`, or when this screen is
    // gone.
    int ownStationRow(const QString &refusal);
    bool confirm(const QString &question); // false also when this screen is gone or the box was closed unanswered
};
