# Warnings and sanitizers that every target of the project shares.
add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion
                                                 -Wnon-virtual-dtor -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # -Wrestrict: GCC 12 reports std::string operations of its own library, which are right.
  target_compile_options(project_options INTERFACE -fno-gnu-unique -Wno-restrict)
endif()
if(FX_WARNINGS_AS_ERRORS)
  target_compile_options(project_options INTERFACE -Werror)
endif()
if(FX_SANITIZE)
  target_compile_options(project_options INTERFACE -fsanitize=${FX_SANITIZE} -fno-omit-frame-pointer
                                                   -fno-sanitize-recover=all)
  target_link_options(project_options INTERFACE -fsanitize=${FX_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # With sanitizers GCC 12 reports its own <regex>, which is right.
    target_compile_options(project_options INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
if(NOT APPLE AND NOT CMAKE_CROSSCOMPILING)
  # A program loads only the libraries that it calls. Some of the others start threads when they are loaded, and a
  # process with threads cannot be forked safely.
  target_link_options(project_options INTERFACE -Wl,--as-needed)
endif()
if(FX_FUZZ)
  # Counts coverage in all rooms; only the fuzz targets link libFuzzer's main program.
  target_compile_options(project_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# fx_room(NAME [SEPARATE] SOURCES a.cpp ... PUBLIC rooms-in-headers PRIVATE rooms-and-libraries-inside)
# One static library for the folder it is called in. Headers are included as "folder/Header.h". With FX_UNITY several
# sources are compiled as one, except in a SEPARATE room, whose sources use the same name for different things or must
# be linked one by one.
function(fx_room name)
  cmake_parse_arguments(ROOM "SEPARATE" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ROOM_SOURCES})
  if(FX_UNITY AND NOT ROOM_SEPARATE)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 4)
  endif()
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ROOM_PUBLIC} PRIVATE project_options ${ROOM_PRIVATE})
endfunction()

# GoogleTest's headers, compiled once for all test programs.
function(fx_precompile_tests name)
  if(NOT TARGET tests_precompiled)
    # A program, as they are compiled like it.
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/tests_precompiled.cpp CONTENT "int main() {}\n")
    add_executable(tests_precompiled ${PROJECT_BINARY_DIR}/tests_precompiled.cpp)
    target_link_libraries(tests_precompiled PRIVATE project_options GTest::gtest GTest::gmock)
    target_compile_options(tests_precompiled PRIVATE $<$<CONFIG:Release>:-O1>)
    target_precompile_headers(tests_precompiled PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
  endif()
  target_precompile_headers(${name} REUSE_FROM tests_precompiled)
endfunction()

# fx_room_tests(NAME SOURCES FooTest.cpp ... LINK rooms) makes one test program, which links only what it
# tests, so that a wrong dependency fails to link. Run from the source folder.
function(fx_room_tests name)
  cmake_parse_arguments(TESTS "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${TESTS_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE project_options ${TESTS_LINK} GTest::gtest GTest::gmock GTest::gtest_main)
  target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O1>) # what is tested is optimised; this compiles faster
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # As -Wrestrict above, once headers are precompiled.
    target_compile_options(${name} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
  endif()
  fx_precompile_tests(${name})
  add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
  set(timeout 600)
  if(FX_SANITIZE STREQUAL "thread")
    set(timeout 1800)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${timeout})
endfunction()
