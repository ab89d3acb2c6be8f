# add_suite(NAME SOURCES ... LIBRARIES ...): one test program, each of its cases a test of CTest.
function(add_suite name)
  cmake_parse_arguments(suite "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${suite_SOURCES})
  target_link_libraries(${name} PRIVATE project_options ${suite_LIBRARIES} GTest::gmock_main)
  gtest_discover_tests(
    ${name}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 120
    PROPERTIES TIMEOUT 120)
endfunction()
