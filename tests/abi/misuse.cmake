# What does not compile: a command with the record, length, flag or handler of another. The same source
# without a case compiles, so that a refusal is that of the case.
add_library(abi_command_use OBJECT command_misuse.cpp)
target_include_directories(abi_command_use PRIVATE ${PROJECT_SOURCE_DIR}/hal/switch/bcm6838x/src)
target_link_libraries(abi_command_use PRIVATE project_options hal_headers platform_headers
                                              virtual_onu_device)

# add_misuse_check(CASE PATTERN): the compiler refuses the case with a line of the pattern.
function(add_misuse_check case pattern)
  add_test(
    NAME abi.misuse.${case}
    COMMAND
      ${CMAKE_CURRENT_SOURCE_DIR}/expect_failure.sh ${pattern} -- ${CMAKE_CXX_COMPILER} -std=c++20 -S -o
      /dev/null -D ${case} -I ${PROJECT_SOURCE_DIR}/hal/switch/bcm6838x/include -I
      ${PROJECT_SOURCE_DIR}/hal/switch/bcm6838x/src -I ${PROJECT_SOURCE_DIR}/platform/include -I
      ${PROJECT_SOURCE_DIR}/virtual_onu ${CMAKE_CURRENT_SOURCE_DIR}/command_misuse.cpp)
endfunction()

add_misuse_check(OTHER_RECORD "the command carries another record")
add_misuse_check(OTHER_RECORD_THROUGH_HELPER "deduced conflicting types for parameter")
add_misuse_check(OTHER_FLAG "no sender of the command uses that flag")
add_misuse_check(NO_RECORD "the command carries a record")
add_misuse_check(RECORD_TOO_MANY "the command carries another record")
add_misuse_check(FRAME_WITHOUT_LENGTH "the command's record ends with its frame")
add_misuse_check(LENGTH_TOO_MANY "the command's record has one length")
add_misuse_check(UNKNOWN_COMMAND "the table has no such command")
add_misuse_check(OTHER_LENGTH "the table gives a length that the record does not have")
add_misuse_check(OTHER_HANDLER "the handler takes another record")
