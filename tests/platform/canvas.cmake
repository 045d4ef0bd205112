if(TARGET ViewComponent AND TARGET DeviceCore)
  # The rules are hidden in the library: the test compiles its own.
  velmora_test(test_canvas
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/canvas_test.cpp ${PROJECT_SOURCE_DIR}/platform/viewcomponent/canvasgeometry.cpp
    LIBS ViewComponent DeviceCore LABELS platform)
endif()
if(TARGET ViewComponent AND TARGET MenuSystem)
  velmora_test(test_canvas_x11
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/canvas_x11_test.cpp ${CMAKE_CURRENT_LIST_DIR}/menu_fixture.cpp
    LIBS MenuSystem LABELS platform)
  target_compile_definitions(test_canvas_x11 PRIVATE VELMORA_MENU="$<TARGET_FILE:velmora-menu>"
                                                     MENU_SAMPLE="$<TARGET_FILE_DIR:test_canvas_x11>/menu-sample")
  add_dependencies(test_canvas_x11 velmora-menu menu-sample)
endif()
