target_sources(velmora_rules PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/marquee.cpp ${CMAKE_CURRENT_SOURCE_DIR}/marquee.h)
target_sources(velmora_widgets PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/imagelistwidget.cpp ${CMAKE_CURRENT_SOURCE_DIR}/imagelistwidget.h
  ${CMAKE_CURRENT_SOURCE_DIR}/imagelistwidgetitem.cpp ${CMAKE_CURRENT_SOURCE_DIR}/imagelistwidgetitem.h
  ${CMAKE_CURRENT_SOURCE_DIR}/picturefile.cpp ${CMAKE_CURRENT_SOURCE_DIR}/picturefile.h)
