# add_suite(NAME SOURCES ... LIBRARIES ...): one test program, a test of CTest. It runs its cases itself, on
# all processors, and stops one that takes too long. NAME ends with _test: by that, scripts/ctest_counts
# knows a program that counts its cases.
cmake_host_system_information(RESULT processors QUERY NUMBER_OF_LOGICAL_CORES)

function(add_suite name)
  cmake_parse_arguments(suite "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${suite_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE project_options ${suite_LIBRARIES} isolated_main)
  add_test(NAME ${name} COMMAND ${name} --jobs=${processors} --times=${name}.times)
  set_tests_properties(${name} PROPERTIES PROCESSORS ${processors} TIMEOUT 3600)
endfunction()
