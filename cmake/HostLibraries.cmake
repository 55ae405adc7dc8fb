# What portable rooms need beside their sources.
tvn_header_library(fmt fmt)
target_compile_definitions(fmt_headers INTERFACE FMT_HEADER_ONLY)
tvn_header_library(nlohmann nlohmann)
target_link_libraries(tvn_host_plan PUBLIC fmt_headers)
target_link_libraries(tvn_host_run PRIVATE nlohmann_headers)
target_link_libraries(tvn_host_report PRIVATE nlohmann_headers)
target_link_libraries(tvn_receivers_recordings_source PRIVATE nlohmann_headers)
# The loop over the taps of a filter is worth a vector.
set_source_files_properties(receivers/recordings/source/FirFilter.cpp receivers/recordings/source/Channelizer.cpp
  PROPERTIES COMPILE_OPTIONS "$<$<NOT:$<CONFIG:Debug>>:-O3>")
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  # The stack may be aligned to four bytes in programs of 32 bits.
  target_compile_options(tvn_receivers_recordings_source PRIVATE -msse2 -mfpmath=sse -mstackrealign)
endif()
target_link_libraries(tvn_host_live PRIVATE nlohmann_headers)

# The server: sockets of the build machine, or of Windows.
tvn_header_library(boost boost)
target_link_libraries(tvn_host_serve PRIVATE boost_headers)
if(WIN32)
  target_link_libraries(tvn_host_serve PUBLIC ws2_32 mswsock)
else()
  find_package(Threads REQUIRED)
  target_link_libraries(tvn_host_serve PUBLIC Threads::Threads)
endif()

# The limits for cable outlets are a file to read and to copy, and are built into the program.
set(outlet_file ${CMAKE_SOURCE_DIR}/host/judge/outlet.ini)
file(READ ${outlet_file} outlet_limits)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${outlet_file})
configure_file(${CMAKE_SOURCE_DIR}/host/judge/OutletLimits.cpp.in ${CMAKE_BINARY_DIR}/OutletLimits.cpp @ONLY)
target_sources(tvn_host_judge PRIVATE ${CMAKE_BINARY_DIR}/OutletLimits.cpp)

# Style and script of the live page are files to read, and are built into the program.
set(page_folder ${CMAKE_SOURCE_DIR}/host/live/page)
file(READ ${page_folder}/live.css live_style)
file(READ ${page_folder}/live.js live_script)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page_folder}/live.css ${page_folder}/live.js)
configure_file(${CMAKE_SOURCE_DIR}/host/live/LiveFiles.cpp.in ${CMAKE_BINARY_DIR}/LiveFiles.cpp @ONLY)
target_sources(tvn_host_live PRIVATE ${CMAKE_BINARY_DIR}/LiveFiles.cpp)

# What describes the data is served with it.
foreach(name live result)
  set(schema_file ${CMAKE_SOURCE_DIR}/docs/${name}.schema.json)
  file(READ ${schema_file} ${name}_schema)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${schema_file})
endforeach()
configure_file(${CMAKE_SOURCE_DIR}/host/live/Schemas.cpp.in ${CMAKE_BINARY_DIR}/Schemas.cpp @ONLY)
target_sources(tvn_host_live PRIVATE ${CMAKE_BINARY_DIR}/Schemas.cpp)
