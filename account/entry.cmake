target_sources(velmora_account PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/loadingdlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/loadingdlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/loadingdlg.ui
  ${CMAKE_CURRENT_SOURCE_DIR}/welcomedlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/welcomedlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/welcomedlg.ui)
