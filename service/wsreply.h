#pragma once

#include "velmora_ws.h"

#include <QList>
#include <QString>
#include <QStringList>

// Typed views of the library's replies: the only place that knows their layout. A view borrows from the handle, which
// must outlive it; a null handle or a reply without data gives an empty view. Any thread that owns the handle: the GUI
// thread, and the library's thread while its callback runs.
namespace wsreply {

int commandId(HANDLE_T handle); // -1 for 0
bool hasData(HANDLE_T handle);

// A list of stations; element 0 is the Tapestry station.
class StationList {
public:
    explicit StationList(HANDLE_T handle);
    int count() const;
    const VLM_STATION_MAP_T *at(int index) const; // null outside the range

private:
    const VLM_WS_STATION_LIST_T *m_list = nullptr;
};

const VLM_STATION_MAP_T *station(HANDLE_T handle); // createStation, renameStation; null without data
const VLM_WS_PLAYLIST_T *playlist(HANDLE_T handle);
const VLM_AD_METADATA_T *adMetadata(HANDLE_T handle);

QString loginUserName(HANDLE_T handle); // userLogin

struct ActivationCode {
    QString code;
    QString url;
};
ActivationCode activationCode(HANDLE_T handle);

struct SearchTrack {
    QString musicToken;
    QString songName;
    QString artistName;
};
struct SearchArtist {
    QString musicToken;
    QString artistName;
};
struct SearchResult {
    QList<SearchTrack> tracks;
    QList<SearchArtist> artists;
};
SearchResult search(HANDLE_T handle); // copies: survives the handle

QStringList traits(HANDLE_T handle); // explainTrack; ASCII

} // namespace wsreply
