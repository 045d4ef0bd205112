target_sources(velmora_widgets PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/msgboxdlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/msgboxdlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/msgboxdlg.ui
  ${CMAKE_CURRENT_SOURCE_DIR}/roundcorners.cpp ${CMAKE_CURRENT_SOURCE_DIR}/roundcorners.h)
