# What the host's portable rooms need beside their sources.
tvn_header_library(fmt fmt)
target_compile_definitions(fmt_headers INTERFACE FMT_HEADER_ONLY)
tvn_header_library(nlohmann nlohmann)
target_link_libraries(tvn_host_plan PUBLIC fmt_headers)
target_link_libraries(tvn_host_run PRIVATE nlohmann_headers)
target_link_libraries(tvn_host_report PRIVATE nlohmann_headers)
target_link_libraries(tvn_host_live PRIVATE nlohmann_headers)

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
