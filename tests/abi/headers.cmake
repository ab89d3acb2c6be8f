# Each public header compiles alone, as C11 and as C++17, without any extension of the compiler.
file(
  GLOB headers CONFIGURE_DEPENDS
  RELATIVE ${PROJECT_SOURCE_DIR}
  ${PROJECT_SOURCE_DIR}/hal/switch/bcm6838x/include/*.h ${PROJECT_SOURCE_DIR}/platform/include/*.h)

set(checks
    "#if defined(__cplusplus) ? __cplusplus != 201703L : __STDC_VERSION__ != 201112L"
    "#error \"compiled in another standard\""
    "#endif")
foreach(header ${headers})
  get_filename_component(name ${header} NAME)
  foreach(suffix c cpp)
    set(unit ${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.${suffix})
    list(JOIN checks "\n" text)
    file(CONFIGURE OUTPUT ${unit} CONTENT "#include <${name}>\n${text}\n" @ONLY)
    list(APPEND header_units ${unit})
  endforeach()
endforeach()

# Not linked with the options' target, which asks for a later C++.
add_library(abi_headers OBJECT ${header_units})
target_link_libraries(abi_headers PRIVATE hal_headers platform_headers)
target_compile_options(
  abi_headers PRIVATE $<TARGET_PROPERTY:project_options,INTERFACE_COMPILE_OPTIONS> -Wpedantic)
set_target_properties(abi_headers PROPERTIES CXX_STANDARD 17 C_STANDARD 11)
