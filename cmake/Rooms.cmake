# tvn_room(NAME DIRECTORY [USES ROOM...]): one folder of sources as one static library.
#
# A file named *_win32.cpp is built for Windows only, *_posix.cpp elsewhere. Headers are included as "room/Header.h"
# through the folder above the room; only the rooms under USES (and what they use) are on the include path, because each
# room's headers are reached through a link of its own in the build tree.
function(tvn_room name directory)
  cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${directory}/*.cpp)
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_win32\\.cpp$")
  endif()
  if(NOT sources)
    file(WRITE ${CMAKE_BINARY_DIR}/rooms/${name}.cpp "")
    set(sources ${CMAKE_BINARY_DIR}/rooms/${name}.cpp)
  endif()
  set(link ${CMAKE_BINARY_DIR}/rooms/${name})
  file(MAKE_DIRECTORY ${link})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${directory} ${link}/${name} SYMBOLIC)

  add_library(tvn_${name} STATIC ${sources})
  target_include_directories(tvn_${name} PUBLIC ${link})
  target_link_libraries(tvn_${name} PRIVATE tvn_settings)
  foreach(used IN LISTS ROOM_USES)
    target_link_libraries(tvn_${name} PUBLIC tvn_${used})
  endforeach()
endfunction()

# Header-only Debian libraries, reached one by one so that the rest of /usr/include stays out of a cross build.
function(tvn_header_library name folder)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers/${name})
  file(CREATE_LINK /usr/include/${folder} ${CMAKE_BINARY_DIR}/headers/${name}/${folder} SYMBOLIC)
  add_library(${name}_headers INTERFACE)
  target_include_directories(${name}_headers SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers/${name})
endfunction()
