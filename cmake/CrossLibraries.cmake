# The libraries of the cross build for macOS: Duktape and libzip are compiled from source and linked statically. The others
# are headers alone, so the rooms of fxhost are compiled but not linked.
set(fx_cross ${PROJECT_SOURCE_DIR}/build/cross/${FX_MACOS_ARCH})

add_library(PkgConfig::LIBZIP INTERFACE IMPORTED)
target_link_libraries(PkgConfig::LIBZIP INTERFACE ${fx_cross}/lib/libzip.a ${fx_cross}/lib/libz.tbd)
fx_library(PkgConfig::LIBZIP HEADERS zip.h)

set(fx_duktape /usr/share/duktape) # from the package duktape-dev
add_library(duktape STATIC ${fx_duktape}/duktape.c)
target_include_directories(duktape SYSTEM PUBLIC ${fx_duktape})
target_compile_options(duktape PRIVATE -w)
fx_library(duktape HEADERS duktape.h)

fx_library(stb HEADERS stb_ INCLUDE ${fx_cross}/include/stb)
fx_library(rapidxml HEADERS rapidxml INCLUDE ${fx_cross}/include/rapidxml)
fx_library(nlohmann_json HEADERS nlohmann/)
fx_library(cli11 HEADERS CLI/)
fx_library(fast_float HEADERS fast_float/)
add_library(PkgConfig::OPENIMAGEIO INTERFACE IMPORTED)
target_include_directories(PkgConfig::OPENIMAGEIO SYSTEM INTERFACE ${fx_cross}/include/Imath)
fx_library(PkgConfig::OPENIMAGEIO HEADERS OpenImageIO/)
include_directories(SYSTEM ${fx_cross}/include)
