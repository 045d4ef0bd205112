# The application frame: root widget, message box, and the two screens that a start can show.
if(TARGET velmora_app AND TARGET fakescreens)
  velmora_test(screen_root SOURCES root.cpp rootscreens.h LIBS velmora_app fakescreens velmora_fake_platform LABELS screens)
  velmora_test(screen_msgbox SOURCES msgbox.cpp LIBS velmora_widgets velmora_fake_platform LABELS screens)
  if(TARGET velmora_account)
    foreach(screen loading welcome)
      velmora_test(screen_${screen} SOURCES ${screen}.cpp LIBS velmora_account fakescreens velmora_fake_platform
                   LABELS screens)
    endforeach()
  endif()
endif()
if(TARGET velmora_app AND TARGET fakescreens AND TARGET velmora_player AND TARGET velmora_station
   AND TARGET velmora_account AND TARGET velmora_resources)
  # The radio's main() under another name, on the fakes.
  velmora_test(screen_rootmain SOURCES rootmain.cpp ${PROJECT_SOURCE_DIR}/app/main.cpp
               ${PROJECT_SOURCE_DIR}/app/productfactory.cpp
    LIBS velmora_player velmora_station velmora_account velmora_fake_platform velmora_resources LABELS screens)
  set_source_files_properties(${PROJECT_SOURCE_DIR}/app/main.cpp PROPERTIES COMPILE_DEFINITIONS main=velmoraMain)
endif()
