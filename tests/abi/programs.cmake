# C programs that call the library, once through the shared object and once through the archive. The C
# compiler links them, so that nothing of C++ is needed to use the library.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${operations})
file(STRINGS ${operations} built REGEX "^\\+ ")
list(TRANSFORM built REPLACE "^\\+ (.*)$" "OPERATION(\\1)")
list(JOIN built "\n" built)
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/built_operations.inc CONTENT "${built}\n" @ONLY)

function(add_c_program name library)
  add_executable(${name} ${ARGN} c_platform.c)
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
  target_link_libraries(${name} PRIVATE project_options platform_headers ${library})
  target_compile_definitions(${name} PRIVATE _DEFAULT_SOURCE)
  target_compile_options(${name} PRIVATE -Wpedantic)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE C)
  add_test(NAME abi.${name} COMMAND ${name})
endfunction()

# The calls of the operations, one file a public header or a part of one.
set(c_interface
    c_interface_test.c
    c_calls_core.c
    c_calls_igmp.c
    c_calls_mac.c
    c_calls_packet.c
    c_calls_port.c
    c_calls_port_statistics.c
    c_calls_qos.c
    c_calls_vlan.c
    c_calls_vlan_mode.c
    c_calls_vlan_port.c)
add_c_program(c_interface_shared hal_bcm6838x ${c_interface})
add_c_program(c_interface_archive hal_bcm6838x_static ${c_interface})
add_c_program(archive_state hal_bcm6838x_static archive_state_test.c)
target_include_directories(archive_state PRIVATE ${PROJECT_SOURCE_DIR}/tests)

add_c_program(start_sequence hal_bcm6838x_static start_sequence_test.c)
foreach(operation InitIgmp InitPort InitQoS InitVlan RdpaIcInit RdpaIcInit_Perf SetPortAdminState)
  target_link_options(start_sequence PRIVATE LINKER:--wrap=BCM6838X_${operation})
endforeach()
