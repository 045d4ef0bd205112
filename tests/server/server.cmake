if(NOT TARGET velmora_server_core)
  return()
endif()
find_package(GTest REQUIRED)

# Shared by the tests below: a service in a directory of its own, a clock that the test turns, music without sound.
velmora_library(server_test_support STATIC serverfixture.cpp)
target_include_directories(server_test_support PUBLIC ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(server_test_support PUBLIC velmora_server_core GTest::gtest PkgConfig::HTTPLIB)

# The service knows no Qt, so its tests run on GoogleTest; each file is one CTest.
foreach(subject accounts api examples isolation media playlist program search store)
  add_executable(server_${subject}_test ${subject}_test.cpp)
  velmora_compile(server_${subject}_test)
  set_target_properties(server_${subject}_test PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
  target_link_libraries(server_${subject}_test PRIVATE server_test_support GTest::gtest_main)
  target_compile_definitions(server_${subject}_test PRIVATE VELMORA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                                           VELMORA_SERVER_PROGRAM="$<TARGET_FILE:velmora-server>")
  add_test(NAME server_${subject}_test COMMAND server_${subject}_test)
  set_tests_properties(server_${subject}_test PROPERTIES TIMEOUT 120 LABELS server
    ENVIRONMENT "LC_ALL=C.UTF-8;ASAN_OPTIONS=detect_leaks=1;UBSAN_OPTIONS=print_stacktrace=1")
endforeach()
add_dependencies(server_program_test velmora-server)
