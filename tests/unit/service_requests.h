#pragma once

#include "service/velmorawebservice.h"

#include <QByteArray>
#include <QVariantList>

// Every request of the adapter in one table, for tests that go through all of them.
namespace requests {

using Service = VelmoraWebService;
using Signal = void (Service::*)(HANDLE_T, VLM_WS_EXT_ERRCODE_T, VOID *);

// Every wrapper with distinguishable parameters, the signal that it must end in, and what the library must be given.
struct Wrapper {
    int cmd;
    VLM_WS_EXT_ERRCODE_T (*call)(Service *, bool fgNoCallback, VOID *tag, HANDLE_T *handle);
    Signal signal;
    const char *signalName;
    QVariantList params;
};

template <size_t N>
QVariant given(const char (&text)[N]) // zero bytes inside count
{
    return QByteArray(text, N - 1);
}
inline QVariant given(int number)
{
    return number;
}
inline QVariant given(std::nullptr_t)
{
    return {};
}
template <typename... Values>
QVariantList allGiven(const Values &...values)
{
    return QVariantList{given(values)...};
}

// Identifier, function, its signal, and the arguments.
#define WRAPPER(id, function, raised, ...)                                                                             \
    {                                                                                                                  \
        id,                                                                                                            \
            [](Service *s, bool fg, VOID *tag, HANDLE_T *handle) {                                                     \
                return s->function(__VA_ARGS__ __VA_OPT__(, ) fg, tag, handle);                                        \
            },                                                                                                         \
            &Service::raised, #raised, allGiven(__VA_ARGS__)                                                           \
    }

inline const QList<Wrapper> &wrappers()
{
    static const QList<Wrapper> table{
        WRAPPER(0, getAdMetadata, signalGetAdMetadataDone, "ad", 1),
        WRAPPER(1, registerAd, signalRegAdDone, "st", "ad"),
        WRAPPER(2, partnerLogin, signalParterLoginDone, nullptr, nullptr, nullptr, 1),
        WRAPPER(3, userLogin, signalUserLoginDone, "user", "pw", "ann", "\1\2\3\4\5\6\0"),
        WRAPPER(4, addArtistBookmark, signalAddArtistBookmarkDone, "tr"),
        WRAPPER(5, addSongBookmark, signalAddSongBookmarkDone, "tr"),
        WRAPPER(6, disassociateDevice, signalDisassociateDeviceDone, "id"),
        WRAPPER(7, getDeviceInfo, signalGetDeviceInfoDone, "id"),
        WRAPPER(8, generateDeviceActivationCode, signalGenerateDeviceActivationCodeDone, "id"),
        WRAPPER(9, search, signalSearchDone, "abc", 1),
        WRAPPER(10, addFeedback, signalAddFeedbackDone, 0, "tr"), // 1 is what a lost flag would become
        WRAPPER(11, addMusic, signalAddMusicDone, "st", "mu"),
        WRAPPER(12, createStation, signalCreateStationDone, "mu", "tr", "song", 1),
        WRAPPER(13, deleteStation, signalDeleteStationDone, "st"),
        WRAPPER(14, getGenreStations, signalGetGenreStationsDone),
        WRAPPER(15, getPlaylist, signalGetPlaylistDone, "st", 1),
        WRAPPER(16, getStation, signalGetStationDone, "st", 1),
        WRAPPER(17, renameStation, signalRenameStationDone, "new", "st", 7),
        WRAPPER(18, transformSharedStation, signalTransformSharedStationDone, "st", 1),
        WRAPPER(21, explainTrack, signalExplainTrackDone, "tr"),
        WRAPPER(22, trackEvent, signalTrackEventDone, "tr", "skip", 12),
        WRAPPER(23, associateDevice, signalAssociateDeviceDone, "id"),
        WRAPPER(24, createUser, signalCreateUserDone, "ann", "pw", 1980, "f", "1", "de", 0, "id", 1),
        WRAPPER(25, emailExplicitPINRescue, signalEmailExplicitPinRescueDone),
        WRAPPER(26, emailPassword, signalEmailPassowrdDone, "ann"),
        WRAPPER(27, generateUserActivationCode, signalGenerateUserActivationCodeDone),
        WRAPPER(28, getExplicitContentFilter, signalGetExplicitContentFilterDone),
        WRAPPER(29, getStationList, signalGetStationListDone, 1, "dateCreated", "desc"),
        WRAPPER(30, getStationListChecksum, signalGetStationListCheckSumDone),
        WRAPPER(31, getUserInfo, signalGetUserInfoDone, "ann", "pw", "id", 1),
        WRAPPER(32, isExplicitContentFilterPINProtected, signalIsExplicitContentFilterPinProtectedDone),
        WRAPPER(33, setExplicitContentFilter, signalSetExplicitContentFilterDone, 1, "1234"),
        WRAPPER(34, setExplicitPIN, signalSetExplicitPinDone, "new", "old"),
        WRAPPER(35, sleepSong, signalSleepSongDone, "tr"),
    };
    return table;
}

#undef WRAPPER

} // namespace requests
