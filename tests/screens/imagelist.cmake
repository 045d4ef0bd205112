if(TARGET velmora_widgets AND TARGET ViewComponent AND TARGET velmora_resources AND TARGET fake_netcommon)
  velmora_test(screen_imagelist SOURCES ${CMAKE_CURRENT_LIST_DIR}/imagelist_test.cpp
    LIBS velmora_widgets velmora_fake_platform velmora_resources velmora_service LABELS screens)
endif()
