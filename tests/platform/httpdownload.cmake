if(TARGET netcommon_playback)
  velmora_test(httpdownload_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/httpdownload_test.cpp
    LIBS netcommon_playback velmora_mediaserver LABELS platform TIMEOUT 60)
endif()
