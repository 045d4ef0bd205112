# How everything here is compiled, and the two functions that every folder uses.

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
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network)
if(VELMORA_TESTS)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
endif()

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_definitions(_FILE_OFFSET_BITS=64)
endif()

add_compile_definitions(QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
                        QT_DISABLE_DEPRECATED_BEFORE=0x060400)

set(VELMORA_WARNINGS -Wall -Wextra -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2
                     -Wduplicated-cond -Wlogical-op -Wimplicit-fallthrough)
set(VELMORA_C_WARNINGS -Wall -Wextra -Werror -Wshadow -Wformat=2)

if(VELMORA_SANITIZE)
  add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VELMORA_SANITIZE})
  if(VELMORA_SANITIZE MATCHES undefined)
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
  # Libraries that are loaded into an instrumented program are instrumented with it.
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
  # GCC 12 sees overlapping copies in std::string operator+ (its own bug 105651), and instrumented code confuses it.
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
  if(VELMORA_SANITIZE)
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-maybe-uninitialized>)
  endif()
endfunction()

# velmora_library(name STATIC|SHARED|OBJECT sources...)
function(velmora_library name kind)
  add_library(${name} ${kind} ${ARGN})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  velmora_compile(${name})
endfunction()

# Time limits of tests are multiplied by this.
set(VELMORA_SLOWNESS 1)

# The thread sanitizer is told what Qt and GLib order, by objects that are not instrumented themselves.
if(VELMORA_SANITIZE STREQUAL thread)
  set(VELMORA_SLOWNESS 4)
  pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)
  velmora_library(velmora_handovers OBJECT tests/handovers.cpp)
  target_compile_options(velmora_handovers PRIVATE -fno-sanitize=thread)
  target_link_libraries(velmora_handovers PUBLIC Qt6::Core PkgConfig::GLIB ${CMAKE_DL_LIBS})
endif()

function(velmora_program name)
  add_executable(${name} ${ARGN})
  velmora_compile(${name})
  if(TARGET velmora_handovers)
    target_link_libraries(${name} PRIVATE velmora_handovers)
  endif()
endfunction()

# A platform library: exports only what is marked, soname 1, its name without the project's prefix.
function(velmora_platform_library target output)
  velmora_library(${target} SHARED ${ARGN})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output} VERSION 1.0.0 SOVERSION 1
    C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/platform/include
                                       PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
endfunction()

# velmora_test(name SOURCES ... LIBS ... [LABELS ...] [TIMEOUT seconds] [ENVIRONMENT ...]): one CTest, one program.
function(velmora_test name)
  cmake_parse_arguments(T "" "TIMEOUT" "SOURCES;LIBS;LABELS;ENVIRONMENT" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  math(EXPR T_TIMEOUT "${VELMORA_SLOWNESS} * ${T_TIMEOUT}")
  velmora_program(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} Qt6::Test)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE VELMORA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${T_TIMEOUT} LABELS "${T_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QTEST_FUNCTION_TIMEOUT=${T_TIMEOUT}000;QT_LOGGING_RULES=qt.*=false;ASAN_OPTIONS=detect_leaks=1:abort_on_error=0;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0;UBSAN_OPTIONS=print_stacktrace=1;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp:ignore_noninstrumented_modules=1:second_deadlock_stack=1:halt_on_error=1;${T_ENVIRONMENT}")
endfunction()
