target_sources(velmora_widgets PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/textentry.cpp ${CMAKE_CURRENT_SOURCE_DIR}/textentry.h)
