# What radio, menu system and tests share: messages, socket, tables and deciders. Qt Core only.
velmora_library(DeviceCore STATIC
  menumessages.h menusocket.cpp menusocket.h networkdecider.cpp networkdecider.h remotekeytable.cpp remotekeytable.h
  routetable.cpp routetable.h serveraddress.cpp serveraddress.h
  ${PROJECT_SOURCE_DIR}/platform/viewcomponent/windoworder.cpp ${PROJECT_SOURCE_DIR}/platform/viewcomponent/windoworder.h)
set_target_properties(DeviceCore PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
target_link_libraries(DeviceCore PUBLIC Qt6::Core)
target_include_directories(DeviceCore PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/platform/include
                                             ${PROJECT_SOURCE_DIR}/platform/viewcomponent)

target_sources(NetCommon PRIVATE
  ipc.cpp ipcthread.cpp menulink.cpp menulink.h menurequests.cpp menurequests.h networkinjection.h networknotify.cpp
  plainrepeat.c plainrepeat.h remotekeys.cpp remotekeys.h screenshot.cpp screenshot.h statusreport.cpp statusreport.h
  ${PROJECT_SOURCE_DIR}/platform/viewcomponent/windowstack.cpp ${PROJECT_SOURCE_DIR}/platform/viewcomponent/windowstack.h
  ${PROJECT_SOURCE_DIR}/platform/include/netcommon/ipc.h
  ${PROJECT_SOURCE_DIR}/platform/include/netcommon/ipcthread.h
  ${PROJECT_SOURCE_DIR}/platform/include/netcommon/networknotify.h)
pkg_check_modules(XKB REQUIRED IMPORTED_TARGET xcb xcb-xkb)
target_link_libraries(NetCommon PRIVATE DeviceCore PkgConfig::XKB)
