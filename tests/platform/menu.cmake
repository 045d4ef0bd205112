if(TARGET NetCommon AND TARGET ViewComponent AND TARGET MenuSystem)
  velmora_program(menu-sample ${CMAKE_CURRENT_LIST_DIR}/menu_sample.cpp)
  target_link_libraries(menu-sample PRIVATE NetCommon ViewComponent)

  velmora_test(test_menu
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/menu_test.cpp ${CMAKE_CURRENT_LIST_DIR}/menu_fixture.cpp
    LIBS MenuSystem LABELS platform)
  target_compile_definitions(test_menu PRIVATE VELMORA_MENU="$<TARGET_FILE:velmora-menu>"
                                               MENU_SAMPLE="$<TARGET_FILE:menu-sample>")
  add_dependencies(test_menu velmora-menu menu-sample)
endif()
