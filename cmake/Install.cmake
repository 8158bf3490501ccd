# cmake --install build/PRESET --prefix FOLDER. The installed copy may be moved, because fxhost finds the modules by
# their place relative to its own: FOLDER/lib/shaderfx/SYSTEM/shaderfx.so.
install(TARGETS fxhost RUNTIME DESTINATION bin)
set(fx_system $<IF:$<PLATFORM_ID:Darwin>,macos,linux>)
install(TARGETS shaderfx_module LIBRARY DESTINATION lib/shaderfx/${fx_system})
# The module of the cross build, where there is one, so that the installed tool makes bundles for macOS, too.
if(NOT APPLE)
  install(FILES ${PROJECT_SOURCE_DIR}/build/macos/plugin/shaderfx.so DESTINATION lib/shaderfx/macos OPTIONAL)
endif()
install(DIRECTORY effects samples DESTINATION share/shaderfx)
install(DIRECTORY docs/ DESTINATION share/doc/shaderfx FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.png")
install(FILES README.md CHANGELOG.md LICENSE DESTINATION share/doc/shaderfx)
