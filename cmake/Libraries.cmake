# The libraries from outside the tree, each with the headers that only the targets which link it may include.
if(APPLE AND CMAKE_CROSSCOMPILING)
  include(CrossLibraries)
  return()
endif()

pkg_check_modules(LIBZIP REQUIRED IMPORTED_TARGET libzip)
fx_library(PkgConfig::LIBZIP HEADERS zip.h)

find_path(DUKTAPE_INCLUDE_DIR duktape.h REQUIRED)
find_library(DUKTAPE_LIBRARY duktape REQUIRED)
fx_library(duktape HEADERS duktape.h INCLUDE ${DUKTAPE_INCLUDE_DIR} LINK ${DUKTAPE_LIBRARY})

# Header only; gpu/ImageDecoder.cpp compiles the decoder.
pkg_check_modules(STB REQUIRED stb)
fx_library(stb HEADERS stb_ INCLUDE ${STB_INCLUDE_DIRS})

find_path(RAPIDXML_INCLUDE_DIR NAMES rapidxml/rapidxml.hpp rapidxml.hpp REQUIRED)
fx_library(rapidxml HEADERS rapidxml INCLUDE ${RAPIDXML_INCLUDE_DIR} ${RAPIDXML_INCLUDE_DIR}/rapidxml)

pkg_check_modules(OPENIMAGEIO REQUIRED IMPORTED_TARGET OpenImageIO)
fx_library(PkgConfig::OPENIMAGEIO HEADERS OpenImageIO/)

find_path(NLOHMANN_JSON_INCLUDE_DIR nlohmann/json.hpp REQUIRED)
fx_library(nlohmann_json HEADERS nlohmann/ INCLUDE ${NLOHMANN_JSON_INCLUDE_DIR})

# Reads floating-point numbers, which std::from_chars of some standard libraries does not.
find_path(FAST_FLOAT_INCLUDE_DIR fast_float/fast_float.h REQUIRED)
fx_library(fast_float HEADERS fast_float/ INCLUDE ${FAST_FLOAT_INCLUDE_DIR})

find_path(CLI11_INCLUDE_DIR CLI/CLI.hpp REQUIRED)
fx_library(cli11 HEADERS CLI/ INCLUDE ${CLI11_INCLUDE_DIR})

# A front end for GLSL. Older versions are split over more libraries.
find_path(GLSLANG_INCLUDE_DIR glslang/Public/ShaderLang.h REQUIRED)
set(GLSLANG_LIBRARIES)
foreach(part glslang MachineIndependent GenericCodeGen OSDependent OGLCompiler glslang-default-resource-limits)
  find_library(GLSLANG_${part}_LIBRARY ${part})
  if(GLSLANG_${part}_LIBRARY)
    list(APPEND GLSLANG_LIBRARIES ${GLSLANG_${part}_LIBRARY})
  endif()
endforeach()
find_package(Threads REQUIRED)
fx_library(glslang HEADERS glslang/ INCLUDE ${GLSLANG_INCLUDE_DIR} LINK ${GLSLANG_LIBRARIES} Threads::Threads)

if(NOT APPLE)
  pkg_check_modules(EGL REQUIRED IMPORTED_TARGET egl)
  pkg_check_modules(OPENGL REQUIRED IMPORTED_TARGET opengl)
  fx_library(PkgConfig::EGL HEADERS EGL/)
  fx_library(PkgConfig::OPENGL HEADERS GL/)
endif()

if(FX_BUILD_TESTS)
  find_package(GTest REQUIRED)
  fx_library(GTest::gtest HEADERS gtest/)
  fx_library(GTest::gmock HEADERS gmock/)
endif()
if(FX_BUILD_BENCH)
  find_package(benchmark REQUIRED)
  fx_library(benchmark::benchmark HEADERS benchmark/)
endif()
