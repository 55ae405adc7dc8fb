# A room is a folder of sources, and its path (without src/) is its name: how its headers are included, "host/plan/X.h",
# and, with underscores, its library, tvn_host_plan.

# tvn_room_headers(LIBRARY DIRECTORY NAME): lets whoever links the library include its headers, and nobody else: each
# header is reached through a link in the build tree that is the library's own. A room that lies in another one's folder
# is therefore not reached through that one.
function(tvn_room_headers library directory name)
  string(REPLACE "/" "_" flat ${name})
  set(root ${CMAKE_BINARY_DIR}/rooms/${flat})
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${directory}/*.h)
  file(REMOVE_RECURSE ${root})
  file(MAKE_DIRECTORY ${root}/${name})
  foreach(header IN LISTS headers)
    get_filename_component(file ${header} NAME)
    file(CREATE_LINK ${header} ${root}/${name}/${file} SYMBOLIC)
  endforeach()
  target_include_directories(${library} PUBLIC ${root})
endfunction()

# tvn_room(DIRECTORY [USES ROOM...]): the room as one static library, with the headers of the rooms under USES, and of
# those that they use, on its include path. A file named *_win32.cpp is built for Windows only, *_posix.cpp elsewhere.
function(tvn_room directory)
  cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
  string(REGEX REPLACE "^src/" "" name ${directory})
  string(REPLACE "/" "_" flat ${name})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${directory}/*.cpp)
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_win32\\.cpp$")
  endif()

  add_library(tvn_${flat} STATIC ${sources})
  tvn_room_headers(tvn_${flat} ${directory} ${name})
  target_link_libraries(tvn_${flat} PRIVATE tvn_settings)
  foreach(used IN LISTS ROOM_USES)
    string(REPLACE "/" "_" used ${used})
    target_link_libraries(tvn_${flat} PUBLIC tvn_${used})
  endforeach()
endfunction()

# Header-only Debian libraries, reached one by one so that the rest of /usr/include stays out of a cross build.
function(tvn_header_library name folder)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers/${name})
  file(CREATE_LINK /usr/include/${folder} ${CMAKE_BINARY_DIR}/headers/${name}/${folder} SYMBOLIC)
  add_library(${name}_headers INTERFACE)
  target_include_directories(${name}_headers SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers/${name})
endfunction()
