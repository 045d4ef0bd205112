# How everything here is compiled, and the functions that every folder uses.

# A misspelt target fails at configure time instead of becoming a library that the linker looks for.
set(CMAKE_LINK_LIBRARIES_ONLY_TARGETS ON)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_AUTORCC ON)

find_program(CCACHE ccache)
if(CCACHE)
  # Without these two settings ccache skips every file that uses a precompiled header.
  set(launcher ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
  add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>
                      "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endif()

find_package(Threads REQUIRED)
add_compile_options(-pthread) # some libraries need it; all users of a precompiled header need the same options
find_package(PkgConfig REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network)
if(VELMORA_TESTS)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
endif()

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_definitions(_FILE_OFFSET_BITS=64)
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-psabi>) # notes about compilers before GCC 7
endif()

add_compile_definitions(QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
                        QT_DISABLE_DEPRECATED_BEFORE=0x060400)

set(VELMORA_WARNINGS -Wall -Wextra -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2
                     -Wimplicit-fallthrough $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond$<SEMICOLON>-Wlogical-op>)
set(VELMORA_C_WARNINGS -Wall -Wextra -Werror -Wshadow -Wformat=2)

if(VELMORA_SANITIZE)
  add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VELMORA_SANITIZE})
  if(VELMORA_SANITIZE MATCHES undefined)
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
  # Libraries leave the sanitizer's symbols undefined; the instrumented program provides them.
else()
  add_link_options(-Wl,--no-undefined)
endif()

find_program(LLD ld.lld)
if(LLD AND NOT CMAKE_CROSSCOMPILING)
  add_link_options(-fuse-ld=lld)
endif()

function(velmora_compile target)
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${VELMORA_WARNINGS}>
                                           $<$<COMPILE_LANGUAGE:C>:${VELMORA_C_WARNINGS}>)
  # False positives of GCC 12: overlapping copies in std::string operator+ (bug 105651), and uninitialised values in
  # instrumented code.
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>)
  # A macro of GStreamer's headers.
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-deprecated-enum-enum-conversion>)
  if(VELMORA_SANITIZE)
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-maybe-uninitialized>)
  endif()
endfunction()

# Qt's headers take four fifths of the compile time of a file. They are precompiled in three families, each once for
# libraries (-fPIC) and once for programs (-fPIE). -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON builds without them.
#   plain    the standard library, for targets without moc
#   core     Qt Core, the default: code that must not know a widget does not see one
#   widgets  Qt Widgets, in folders that set(VELMORA_HEADERS widgets)
function(velmora_precompile family)
  cmake_parse_arguments(P "" "" "HEADERS;LIBS" ${ARGN})
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/precompiled/${family}.cpp CONTENT "int main() {}\n")
  add_library(precompiled_${family}_library OBJECT EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/precompiled/${family}.cpp)
  add_executable(precompiled_${family}_program EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/precompiled/${family}.cpp)
  foreach(target precompiled_${family}_library precompiled_${family}_program)
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
    velmora_compile(${target})
    target_link_libraries(${target} PRIVATE ${P_LIBS})
    target_precompile_headers(${target} PRIVATE ${P_HEADERS})
  endforeach()
endfunction()
velmora_precompile(plain HEADERS <algorithm> <chrono> <filesystem> <fstream> <functional> <map> <memory> <mutex>
  <optional> <set> <sstream> <string> <string_view> <thread> <unordered_map> <vector>)
velmora_precompile(core HEADERS <QtCore> LIBS Qt6::Core)
velmora_precompile(widgets HEADERS <QtCore> <QtGui> <QtWidgets> LIBS Qt6::Core Qt6::Gui Qt6::Widgets)

# Called at the end of a target's folder, when its properties are set.
function(velmora_reuse_precompiled target)
  get_target_property(type ${target} TYPE)
  get_target_property(has_moc ${target} AUTOMOC)
  set(kind library)
  if(type STREQUAL EXECUTABLE)
    set(kind program)
  endif()
  set(family plain)
  if(has_moc)
    set(family core)
    if(VELMORA_HEADERS)
      set(family ${VELMORA_HEADERS})
    endif()
  endif()
  # False positive of GCC 12 with optimisation: array-bounds in std::string from a precompiled header. With the thread
  # sanitizer, plain programs also get Qt's options from velmora_handovers, which the header was compiled without.
  if(family STREQUAL plain AND (CMAKE_BUILD_TYPE STREQUAL Release OR VELMORA_SANITIZE STREQUAL thread))
    return()
  endif()
  if(VELMORA_FUZZ) # clang takes a header of the same visibility only, and no fuzzer needs the hidden one
    set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET default VISIBILITY_INLINES_HIDDEN OFF)
  endif()
  get_target_property(sources ${target} SOURCES)
  if(has_moc AND NOT "${sources}" MATCHES "\\.h(;|$)") # moc's collection is empty then
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/mocs_compilation.cpp
      PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  endif()
  get_target_property(is_excepted ${target} DISABLE_PRECOMPILE_HEADERS)
  if(NOT is_excepted)
    target_precompile_headers(${target} REUSE_FROM precompiled_${family}_${kind})
  endif()
endfunction()

# velmora_library(name STATIC|SHARED|OBJECT sources...)
function(velmora_library name kind)
  add_library(${name} ${kind} ${ARGN})
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${VELMORA_UNITY} UNITY_BUILD_BATCH_SIZE 8)
  if(VELMORA_UNITY) # takes the files for headers
    target_compile_options(${name} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
  endif()
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  velmora_compile(${name})
  cmake_language(EVAL CODE "cmake_language(DEFER CALL velmora_reuse_precompiled ${name})")
endfunction()

# Time limits of tests are multiplied by this.
set(VELMORA_SLOWNESS 1)
if(CMAKE_CROSSCOMPILING) # emulated
  set(VELMORA_SLOWNESS 3)
endif()

# Declares the happens-before edges of Qt and GLib to the thread sanitizer; not instrumented itself.
if(VELMORA_SANITIZE STREQUAL thread)
  set(VELMORA_SLOWNESS 4)
  pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)
  velmora_library(velmora_handovers OBJECT tests/handovers.cpp)
  target_compile_options(velmora_handovers PRIVATE -fno-sanitize=thread)
  set_target_properties(velmora_handovers PROPERTIES DISABLE_PRECOMPILE_HEADERS ON) # they are instrumented
  target_link_libraries(velmora_handovers PUBLIC Qt6::Core PkgConfig::GLIB)
endif()

function(velmora_program name)
  add_executable(${name} ${ARGN})
  velmora_compile(${name})
  cmake_language(EVAL CODE "cmake_language(DEFER CALL velmora_reuse_precompiled ${name})")
  if(TARGET velmora_handovers)
    target_link_libraries(${name} PRIVATE velmora_handovers)
  endif()
endfunction()

# A platform library: exports marked symbols only, has soname 1 and the file name `output`.
function(velmora_platform_library target output)
  velmora_library(${target} SHARED ${ARGN})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output} VERSION 1.0.0 SOVERSION 1
    C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/platform/include
                                       PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
endfunction()

# Sanitizer options for every test. The suppression files give a reason for each entry.
set(VELMORA_TEST_ENVIRONMENT
  LC_ALL=C.UTF-8
  ASAN_OPTIONS=detect_leaks=1:abort_on_error=0
  LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0
  UBSAN_OPTIONS=print_stacktrace=1
  TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp:ignore_noninstrumented_modules=1:second_deadlock_stack=1:halt_on_error=1)

# Tests for another processor run under emulation, which passes `open` into the unpacked system, but not `stat`: what is
# looked for there by name needs its real path. Fonts are those of this machine.
if(CMAKE_CROSSCOMPILING)
  set(system_libraries ${CMAKE_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE})
  string(REPLACE ";" "|" emulator "${CMAKE_CROSSCOMPILING_EMULATOR}")
  list(APPEND VELMORA_TEST_ENVIRONMENT VELMORA_EMULATOR=${emulator}
    QEMU_SET_ENV=LD_PRELOAD=${CMAKE_BINARY_DIR}/tests/libvelmora_emulation.so
    GST_PLUGIN_SYSTEM_PATH_1_0=${system_libraries}/gstreamer-1.0 GST_REGISTRY_FORK=no
    GST_REGISTRY=${CMAKE_BINARY_DIR}/gstreamer-registry.bin)
endif()

# velmora_add_test(name command... [LABELS ...] [TIMEOUT seconds] [ENVIRONMENT ...]): registers a command as a CTest.
# TIMEOUT is 120 seconds if it is not given.
function(velmora_add_test name)
  cmake_parse_arguments(T "" "TIMEOUT" "COMMAND;LABELS;ENVIRONMENT" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  math(EXPR T_TIMEOUT "${VELMORA_SLOWNESS} * ${T_TIMEOUT}")
  add_test(NAME ${name} COMMAND ${T_COMMAND})
  set_property(GLOBAL APPEND PROPERTY VELMORA_ALL_TESTS ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${T_TIMEOUT} LABELS "${T_LABELS}"
    ENVIRONMENT "${VELMORA_TEST_ENVIRONMENT};${T_ENVIRONMENT};QTEST_FUNCTION_TIMEOUT=${T_TIMEOUT}000")
endfunction()

# What every file that uses QtTest is compiled with.
function(velmora_use_qttest target)
  target_link_libraries(${target} PRIVATE Qt6::Test)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  if(CMAKE_CROSSCOMPILING)
    target_include_directories(${target} BEFORE PRIVATE ${PROJECT_SOURCE_DIR}/tests/emulated)
  endif()
  target_compile_definitions(${target} PRIVATE VELMORA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endfunction()

# velmora_cases(name SOURCES ... LIBS ...): the cases of a QtTest, compiled once for several programs.
function(velmora_cases name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS" ${ARGN})
  velmora_library(${name} OBJECT ${T_SOURCES})
  target_link_libraries(${name} PUBLIC ${T_LIBS})
  velmora_use_qttest(${name})
endfunction()

# velmora_test(name SOURCES ... LIBS ... [LABELS ...] [TIMEOUT seconds] [ENVIRONMENT ...]): one QtTest program of that
# name, which is one CTest.
function(velmora_test name)
  cmake_parse_arguments(T "" "TIMEOUT" "SOURCES;LIBS;LABELS;ENVIRONMENT" ${ARGN})
  velmora_program(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS})
  velmora_use_qttest(${name})
  get_property(contract_tests GLOBAL PROPERTY VELMORA_CONTRACT_TESTS)
  if(name IN_LIST contract_tests)
    list(APPEND T_LABELS contract)
  endif()
  velmora_add_test(${name} COMMAND ${name} TIMEOUT ${T_TIMEOUT} LABELS ${T_LABELS}
    ENVIRONMENT QT_QPA_PLATFORM=offscreen "QT_LOGGING_RULES=qt.*=false" ${T_ENVIRONMENT})
  foreach(label IN LISTS T_LABELS)
    set_property(GLOBAL APPEND PROPERTY VELMORA_TESTS_${label} ${name})
  endforeach()
endfunction()

# velmora_gtest(name SOURCES ... LIBS ... [LABELS ...] [TIMEOUT seconds]): the same on GoogleTest, for code without Qt.
function(velmora_gtest name)
  cmake_parse_arguments(T "" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  velmora_program(${name} ${T_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  target_compile_definitions(${name} PRIVATE VELMORA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  velmora_add_test(${name} COMMAND ${name} TIMEOUT ${T_TIMEOUT} LABELS ${T_LABELS})
endfunction()
