if(TARGET QtVirtualKb)
  velmora_test(test_keyboard SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/keyboard_test.cpp LIBS QtVirtualKb LABELS platform)
endif()
