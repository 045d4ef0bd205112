// Every function of the library against the shared examples: what is sent, and the records that the replies become.
#include "ws_fixture.h"

#include <cstring>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

namespace {

QJsonArray examplesOf(const QString &file)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(in.readAll()).array();
}

const QString dataFolder = qEnvironmentVariable("VELMORA_TEST_DATA", VELMORA_SOURCE_DIR "/tests/data") + "/api";

// The parameters of an example as C values that live as long as this.
class Args {
public:
    explicit Args(const QJsonObject &request)
        : m_request(request)
    {
    }
    const char *text(const char *key)
    {
        if (!m_request.contains(QLatin1String(key)))
            return nullptr;
        m_texts.push_back(m_request[QLatin1String(key)].toString().toUtf8());
        return m_texts.back().constData();
    }
    int flag(const char *key) { return m_request[QLatin1String(key)].toBool() ? 1 : 0; }
    int number(const char *key) { return m_request[QLatin1String(key)].toInt(); }
    const char *mac()
    {
        m_texts.push_back(QByteArray::fromHex(m_request["mac"].toString().toLatin1()) + '\0');
        return m_texts.back().constData();
    }

private:
    QJsonObject m_request;
    std::list<QByteArray> m_texts;
};

using Call = std::function<VLM_WS_EXT_ERRCODE_T(Args &, VELMORA_WS_CALLBACK_T, VOID *, HANDLE_T *)>;
#define CALL(function, ...)                                                                                            \
    {                                                                                                                  \
#function, [](Args &a, VELMORA_WS_CALLBACK_T c, VOID *t, HANDLE_T *h) {                                        \
            (void)a;                                                                                                   \
            return velmora_ws_##function(__VA_ARGS__ __VA_OPT__(, ) c, t, h);                                          \
        }       \
    }

const std::map<QString, Call> calls{
    CALL(getAdMetadata, a.text("adToken"), a.flag("includeExtras")),
    CALL(registerAd, a.text("stationToken"), a.text("adToken")),
    CALL(partnerLogin, a.text("partnerName"), a.text("partnerPassword"), a.text("deviceModel"),
         a.flag("includeExtras")),
    CALL(userLogin, a.text("loginType"), a.text("password"), a.text("userName"),
         a.text("deviceId") ? a.text("deviceId") : a.mac()),
    CALL(addArtistBookmark, a.text("trackToken")),
    CALL(addSongBookmark, a.text("trackToken")),
    CALL(disassociateDevice, a.text("deviceId")),
    CALL(getDeviceInfo, a.text("deviceId")),
    CALL(generateDeviceActivationCode, a.text("deviceId")),
    CALL(search, a.text("text"), a.flag("includeNear")),
    CALL(addFeedback, a.flag("isPositive"), a.text("trackToken")),
    CALL(addMusic, a.text("stationToken"), a.text("musicToken")),
    CALL(createStation, a.text("musicToken"), a.text("trackToken"), a.text("musicType"), a.flag("includeExtras")),
    CALL(deleteStation, a.text("stationToken")),
    CALL(getGenreStations),
    CALL(getPlaylist, a.text("stationToken"), a.flag("includeExtras")),
    CALL(getStation, a.text("stationToken"), a.flag("includeExtras")),
    CALL(renameStation, a.text("newName"), a.text("stationToken"), 0),
    CALL(transformSharedStation, a.text("stationToken"), a.flag("includeExtras")),
    CALL(explainTrack, a.text("trackToken")),
    CALL(trackEvent, a.text("trackToken"), a.text("eventType"), a.number("seconds")),
    CALL(associateDevice, a.text("deviceId")),
    CALL(createUser, a.text("userName"), a.text("password"), a.number("birthYear"), a.text("gender"), a.text("zipCode"),
         a.text("countryCode"), a.flag("emailOptIn"), a.text("deviceId"), a.flag("includeExtras")),
    CALL(emailExplicitPINRescue),
    CALL(emailPassword, a.text("userName")),
    CALL(generateUserActivationCode),
    CALL(getExplicitContentFilter),
    CALL(getStationList, a.flag("includeArt"), a.text("sortField"), a.text("sortOrder")),
    CALL(getStationListChecksum),
    CALL(getUserInfo, a.text("userName"), a.text("password"), a.text("deviceId"), a.flag("includeExtras")),
    CALL(isExplicitContentFilterPINProtected),
    CALL(setExplicitContentFilter, a.flag("isEnabled"), a.text("pin")),
    CALL(setExplicitPIN, a.text("newPin"), a.text("oldPin")),
    CALL(sleepSong, a.text("trackToken")),
};

// Converts the records back to the JSON that they were made from.
QJsonObject fromStation(const VLM_STATION_MAP_T &s)
{
    return {{"stationToken", s.stationToken},    {"stationId", s.stationId},
            {"stationName", s.stationName},      {"isTapestry", s.fgFlag0 != 0},
            {"isShared", s.isShared != 0},       {"allowRename", s.allowRename != 0},
            {"allowDelete", s.allowDelete != 0}, {"allowAddMusic", s.fgFlag20 != 0},
            {"artUrl", s.stationStr16},          {"dateCreated", s.stationStr24}};
}

QJsonObject fromEntry(const VLM_PLAYLIST_ENTRY_T &entry)
{
    if (!entry.isTrack)
        return {{"type", "ad"}, {"ad", QJsonObject{{"adToken", entry.map.p_adMap->adToken}}}};
    const VLM_TRACK_MAP_T &t = *entry.map.p_trackMap;
    QJsonObject track{{"trackToken", t.trackToken},
                      {"songName", t.songName},
                      {"artistName", t.artistName},
                      {"albumName", t.albumName},
                      {"albumYear", t.albumYear},
                      {"durationSeconds", t.durationSeconds},
                      {"style", t.style},
                      {"mood", t.mood},
                      {"tempo", t.tempo},
                      {"artistToken", t.artistToken},
                      {"albumToken", t.albumToken},
                      {"songToken", t.songToken},
                      {"stationToken", t.stationToken},
                      {"albumArtUrl", t.albumArtUrl},
                      {"audioUrl", t.audioUrl},
                      {"audioType", t.audioType},
                      {"bitrate", t.bitrate},
                      {"allowFeedback", t.allowFeedback != 0},
                      {"songRating", t.songRating},
                      {"expiresIn", t.expiresIn}};
    if (std::strcmp(t.audioUrl, velmora_ws_invalid_url) == 0)
        track["audioUrl"] = QJsonValue::Null;
    return {{"type", "track"}, {"track", track}};
}

template <class T, class Item>
QJsonArray listOf(int count, const Item *items, T convert)
{
    QJsonArray list;
    for (int i = 0; i < count; ++i)
        list += convert(items[i]);
    return list;
}

QJsonObject fromReply(const WsCompletion &done)
{
    switch (done.record()->vlm_ws_CmdID) {
    case VLM_WS_MSGID_PARTNER_LOGIN:
        return {{"expiresIn", done.reply<VLM_WS_PARTNER_LOGIN_T>()->expiresIn}};
    case VLM_WS_MSGID_USER_LOGIN:
    case VLM_WS_MSGID_CREATE_USER: {
        const auto *r = done.reply<VLM_WS_USER_LOGIN_T>();
        return {{"userName", r->userName}, {"userId", r->userId}, {"expiresIn", r->expiresIn}};
    }
    case VLM_WS_MSGID_GET_DEVICE_INFO: {
        const auto *r = done.reply<VLM_WS_DEVICE_INFO_T>();
        return {{"deviceId", r->deviceId}, {"userName", r->userName}, {"associatedAt", r->associatedAt}};
    }
    case VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE:
    case VLM_WS_MSGID_GENERATE_USER_ACTIVATION_CODE: {
        const auto *r = done.reply<VLM_WS_ACTIVATION_CODE_T>();
        return {
            {"activationCode", r->activationCode}, {"activationUrl", r->activationUrl}, {"expiresIn", r->expiresIn}};
    }
    case VLM_WS_MSGID_GET_USER_INFO: {
        const auto *r = done.reply<VLM_WS_USER_INFO_T>();
        return {{"userName", r->userName},
                {"userId", r->userId},
                {"stationCount", r->stationCount},
                {"isActive", r->isActive != 0}};
    }
    case VLM_WS_MSGID_GET_STATION_LIST:
    case VLM_WS_MSGID_GET_GENRE_STATIONS: {
        const auto *r = done.reply<VLM_WS_STATION_LIST_T>();
        return {{"stations", listOf(r->count, r->stations, fromStation)}};
    }
    case VLM_WS_MSGID_GET_STATION:
    case VLM_WS_MSGID_CREATE_STATION:
    case VLM_WS_MSGID_RENAME_STATION:
    case VLM_WS_MSGID_TRANSFORM_SHARED_STATION:
        return {{"station", fromStation(*done.reply<VLM_STATION_MAP_T>())}};
    case VLM_WS_MSGID_GET_PLAYLIST: {
        const auto *r = done.reply<VLM_WS_PLAYLIST_T>();
        return {{"entries", listOf(r->count, r->entries, fromEntry)}};
    }
    case VLM_WS_MSGID_GET_AD_METADATA: {
        const auto *r = done.reply<VLM_AD_METADATA_T>();
        return {{"title", r->title},         {"adLine2", r->adLine2},   {"audioUrl", r->audioUrl},
                {"audioType", r->audioType}, {"imageUrl", r->imageUrl}, {"durationSeconds", r->durationSeconds}};
    }
    case VLM_WS_MSGID_SEARCH: {
        const auto *r = done.reply<VLM_WS_SEARCH_T>();
        return {{"tracks", listOf(r->trackCount, r->tracks,
                                  [](const VLM_WS_SEARCH_TRACK_T &t) {
                                      return QJsonObject{{"musicToken", t.musicToken},
                                                         {"songName", t.songName},
                                                         {"artistName", t.artistName}};
                                  })},
                {"artists", listOf(r->artistCount, r->artists, [](const VLM_WS_SEARCH_ARTIST_T &a) {
                     return QJsonObject{{"musicToken", a.musicToken}, {"artistName", a.artistName}};
                 })}};
    }
    case VLM_WS_MSGID_EXPLAIN_TRACK: {
        const auto *r = done.reply<VLM_WS_EXPLANATION_T>();
        return {{"traits", listOf(r->count, r->traits, [](const VLM_WS_TRAIT_T &t) {
                     return QJsonObject{{"traitId", t.traitId}, {"traitText", t.traitText}};
                 })}};
    }
    case VLM_WS_MSGID_GET_STATION_LIST_CHECKSUM:
        return {{"checksum", done.reply<VLM_WS_CHECKSUM_T>()->checksum}};
    case VLM_WS_MSGID_GET_EXPLICIT_CONTENT_FILTER:
    case VLM_WS_MSGID_SET_EXPLICIT_CONTENT_FILTER:
        return {{"isEnabled", done.reply<VLM_WS_FLAG_T>()->flag != 0}};
    case VLM_WS_MSGID_IS_EXPLICIT_CONTENT_FILTER_PIN_PROTECTED:
        return {{"isProtected", done.reply<VLM_WS_FLAG_T>()->flag != 0}};
    default:
        return {};
    }
}

} // namespace

class WsRoundtripTest : public QObject {
    Q_OBJECT

private slots:
    void everyFunctionHasAnExample()
    {
        QStringList examples = QDir(dataFolder).entryList({"*.json"}, QDir::Files);
        examples.replaceInStrings(".json", QString());
        QStringList functions;
        for (const auto &[name, call] : calls)
            functions += name;
        std::sort(examples.begin(), examples.end());
        QCOMPARE(examples, functions);
        QCOMPARE(functions.size(), int(VLM_WS_MSGID_COUNT) - 2); // 19 and 20 are reserved
    }

    void anExampleIsSentAndReadAsItStands_data()
    {
        QTest::addColumn<QString>("function");
        QTest::addColumn<QJsonObject>("example");
        for (const auto &[name, call] : calls) {
            const QJsonArray examples = examplesOf(dataFolder + '/' + name + ".json");
            QVERIFY2(!examples.isEmpty(), qPrintable(name));
            for (const QJsonValue &example : examples)
                QTest::addRow("%s: %s", qPrintable(name), qPrintable(example["name"].toString()))
                    << name << example.toObject();
        }
    }

    void anExampleIsSentAndReadAsItStands()
    {
        QFETCH(QString, function);
        QFETCH(QJsonObject, example);
        const QJsonObject request = example["request"].toObject();
        QJsonObject data = example["response"].toObject()["data"].toObject();

        WsFixture ws({}, false);
        if (request.contains("deviceKey")) {
            QVERIFY(QDir(ws.folder.path()).mkdir("state"));
            QFile state(ws.folder.filePath("state/device"));
            QVERIFY(state.open(QIODevice::WriteOnly));
            state.write("velmora-ws-state 1\nmac=001A2B3C4D5E\nkey=" + request["deviceKey"].toString().toLatin1() +
                        '\n');
        }
        QCOMPARE(velmora_ws_init(), VLM_WS_ERR_OK);
        const QString token = example["token"].toString();
        if (token != "none")
            ws.logIn();

        ws.server.answer(function, data);
        Args args(request);
        int tag = 0;
        QCOMPARE(ws.wait(calls.at(function)(args, WsFixture::callback, &tag, &ws.handle)), VLM_WS_ERR_OK);

        QCOMPARE(ws.server.functions(), QStringList(function));
        QCOMPARE(ws.server.seen.last().body, request);
        QCOMPARE(ws.server.seen.last().token, token == "user"      ? QByteArray(WsFixture::userToken)
                                              : token == "partner" ? QByteArray(WsFixture::partnerToken)
                                                                   : QByteArray());
        QCOMPARE(ws.last().handle, ws.handle);
        QCOMPARE(ws.last().tag, static_cast<VOID *>(&tag));
        data.remove("partnerToken");
        data.remove("userToken");
        QCOMPARE(fromReply(ws.last()), data);
        QCOMPARE(ws.last().record()->reply == nullptr, data.isEmpty());
    }

    void aRecordKeepsTheParametersInTheirOrder()
    {
        WsFixture ws;
        ws.logIn();
        const char mac[7] = {0x00, 0x1a, 0x2b, 0x00, 0x4d, 0x5e, 0x7f};
        QCOMPARE(ws.wait(velmora_ws_userLogin("user", "seven small lamps", "mira@example.org", mac, WsFixture::callback,
                                              nullptr, &ws.handle)),
                 VLM_WS_ERR_OK);
        // Reads the record as a caller without the structure types would: identifier, pointer, then the values.
        const auto *record = reinterpret_cast<const VLM_WS_REQUEST_T *>(ws.handle);
        QCOMPARE(*reinterpret_cast<const uint32_t *>(ws.handle), uint32_t(VLM_WS_MSGID_USER_LOGIN));
        const char *const *values = static_cast<const char *const *>(record->params);
        QCOMPARE(values[0], "user");
        QCOMPARE(values[1], "seven small lamps");
        QCOMPARE(values[2], "mira@example.org");
        QCOMPARE(QByteArray(values[3], 7), QByteArray(mac, 7));
        QCOMPARE(ws.server.seen.last().body["mac"].toString(), "001A2B004D5E");
    }

    void theCallerMayFreeItsTextsAtOnce()
    {
        WsFixture ws;
        ws.logIn();
        char text[] = "quiet tide\n\"\\\x01 \xc3\xbc";
        const QString sent = QString::fromUtf8(text);
        ws.server.answer("search", QJsonObject{{"tracks", QJsonArray{}}, {"artists", QJsonArray{}}});
        const auto immediate = velmora_ws_search(text, 0, WsFixture::callback, nullptr, &ws.handle);
        std::memset(text, 'x', sizeof text - 1);
        QCOMPARE(ws.wait(immediate), VLM_WS_ERR_OK);
        QCOMPARE(ws.server.seen.last().body["text"].toString(), sent);
    }

    void aMissingParameterIsRefusedAtOnce()
    {
        WsFixture ws;
        HANDLE_T handle = 42;
        const auto cb = WsFixture::callback;
        const char notUtf8[] = "caf\xe9";
        for (const auto result : {velmora_ws_getPlaylist(nullptr, 0, cb, nullptr, &handle),
                                  velmora_ws_addFeedback(1, nullptr, cb, nullptr, &handle),
                                  velmora_ws_userLogin(nullptr, "p", "u", "m", cb, nullptr, &handle),
                                  velmora_ws_userLogin("user", nullptr, "u", nullptr, cb, nullptr, &handle),
                                  velmora_ws_userLogin("deviceId", nullptr, nullptr, nullptr, cb, nullptr, &handle),
                                  velmora_ws_userLogin("other", "p", "u", "m", cb, nullptr, &handle),
                                  velmora_ws_createStation(nullptr, "t", nullptr, 0, cb, nullptr, &handle),
                                  velmora_ws_search(notUtf8, 0, cb, nullptr, &handle)})
            QCOMPARE(result, VLM_WS_ERR_INVALID_ARGUMENT);
        QCOMPARE(handle, HANDLE_T(42));
        QCOMPARE(ws.count(), 0);
    }
};

QTEST_GUILESS_MAIN(WsRoundtripTest)
#include "ws_roundtrip_test.moc"
