# Kinds of build beside CMake's own. Nobody debugs the release, so it has no debug information, which costs
# half of its compilation; a finding of the sanitizers names its line, and needs no more.
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_C_FLAGS_SANITIZE "-O0 -g1")
set(CMAKE_CXX_FLAGS_SANITIZE "-O0 -g1")

# Options that every target of the project shares, as one interface target.
add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE c_std_11 cxx_std_20)
target_compile_options(
  project_options
  INTERFACE -Wall
            -Wextra
            -Werror
            -Wconversion
            -Wshadow
            -Wformat=2
            -Wcast-align
            -Wcast-qual
            -Wdouble-promotion
            -Wduplicated-branches
            -Wduplicated-cond
            -Wlogical-op
            -Wmissing-declarations
            -Wnull-dereference
            -Wundef
            -Wunused
            -Wwrite-strings
            $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
            $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
            $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
            $<$<COMPILE_LANGUAGE:CXX>:-Wextra-semi>
            $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes>
            $<$<COMPILE_LANGUAGE:C>:-Wmissing-prototypes>)

option(HAL_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
if(HAL_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(project_options INTERFACE ${sanitizers})
  target_link_options(project_options INTERFACE ${sanitizers})
endif()

option(HAL_COVERAGE "Instrument for line and branch coverage" OFF)
if(HAL_COVERAGE)
  target_compile_options(project_options INTERFACE --coverage -O0)
  target_link_options(project_options INTERFACE --coverage)
endif()
