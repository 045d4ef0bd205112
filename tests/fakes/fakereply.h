#pragma once

#include "velmora_ws.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <vector>

// Memory of one request record. Owns its parameters and its reply.
class FakeArena {
public:
    FakeArena() = default;
    FakeArena(const FakeArena &) = delete;
    FakeArena &operator=(const FakeArena &) = delete;
    ~FakeArena();

    char *text(const QByteArray &text); // a null QByteArray gives a null pointer
    template <typename T>
    T *make(int count = 1) // zeroed; null for 0
    {
        return static_cast<T *>(allocate(sizeof(T) * static_cast<size_t>(count)));
    }

private:
    void *allocate(size_t size);
    std::vector<void *> m_blocks;
};

// A null QByteArray stands for a null pointer everywhere below; "" for an empty text.
struct FakeStation {
    static FakeStation tapestry();

    QByteArray token;
    QByteArray name;
    bool allowRename = true;
    bool allowDelete = true;
    bool isShared = false;
    bool isTapestry = false;
    bool allowAddMusic = true;
    QByteArray id = "id";
};

struct FakeTrack {
    QByteArray songName = "Song";
    QByteArray artistName = "Artist";
    QByteArray albumName = "Album";
    QByteArray audioUrl = "http://127.0.0.1:1/track.flac";
    QByteArray trackToken = "track-1";
    QByteArray stationToken = "station-1";
    QByteArray albumArtUrl = "http://127.0.0.1:1/cover.png";
    int songRating = 0;
    bool allowFeedback = true;
    int durationSeconds = 180;
};

struct FakeEntry {
    static FakeEntry track(const FakeTrack &track) { return {true, true, track, {}}; }
    static FakeEntry ad(const QByteArray &adToken) { return {false, true, {}, adToken}; }

    bool isTrack = true;
    bool hasMap = true; // else the entry's map is a null pointer
    FakeTrack music = {};
    QByteArray adToken = {};
};

struct FakeAd {
    QByteArray audioUrl = "http://127.0.0.1:1/ad.flac";
    QByteArray title = "An announcement";
    QByteArray line2 = "Announcer";
    QByteArray imageUrl = "http://127.0.0.1:1/ad.png";
    int durationSeconds = 15;
};

struct FakeSearchTrack {
    QByteArray musicToken;
    QByteArray songName;
    QByteArray artistName;
};
struct FakeSearchArtist {
    QByteArray musicToken;
    QByteArray artistName;
};

// Describes a reply. Every completion builds its own copy, which is freed with its handle.
class FakeReply {
public:
    using Build = std::function<void *(FakeArena &)>;

    FakeReply() = default; // no data: the record's reply is null
    // A zeroed record, filled by fill(Record &, FakeArena &).
    template <typename Record, typename Fill>
    static FakeReply of(Fill fill)
    {
        FakeReply reply;
        reply.m_build = [fill](FakeArena &arena) {
            Record *record = arena.make<Record>();
            fill(*record, arena);
            return static_cast<void *>(record);
        };
        return reply;
    }

    static FakeReply stationList(const QList<FakeStation> &stations); // element 0 is the Tapestry station
    static FakeReply stationListOf(const QList<QByteArray> &tokens);  // Tapestry "tapestry" first, names are the tokens
    static FakeReply station(const FakeStation &station);
    static FakeReply playlist(const QList<FakeEntry> &entries);
    static FakeReply adMetadata(const FakeAd &ad = {});
    static FakeReply partnerLogin();
    static FakeReply userLogin(const QByteArray &userName);
    static FakeReply activationCode(const QByteArray &code, const QByteArray &url);
    static FakeReply search(const QList<FakeSearchTrack> &tracks, const QList<FakeSearchArtist> &artists);
    static FakeReply explanation(const QList<QByteArray> &traits);

    void *build(FakeArena &arena) const { return m_build ? m_build(arena) : nullptr; }

private:
    Build m_build;
};
