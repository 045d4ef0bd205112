if(TARGET NetCommon)
  velmora_test(test_ipc SOURCES ${CMAKE_CURRENT_LIST_DIR}/ipc_test.cpp LIBS NetCommon DeviceCore LABELS platform)
endif()

# Both halves of libNetCommon, and libViewComponent.
foreach(library NetCommon ViewComponent)
  if(TARGET ${library} AND EXISTS ${CMAKE_CURRENT_LIST_DIR}/symbols_${library}.txt)
    add_test(NAME symbols_${library} COMMAND ${CMAKE_CURRENT_LIST_DIR}/check_symbols.sh $<TARGET_FILE:${library}>
             ${CMAKE_CURRENT_LIST_DIR}/symbols_${library}.txt)
    set_tests_properties(symbols_${library} PROPERTIES TIMEOUT 30 LABELS platform)
  endif()
endforeach()
