if(TARGET NetCommon)
  velmora_test(test_remotekeys SOURCES ${CMAKE_CURRENT_LIST_DIR}/remotekeys_test.cpp LIBS NetCommon DeviceCore
               LABELS platform)
endif()
