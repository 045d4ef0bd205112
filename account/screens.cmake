# Account selection, activation, sign-in and the password reminder.
target_sources(velmora_account PRIVATE
  ${CMAKE_CURRENT_SOURCE_DIR}/afterlogin.cpp ${CMAKE_CURRENT_SOURCE_DIR}/afterlogin.h
  ${CMAKE_CURRENT_SOURCE_DIR}/deviceactivation.cpp ${CMAKE_CURRENT_SOURCE_DIR}/deviceactivation.h
  ${CMAKE_CURRENT_SOURCE_DIR}/selectuserdlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/selectuserdlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/internetradiodlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/internetradiodlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/signindlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/signindlg.h
  ${CMAKE_CURRENT_SOURCE_DIR}/emailpwddlg.cpp ${CMAKE_CURRENT_SOURCE_DIR}/emailpwddlg.h)
target_sources(velmora_rules PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/loginfile.cpp ${CMAKE_CURRENT_SOURCE_DIR}/loginfile.h)
