# One static library a folder, one test executable a folder: these two functions hold what they have in common.

set(ORVEL_SANITIZE "" CACHE STRING "Sanitizers to build with, as given to -fsanitize=")

add_library(orvel_flags INTERFACE)
target_include_directories(orvel_flags INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(orvel_flags INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wnull-dereference)
target_compile_definitions(orvel_flags INTERFACE QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS)
if(ORVEL_SANITIZE)
  # Tests are read once and run once: unoptimised they are compiled in less than half the time. Line numbers are all
  # that a report needs.
  target_compile_options(orvel_flags INTERFACE "-fsanitize=${ORVEL_SANITIZE}" -fno-sanitize-recover=all
    -fno-omit-frame-pointer $<IF:$<BOOL:$<TARGET_PROPERTY:ORVEL_UNOPTIMISED>>,-O0,-O1> -g1
    # GCC sees null paths in its own instrumentation; the plain build keeps this warning.
    -Wno-null-dereference)
  target_link_options(orvel_flags INTERFACE "-fsanitize=${ORVEL_SANITIZE}")
endif()

if(CMAKE_UNITY_BUILD)
  # Sources that are compiled together look like a header each: what they keep to themselves is no fault there.
  target_compile_options(orvel_flags INTERFACE -Wno-subobject-linkage)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  # The sloppiness lets ccache serve sources that use a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${CCACHE}")
  add_compile_options(-fpch-preprocess)
endif()

# orvel_library(<name> SOURCES <files...> [LINKS <targets...>] [PRIVATE_LINKS <targets...>] [WIDGETS])
#   WIDGETS: the folder holds Qt windows; they share one precompiled <QtWidgets>.
function(orvel_library name)
  cmake_parse_arguments(ARG "WIDGETS" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE orvel_flags ${ARG_PRIVATE_LINKS})
  if(ARG_WIDGETS)
    target_link_libraries(${name} PUBLIC Qt6::Widgets)
    orvel_precompile(${name})
  endif()
endfunction()

function(orvel_precompile name)
  target_precompile_headers(${name} PRIVATE <QtWidgets> <memory> <string> <vector>)
endfunction()

# orvel_test(<name> SOURCES <files...> LINKS <targets...> [TIMEOUT <seconds>] [LABELS <labels...>] [OWN_MAIN] [COMPUTES])
#   Every test of the executable becomes a CTest test of its own, run without a display.
#   LABELS: "threads" where it has threads of its own, "server" where it talks to a real sound server; one word, since
#   CTest's discovery takes no list.
#   OWN_MAIN: one of the sources has the main function (a QApplication, say).
#   COMPUTES: its sources judge so many samples that they must be optimised, with sanitizers too.
function(orvel_test name)
  cmake_parse_arguments(ARG "OWN_MAIN;COMPUTES" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE orvel_flags ${ARG_LINKS} GTest::gtest)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  target_compile_definitions(${name} PRIVATE ORVEL_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  if(NOT ARG_COMPUTES)
    set_target_properties(${name} PROPERTIES ORVEL_UNOPTIMISED ON)
  endif()
  add_dependencies(orvel_tests ${name})
  if(ARG_LABELS MATCHES "threads")
    add_dependencies(orvel_threads_tests ${name})
  endif()
  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()

# What ./test builds: every test executable, and those that have threads of their own.
add_custom_target(orvel_tests)
add_custom_target(orvel_threads_tests)
