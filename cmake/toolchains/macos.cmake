# Compiles for macOS 11 and later on Linux. `tools/install-deps.sh --cross` installs what it uses; the presets
# macos-arm64 and macos-x86_64 choose the processor. On a Mac no toolchain file is needed.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 20.0)
set(FX_MACOS_ARCH "arm64" CACHE STRING "Processor to compile for: arm64 or x86_64")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES FX_MACOS_ARCH)
set(CMAKE_SYSTEM_PROCESSOR ${FX_MACOS_ARCH})

get_filename_component(fx_root ${CMAKE_CURRENT_LIST_DIR}/../.. ABSOLUTE)
set(CMAKE_C_COMPILER ${fx_root}/tools/macos/cc)
set(CMAKE_CXX_COMPILER ${fx_root}/tools/macos/c++)
set(CMAKE_OSX_ARCHITECTURES ${FX_MACOS_ARCH} CACHE STRING "" FORCE)
set(CMAKE_OSX_SYSROOT "" CACHE STRING "" FORCE)
set(CMAKE_OSX_DEPLOYMENT_TARGET "" CACHE STRING "" FORCE) # tools/macos/compiler sets it
file(GLOB fx_llvm /usr/lib/llvm-*/bin)
find_program(CMAKE_AR NAMES llvm-ar HINTS ${fx_llvm} REQUIRED)
find_program(CMAKE_RANLIB NAMES llvm-ranlib HINTS ${fx_llvm} REQUIRED)
find_program(CMAKE_INSTALL_NAME_TOOL NAMES llvm-install-name-tool HINTS ${fx_llvm} REQUIRED)

# Libraries come from the folder of the cross build alone, header-only ones from the links in its include folder.
set(CMAKE_FIND_ROOT_PATH ${fx_root}/build/cross/${FX_MACOS_ARCH})
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
