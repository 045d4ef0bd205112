if(NOT TARGET velmora_server_demo)
  return()
endif()
find_package(GTest REQUIRED)

# The sounds of the demo catalogue, its compositions, and its files.
foreach(subject music catalogue)
  add_executable(server_demo_${subject}_test demo_${subject}_test.cpp)
  velmora_compile(server_demo_${subject}_test)
  set_target_properties(server_demo_${subject}_test PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
  target_include_directories(server_demo_${subject}_test PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(server_demo_${subject}_test PRIVATE velmora_server_demo PkgConfig::FLAC PkgConfig::CAIRO
                        GTest::gtest_main)
  add_test(NAME server_demo_${subject}_test COMMAND server_demo_${subject}_test)
  set_tests_properties(server_demo_${subject}_test PROPERTIES TIMEOUT 600 LABELS server
    ENVIRONMENT "LC_ALL=C.UTF-8;ASAN_OPTIONS=detect_leaks=1;UBSAN_OPTIONS=print_stacktrace=1")
endforeach()
