# What the built objects import, export and hold, and that each check can fail.

# add_object_check(CHECK FILE ARGUMENT...): the check on a built file.
function(add_object_check check file)
  add_test(NAME abi.${check}.${file} COMMAND ${object_check} ${check} $<TARGET_FILE:${file}> ${ARGN})
endfunction()

# add_faulty_object_check(CHECK PATTERNS ARGUMENT...): the check on the faulty object, which it refuses
# with a line of each pattern.
function(add_faulty_object_check check patterns)
  add_test(
    NAME abi.${check}.refuses_faulty_object
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/expect_failure.sh ${patterns} -- ${object_check} ${check}
            $<TARGET_FILE:faulty_object> ${ARGN})
endfunction()

set(calls ${CMAKE_CURRENT_SOURCE_DIR}/platform_calls.txt)
set(state ${CMAKE_CURRENT_SOURCE_DIR}/state_variables.txt)

add_library(faulty_object SHARED faulty_object.cpp)
target_compile_definitions(
  faulty_object PRIVATE FAULTY_OBJECT_SOURCE="${CMAKE_CURRENT_SOURCE_DIR}/faulty_object.cpp")

add_object_check(runtime hal_bcm6838x)
add_object_check(runtime hal_bcm6838x_static)
add_object_check(namespace hal_bcm6838x_static hal)
add_object_check(state hal_bcm6838x_static ${state})
add_object_check(source_paths hal_bcm6838x ${PROJECT_SOURCE_DIR})

add_faulty_object_check(
  exports
  "exported, not marked as built: FaultyOperation;marked as built, not exported: BCM6838X_Init"
  ${operations})
add_faulty_object_check(namespace "defined outside the namespace hal: _Z.*StrayFunction" hal)
add_faulty_object_check(needed "expected libc.so.6 alone, needs: libstdc")
add_faulty_object_check(runtime "imported from the C.. run-time library: __cxa_throw")
add_faulty_object_check(state "not a global variable of that size: sgHwDevFd 4" ${state})
add_faulty_object_check(undefined "imported, not a call of the platform: NobodysCall" ${calls})
add_faulty_object_check(
  source_paths "names a source that does not exist: hal/switch/bcm6838x/src/nowhere.cpp"
  ${PROJECT_SOURCE_DIR})
add_faulty_object_check(build_paths "holds a path of the build: .*faulty_object.cpp"
                        ${PROJECT_SOURCE_DIR})

# Instrumented objects need the instrumentation's libraries, name sources for its reports, and export
# what measures coverage.
set(checks exports needed undefined build_paths)
set(skipped_checks)
if(HAL_SANITIZE)
  set(skipped_checks needed undefined build_paths)
elseif(HAL_COVERAGE)
  set(skipped_checks ${checks})
endif()
set(exports_argument ${operations})
set(needed_argument)
set(undefined_argument ${calls})
set(build_paths_argument ${PROJECT_SOURCE_DIR})
foreach(check ${checks})
  if(check IN_LIST skipped_checks)
    add_test(NAME abi.${check}.hal_bcm6838x COMMAND sh -c
                                                    "echo 'not for an instrumented build'; exit 77")
    set_tests_properties(abi.${check}.hal_bcm6838x PROPERTIES SKIP_RETURN_CODE 77)
  else()
    add_object_check(${check} hal_bcm6838x ${${check}_argument})
  endif()
endforeach()

# Log lines name the source as it lies in the tree, however the compiler was told of it.
add_test(
  NAME abi.source_paths.compiled_by_hand
  COMMAND
    ${CMAKE_CURRENT_SOURCE_DIR}/source_path_check.sh ${PROJECT_SOURCE_DIR} ${CMAKE_CXX_COMPILER} -std=c++20
    -Os -I ${PROJECT_SOURCE_DIR}/hal/switch/bcm6838x/include -I ${PROJECT_SOURCE_DIR}/platform/include)
