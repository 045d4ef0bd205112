# Create and rename station.
target_sources(velmora_station PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/stationhandover.cpp ${CMAKE_CURRENT_SOURCE_DIR}/stationhandover.h
  ${CMAKE_CURRENT_SOURCE_DIR}/stationtextdlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/stationtextdlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/createstationdlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/createstationdlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/renamestationdlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/renamestationdlg.h)
