# How the project's own targets are compiled, and the helpers that declare them.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# The options every target shares. Floating point is part of the contract: without -ffp-contract=off a compiler may
# fuse a multiplication and an addition, and results would differ between processors.
add_library(tessaly-options INTERFACE)
target_compile_options(tessaly-options INTERFACE -ffp-contract=off -Wall -Wextra -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # gcc 12 warns of an overlap inside std::string itself (GCC bug 105651) when it inlines `"." + text` at -O3.
  target_compile_options(tessaly-options INTERFACE -Wno-restrict)
endif()
if(TESSALY_WARNINGS_AS_ERRORS)
  target_compile_options(tessaly-options INTERFACE -Werror)
endif()
if(TESSALY_BUILD_FUZZERS)
  # Coverage feedback from every library, not only from the targets themselves.
  target_compile_options(tessaly-options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(TESSALY_SANITIZERS)
  target_compile_options(tessaly-options INTERFACE -fsanitize=${TESSALY_SANITIZERS} -fno-omit-frame-pointer
                                                   -fno-sanitize-recover=all)
  target_link_options(tessaly-options INTERFACE -fsanitize=${TESSALY_SANITIZERS})
endif()

# tessaly_rooms_together(TARGET SOURCES…): the sources of one folder are compiled as one, so that the headers they share
# are read once. It halves the work of a build. Names of anonymous namespaces are therefore unique within a folder.
function(tessaly_rooms_together name)
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  foreach(source IN LISTS ARGN)
    get_filename_component(room "${source}" DIRECTORY)
    string(MAKE_C_IDENTIFIER "room_${room}" room)
    set_property(SOURCE ${source} PROPERTY UNITY_GROUP ${room})
  endforeach()
endfunction()

# tessaly_library(NAME SOURCES…): one static library a folder of src/, included as "folder/Header.h".
function(tessaly_library name)
  add_library(${name} STATIC ${ARGN})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC tessaly-options)
  tessaly_rooms_together(${name} ${ARGN})
endfunction()

# tessaly_hot(TARGET): loops over whole raw planes live here. gcc 12 vectorises them at -O3 only, so an optimised
# build of any type compiles them that way; sanitizer and debug builds keep their own level.
function(tessaly_hot name)
  target_compile_options(${name} PRIVATE "$<$<CONFIG:Release,RelWithDebInfo>:-O3>")
endfunction()

# tessaly_user_program(TARGET): a program that people start by hand; it is placed at the top of the build folder.
function(tessaly_user_program name)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}")
endfunction()

# tessaly_real_files_test(NAME SOURCES…): tests of this program that read DNG files of real cameras. Those files are
# not part of the project: the tests are there when TESSALY_REAL_FILES names their folder.
function(tessaly_real_files_test name)
  if(NOT TESSALY_REAL_FILES)
    return()
  endif()
  target_sources(${name} PRIVATE ${ARGN})
  set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_DEFINITIONS TESSALY_REAL_FILES="${TESSALY_REAL_FILES}")
endfunction()

# The undefined behaviour sanitizer looks at what is tested. In the tests it would find little and nearly double the time
# they compile.
add_library(tessaly-test-options INTERFACE)
target_link_libraries(tessaly-test-options INTERFACE tessaly-options)
if(TESSALY_SANITIZERS MATCHES undefined)
  target_compile_options(tessaly-test-options INTERFACE -fno-sanitize=undefined)
endif()

# tessaly_test(NAME SOURCES…): a GoogleTest program whose cases ctest lists one by one.
function(tessaly_test name)
  add_executable(${name} ${ARGN})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE tessaly-options tessaly-test-options GTest::gmock GTest::gtest_main)
  tessaly_rooms_together(${name} ${ARGN})
  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()
