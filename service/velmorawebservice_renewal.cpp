#include "service/deviceidentity.h"
#include "service/tokenrenewal.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "service/wscommands.h"
#include "service/wshandle.h"
#include "service/wsreply.h"

#include <QDebug>
#include <QMetaMethod>

// Completions: to their signals, or into the renewal of an expired login. Everything here runs on the library's
// callback thread, which delivers one completion after the other.

using tokenrenewal::Action;

namespace {

HANDLE_T m_temp_handle = 0;        // the request that waits for a new token; the adapter owns it while it waits
bool m_temp_partner_token = false; // it needs a new partner login only
// The waiting request was reported after an immediate failure and belongs to its receiver. m_temp_handle stays set
// until the next completion, and nothing is read through it.
bool m_isReported = false;

void clearPending()
{
    m_temp_handle = 0;
    m_temp_partner_token = false;
    m_isReported = false;
}

using Signal = void (VelmoraWebService::*)(HANDLE_T, VLM_WS_EXT_ERRCODE_T, VOID *);

// By command identifier.
constexpr Signal signalTable[wscommands::count] = {
    &VelmoraWebService::signalGetAdMetadataDone,
    &VelmoraWebService::signalRegAdDone,
    &VelmoraWebService::signalParterLoginDone,
    &VelmoraWebService::signalUserLoginDone,
    &VelmoraWebService::signalAddArtistBookmarkDone,
    &VelmoraWebService::signalAddSongBookmarkDone,
    &VelmoraWebService::signalDisassociateDeviceDone,
    &VelmoraWebService::signalGetDeviceInfoDone,
    &VelmoraWebService::signalGenerateDeviceActivationCodeDone,
    &VelmoraWebService::signalSearchDone,
    &VelmoraWebService::signalAddFeedbackDone,
    &VelmoraWebService::signalAddMusicDone,
    &VelmoraWebService::signalCreateStationDone,
    &VelmoraWebService::signalDeleteStationDone,
    &VelmoraWebService::signalGetGenreStationsDone,
    &VelmoraWebService::signalGetPlaylistDone,
    &VelmoraWebService::signalGetStationDone,
    &VelmoraWebService::signalRenameStationDone,
    &VelmoraWebService::signalTransformSharedStationDone,
    nullptr, // reserved
    nullptr, // reserved
    &VelmoraWebService::signalExplainTrackDone,
    &VelmoraWebService::signalTrackEventDone,
    &VelmoraWebService::signalAssociateDeviceDone,
    &VelmoraWebService::signalCreateUserDone,
    &VelmoraWebService::signalEmailExplicitPinRescueDone,
    &VelmoraWebService::signalEmailPassowrdDone,
    &VelmoraWebService::signalGenerateUserActivationCodeDone,
    &VelmoraWebService::signalGetExplicitContentFilterDone,
    &VelmoraWebService::signalGetStationListDone,
    &VelmoraWebService::signalGetStationListCheckSumDone,
    &VelmoraWebService::signalGetUserInfoDone,
    &VelmoraWebService::signalIsExplicitContentFilterPinProtectedDone,
    &VelmoraWebService::signalSetExplicitContentFilterDone,
    &VelmoraWebService::signalSetExplicitPinDone,
    &VelmoraWebService::signalSleepSongDone,
};

} // namespace

void VelmoraWebService::velmora_ws_requst_cb(unsigned long h_handle, _VLM_WS_EXT_ERR_CODE_T e_ret, void *pv_tag)
{
    if (h_handle == 0) {
        qDebug("VelmoraWebService,velmora_ws_requst_cb,pt_velmora is NULL");
        return;
    }
    if (m_isReported)
        clearPending();
    VelmoraWebService *self = m_instance;
    if (!self) {
        velmora_ws_release_handle(h_handle); // the program is ending
        return;
    }
    const int cmd = wsreply::commandId(h_handle);
    switch (tokenrenewal::decide({cmd, e_ret, wsreply::commandId(m_temp_handle), m_temp_partner_token})) {
    case Action::ReportInactive:
        self->reportPending(e_ret, pv_tag);
        clearPending();
        velmora_ws_release_handle(h_handle); // has no receiver: the waiting request was reported in its place
        return;
    case Action::StartPartnerLogin:
        // A request that waited before is lost (deliberate): it is neither reported nor released.
        m_temp_handle = h_handle;
        if (wscommands::command(cmd).isPartnerTokenOnly)
            m_temp_partner_token = true;
        partnerLogin();
        return;
    case Action::StartDeviceLogin:
        userLoginWithDeviceID();
        velmora_ws_release_handle(h_handle);
        return;
    case Action::Resend:
    case Action::Drop:
        // The last login of the renewal. The screens never see it.
        qDebug("VelmoraWebService,webServiceDone,vlm_ws_CmdID=%d, ret = %d", cmd, e_ret);
        if (cmd == VLM_WS_MSGID_PARTNER_LOGIN)
            m_temp_partner_token = false;
        self->retrytempwebservice();
        velmora_ws_release_handle(h_handle);
        return;
    case Action::Emit:
        break;
    }
    self->webServiceDone(h_handle, e_ret, pv_tag);
}

void VelmoraWebService::webServiceDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag)
{
    const int cmd = wsreply::commandId(h_handle);
    qDebug("VelmoraWebService,webServiceDone,vlm_ws_CmdID=%d, ret = %d", cmd, e_ret);
    const Signal signal = wscommands::command(cmd).name ? signalTable[cmd] : nullptr;
    // A signal without a receiver (its screen is gone) would leave nobody to release the handle.
    if (signal && isSignalConnected(QMetaMethod::fromSignal(signal)))
        emit(this->*signal)(h_handle, e_ret, pv_tag);
    else
        velmora_ws_release_handle(h_handle);
}

// The waiting request goes straight to its signal, a login too: its failure must not start the renewal over.
void VelmoraWebService::reportPending(VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag)
{
    m_isReported = true;
    webServiceDone(m_temp_handle, e_ret, pv_tag);
}

void VelmoraWebService::forgetRenewal()
{
    if (m_temp_handle != 0 && !m_isReported)
        velmora_ws_release_handle(m_temp_handle);
    clearPending();
}

void VelmoraWebService::partnerLogin()
{
    qDebug("VelmoraWebService,partnerLogin....");
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result = m_instance->partnerLogin(nullptr, nullptr, nullptr, 1, false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK) {
        qDebug("VelmoraLogin,partnerLogin failed,ret=%d.", result);
        m_instance->reportPending(result, nullptr);
    }
}

void VelmoraWebService::userLoginWithDeviceID()
{
    qDebug("VelmoraWebService,userLoginWithDeviceID...");
    char mac[7];
    VLM_WS_EXT_ERRCODE_T result = m_instance->getMac(mac, sizeof mac);
    if (result != VLM_WS_ERR_OK) {
        // Nothing is reported (deliberate): the request goes on waiting.
        qDebug("VelmoraLogin,userLoginWithDeviceID,getMac failed,e_ret=%d.", result);
        return;
    }
    AccountRecord last;
    {
        VelmoraSettings settings = deviceSettings();
        last = settings.getLastLogin();
    }
    const QByteArray identity = deviceIdentity(mac, last.password).toLatin1();
    HANDLE_T handle = 0;
    result = m_instance->userLogin("deviceId", nullptr, nullptr, identity.constData(), false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK) {
        qDebug("VelmoraLogin,userLoginWithDeviceID,userLoginfailed,ret=%d.", result);
        m_instance->reportPending(result, nullptr);
    }
}

void VelmoraWebService::retrytempwebservice()
{
    qDebug("VelmoraLogin,retrytempwebservice..."); // the other class's name is deliberate
    if (m_temp_handle == 0) {
        qDebug("VelmoraWebService,retrytempwebservice,pt_velmora is NULL");
        return;
    }
    const int cmd = wsreply::commandId(m_temp_handle);
    qDebug("VelmoraWebService,webServiceDone,vlm_ws_CmdID=%d", cmd);
    if (wscommands::isSentAgain(cmd)) {
        const VLM_WS_EXT_ERRCODE_T result = sendAgain(m_temp_handle);
        if (result != VLM_WS_ERR_OK) {
            qDebug("VelmoraWebService,retrytempwebservice,ret=%d.", result);
            reportPending(result, nullptr);
            return;
        }
    }
    velmora_ws_release_handle(m_temp_handle);
    m_temp_handle = 0;
}

// Uses the parameters of the record, but not the caller's tag (deliberate): receivers go by the command identifier.
VLM_WS_EXT_ERRCODE_T VelmoraWebService::sendAgain(HANDLE_T pending)
{
    const void *params = reinterpret_cast<const VLM_WS_REQUEST_T *>(pending)->params;
    if (!params)
        return VLM_WS_ERR_INVALID_ARGUMENT;
    const auto *text = static_cast<const VLM_WS_TEXT_PARAMS_T *>(params);
    const auto *textFlag = static_cast<const VLM_WS_TEXT_FLAG_PARAMS_T *>(params);
    HANDLE_T handle = 0;
    switch (wsreply::commandId(pending)) {
    case VLM_WS_MSGID_GET_AD_METADATA:
        return getAdMetadata(textFlag->text, textFlag->flag, false, nullptr, &handle);
    case VLM_WS_MSGID_USER_LOGIN: {
        const auto *p = static_cast<const VLM_WS_USER_LOGIN_PARAMS_T *>(params);
        return userLogin(p->loginType, p->password, p->userName, p->deviceId, false, nullptr, &handle);
    }
    case VLM_WS_MSGID_ADD_ARTIST_BOOKMARK:
        return addArtistBookmark(text->text, false, nullptr, &handle);
    case VLM_WS_MSGID_ADD_SONG_BOOKMARK:
        return addSongBookmark(text->text, false, nullptr, &handle);
    case VLM_WS_MSGID_DISASSOCIATE_DEVICE:
        return disassociateDevice(text->text, false, nullptr, &handle);
    case VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE:
        return generateDeviceActivationCode(text->text, false, nullptr, &handle);
    case VLM_WS_MSGID_SEARCH:
        return search(textFlag->text, textFlag->flag, false, nullptr, &handle);
    case VLM_WS_MSGID_ADD_FEEDBACK: {
        const auto *p = static_cast<const VLM_WS_FLAG_TEXT_PARAMS_T *>(params);
        return addFeedback(p->flag, p->text, false, nullptr, &handle);
    }
    case VLM_WS_MSGID_CREATE_STATION: {
        const auto *p = static_cast<const VLM_WS_CREATE_STATION_PARAMS_T *>(params);
        return createStation(p->musicToken, p->trackToken, p->musicType, p->includeExtras, false, nullptr, &handle);
    }
    case VLM_WS_MSGID_DELETE_STATION:
        return deleteStation(text->text, false, nullptr, &handle);
    case VLM_WS_MSGID_GET_PLAYLIST:
        return getPlaylist(textFlag->text, textFlag->flag, false, nullptr, &handle);
    case VLM_WS_MSGID_RENAME_STATION: {
        const auto *p = static_cast<const VLM_WS_RENAME_STATION_PARAMS_T *>(params);
        return renameStation(p->newName, p->stationToken, p->reserved, false, nullptr, &handle);
    }
    case VLM_WS_MSGID_EXPLAIN_TRACK:
        return explainTrack(text->text, false, nullptr, &handle);
    case VLM_WS_MSGID_ASSOCIATE_DEVICE:
        return associateDevice(text->text, false, nullptr, &handle);
    case VLM_WS_MSGID_GET_STATION_LIST: {
        const auto *p = static_cast<const VLM_WS_GET_STATION_LIST_PARAMS_T *>(params);
        return getStationList(p->includeArt, p->sortField, p->sortOrder, false, nullptr, &handle);
    }
    case VLM_WS_MSGID_SLEEP_SONG:
        return sleepSong(text->text, false, nullptr, &handle);
    default:
        return VLM_WS_ERR_INVALID_ARGUMENT; // not a request that is sent again: VLM_WS_IS_SENT_AGAIN
    }
}
