# C programs that call the library, once through the shared object and once through the archive. The C
# compiler links them, so that nothing of C++ is needed to use the library.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${operations})
file(STRINGS ${operations} built REGEX "^\\+ ")
list(TRANSFORM built REPLACE "^\\+ (.*)$" "OPERATION(\\1)")
list(JOIN built "\n" built)
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/built_operations.inc CONTENT "${built}\n" @ONLY)

function(add_c_program name source library)
  add_executable(${name} ${source} c_platform.c)
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
  target_link_libraries(${name} PRIVATE project_options platform_headers ${library})
  target_compile_definitions(${name} PRIVATE _DEFAULT_SOURCE)
  target_compile_options(${name} PRIVATE -Wpedantic)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE C)
  add_test(NAME abi.${name} COMMAND ${name})
endfunction()

add_c_program(c_interface_shared c_interface_test.c hal_bcm6838x)
add_c_program(c_interface_archive c_interface_test.c hal_bcm6838x_static)
add_c_program(archive_state archive_state_test.c hal_bcm6838x_static)

add_c_program(start_sequence start_sequence_test.c hal_bcm6838x_static)
foreach(operation InitIgmp InitPort InitQoS InitVlan RdpaIcInit RdpaIcInit_Perf SetPortAdminState)
  target_link_options(start_sequence PRIVATE LINKER:--wrap=BCM6838X_${operation})
endforeach()
