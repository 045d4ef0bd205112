# What the Debian packages install: tools/package builds them. Programs lie side by side in libexec, where they look for
# one another; the platform libraries lie in a folder of their own, where a device maker replaces one by one.
include(GNUInstallDirs)
set(programs ${CMAKE_INSTALL_LIBEXECDIR}/velmora)
set(libraries lib/velmora)

# velmora_install(component programs...)
function(velmora_install component)
  foreach(name IN LISTS ARGN)
    if(TARGET ${name})
      set_target_properties(${name} PROPERTIES INSTALL_RPATH ${CMAKE_INSTALL_PREFIX}/${libraries})
      install(TARGETS ${name} DESTINATION ${programs} COMPONENT ${component})
      set_property(GLOBAL APPEND PROPERTY VELMORA_PACKAGED ${name})
    endif()
  endforeach()
endfunction()
velmora_install(radio velmora velmora-menu velmora-screen velmora-screen-x11 velmora-setup velmora-home
                velmora-remote)
install(PROGRAMS packaging/kiosk DESTINATION ${programs} RENAME velmora-kiosk COMPONENT radio)
install(PROGRAMS packaging/link DESTINATION ${programs} RENAME velmora-link COMPONENT radio)
install(FILES packaging/console.sh DESTINATION share/velmora COMPONENT radio)
install(FILES packaging/velmora.rules DESTINATION share/polkit-1/rules.d COMPONENT radio)
install(FILES packaging/ws.conf DESTINATION /etc/velmora COMPONENT radio)
velmora_install(server velmora-server velmora-demomusic velmora-media velmora-media-formats)
install(FILES packaging/ws-here.conf DESTINATION share/velmora RENAME ws.conf COMPONENT server)

set(platform velmora_ws NetCommon NetCommonMedia ViewComponent QtVirtualKb)
set_target_properties(${platform} PROPERTIES INSTALL_RPATH ${CMAKE_INSTALL_PREFIX}/${libraries})
install(TARGETS ${platform}
  LIBRARY DESTINATION ${libraries} COMPONENT radio NAMELINK_COMPONENT dev)

install(DIRECTORY platform/include/ DESTINATION include/velmora COMPONENT dev)

# The contract tests: the program beside the tests, their table and samples.
get_property(contract_tests GLOBAL PROPERTY VELMORA_CONTRACT_TESTS)
if(contract_tests)
  set_target_properties(${contract_tests} PROPERTIES INSTALL_RPATH ${CMAKE_INSTALL_PREFIX}/${libraries})
  install(TARGETS ${contract_tests} DESTINATION ${programs}/contract COMPONENT dev)
  install(PROGRAMS tests/contract/velmora-contract DESTINATION ${programs}/contract COMPONENT dev)
  install(FILES docs/porting.md DESTINATION share/velmora/contract COMPONENT dev)
  install(DIRECTORY tests/data/api tests/data/audio DESTINATION share/velmora/contract COMPONENT dev)
endif()

# What tools/package builds.
get_property(packaged GLOBAL PROPERTY VELMORA_PACKAGED)
add_custom_target(packages DEPENDS ${packaged} ${platform} ${contract_tests})

file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/velmora-platform.pc @ONLY CONTENT
"prefix=@CMAKE_INSTALL_PREFIX@
libdir=\${prefix}/@libraries@
includedir=\${prefix}/include/velmora

Name: velmora-platform
Description: the libraries through which a device carries the radio
Version: @PROJECT_VERSION@
Requires: Qt6Core Qt6Gui Qt6Widgets
Cflags: -I\${includedir}
Libs: -L\${libdir} -lvelmora_ws -lNetCommon -lViewComponent -lQtVirtualKb
")
install(FILES ${CMAKE_BINARY_DIR}/velmora-platform.pc DESTINATION share/pkgconfig COMPONENT dev)
