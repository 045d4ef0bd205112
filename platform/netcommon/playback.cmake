# Playback, PlaybackThread, HttpDownload. Objects of their own, because the tests need what the library does not export.
velmora_library(netcommon_playback OBJECT
  ${PROJECT_SOURCE_DIR}/platform/include/netcommon/httpdownload.h
  ${PROJECT_SOURCE_DIR}/platform/include/netcommon/playback.h
  ${PROJECT_SOURCE_DIR}/platform/include/netcommon/playbackthread.h
  fetcher.cpp fetcher.h
  fetcherfeed.cpp
  fetcherrules.cpp
  httpaddress.cpp
  httpdownload.cpp
  httpdownloadfolder.cpp
  playback.cpp
  playbackboard.cpp
  playbackbuffer.cpp
  playbackinbox.cpp
  playbackorder.cpp
  playbackpipeline.cpp
  playbackstatistics.cpp
  playbackthread.cpp
  playbackworker.cpp)
set_target_properties(netcommon_playback PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
target_link_libraries(netcommon_playback PUBLIC velmora_contracts Qt6::Core Qt6::Gui Qt6::Network PkgConfig::GST)
target_link_libraries(NetCommon PRIVATE netcommon_playback)

# Plays one address and says what it hears of it; for looking at the library alone.
velmora_program(velmora-play play_main.cpp)
target_link_libraries(velmora-play PRIVATE NetCommon)
