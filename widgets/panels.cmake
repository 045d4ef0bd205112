target_sources(velmora_widgets PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/roundprogressbar.cpp ${CMAKE_CURRENT_SOURCE_DIR}/roundprogressbar.h
  ${CMAKE_CURRENT_SOURCE_DIR}/sharppanels.cpp ${CMAKE_CURRENT_SOURCE_DIR}/sharppanels.h)
