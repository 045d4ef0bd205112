# Cross build for 32-bit ARM (Debian's armhf) against an unpacked system: -DARMHF_SYSROOT=FOLDER, or the environment's
# ARMHF_SYSROOT. packaging/armhf-sysroot.sh makes that folder.
if(NOT ARMHF_SYSROOT)
  set(ARMHF_SYSROOT "$ENV{ARMHF_SYSROOT}")
endif()
if(NOT IS_DIRECTORY "${ARMHF_SYSROOT}/usr/lib/arm-linux-gnueabihf")
  message(FATAL_ERROR "ARMHF_SYSROOT does not name an armhf system: '${ARMHF_SYSROOT}'; packaging/armhf-sysroot.sh makes one")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ARMHF_SYSROOT)

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_C_COMPILER /usr/bin/arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER /usr/bin/arm-linux-gnueabihf-g++)
set(CMAKE_SYSROOT "${ARMHF_SYSROOT}")

set(CMAKE_FIND_ROOT_PATH "${ARMHF_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# moc, uic and rcc come from the build machine. Both variables are needed: with QT_HOST_PATH alone, Qt's packages find
# the target's moc, which cannot run here.
set(QT_HOST_PATH "/usr" CACHE PATH "")
file(GLOB VELMORA_HOST_QT "/usr/lib/*-linux-gnu/cmake/Qt6CoreTools")
get_filename_component(VELMORA_HOST_QT "${VELMORA_HOST_QT}" DIRECTORY)
set(QT_HOST_PATH_CMAKE_DIR "${VELMORA_HOST_QT}" CACHE PATH "")

set(ENV{PKG_CONFIG_SYSROOT_DIR} "${ARMHF_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR}
    "${ARMHF_SYSROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:${ARMHF_SYSROOT}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")

# Tests run under user-mode emulation of the oldest core that armhf supports.
set(CMAKE_CROSSCOMPILING_EMULATOR "/usr/bin/qemu-arm;-cpu;cortex-a7;-L;${ARMHF_SYSROOT}")
