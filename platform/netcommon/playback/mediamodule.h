#pragma once

#include "picturedownload.h"

namespace netcommon {

class PlaybackBoard;
class PlaybackInbox;

// Everything that needs the sound system or Qt's network module, two dozen libraries. It is a module beside
// libNetCommon, loaded when the first of it is used: so the radio's first picture does not wait for them. The tests
// link it.
struct MediaModule {
    // The playback thread's whole work; returns after PLAYBACK_TYPE_END.
    void (*play)(PlaybackInbox &inbox, PlaybackBoard &board);
    std::unique_ptr<PictureDownload> (*makePictureDownload)(HttpDownload *owner);
};

// Any thread. Ends the program if the module is not there: the installation is incomplete.
const MediaModule &mediaModule();

} // namespace netcommon

// The module's only symbol.
extern "C" Q_DECL_EXPORT const netcommon::MediaModule *netcommonMediaModule();
