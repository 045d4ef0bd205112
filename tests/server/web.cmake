if(TARGET velmora_server_web AND TARGET server_test_support)
  add_executable(server_web_test ${CMAKE_CURRENT_SOURCE_DIR}/web_test.cpp)
  velmora_compile(server_web_test)
  set_target_properties(server_web_test PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
  target_link_libraries(server_web_test PRIVATE velmora_server_web server_test_support GTest::gtest_main)
  add_test(NAME server_web_test COMMAND server_web_test)
  set_tests_properties(server_web_test PROPERTIES TIMEOUT 120 LABELS server
    ENVIRONMENT "LC_ALL=C.UTF-8;ASAN_OPTIONS=detect_leaks=1;UBSAN_OPTIONS=print_stacktrace=1")
endif()
