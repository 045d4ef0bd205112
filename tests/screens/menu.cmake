if(TARGET velmora_station AND TARGET fakescreens AND TARGET ViewComponent)
  foreach(subject menu info)
    velmora_test(screen_${subject} SOURCES ${CMAKE_CURRENT_LIST_DIR}/${subject}_test.cpp
      LIBS velmora_station fakescreens velmora_fake_platform $<TARGET_NAME_IF_EXISTS:velmora_resources> LABELS screens)
  endforeach()
endif()
