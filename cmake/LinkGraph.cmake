# Writes build/PRESET/link-graph.txt, one fact a line, which tests/house/check_layers.py reads:
#   room NAME               a folder, in the order in which CMakeLists.txt adds the folders
#   target NAME FOLDER      a target and the folder that defines it
#   source NAME PATH        one source of the target
#   private NAME OTHER      the target links OTHER
#   public NAME OTHER       whoever links the target sees the headers of OTHER, too
#   header NAME PREFIX      an include whose name starts with PREFIX needs a link to NAME
# Paths are relative to the root of the tree.

# fx_library(NAME HEADERS prefix... [INCLUDE folder...] [LINK library...]) names a library from outside the tree, or
# an existing target of one. Only targets that link NAME may include headers whose names start with a prefix.
function(fx_library name)
  cmake_parse_arguments(LIBRARY "" "" "HEADERS;INCLUDE;LINK" ${ARGN})
  if(NOT TARGET ${name})
    add_library(${name} INTERFACE)
    target_include_directories(${name} SYSTEM INTERFACE ${LIBRARY_INCLUDE})
    target_link_libraries(${name} INTERFACE ${LIBRARY_LINK})
  endif()
  foreach(prefix IN LISTS LIBRARY_HEADERS)
    set_property(GLOBAL APPEND_STRING PROPERTY FX_HEADER_FACTS "header ${name} ${prefix}\n")
  endforeach()
endfunction()

# Sets OUT to the facts about one target.
function(fx_describe_target name out)
  get_target_property(folder ${name} SOURCE_DIR)
  cmake_path(ABSOLUTE_PATH folder NORMALIZE OUTPUT_VARIABLE absolute)
  cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
  set(text "target ${name} ${folder}\n")
  get_target_property(sources ${name} SOURCES)
  foreach(source IN LISTS sources)
    if(NOT source MATCHES "NOTFOUND$|^\\$")
      cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${absolute} NORMALIZE)
      cmake_path(RELATIVE_PATH source BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
      string(APPEND text "source ${name} ${source}\n")
    endif()
  endforeach()
  get_target_property(private ${name} LINK_LIBRARIES)
  get_target_property(public ${name} INTERFACE_LINK_LIBRARIES)
  foreach(kind IN ITEMS private public)
    foreach(link IN LISTS ${kind})
      if(TARGET ${link})
        string(APPEND text "${kind} ${name} ${link}\n")
      endif()
    endforeach()
  endforeach()
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

# Sets OUT to the facts about the targets of a folder and of the folders below it.
function(fx_describe_folder folder out)
  set(text "")
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(NOT type STREQUAL "UTILITY")
      fx_describe_target(${target} facts)
      string(APPEND text "${facts}")
    endif()
  endforeach()
  get_property(inner DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(sub IN LISTS inner)
    fx_describe_folder(${sub} facts)
    string(APPEND text "${facts}")
  endforeach()
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

# Writes the file. Call it when every target is known.
function(fx_write_link_graph)
  get_property(text GLOBAL PROPERTY FX_HEADER_FACTS)
  get_property(folders DIRECTORY ${PROJECT_SOURCE_DIR} PROPERTY SUBDIRECTORIES)
  foreach(folder IN LISTS folders)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
    if(NOT folder MATCHES "^(tests|bench)$")
      string(APPEND text "room ${folder}\n")
    endif()
  endforeach()
  fx_describe_folder(${PROJECT_SOURCE_DIR} facts)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/link-graph.txt CONTENT "${text}${facts}" @ONLY)
endfunction()
