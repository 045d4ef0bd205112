if(TARGET netcommon_playback)
  set(rig ${CMAKE_CURRENT_SOURCE_DIR}/playbackrig.cpp ${CMAKE_CURRENT_SOURCE_DIR}/playbackrig.h)
  foreach(subject rules fetcher contract faults commands)
    set(sources ${CMAKE_CURRENT_SOURCE_DIR}/playback_${subject}_test.cpp)
    if(subject MATCHES "contract|faults|commands")
      list(APPEND sources ${rig})
    endif()
    velmora_test(playback_${subject}_test SOURCES ${sources} LIBS netcommon_playback velmora_mediaserver
      LABELS platform playback TIMEOUT 120
      ENVIRONMENT GST_REGISTRY=${CMAKE_BINARY_DIR}/gstreamer-registry.bin) # not the user's
  endforeach()
endif()
