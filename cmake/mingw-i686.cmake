set(processor i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
# Single and double precision are part of the behaviour: no x87 excess precision.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
