# What every target of the tree shares: language level, warnings, the floating-point contract, and the
# two short forms by which rooms declare their libraries and tests.

include(CTest)

option(VINDREL_BUILD_CLI "Build the command line (needs CLI11, libpng, libtiff, libjpeg and OpenEXR)" ON)
option(VINDREL_BUILD_BENCH "Build the benchmarks (needs Google Benchmark)" OFF)
option(VINDREL_BUILD_FUZZ "Build the fuzz targets (needs clang)" OFF)
option(VINDREL_COVERAGE "Count the lines and branches that run, for ./dev coverage" OFF)
option(VINDREL_PRECOMPILE "Read the headers that nearly every source includes only once: a quicker build, that hides a forgotten #include" OFF)
set(VINDREL_SANITIZE "" CACHE STRING "Sanitizers for the whole tree, as in -fsanitize=")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Every room includes from the root of the tree: "effect/raster/DrawDot.h".
add_library(vindrel_common INTERFACE)
target_include_directories(vindrel_common INTERFACE "${PROJECT_SOURCE_DIR}")

# Release is what is measured and shipped; -O2 and a baseline that every 64-bit machine has.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
target_compile_options(vindrel_common INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual
  -Wnon-virtual-dtor -Woverloaded-virtual -Wdouble-promotion -Wformat=2 -Wundef -Werror
  # Each product and each sum is rounded by itself, and the C library's own sine, cosine and arc
  # tangent are called: a folded constant may have another last bit.
  -ffp-contract=off -fno-builtin-sin -fno-builtin-cos -fno-builtin-atan2
  # The module's operator new returns null before the host has lent its memory.
  -fcheck-new)
if(VINDREL_SANITIZE)
  target_compile_options(vindrel_common INTERFACE
    "-fsanitize=${VINDREL_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vindrel_common INTERFACE "-fsanitize=${VINDREL_SANITIZE}")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # clang's check of new knows nothing of -fcheck-new.
    target_compile_options(vindrel_common INTERFACE -fno-sanitize=returns-nonnull-attribute)
  endif()
endif()
if(VINDREL_COVERAGE)
  target_compile_options(vindrel_common INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(vindrel_common INTERFACE --coverage)
  target_compile_definitions(vindrel_common INTERFACE "VINDREL_COUNTS_APART=\"${CMAKE_BINARY_DIR}-spoiled-counts\"")
endif()
# Files that are handed out are hardened, and two builds of one source are the same file wherever the tree lies: no time and
# no folder of this machine is written into them. cmake/check-built-file holds it.
if(NOT VINDREL_SANITIZE AND NOT VINDREL_COVERAGE AND NOT EMSCRIPTEN)
  # A function with an array notices when it was written past its end.
  target_compile_options(vindrel_common INTERFACE -fstack-protector-strong "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
  if(NOT WIN32)
    # The C library's copies check the sizes that the compiler knows.
    target_compile_options(vindrel_common INTERFACE $<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>)
  endif()
endif()
if(WIN32)
  # Tests, tools and the module carry their runtime with them.
  target_compile_options(vindrel_common INTERFACE -g)
  target_link_options(vindrel_common INTERFACE -static -fstack-protector-strong -Wl,--no-insert-timestamp)
elseif(EMSCRIPTEN)
  # Exceptions are the engine's own. Vector instructions are those of SSE2 by way of WebAssembly's.
  target_compile_options(vindrel_common INTERFACE -fwasm-exceptions -msimd128 -msse2 -mbulk-memory)
  target_include_directories(vindrel_common SYSTEM BEFORE INTERFACE "${PROJECT_SOURCE_DIR}/cmake/wasm-library")
  target_link_options(vindrel_common INTERFACE -fwasm-exceptions)
else()
  # What the loader has filled in can't be written to later.
  target_link_options(vindrel_common INTERFACE -Wl,-z,relro,-z,now)
endif()

# vindrel_library(<name> <sources>...): one room's static library.
function(vindrel_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC vindrel_common)
  vindrel_optimize_a_little(${name})
endfunction()

# vindrel_optimize_a_little(<name>): what the tests run over and over is optimised even where the tests aren't. Each function stays
# one, so that its branches are counted once.
function(vindrel_optimize_a_little name)
  target_compile_options(${name} PRIVATE $<$<CONFIG:Debug>:-O1;-fno-inline>)
endfunction()

# vindrel_library_around(<name> <sources>...): one of the rooms around the effect, which use the standard library widely.
function(vindrel_library_around name)
  vindrel_library(${name} ${ARGN})
  vindrel_precompile(${name} precompiled_for_libraries)
endfunction()
if(VINDREL_PRECOMPILE AND NOT EMSCRIPTEN)
  file(WRITE "${CMAKE_BINARY_DIR}/precompiled/Libraries.cpp" "")
  add_library(precompiled_for_libraries STATIC EXCLUDE_FROM_ALL "${CMAKE_BINARY_DIR}/precompiled/Libraries.cpp")
  target_link_libraries(precompiled_for_libraries PUBLIC vindrel_common)
  vindrel_optimize_a_little(precompiled_for_libraries)
  target_precompile_headers(precompiled_for_libraries PRIVATE
    <algorithm> <array> <cmath> <cstdint> <cstring> <filesystem> <functional> <limits> <map> <memory> <optional> <string> <vector>)
endif()

# vindrel_precompile(<name> <of>): the target takes the precompiled headers of another one, whose options must be its own.
function(vindrel_precompile name of)
  if(VINDREL_PRECOMPILE AND NOT EMSCRIPTEN)
    target_precompile_headers(${name} REUSE_FROM ${of})
    # gcc 12 no longer knows then which of the lines it has inlined are the library's own, and warns of them.
    target_compile_options(${name} PRIVATE
      $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread>)
  endif()
endfunction()

# vindrel_write_map(<target>): the linker tells what it took, in a file beside the target's own. See cmake/check-notice.
function(vindrel_write_map target)
  target_link_options(${target} PRIVATE "-Wl,-Map,$<TARGET_FILE:${target}>.map")
endfunction()

if(BUILD_TESTING)
  # GoogleTest comes as Debian's sources, so that one version serves both targets.
  set(VINDREL_GOOGLETEST_DIR "/usr/src/googletest" CACHE PATH "Sources of GoogleTest")
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_disable_pthreads OFF CACHE BOOL "" FORCE)
  add_subdirectory("${VINDREL_GOOGLETEST_DIR}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
  if(VINDREL_SANITIZE)
    foreach(part gtest gtest_main gmock gmock_main)
      target_compile_options(${part} PRIVATE "-fsanitize=${VINDREL_SANITIZE}")
    endforeach()
  endif()
  include(GoogleTest)
  # Its headers cost a test program more than its own text.
  if(VINDREL_PRECOMPILE)
    file(WRITE "${CMAKE_BINARY_DIR}/precompiled/Tests.cpp" "int main() {}\n")
    add_executable(precompiled_for_tests EXCLUDE_FROM_ALL "${CMAKE_BINARY_DIR}/precompiled/Tests.cpp")
    target_link_libraries(precompiled_for_tests PRIVATE vindrel_common GTest::gtest GTest::gmock)
    target_precompile_headers(precompiled_for_tests PRIVATE
      <gtest/gtest.h> <algorithm> <array> <cmath> <cstdint> <cstring> <filesystem> <fstream> <functional> <limits> <map> <memory>
      <optional> <random> <set> <sstream> <string> <vector>)
  endif()
endif()

# vindrel_test(<name> <sources>...): one test program. Native builds list each test by its own name;
# the Windows build runs a whole program at a time, since a start of Wine costs more than most tests.
function(vindrel_test name)
  if(CMAKE_CROSSCOMPILING)
    vindrel_whole_test(${name} ${ARGN})
  else()
    vindrel_test_program(${name} ${ARGN})
    gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120
      PROPERTIES TIMEOUT 600)
  endif()
endfunction()

# vindrel_whole_test(<name> <sources>...): the same, always run as a whole.
function(vindrel_whole_test name)
  vindrel_test_program(${name} ${ARGN})
  string(TOLOWER "${CMAKE_SYSTEM_NAME}" system)
  add_test(NAME "${system}.${name}" COMMAND ${name})
  set_tests_properties("${system}.${name}" PROPERTIES TIMEOUT 1200)
endfunction()

function(vindrel_test_program name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE vindrel_common GTest::gtest_main GTest::gmock)
  vindrel_precompile(${name} precompiled_for_tests)
endfunction()
