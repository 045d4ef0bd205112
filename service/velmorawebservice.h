#pragma once

#include "velmora_ws.h"

#include <QObject>

// The one object between the web-service library and the screens: wraps every request, turns every completion into a
// signal, and renews an expired login by itself.
//
// The wrappers are called from the GUI thread (and, during a renewal, from the library's callback thread). Completion
// signals are emitted on the library's thread; receivers live in the GUI thread and connect with the automatic type.
// The receiver of a completion owns its handle and releases it. `fgNoCallback` true: the request raises no signal.
class VelmoraWebService : public QObject {
    Q_OBJECT
public:
    static VelmoraWebService *getInstance(); // created on first use; not thread-safe, first called from main
    ~VelmoraWebService() override;

    VLM_WS_EXT_ERRCODE_T init();
    VLM_WS_EXT_ERRCODE_T uninit();
    // Copies `size` bytes of the cached hardware address. The library is asked once a process: its first result is
    // returned, later calls give 0 even if it failed (deliberate).
    VLM_WS_EXT_ERRCODE_T getMac(char *buffer, int size);

    VLM_WS_EXT_ERRCODE_T getAdMetadata(const char *adToken, int flag, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T registerAd(const char *stationToken, const char *adToken, bool fgNoCallback, VOID *tag,
                                    HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T partnerLogin(const char *partnerName, const char *partnerPassword, const char *deviceModel,
                                      int includeExtras, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T userLogin(const char *loginType, const char *password, const char *userName,
                                   const char *deviceId, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T addArtistBookmark(const char *trackToken, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T addSongBookmark(const char *trackToken, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T disassociateDevice(const char *deviceId, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T getDeviceInfo(const char *deviceId, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T generateDeviceActivationCode(const char *deviceId, bool fgNoCallback, VOID *tag,
                                                      HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T search(const char *text, int flag, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T addFeedback(int isPositive, const char *trackToken, bool fgNoCallback, VOID *tag,
                                     HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T addMusic(const char *stationToken, const char *musicToken, bool fgNoCallback, VOID *tag,
                                  HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T createStation(const char *musicToken, const char *trackToken, const char *musicType,
                                       int includeExtras, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T deleteStation(const char *stationToken, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T getGenreStations(bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T getPlaylist(const char *stationToken, int flag, bool fgNoCallback, VOID *tag,
                                     HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T getStation(const char *stationToken, int flag, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T renameStation(const char *newName, const char *stationToken, int reserved, bool fgNoCallback,
                                       VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T transformSharedStation(const char *stationToken, int flag, bool fgNoCallback, VOID *tag,
                                                HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T explainTrack(const char *trackToken, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T trackEvent(const char *trackToken, const char *eventType, int seconds, bool fgNoCallback,
                                    VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T associateDevice(const char *deviceId, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T createUser(const char *userName, const char *password, int birthYear, const char *gender,
                                    const char *zipCode, const char *countryCode, int emailOptIn, const char *deviceId,
                                    int includeExtras, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T emailExplicitPINRescue(bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T emailPassword(const char *userName, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T generateUserActivationCode(bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T getExplicitContentFilter(bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T getStationList(int includeArt, const char *sortField, const char *sortOrder, bool fgNoCallback,
                                        VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T getStationListChecksum(bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T getUserInfo(const char *userName, const char *password, const char *deviceId,
                                     int includeExtras, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T isExplicitContentFilterPINProtected(bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T setExplicitContentFilter(int isEnabled, const char *pin, bool fgNoCallback, VOID *tag,
                                                  HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T setExplicitPIN(const char *newPin, const char *oldPin, bool fgNoCallback, VOID *tag,
                                        HANDLE_T *handle);
    VLM_WS_EXT_ERRCODE_T sleepSong(const char *trackToken, bool fgNoCallback, VOID *tag, HANDLE_T *handle);

    // The library's callback; its thread.
    static void velmora_ws_requst_cb(unsigned long h_handle, _VLM_WS_EXT_ERR_CODE_T e_ret, void *pv_tag);

signals:
    // In the order of the command identifiers; the misspelt ones are deliberate.
    void signalGetAdMetadataDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalRegAdDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalParterLoginDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalUserLoginDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalAddArtistBookmarkDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalAddSongBookmarkDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalDisassociateDeviceDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGetDeviceInfoDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGenerateDeviceActivationCodeDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalSearchDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalAddFeedbackDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalAddMusicDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalCreateStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalDeleteStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGetGenreStationsDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGetPlaylistDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGetStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalRenameStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalTransformSharedStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalExplainTrackDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalTrackEventDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalAssociateDeviceDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalCreateUserDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalEmailExplicitPinRescueDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalEmailPassowrdDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGenerateUserActivationCodeDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGetExplicitContentFilterDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGetStationListDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGetStationListCheckSumDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalGetUserInfoDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalIsExplicitContentFilterPinProtectedDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalSetExplicitContentFilterDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalSetExplicitPinDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void signalSleepSongDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);

private:
    VelmoraWebService();
    void webServiceDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void reportPending(VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void retrytempwebservice();
    VLM_WS_EXT_ERRCODE_T sendAgain(HANDLE_T pending);
    static void forgetRenewal();
    static void partnerLogin();
    static void userLoginWithDeviceID();

    static VelmoraWebService *m_instance;
    static char *m_macAddress; // null until first asked for
    static int m_macSize;      // bytes in it, as first asked for: 7
};
