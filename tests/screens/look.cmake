# What a machine can see of every screen; look_bare is the same radio without a single picture.
set(lookcheck ${CMAKE_CURRENT_LIST_DIR}/lookcheck.cpp ${CMAKE_CURRENT_LIST_DIR}/lookcheck.h
  ${PROJECT_SOURCE_DIR}/platform/keyboard/keylayout.cpp)
if(TARGET velmora_account AND TARGET velmora_station AND TARGET fakescreens AND TARGET QtVirtualKb AND TARGET velmora_resources)
  set(parts velmora_station velmora_account fakescreens screentest fake_ws fake_netcommon device_twin ViewComponent QtVirtualKb)
  velmora_test(look_screens SOURCES ${CMAKE_CURRENT_LIST_DIR}/look_screens_test.cpp ${lookcheck}
    LIBS ${parts} velmora_resources LABELS screens)
  # Also on a screen whose pictures come from the files for larger ones.
  get_test_property(look_screens ENVIRONMENT environment)
  add_test(NAME look_scaled COMMAND look_screens theBarOfARowHasNoSeamUnderItsMarquee)
  set_tests_properties(look_scaled PROPERTIES TIMEOUT 60 LABELS screens
    ENVIRONMENT "${environment};QT_SCALE_FACTOR=1.5;QT_SCALE_FACTOR_ROUNDING_POLICY=PassThrough")
  velmora_test(look_bare SOURCES ${CMAKE_CURRENT_LIST_DIR}/look_screens_test.cpp ${lookcheck} LIBS ${parts} LABELS screens)
endif()
if(TARGET velmora_player AND TARGET velmora_station AND TARGET fakescreens AND TARGET ViewComponent AND TARGET velmora_resources)
  velmora_test(look_player SOURCES ${CMAKE_CURRENT_LIST_DIR}/look_player_test.cpp ${lookcheck}
    LIBS playerrig velmora_resources LABELS screens)
endif()
