target_sources(velmora_station PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/infodlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/infodlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/aboutdlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/aboutdlg.h ${CMAKE_CURRENT_SOURCE_DIR}/aboutdlg.ui
  ${CMAKE_CURRENT_SOURCE_DIR}/menudlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/menudlg.h ${CMAKE_CURRENT_SOURCE_DIR}/menudlg.ui
  ${CMAKE_CURRENT_SOURCE_DIR}/whydlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/whydlg.h ${CMAKE_CURRENT_SOURCE_DIR}/whydlg.ui)
