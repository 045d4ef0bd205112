if(TARGET ViewComponent)
  velmora_test(test_bufferdlg
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/bufferdlg_test.cpp ${PROJECT_SOURCE_DIR}/platform/viewcomponent/loaderpicture.cpp
    LIBS ViewComponent LABELS platform)
  target_include_directories(test_bufferdlg PRIVATE ${PROJECT_SOURCE_DIR}/platform/viewcomponent)
endif()
