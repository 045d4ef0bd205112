# The player screen with real keys over the fakes.
if(TARGET velmora_player AND TARGET velmora_station AND TARGET fakescreens AND TARGET ViewComponent)
  velmora_library(playerrig STATIC ${CMAKE_CURRENT_LIST_DIR}/playerrig.cpp ${CMAKE_CURRENT_LIST_DIR}/playerrig.h)
  target_include_directories(playerrig PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(playerrig PUBLIC velmora_player velmora_station fakescreens velmora_fake_platform)
  foreach(subject feedback focus manage nowplaying playback stations)
    velmora_test(screen_player_${subject} SOURCES ${CMAKE_CURRENT_LIST_DIR}/player_${subject}_test.cpp
      LIBS playerrig $<TARGET_NAME_IF_EXISTS:velmora_resources> LABELS screens)
  endforeach()
endif()
