if(TARGET NetCommon)
  velmora_test(test_networknotify SOURCES ${CMAKE_CURRENT_LIST_DIR}/networknotify_test.cpp LIBS NetCommon DeviceCore
               LABELS platform)
endif()
