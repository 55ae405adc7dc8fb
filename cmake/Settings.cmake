# Language, warnings, hardening and the compiler cache, for every target of the project.

option(TVN_TESTS "Build the tests" OFF)
option(TVN_BENCH "Build the benchmarks" OFF)
option(TVN_SANITIZE "Address and undefined-behaviour sanitizers" OFF)
option(TVN_FUZZ "Build the fuzzers, with clang" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")
# Without optimisation: it compiles in a part of the time, and a debugger shows every line. Fuzzers are worth their speed.
set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g")
if(TVN_FUZZ)
  set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g")
endif()

if(WIN32)
  # Wine's debugger reads no newer form of it. An object of the tests has more sections than the format has by itself.
  set(CMAKE_CXX_FLAGS_DEBUG "-O0 -gdwarf-4 -Wa,-mbig-obj")
endif()

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

# Private to our own targets: the sources of third-party test libraries are not ours to warn about.
add_library(tvn_settings INTERFACE)
target_compile_options(tvn_settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Werror -fstack-protector-strong)
if(WIN32)
  target_compile_definitions(tvn_settings INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  # No times in the files: the same sources give the same programs.
  target_link_options(tvn_settings INTERFACE -static -fstack-protector-strong -Wl,--gc-sections -Wl,--enable-stdcall-fixup
    -Wl,--no-insert-timestamp)
endif()
if(TVN_SANITIZE OR TVN_FUZZ)
  # An index beyond a container within its own memory is none of the sanitizers' business.
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
if(TVN_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(TVN_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
