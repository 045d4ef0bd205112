if(TARGET velmora_station AND TARGET fakescreens)
  velmora_test(test_createstation SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/createstation_test.cpp
    LIBS velmora_station fakescreens velmora_fake_platform velmora_resources LABELS screens)
  velmora_test(test_renamestation SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/renamestation_test.cpp
    LIBS velmora_station fakescreens velmora_fake_platform velmora_resources LABELS screens)
  if(TARGET QtVirtualKb)
    # With the real keyboard: keys go to the field that holds the focus, as on a television.
    velmora_test(test_textentry SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/textentry_test.cpp
      LIBS velmora_station velmora_account fakescreens screentest fake_ws fake_netcommon device_twin ViewComponent
           QtVirtualKb velmora_resources LABELS screens)
  endif()
endif()
