/*
 * velmora_ws: the client library of the Velmora station service.
 *
 * C interface, no Qt. Every request function copies its parameters, queues the request and returns at once; the
 * library's one worker thread sends it and calls `callback` from that thread. A result other than 0 means that
 * nothing was queued and no callback will come; `*outHandle` is then left untouched.
 *
 * Ownership: the handle of a completed request belongs to whoever receives the callback, who gives it back with
 * velmora_ws_release_handle(). The request's parameters and its reply live exactly that long. A request that was
 * made with a null callback releases itself.
 *
 * Every request completes, but for those under way when velmora_ws_uninit() is called:
 *  - VLM_WS_ERR_INVALID_AUTH_TOKEN asks the caller to log in and to send the same request again, for the commands of
 *    VLM_WS_IS_SENT_AGAIN. After three such renewals in a row the request completes with the code of the last login,
 *    or with VLM_WS_ERR_INVALID_AUTH_TOKEN_2 where that login succeeded. So do, at once, a user login that is part of
 *    a renewal and every other command. A partner login never completes with VLM_WS_ERR_INVALID_AUTH_TOKEN.
 *  - velmora_ws_getPlaylist() completes with VLM_WS_ERR_NOTHING_PLAYED in place of a fourth playlist in a row of a
 *    station from which nothing played. The library does not see the playback. It takes a playlist for unplayed when
 *    the next one is wanted within three seconds for every entry that has something to play (an empty playlist: within
 *    ten seconds), and when no request named a track meanwhile. After a minute it counts slower failures,
 *    too: up to eleven seconds for every such entry, if that is less than a quarter of the announced music.
 *
 * A request that fails for a passing reason is repeated before it completes: without a connection, after a cut or a
 * time limit, with VLM_WS_ERR_INTERNAL or VLM_WS_ERR_TOO_MANY_REQUESTS, and while a gateway finds no service. The first
 * repetition comes within half a second, the last one 45 seconds after the first attempt; until the service has
 * answered for the first time, 60 seconds. Meanwhile requests of other functions complete; those of the same function
 * keep their order.
 *
 * Requests that change something carry a random key. The service gives a repeated request its first answer.
 *
 * Text is UTF-8 and NUL terminated unless stated otherwise. A null char* parameter means "not given".
 */
#ifndef VELMORA_WS_H
#define VELMORA_WS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define VELMORA_WS_EXPORT __attribute__((visibility("default")))
#else
#define VELMORA_WS_EXPORT
#endif

/* One request of the library: the address of its VLM_WS_REQUEST_T. 0 is no request. */
typedef unsigned long HANDLE_T;
/* Spelled so that the caller's tag can be written VOID*. */
typedef void VOID;

typedef enum _VLM_WS_EXT_ERR_CODE_T {
    /* The library's own results. */
    VLM_WS_ERR_NOTHING_PLAYED = -507,     /* three playlists of a station in a row, and nothing of them was played */
    VLM_WS_ERR_REPLY_TOO_LARGE = -506,    /* the reply passed the size or depth limit */
    VLM_WS_ERR_MALFORMED_REPLY = -505,    /* not JSON, cut off, or not of the agreed shape */
    VLM_WS_ERR_ERROR_CURL_FAILURE = -504, /* the network could not be reached or the transfer broke */
    VLM_WS_ERR_OUT_OF_MEMORY = -503,
    VLM_WS_ERR_INVALID_ARGUMENT = -502, /* a required parameter is missing */
    VLM_WS_ERR_NOT_INITIALISED = -501,  /* before velmora_ws_init or after velmora_ws_uninit */
    VLM_WS_ERR_OK = 0,
    /* The service's results. */
    VLM_WS_ERR_INTERNAL = 5000,
    VLM_WS_ERR_BAD_REQUEST = 5001,
    VLM_WS_ERR_NOT_FOUND = 5002, /* no such track, ad or music token (stations: 5102) */
    VLM_WS_ERR_VERSION_REFUSED = 5003,
    VLM_WS_ERR_TOO_MANY_REQUESTS = 5004,
    VLM_WS_ERR_NOT_AVAILABLE = 5005, /* the service does not offer this function (yet) */
    VLM_WS_ERR_MAINTENANCE = 5096,
    VLM_WS_ERR_INVALID_AUTH_TOKEN = 5097,
    VLM_WS_ERR_INVALID_LOGIN = 5098,
    VLM_WS_ERR_ACCOUNT_INACTIVE = 5099,
    VLM_WS_ERR_NOT_AUTHORIZED = 5100,
    VLM_WS_ERR_MAX_STATIONS = 5101,
    VLM_WS_ERR_STATION_NOT_FOUND = 5102,
    VLM_WS_ERR_DEVICE_NOT_FOUND = 5105,
    VLM_WS_ERR_INVALID_USERNAME = 5107,
    VLM_WS_ERR_INVALID_PASSWORD = 5108,
    VLM_WS_ERR_INVALID_AUTH_TOKEN_2 = 5126
} VLM_WS_EXT_ERRCODE_T;

/* Command identifiers: the first field of every request record. 19 and 20 are reserved. */
typedef enum _VLM_WS_MSGID_T {
    VLM_WS_MSGID_GET_AD_METADATA = 0,
    VLM_WS_MSGID_REGISTER_AD = 1,
    VLM_WS_MSGID_PARTNER_LOGIN = 2,
    VLM_WS_MSGID_USER_LOGIN = 3,
    VLM_WS_MSGID_ADD_ARTIST_BOOKMARK = 4,
    VLM_WS_MSGID_ADD_SONG_BOOKMARK = 5,
    VLM_WS_MSGID_DISASSOCIATE_DEVICE = 6,
    VLM_WS_MSGID_GET_DEVICE_INFO = 7,
    VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE = 8,
    VLM_WS_MSGID_SEARCH = 9,
    VLM_WS_MSGID_ADD_FEEDBACK = 10,
    VLM_WS_MSGID_ADD_MUSIC = 11,
    VLM_WS_MSGID_CREATE_STATION = 12,
    VLM_WS_MSGID_DELETE_STATION = 13,
    VLM_WS_MSGID_GET_GENRE_STATIONS = 14,
    VLM_WS_MSGID_GET_PLAYLIST = 15,
    VLM_WS_MSGID_GET_STATION = 16,
    VLM_WS_MSGID_RENAME_STATION = 17,
    VLM_WS_MSGID_TRANSFORM_SHARED_STATION = 18,
    VLM_WS_MSGID_EXPLAIN_TRACK = 21,
    VLM_WS_MSGID_TRACK_EVENT = 22,
    VLM_WS_MSGID_ASSOCIATE_DEVICE = 23,
    VLM_WS_MSGID_CREATE_USER = 24,
    VLM_WS_MSGID_EMAIL_EXPLICIT_PIN_RESCUE = 25,
    VLM_WS_MSGID_EMAIL_PASSWORD = 26,
    VLM_WS_MSGID_GENERATE_USER_ACTIVATION_CODE = 27,
    VLM_WS_MSGID_GET_EXPLICIT_CONTENT_FILTER = 28,
    VLM_WS_MSGID_GET_STATION_LIST = 29,
    VLM_WS_MSGID_GET_STATION_LIST_CHECKSUM = 30,
    VLM_WS_MSGID_GET_USER_INFO = 31,
    VLM_WS_MSGID_IS_EXPLICIT_CONTENT_FILTER_PIN_PROTECTED = 32,
    VLM_WS_MSGID_SET_EXPLICIT_CONTENT_FILTER = 33,
    VLM_WS_MSGID_SET_EXPLICIT_PIN = 34,
    VLM_WS_MSGID_SLEEP_SONG = 35,
    VLM_WS_MSGID_COUNT = 36
} VLM_WS_MSGID_T;

/*
 * Whether callers answer VLM_WS_ERR_INVALID_AUTH_TOKEN to this command by logging in and sending it again. They drop
 * the others, so that a library completes those with another code. `id`: 0 to 35.
 */
#define VLM_WS_SENT_AGAIN(name) (1ULL << VLM_WS_MSGID_##name)
#define VLM_WS_ALL_SENT_AGAIN                                                                                          \
    (VLM_WS_SENT_AGAIN(GET_AD_METADATA) | VLM_WS_SENT_AGAIN(USER_LOGIN) | VLM_WS_SENT_AGAIN(ADD_ARTIST_BOOKMARK) |     \
     VLM_WS_SENT_AGAIN(ADD_SONG_BOOKMARK) | VLM_WS_SENT_AGAIN(DISASSOCIATE_DEVICE) |                                   \
     VLM_WS_SENT_AGAIN(GENERATE_DEVICE_ACTIVATION_CODE) | VLM_WS_SENT_AGAIN(SEARCH) |                                  \
     VLM_WS_SENT_AGAIN(ADD_FEEDBACK) | VLM_WS_SENT_AGAIN(CREATE_STATION) | VLM_WS_SENT_AGAIN(DELETE_STATION) |         \
     VLM_WS_SENT_AGAIN(GET_PLAYLIST) | VLM_WS_SENT_AGAIN(RENAME_STATION) | VLM_WS_SENT_AGAIN(EXPLAIN_TRACK) |          \
     VLM_WS_SENT_AGAIN(ASSOCIATE_DEVICE) | VLM_WS_SENT_AGAIN(GET_STATION_LIST) | VLM_WS_SENT_AGAIN(SLEEP_SONG))
#define VLM_WS_IS_SENT_AGAIN(id) ((VLM_WS_ALL_SENT_AGAIN >> (id)&1) != 0)

/*
 * A request record; HANDLE_T is its address. `params` points at the copied parameters in the order in which they were
 * passed (the VLM_WS_*_PARAMS_T of the command); `reply` is null until the request has completed with 0, and for
 * commands whose reply carries no data.
 */
typedef struct _VLM_WS_REQUEST_T {
    uint32_t vlm_ws_CmdID;
    void *params;
    void *reply;
} VLM_WS_REQUEST_T;

/* ---- Parameters, one structure a command shape, in the order of the function's own parameters ---------------- */

typedef struct _VLM_WS_PARTNER_LOGIN_PARAMS_T {
    char *partnerName;
    char *partnerPassword;
    char *deviceModel;
    int32_t includeExtras;
} VLM_WS_PARTNER_LOGIN_PARAMS_T;

/* `loginType` is "user" (deviceId: the 7 raw bytes that velmora_ws_utility_get_mac filled in) or "deviceId"
 * (deviceId: the identity as text). */
typedef struct _VLM_WS_USER_LOGIN_PARAMS_T {
    char *loginType;
    char *password; /* wiped when the record is released */
    char *userName;
    char *deviceId;
} VLM_WS_USER_LOGIN_PARAMS_T;

typedef struct _VLM_WS_GET_STATION_LIST_PARAMS_T {
    int32_t includeArt;
    char *sortField;
    char *sortOrder;
} VLM_WS_GET_STATION_LIST_PARAMS_T;

/* A text and a flag: getAdMetadata, search, getPlaylist, getStation, transformSharedStation. */
typedef struct _VLM_WS_TEXT_FLAG_PARAMS_T {
    char *text;
    int32_t flag;
} VLM_WS_TEXT_FLAG_PARAMS_T;

/* A flag and a text: addFeedback (1 = up, track token), setExplicitContentFilter (enabled, PIN). */
typedef struct _VLM_WS_FLAG_TEXT_PARAMS_T {
    int32_t flag;
    char *text;
} VLM_WS_FLAG_TEXT_PARAMS_T;

/* Two texts: registerAd (station token, ad token), addMusic (station token, music token), setExplicitPIN (new, old). */
typedef struct _VLM_WS_TWO_TEXTS_PARAMS_T {
    char *first;
    char *second;
} VLM_WS_TWO_TEXTS_PARAMS_T;

/* One text: bookmarks, sleepSong, explainTrack (track token), deleteStation (station token), associateDevice,
 * disassociateDevice, getDeviceInfo, generateDeviceActivationCode (device identity), emailPassword (user name). */
typedef struct _VLM_WS_TEXT_PARAMS_T {
    char *text;
} VLM_WS_TEXT_PARAMS_T;

typedef struct _VLM_WS_RENAME_STATION_PARAMS_T {
    char *newName;
    char *stationToken;
    int32_t reserved;
} VLM_WS_RENAME_STATION_PARAMS_T;

typedef struct _VLM_WS_TRACK_EVENT_PARAMS_T {
    char *trackToken;
    char *eventType; /* "start", "end", "skip" */
    int32_t seconds; /* played so far */
} VLM_WS_TRACK_EVENT_PARAMS_T;

typedef struct _VLM_WS_CREATE_STATION_PARAMS_T {
    char *musicToken;
    char *trackToken; /* or the track from which the station is made */
    char *musicType;  /* "artist" or "song" with trackToken */
    int32_t includeExtras;
} VLM_WS_CREATE_STATION_PARAMS_T;

typedef struct _VLM_WS_GET_USER_INFO_PARAMS_T {
    char *userName;
    char *password;
    char *deviceId;
    int32_t includeExtras;
} VLM_WS_GET_USER_INFO_PARAMS_T;

typedef struct _VLM_WS_CREATE_USER_PARAMS_T {
    char *userName;
    char *password;
    int32_t birthYear;
    char *gender;
    char *zipCode;
    char *countryCode;
    int32_t emailOptIn;
    char *deviceId;
    int32_t includeExtras;
} VLM_WS_CREATE_USER_PARAMS_T;

/* Commands without parameters: getGenreStations, emailExplicitPINRescue, generateUserActivationCode,
 * getExplicitContentFilter, getStationListChecksum, isExplicitContentFilterPINProtected. `params` is null. */

/* ---- Replies ------------------------------------------------------------------------------------------------ */

/* A station. 32 bytes where pointers are 32 bits wide. Reply of createStation, getStation, renameStation,
 * transformSharedStation. */
typedef struct _VLM_STATION_MAP_T {
    uint8_t fgFlag0; /* 1: the shuffle station made of all others (Tapestry) */
    uint8_t allowRename;
    char *stationId;
    char *stationToken; /* ASCII */
    uint8_t allowDelete;
    char *stationStr16; /* address of the station's picture */
    uint8_t fgFlag20;   /* 1: music can be added */
    uint8_t isShared;
    char *stationStr24; /* creation date, ISO 8601, UTC */
    char *stationName;
} VLM_STATION_MAP_T;

/* getStationList, getGenreStations. Element 0 of a station list is always the Tapestry station. */
typedef struct _VLM_WS_STATION_LIST_T {
    int32_t count;
    VLM_STATION_MAP_T *stations;
} VLM_WS_STATION_LIST_T;

/* A music track. 80 bytes where pointers are 32 bits wide. */
typedef struct _VLM_TRACK_MAP_T {
    char *albumArtUrl;       /*  0 */
    char *albumName;         /*  4 */
    uint8_t allowFeedback;   /*  8: 0 on shared stations */
    int32_t albumYear;       /* 12 */
    int32_t durationSeconds; /* 16: as the catalogue knows it; the player's own total counts */
    char *mood;              /* 20 */
    char *style;             /* 24 */
    int32_t tempo;           /* 28: beats a minute, 0 = unknown */
    char *artistToken;       /* 32 */
    char *artistName;        /* 36 */
    char *audioUrl;          /* 40: velmora_ws_invalid_url where there is none */
    char *audioType;         /* 44: media type, "audio/flac" */
    int32_t bitrate;         /* 48: bits a second, 0 = unknown */
    int32_t songRating;      /* 52: 1 = thumbed up by this listener */
    char *stationToken;      /* 56: the station that this track was chosen for */
    char *songName;          /* 60 */
    char *albumToken;        /* 64 */
    char *songToken;         /* 68 */
    int32_t expiresIn;       /* 72: seconds that the addresses stay valid */
    char *trackToken;        /* 76: key of feedback, sleep, bookmarks, explanation */
} VLM_TRACK_MAP_T;

typedef struct _VLM_AD_MAP_T {
    char *adToken;
} VLM_AD_MAP_T;

/* 8 bytes where pointers are 32 bits wide. */
typedef struct _VLM_PLAYLIST_ENTRY_T {
    uint8_t isTrack; /* 0: audio ad */
    union {
        VLM_TRACK_MAP_T *p_trackMap;
        VLM_AD_MAP_T *p_adMap;
    } map;
} VLM_PLAYLIST_ENTRY_T;

/* getPlaylist */
typedef struct _VLM_WS_PLAYLIST_T {
    int32_t count;
    VLM_PLAYLIST_ENTRY_T *entries;
} VLM_WS_PLAYLIST_T;

/* getAdMetadata */
typedef struct _VLM_AD_METADATA_T {
    char *audioUrl;          /*  0: velmora_ws_invalid_url where there is none */
    char *audioType;         /*  4 */
    char *adLine2;           /*  8: second line, shown where a track shows its artist */
    int32_t durationSeconds; /* 12 */
    char *imageUrl;          /* 16 */
    char *title;             /* 20 */
} VLM_AD_METADATA_T;

/* partnerLogin */
typedef struct _VLM_WS_PARTNER_LOGIN_T {
    int32_t expiresIn; /* seconds */
} VLM_WS_PARTNER_LOGIN_T;

/* userLogin, createUser */
typedef struct _VLM_WS_USER_LOGIN_T {
    char *userName;
    char *userId;
    int32_t expiresIn; /* seconds */
} VLM_WS_USER_LOGIN_T;

/* generateDeviceActivationCode, generateUserActivationCode */
typedef struct _VLM_WS_ACTIVATION_CODE_T {
    char *activationCode;
    char *activationUrl;
    int32_t expiresIn; /* seconds */
} VLM_WS_ACTIVATION_CODE_T;

typedef struct _VLM_WS_SEARCH_TRACK_T {
    char *musicToken;
    char *songName;
    char *artistName;
} VLM_WS_SEARCH_TRACK_T;

typedef struct _VLM_WS_SEARCH_ARTIST_T {
    char *musicToken;
    char *artistName;
} VLM_WS_SEARCH_ARTIST_T;

/* search */
typedef struct _VLM_WS_SEARCH_T {
    int32_t trackCount;
    VLM_WS_SEARCH_TRACK_T *tracks;
    int32_t artistCount;
    VLM_WS_SEARCH_ARTIST_T *artists;
} VLM_WS_SEARCH_T;

/* 8 bytes where pointers are 32 bits wide. */
typedef struct _VLM_WS_TRAIT_T {
    char *traitId;
    char *traitText; /* ASCII */
} VLM_WS_TRAIT_T;

/* explainTrack */
typedef struct _VLM_WS_EXPLANATION_T {
    int32_t count;
    VLM_WS_TRAIT_T *traits;
} VLM_WS_EXPLANATION_T;

/* getDeviceInfo */
typedef struct _VLM_WS_DEVICE_INFO_T {
    char *deviceId;
    char *userName;
    char *associatedAt; /* ISO 8601, UTC */
} VLM_WS_DEVICE_INFO_T;

/* getUserInfo */
typedef struct _VLM_WS_USER_INFO_T {
    char *userName;
    char *userId;
    int32_t stationCount;
    int32_t isActive;
} VLM_WS_USER_INFO_T;

/* getStationListChecksum */
typedef struct _VLM_WS_CHECKSUM_T {
    char *checksum;
} VLM_WS_CHECKSUM_T;

/* getExplicitContentFilter, isExplicitContentFilterPINProtected, setExplicitContentFilter */
typedef struct _VLM_WS_FLAG_T {
    int32_t flag;
} VLM_WS_FLAG_T;

/* ---- The library -------------------------------------------------------------------------------------------- */

typedef void (*VELMORA_WS_CALLBACK_T)(HANDLE_T handle, VLM_WS_EXT_ERRCODE_T result, VOID *tag);

/* What stands in an audio address where the service has no usable one; exactly 14 characters. */
extern VELMORA_WS_EXPORT const char velmora_ws_invalid_url[15];

/* Starts the worker thread. 0 also when it is already running. */
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_init(void);
/* Breaks off what is under way (no further callbacks), ends the worker thread and forgets the session. Does not wait
 * for a name server. */
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_uninit(void);
/* 0, an unknown or an already released handle is reported on standard error and otherwise harmless. Any thread. */
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_release_handle(HANDLE_T handle);
/* Fills `buffer` with the 6 address bytes and, where `size` allows, a NUL. `size` is at least 6. */
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_utility_get_mac(char *buffer, int size);

#define VELMORA_WS_TAIL VELMORA_WS_CALLBACK_T callback, VOID *tag, HANDLE_T *outHandle

VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getAdMetadata(const char *adToken, int flag, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_registerAd(const char *stationToken, const char *adToken,
                                                             VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_partnerLogin(const char *partnerName, const char *partnerPassword,
                                                               const char *deviceModel, int includeExtras,
                                                               VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_userLogin(const char *loginType, const char *password,
                                                            const char *userName, const char *deviceId,
                                                            VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_addArtistBookmark(const char *trackToken, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_addSongBookmark(const char *trackToken, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_disassociateDevice(const char *deviceId, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getDeviceInfo(const char *deviceId, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_generateDeviceActivationCode(const char *deviceId, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_search(const char *text, int flag, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_addFeedback(int isPositive, const char *trackToken, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_addMusic(const char *stationToken, const char *musicToken,
                                                           VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_createStation(const char *musicToken, const char *trackToken,
                                                                const char *musicType, int includeExtras,
                                                                VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_deleteStation(const char *stationToken, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getGenreStations(VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getPlaylist(const char *stationToken, int flag, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getStation(const char *stationToken, int flag, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_renameStation(const char *newName, const char *stationToken,
                                                                int reserved, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_transformSharedStation(const char *stationToken, int flag,
                                                                         VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_explainTrack(const char *trackToken, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_trackEvent(const char *trackToken, const char *eventType, int seconds,
                                                             VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_associateDevice(const char *deviceId, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_createUser(const char *userName, const char *password, int birthYear,
                                                             const char *gender, const char *zipCode,
                                                             const char *countryCode, int emailOptIn,
                                                             const char *deviceId, int includeExtras, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_emailExplicitPINRescue(VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_emailPassword(const char *userName, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_generateUserActivationCode(VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getExplicitContentFilter(VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getStationList(int includeArt, const char *sortField,
                                                                 const char *sortOrder, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getStationListChecksum(VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_getUserInfo(const char *userName, const char *password,
                                                              const char *deviceId, int includeExtras, VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_isExplicitContentFilterPINProtected(VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_setExplicitContentFilter(int isEnabled, const char *pin,
                                                                           VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_setExplicitPIN(const char *newPin, const char *oldPin,
                                                                 VELMORA_WS_TAIL);
VELMORA_WS_EXPORT VLM_WS_EXT_ERRCODE_T velmora_ws_sleepSong(const char *trackToken, VELMORA_WS_TAIL);

#undef VELMORA_WS_TAIL

#ifdef __cplusplus
}

/* Binary interface of the records where pointers are 32 bits wide; elsewhere the same members in the same order. */
#define VELMORA_WS_AT(record, member, offset)                                                                          \
    static_assert(sizeof(void *) != 4 || offsetof(record, member) == (offset), "binary interface")
VELMORA_WS_AT(VLM_WS_REQUEST_T, vlm_ws_CmdID, 0);
VELMORA_WS_AT(VLM_WS_REQUEST_T, params, 4);
VELMORA_WS_AT(VLM_WS_REQUEST_T, reply, 8);
VELMORA_WS_AT(VLM_STATION_MAP_T, fgFlag0, 0);
VELMORA_WS_AT(VLM_STATION_MAP_T, allowRename, 1);
VELMORA_WS_AT(VLM_STATION_MAP_T, stationId, 4);
VELMORA_WS_AT(VLM_STATION_MAP_T, stationToken, 8);
VELMORA_WS_AT(VLM_STATION_MAP_T, allowDelete, 12);
VELMORA_WS_AT(VLM_STATION_MAP_T, stationStr16, 16);
VELMORA_WS_AT(VLM_STATION_MAP_T, fgFlag20, 20);
VELMORA_WS_AT(VLM_STATION_MAP_T, isShared, 21);
VELMORA_WS_AT(VLM_STATION_MAP_T, stationStr24, 24);
VELMORA_WS_AT(VLM_STATION_MAP_T, stationName, 28);
VELMORA_WS_AT(VLM_WS_STATION_LIST_T, count, 0);
VELMORA_WS_AT(VLM_WS_STATION_LIST_T, stations, 4);
VELMORA_WS_AT(VLM_WS_PLAYLIST_T, count, 0);
VELMORA_WS_AT(VLM_WS_PLAYLIST_T, entries, 4);
VELMORA_WS_AT(VLM_PLAYLIST_ENTRY_T, isTrack, 0);
VELMORA_WS_AT(VLM_PLAYLIST_ENTRY_T, map, 4);
VELMORA_WS_AT(VLM_TRACK_MAP_T, albumArtUrl, 0);
VELMORA_WS_AT(VLM_TRACK_MAP_T, albumName, 4);
VELMORA_WS_AT(VLM_TRACK_MAP_T, allowFeedback, 8);
VELMORA_WS_AT(VLM_TRACK_MAP_T, artistName, 36);
VELMORA_WS_AT(VLM_TRACK_MAP_T, audioUrl, 40);
VELMORA_WS_AT(VLM_TRACK_MAP_T, songRating, 52);
VELMORA_WS_AT(VLM_TRACK_MAP_T, songName, 60);
VELMORA_WS_AT(VLM_TRACK_MAP_T, trackToken, 76);
VELMORA_WS_AT(VLM_AD_MAP_T, adToken, 0);
VELMORA_WS_AT(VLM_AD_METADATA_T, audioUrl, 0);
VELMORA_WS_AT(VLM_AD_METADATA_T, adLine2, 8);
VELMORA_WS_AT(VLM_AD_METADATA_T, imageUrl, 16);
VELMORA_WS_AT(VLM_AD_METADATA_T, title, 20);
#undef VELMORA_WS_AT
static_assert(sizeof(void *) != 4 || sizeof(VLM_STATION_MAP_T) == 32, "binary interface");
static_assert(sizeof(void *) != 4 || sizeof(VLM_PLAYLIST_ENTRY_T) == 8, "binary interface");
static_assert(sizeof(void *) != 4 || sizeof(VLM_TRACK_MAP_T) == 80, "binary interface");
static_assert(sizeof(void *) != 4 || sizeof(VLM_WS_TRAIT_T) == 8, "binary interface");
#endif

#endif /* VELMORA_WS_H */
