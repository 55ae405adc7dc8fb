# How the demodulator's inner loops are compiled. They are optimised in every build, because a second of signal takes
# minutes without. One of the two sets is for processors with AVX2 and FMA, and is only called where the processor says
# that it is one.
set(demodulator receivers/recordings/demodulator)
foreach(room transport demodulator)
  target_compile_options(tvn_receivers_recordings_${room} PRIVATE -O3)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # The stack may be aligned to four bytes in programs of 32 bits.
    target_compile_options(tvn_receivers_recordings_${room} PRIVATE -msse2 -mfpmath=sse -mstackrealign)
  endif()
endforeach()
set(wide -mavx2 -mfma -ffp-contract=fast)
if(WIN32)
  # The stack of Windows is aligned to 16 bytes, which the compiler forgets for vectors of 32.
  list(APPEND wide -Wa,-muse-unaligned-vector-move)
endif()
set_source_files_properties(${demodulator}/Kernels_wide.cpp PROPERTIES COMPILE_OPTIONS "${wide}")
