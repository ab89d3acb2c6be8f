# Headers of the standard library and of the test framework take most of the time of a small source's
# compilation; they are read once for each set of options. Sources still include what they use: the lint
# compiles each without these.

# add_precompiled_headers(NAME HEADERS... LIBRARIES...): the headers with the options of this folder.
function(add_precompiled_headers name)
  cmake_parse_arguments(precompiled "" "" "HEADERS;LIBRARIES" ${ARGN})
  file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "")
  add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE project_options ${precompiled_LIBRARIES})
  list(TRANSFORM precompiled_HEADERS REPLACE "(.+)" "<\\1>")
  target_precompile_headers(${name} PRIVATE ${precompiled_HEADERS})
endfunction()

# use_precompiled_headers(NAME FOLDERS...): gives them to every C++ target of these folders and of those
# below.
function(use_precompiled_headers name)
  foreach(folder ${ARGN})
    get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target ${targets})
      get_target_property(kind ${target} TYPE)
      get_target_property(sources ${target} SOURCES)
      if(kind MATCHES "EXECUTABLE|STATIC_LIBRARY" AND "${sources}" MATCHES "\\.cpp")
        target_precompile_headers(${target} REUSE_FROM ${name})
      endif()
    endforeach()
    get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
    if(folders)
      use_precompiled_headers(${name} ${folders})
    endif()
  endforeach()
endfunction()

set(precompiled_standard_headers
    algorithm
    array
    charconv
    chrono
    compare
    cstring
    deque
    filesystem
    fstream
    functional
    map
    memory
    mutex
    optional
    ranges
    set
    span
    sstream
    stdexcept
    string
    string_view
    system_error
    tuple
    utility
    variant
    vector)
