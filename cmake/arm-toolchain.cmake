# Cross build for 32-bit (VELMORA_ARM=armhf) or 64-bit ARM (arm64), against a Debian system that packaging/arm-system.sh
# has unpacked into the user's cache folder, or that -DVELMORA_ARM_SYSTEM=FOLDER names.
if(VELMORA_ARM STREQUAL armhf)
  set(triplet arm-linux-gnueabihf)
  set(CMAKE_SYSTEM_PROCESSOR armv7l)
  set(emulator /usr/bin/qemu-arm -cpu cortex-a7) # the oldest core that armhf supports
elseif(VELMORA_ARM STREQUAL arm64)
  set(triplet aarch64-linux-gnu)
  set(CMAKE_SYSTEM_PROCESSOR aarch64)
  set(emulator /usr/bin/qemu-aarch64 -cpu cortex-a53)
else()
  message(FATAL_ERROR "VELMORA_ARM is armhf or arm64, not '${VELMORA_ARM}'")
endif()
if(NOT VELMORA_ARM_SYSTEM)
  set(cache "$ENV{XDG_CACHE_HOME}")
  if(NOT cache)
    set(cache "$ENV{HOME}/.cache")
  endif()
  set(VELMORA_ARM_SYSTEM "${cache}/velmora/${VELMORA_ARM}/system")
endif()
if(NOT IS_DIRECTORY "${VELMORA_ARM_SYSTEM}/usr/lib/${triplet}")
  message(FATAL_ERROR "there is no Debian system for ${VELMORA_ARM} in '${VELMORA_ARM_SYSTEM}'; packaging/arm-system.sh makes one")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELMORA_ARM VELMORA_ARM_SYSTEM)

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
set(CMAKE_C_COMPILER /usr/bin/${triplet}-gcc)
set(CMAKE_CXX_COMPILER /usr/bin/${triplet}-g++)
set(CMAKE_SYSROOT "${VELMORA_ARM_SYSTEM}")

set(CMAKE_FIND_ROOT_PATH "${VELMORA_ARM_SYSTEM}")
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

set(ENV{PKG_CONFIG_SYSROOT_DIR} "${VELMORA_ARM_SYSTEM}")
set(ENV{PKG_CONFIG_LIBDIR}
    "${VELMORA_ARM_SYSTEM}/usr/lib/${triplet}/pkgconfig:${VELMORA_ARM_SYSTEM}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")

# Tests run under user-mode emulation.
set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L ${VELMORA_ARM_SYSTEM})
