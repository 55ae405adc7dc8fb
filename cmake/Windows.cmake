# The binary contracts: header and type library of each IDL file, and what a component server is linked from.

if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
  set(widl_bits --win32)
else()
  set(widl_bits --win64)
endif()
find_program(WIDL ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-widl REQUIRED)
file(GLOB stdole_folder /usr/lib/*/wine/x86_64-windows)
set(contracts ${CMAKE_BINARY_DIR}/contracts)
file(MAKE_DIRECTORY ${contracts})

# The compiler of the libraries copies what they import from each other; this tool of the build machine makes references
# of the copies, so that every interface has one library that defines it.
find_program(BUILD_MACHINE_CXX NAMES c++ g++ clang++ REQUIRED)
set(refer_types ${contracts}/refer_types)
file(GLOB refer_types_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tools/type_library/*.cpp)
file(GLOB refer_types_headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tools/type_library/*.h)
add_custom_command(
  OUTPUT ${refer_types}
  COMMAND ${BUILD_MACHINE_CXX} -std=c++20 -O1 -Wall -Wextra -Werror -o ${refer_types} ${refer_types_sources}
  DEPENDS ${refer_types_sources} ${refer_types_headers}
  VERBATIM)

set(contract_files)
foreach(name TVNINT XKTR2x TVN2x XKIQ2x)
  set(idl ${CMAKE_SOURCE_DIR}/interfaces/${name}.idl)
  set(widl_call ${WIDL} ${widl_bits} -I /usr/include/wine/wine/windows -I ${CMAKE_SOURCE_DIR}/interfaces
      -I ${CMAKE_SOURCE_DIR}/src/setup/catalogue -L ${stdole_folder} -L ${contracts})
  set(make_library ${widl_call} -t -o ${contracts}/${name}.tlb ${idl})
  set(needs)
  if(NOT name STREQUAL "TVNINT")
    set(needs ${CMAKE_SOURCE_DIR}/interfaces/TVNINT.idl ${CMAKE_SOURCE_DIR}/interfaces/XKTR2x.idl ${CMAKE_SOURCE_DIR}/src/setup/catalogue/ParameterList.h
        ${contracts}/TVNINT.tlb ${refer_types})
    set(copies ${contracts}/${name}.with_copies)
    set(make_library ${widl_call} -t -o ${copies} ${idl}
        COMMAND ${refer_types} ${copies} ${contracts}/TVNINT.tlb ${contracts}/${name}.tlb)
  endif()
  add_custom_command(
    OUTPUT ${contracts}/${name}.h ${contracts}/${name}.tlb
    COMMAND ${widl_call} -h -o ${contracts}/${name}.h ${idl}
    COMMAND ${make_library}
    DEPENDS ${idl} ${needs}
    VERBATIM)
  list(APPEND contract_files ${contracts}/${name}.h ${contracts}/${name}.tlb)
endforeach()
add_custom_target(contracts_made DEPENDS ${contract_files})

add_library(tvn_contracts INTERFACE)
target_include_directories(tvn_contracts INTERFACE ${contracts})
add_dependencies(tvn_contracts contracts_made)

# What every program states about itself comes from the version of the project.
string(REPLACE "." "," version_commas "${PROJECT_VERSION},0")
configure_file(${CMAKE_SOURCE_DIR}/cmake/Version.h.in ${CMAKE_BINARY_DIR}/version/Version.h @ONLY)
add_library(tvn_version INTERFACE)
target_include_directories(tvn_version INTERFACE ${CMAKE_BINARY_DIR}/version)

# tvn_resources(SCRIPT FILE...): a resource script that states the version and embeds these files.
function(tvn_resources script)
  set_property(SOURCE ${script} APPEND PROPERTY INCLUDE_DIRECTORIES ${CMAKE_BINARY_DIR}/version ${contracts}
    ${CMAKE_CURRENT_SOURCE_DIR})
  set_property(SOURCE ${script} APPEND PROPERTY OBJECT_DEPENDS ${CMAKE_BINARY_DIR}/version/Version.h ${ARGN})
endfunction()

# tvn_component_server(NAME ROOMS room...): the folder's sources as a DLL with the exports of NAME.def and the resources
# of NAME.rc, which embeds the type libraries.
function(tvn_component_server name)
  cmake_parse_arguments(SERVER "" "" "ROOMS" ${ARGN})
  enable_language(RC)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  file(RELATIVE_PATH directory ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  string(REGEX REPLACE "^src/" "" room ${directory})

  add_library(${name} SHARED ${sources} ${name}.rc ${name}.def)
  tvn_room_headers(${name} ${directory} ${room})
  set_target_properties(${name} PROPERTIES PREFIX "" RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  foreach(room IN LISTS SERVER_ROOMS)
    string(REPLACE "/" "_" room ${room})
    target_link_libraries(${name} PRIVATE tvn_${room})
  endforeach()
  target_link_libraries(${name} PRIVATE tvn_settings tvn_contracts ole32 oleaut32 uuid advapi32 user32)
  add_dependencies(${name} contracts_made)
  target_precompile_headers(${name} PRIVATE <windows.h> <oleauto.h> <string> <vector> <memory> <functional>)

  tvn_resources(${name}.rc ${contracts}/TVNINT.tlb ${contracts}/XKTR2x.tlb ${contracts}/TVN2x.tlb
    ${contracts}/XKIQ2x.tlb)
endfunction()
