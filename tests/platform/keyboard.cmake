if(TARGET QtVirtualKb)
  velmora_test(test_keyboard SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/keyboard_test.cpp LIBS QtVirtualKb LABELS platform)
  add_test(NAME symbols_QtVirtualKb COMMAND ${CMAKE_CURRENT_LIST_DIR}/check_symbols.sh $<TARGET_FILE:QtVirtualKb>
                                           ${CMAKE_CURRENT_LIST_DIR}/symbols_QtVirtualKb.txt)
  set_tests_properties(symbols_QtVirtualKb PROPERTIES TIMEOUT 60 LABELS platform)
endif()
