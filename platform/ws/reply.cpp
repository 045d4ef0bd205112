#include "reply.h"

#include "webaddress.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

const char velmora_ws_invalid_url[15] = "http://invalid";

namespace velmora::ws {

namespace {

using Json = nlohmann::json;

enum class Need { Required, Optional }; // Optional: missing and null read as empty, 0 or false

// Reads the members of one object. The first wrong member clears `ok`, and the whole record is then unusable.
class Object {
public:
    Object(const Json &json, Arena &memory, bool &ok)
        : m_json(json)
        , m_memory(memory)
        , m_isOk(ok)
    {
        m_isOk = m_isOk && json.is_object();
    }

    // Never null.
    char *text(const char *key, Need need = Need::Optional) { return m_memory.text(view(key, need)); }

    // A token, an identity: visible ASCII, not empty.
    char *token(const char *key)
    {
        const std::string_view token = view(key, Need::Required);
        m_isOk = m_isOk && !token.empty() && token.size() <= 1024;
        for (const char c : token)
            m_isOk = m_isOk && c > 0x20 && c < 0x7f;
        return m_memory.text(token);
    }

    char *ascii(const char *key)
    {
        std::string plain;
        for (const char c : view(key, Need::Required)) {
            if (static_cast<unsigned char>(c) < 0x80)
                plain += c;
            else if ((static_cast<unsigned char>(c) & 0xc0) != 0x80)
                plain += '?';
        }
        return m_memory.text(plain);
    }

    // Only what the radio may open; `otherwise` stands for everything else.
    char *url(const char *key, std::string_view otherwise = {})
    {
        const std::string_view url = view(key, Need::Optional);
        return m_memory.text(!url.empty() && isWebAddress(std::string(url)) ? url : otherwise);
    }
    char *audioUrl(const char *key) { return url(key, velmora_ws_invalid_url); }

    // 0 and more.
    int32_t number(const char *key, Need need = Need::Optional)
    {
        const Json *value = find(key, need);
        if (!value)
            return 0;
        if (!value->is_number_unsigned() || value->get<uint64_t>() > std::numeric_limits<int32_t>::max()) {
            m_isOk = false;
            return 0;
        }
        return static_cast<int32_t>(value->get<uint64_t>());
    }

    bool flag(const char *key, Need need = Need::Optional)
    {
        const Json *value = find(key, need);
        if (!value)
            return false;
        if (!value->is_boolean()) {
            m_isOk = false;
            return false;
        }
        return value->get<bool>();
    }

    const Json &object(const char *key) { return required(key, &Json::is_object, Json::value_t::object); }
    const Json &array(const char *key) { return required(key, &Json::is_array, Json::value_t::array); }

private:
    const Json *find(const char *key, Need need)
    {
        if (!m_json.is_object())
            return nullptr;
        const auto it = m_json.find(key);
        if (it != m_json.end() && !it->is_null())
            return &*it;
        m_isOk = m_isOk && need == Need::Optional;
        return nullptr;
    }

    std::string_view view(const char *key, Need need)
    {
        const Json *value = find(key, need);
        if (!value)
            return {};
        const std::string *text = value->get_ptr<const std::string *>();
        // A NUL inside would cut the text for the reader.
        if (!text || text->find('\0') != std::string::npos) {
            m_isOk = false;
            return {};
        }
        return *text;
    }

    const Json &required(const char *key, bool (Json::*isKind)() const noexcept, Json::value_t kind)
    {
        static const Json object = Json::object();
        static const Json array = Json::array();
        const Json *value = find(key, Need::Required);
        if (value && (value->*isKind)())
            return *value;
        m_isOk = false;
        return kind == Json::value_t::object ? object : array;
    }

    const Json &m_json;
    Arena &m_memory;
    bool &m_isOk;
};

// Builds the records of one reply.
class Builder {
public:
    explicit Builder(Arena &memory)
        : m_memory(memory)
    {
    }

    bool isOk() const { return m_isOk; }

    void *build(ReplyShape shape, const Json &json, Reply &reply)
    {
        Object data = object(json);
        switch (shape) {
        case ReplyShape::None:
            return nullptr;
        case ReplyShape::PartnerLogin:
            return partnerLogin(data, reply);
        case ReplyShape::UserLogin:
            return userLogin(data, reply);
        case ReplyShape::Station: {
            auto *record = m_memory.make<VLM_STATION_MAP_T>();
            Object from = object(data.object("station"));
            station(from, *record);
            return record;
        }
        case ReplyShape::StationList:
        case ReplyShape::GenreList:
            return stationList(data.array("stations"), shape == ReplyShape::StationList);
        case ReplyShape::Playlist:
            return playlist(data.array("entries"));
        case ReplyShape::AdMetadata:
            return adMetadata(data);
        case ReplyShape::ActivationCode:
            return activationCode(data);
        case ReplyShape::Search:
            return search(data);
        case ReplyShape::Explanation:
            return explanation(data.array("traits"));
        case ReplyShape::DeviceInfo:
            return deviceInfo(data);
        case ReplyShape::UserInfo:
            return userInfo(data);
        case ReplyShape::Checksum: {
            auto *record = m_memory.make<VLM_WS_CHECKSUM_T>();
            record->checksum = data.text("checksum", Need::Required);
            return record;
        }
        case ReplyShape::IsEnabled:
        case ReplyShape::IsProtected: {
            auto *record = m_memory.make<VLM_WS_FLAG_T>();
            record->flag = data.flag(shape == ReplyShape::IsEnabled ? "isEnabled" : "isProtected", Need::Required);
            return record;
        }
        }
        return nullptr;
    }

private:
    Object object(const Json &json) { return Object(json, m_memory, m_isOk); }

    // The records of an array of objects, each read by `read`.
    template <class Record, class Read>
    Record *records(const Json &json, int32_t &count, Read read)
    {
        count = static_cast<int32_t>(json.size());
        auto *all = m_memory.make<Record>(json.size());
        for (std::size_t i = 0; m_isOk && i < json.size(); ++i) {
            Object from = object(json[i]);
            read(from, all[i]);
        }
        return all;
    }

    void *partnerLogin(Object &data, Reply &reply)
    {
        auto *record = m_memory.make<VLM_WS_PARTNER_LOGIN_T>();
        record->expiresIn = data.number("expiresIn", Need::Required);
        session(data, "partnerToken", record->expiresIn, reply);
        return record;
    }

    void *userLogin(Object &data, Reply &reply)
    {
        auto *record = m_memory.make<VLM_WS_USER_LOGIN_T>();
        record->userName = data.text("userName", Need::Required);
        record->userId = data.token("userId");
        record->expiresIn = data.number("expiresIn", Need::Required);
        session(data, "userToken", record->expiresIn, reply);
        return record;
    }

    static void session(Object &data, const char *key, int32_t expiresIn, Reply &reply)
    {
        reply.token.reserve(64);
        reply.token = data.token(key);
        reply.expiresIn = expiresIn;
    }

    static void station(Object &from, VLM_STATION_MAP_T &record)
    {
        record.fgFlag0 = from.flag("isTapestry", Need::Required);
        record.allowRename = from.flag("allowRename");
        record.stationId = from.text("stationId");
        record.stationToken = from.token("stationToken");
        record.allowDelete = from.flag("allowDelete");
        record.stationStr16 = from.url("artUrl");
        record.fgFlag20 = from.flag("allowAddMusic");
        record.isShared = from.flag("isShared");
        record.stationStr24 = from.text("dateCreated");
        record.stationName = from.text("stationName", Need::Required);
    }

    void *stationList(const Json &json, bool isTapestryFirst)
    {
        auto *list = m_memory.make<VLM_WS_STATION_LIST_T>();
        list->stations = records<VLM_STATION_MAP_T>(json, list->count, station);
        if (isTapestryFirst && list->count > 0 && !list->stations[0].fgFlag0)
            m_isOk = false;
        return list;
    }

    void *playlist(const Json &json)
    {
        auto *list = m_memory.make<VLM_WS_PLAYLIST_T>();
        list->entries = records<VLM_PLAYLIST_ENTRY_T>(json, list->count, [this](Object &from, auto &entry) {
            const std::string_view type = from.text("type", Need::Required);
            entry.isTrack = type == "track";
            if (entry.isTrack) {
                entry.map.p_trackMap = track(from.object("track"));
            } else if (type == "ad") {
                entry.map.p_adMap = m_memory.make<VLM_AD_MAP_T>();
                entry.map.p_adMap->adToken = object(from.object("ad")).token("adToken");
            } else {
                m_isOk = false;
            }
        });
        return list;
    }

    VLM_TRACK_MAP_T *track(const Json &json)
    {
        Object from = object(json);
        auto *record = m_memory.make<VLM_TRACK_MAP_T>();
        record->albumArtUrl = from.url("albumArtUrl");
        record->albumName = from.text("albumName");
        record->allowFeedback = from.flag("allowFeedback");
        record->albumYear = from.number("albumYear");
        record->durationSeconds = from.number("durationSeconds");
        record->mood = from.text("mood");
        record->style = from.text("style");
        record->tempo = from.number("tempo");
        record->artistToken = from.text("artistToken");
        record->artistName = from.text("artistName", Need::Required);
        record->audioUrl = from.audioUrl("audioUrl");
        record->audioType = from.text("audioType");
        record->bitrate = from.number("bitrate");
        record->songRating = from.number("songRating");
        record->stationToken = from.text("stationToken");
        record->songName = from.text("songName", Need::Required);
        record->albumToken = from.text("albumToken");
        record->songToken = from.text("songToken");
        record->expiresIn = from.number("expiresIn");
        record->trackToken = from.token("trackToken");
        return record;
    }

    void *adMetadata(Object &data)
    {
        auto *record = m_memory.make<VLM_AD_METADATA_T>();
        record->audioUrl = data.audioUrl("audioUrl");
        record->audioType = data.text("audioType");
        record->adLine2 = data.text("adLine2");
        record->durationSeconds = data.number("durationSeconds");
        record->imageUrl = data.url("imageUrl");
        record->title = data.text("title", Need::Required);
        return record;
    }

    void *activationCode(Object &data)
    {
        auto *record = m_memory.make<VLM_WS_ACTIVATION_CODE_T>();
        record->activationCode = data.token("activationCode");
        record->activationUrl = data.text("activationUrl", Need::Required);
        record->expiresIn = data.number("expiresIn");
        return record;
    }

    void *search(Object &data)
    {
        auto *record = m_memory.make<VLM_WS_SEARCH_T>();
        record->tracks =
            records<VLM_WS_SEARCH_TRACK_T>(data.array("tracks"), record->trackCount, [](Object &from, auto &track) {
                track.musicToken = from.token("musicToken");
                track.songName = from.text("songName", Need::Required);
                track.artistName = from.text("artistName", Need::Required);
            });
        record->artists =
            records<VLM_WS_SEARCH_ARTIST_T>(data.array("artists"), record->artistCount, [](Object &from, auto &artist) {
                artist.musicToken = from.token("musicToken");
                artist.artistName = from.text("artistName", Need::Required);
            });
        return record;
    }

    void *explanation(const Json &json)
    {
        auto *record = m_memory.make<VLM_WS_EXPLANATION_T>();
        record->traits = records<VLM_WS_TRAIT_T>(json, record->count, [](Object &from, auto &trait) {
            trait.traitId = from.text("traitId");
            trait.traitText = from.ascii("traitText");
        });
        return record;
    }

    void *deviceInfo(Object &data)
    {
        auto *record = m_memory.make<VLM_WS_DEVICE_INFO_T>();
        record->deviceId = data.token("deviceId");
        record->userName = data.text("userName", Need::Required);
        record->associatedAt = data.text("associatedAt");
        return record;
    }

    void *userInfo(Object &data)
    {
        auto *record = m_memory.make<VLM_WS_USER_INFO_T>();
        record->userName = data.text("userName", Need::Required);
        record->userId = data.token("userId");
        record->stationCount = data.number("stationCount");
        record->isActive = data.flag("isActive", Need::Required);
        return record;
    }

    Arena &m_memory;
    bool m_isOk = true;
};

// Counts what a text would become, without building it. Ends at the first passed limit, and where the text is not JSON.
class Counter : public nlohmann::json_sax<Json> {
public:
    bool isTooLarge() const { return m_isTooLarge; }

    bool null() override { return value(); }
    bool boolean(bool) override { return value(); }
    bool number_integer(number_integer_t) override { return value(); }
    bool number_unsigned(number_unsigned_t) override { return value(); }
    bool number_float(number_float_t, const string_t &) override { return value(); }
    bool string(string_t &) override { return value(); }
    bool binary(binary_t &) override { return value(); }
    bool key(string_t &) override { return true; }
    bool start_object(std::size_t) override { return container(); }
    bool start_array(std::size_t) override { return container(); }
    bool end_object() override { return end(); }
    bool end_array() override { return end(); }
    bool parse_error(std::size_t, const std::string &, const nlohmann::detail::exception &) override { return false; }

private:
    bool value()
    {
        m_isTooLarge = ++m_values > maxReplyValues;
        return !m_isTooLarge;
    }
    bool container()
    {
        if (++m_depth > maxReplyDepth)
            m_isTooLarge = true;
        return !m_isTooLarge && value();
    }
    bool end()
    {
        --m_depth;
        return true;
    }

    int m_values = 0;
    int m_depth = 0;
    bool m_isTooLarge = false;
};

// A discarded value where the text is not JSON; `isTooLarge` where a limit was passed. Two linear passes: the parser's
// own callback, which could count, makes it search every parent again for each of its children.
Json parseLimited(std::string_view body, bool &isTooLarge)
{
    Counter counter;
    const bool isJson = Json::sax_parse(body.begin(), body.end(), &counter);
    isTooLarge = counter.isTooLarge();
    return isJson ? Json::parse(body.begin(), body.end(), nullptr, false) : Json(Json::value_t::discarded);
}

bool isServiceCode(int64_t code)
{
    return code >= 5000 && code <= 5999;
}

// What the service asks for with "too many requests".
std::chrono::seconds retryAfter(const Json &json)
{
    const auto data = json.find("data");
    if (data == json.end() || !data->is_object())
        return {};
    const auto seconds = data->find("retryAfter");
    if (seconds == data->end() || !seconds->is_number_unsigned())
        return {};
    return std::chrono::seconds(std::min<uint64_t>(seconds->get<uint64_t>(), std::numeric_limits<int32_t>::max()));
}

} // namespace

Reply parseReply(const Command &command, long httpStatus, std::string_view body, Arena &memory)
{
    Reply reply;
    bool isTooLarge = body.size() > maxReplyBytes;
    const Json json = isTooLarge ? Json() : parseLimited(body, isTooLarge);
    if (isTooLarge) {
        reply.code = VLM_WS_ERR_REPLY_TOO_LARGE;
        return reply;
    }
    if (!json.is_object())
        return reply;
    const auto code = json.find("code");
    if (code == json.end() || !code->is_number_integer())
        return reply;
    if (const auto value = code->get<int64_t>(); value != 0) {
        if (isServiceCode(value))
            reply.code = static_cast<VLM_WS_EXT_ERRCODE_T>(value);
        if (reply.code == VLM_WS_ERR_TOO_MANY_REQUESTS)
            reply.retryAfter = retryAfter(json);
        return reply;
    }
    if (httpStatus != 200)
        return reply;

    static const Json empty = Json::object();
    const auto data = json.find("data");
    Builder builder(memory);
    void *record = builder.build(command.reply, data == json.end() ? empty : *data, reply);
    if (!builder.isOk())
        return Reply();
    reply.code = VLM_WS_ERR_OK;
    reply.record = record;
    return reply;
}

} // namespace velmora::ws
