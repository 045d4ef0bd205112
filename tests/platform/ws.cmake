# libvelmora_ws: the library as callers see it, and its rules alone.
if(TARGET velmora_ws)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Network Test)
  add_test(NAME symbols_velmora_ws COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/check_symbols.sh $<TARGET_FILE:velmora_ws>
    ${CMAKE_CURRENT_SOURCE_DIR}/symbols_velmora_ws.txt)
  set_tests_properties(symbols_velmora_ws PROPERTIES TIMEOUT 30 LABELS platform)

  velmora_library(ws_fixture STATIC ${CMAKE_CURRENT_SOURCE_DIR}/ws_fixture.cpp ${CMAKE_CURRENT_SOURCE_DIR}/ws_fixture.h
    ${CMAKE_CURRENT_SOURCE_DIR}/ws_testserver.cpp ${CMAKE_CURRENT_SOURCE_DIR}/ws_testserver.h)
  target_link_libraries(ws_fixture PUBLIC velmora_ws Qt6::Network Qt6::Test)
  target_include_directories(ws_fixture PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})

  velmora_test(ws_rules_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/ws_rules_test.cpp LIBS velmora_ws_parts Qt6::Core
    LABELS platform TIMEOUT 120)
  foreach(name roundtrip session transfer lifecycle)
    velmora_test(ws_${name}_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/ws_${name}_test.cpp LIBS ws_fixture
      LABELS platform TIMEOUT 120)
  endforeach()
endif()
