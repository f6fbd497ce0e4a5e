# Shared target settings: every folder's library, tests and benchmarks are declared with these functions.

include_guard(GLOBAL)
include(QbHardening)

# Language level, warnings, visibility, hardening and sanitizers for one of the project's own targets.
function(qb_target_defaults target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
  qb_harden(${target})
  if(QB_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=address,undefined)
  endif()
  if(QB_SANITIZE_THREADS)
    target_compile_options(${target} PRIVATE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=thread)
  endif()
  if(QB_COVERAGE)
    target_link_options(${target} PUBLIC --coverage)
  endif()
  # Fuzz targets are guided by the branches of every library that they link, not only by their own.
  if(QB_BUILD_FUZZERS)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# qb_add_library(name [STATIC|SHARED] source...): a folder's library; includes are relative to the repository.
function(qb_add_library name)
  add_library(${name} ${ARGN})
  qb_target_defaults(${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  # Counted in the libraries only: what runs in the tests themselves is not of interest.
  if(QB_COVERAGE)
    target_compile_options(${name} PRIVATE --coverage -fprofile-update=atomic)
  endif()
endfunction()

# Quick to compile under sanitizers: for tests, and for code that is mostly calls of large header libraries. The checks
# left out cost half of the compiling.
function(qb_compile_quickly target)
  if(QB_SANITIZE)
    target_compile_options(${target} PRIVATE -O0 -g0 -fno-sanitize=vptr,null,alignment,object-size)
  endif()
endfunction()

# OpenImageIO's headers include those of fmt such that each file compiles all of it again, which takes 2 s, unless fmt was
# included before.
function(qb_include_fmt_first target)
  target_compile_options(${target} PRIVATE "SHELL:-include fmt/format.h")
endfunction()

# The same for libraries with many sources that include OpenImageIO.
function(qb_precompile_image_headers target)
  target_precompile_headers(${target} PRIVATE <fmt/format.h> <OpenImageIO/imageio.h>)
endfunction()

# For code that never works on pixels: optimizing it more takes time and gains none.
function(qb_optimize_little target)
  if(CMAKE_BUILD_TYPE STREQUAL Release)
    target_compile_options(${target} PRIVATE -O1)
  endif()
endfunction()

# Compiles several sources of a test as one, which halves the time for all: most of it goes into headers. The sources in
# `alone` use names of other sources. ./dev lint compiles each source by itself.
function(qb_compile_together target alone)
  if(QB_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 6)
    set_source_files_properties(${alone} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    # Fixtures are in unnamed namespaces, the classes that TEST_F derives from them are not always.
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()

# The options that a test of ctest gives the sanitizers. Blocks of thread-local storage that libraries take while they
# are loaded (as Mesa's do) are not followed: by the block's address, the leak check guesses whether a header of an old
# glibc stands before it, and crashes in 1 of 256 runs that it guesses wrongly.
function(qb_set_sanitizer_options name)
  set_tests_properties(${name} PROPERTIES ENVIRONMENT
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0;\
ASAN_OPTIONS=intercept_tls_get_addr=0")
endfunction()

# qb_add_test(name SOURCES ... [ALONE ...] LIBS ...): a GoogleTest program that ctest runs once. ALONE lists those of
# the sources that are not compiled together with others.
function(qb_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;ALONE;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  qb_target_defaults(${name})
  qb_compile_quickly(${name})
  qb_compile_together(${name} "${ARG_ALONE}")
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gmock_main)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  qb_set_sanitizer_options(${name})
endfunction()

# qb_add_benchmark(name SOURCES ... LIBS ...): a Google Benchmark program, built by `./dev bench`.
function(qb_add_benchmark name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  qb_target_defaults(${name})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} benchmark::benchmark_main)
endfunction()

# qb_add_fuzzer(name SOURCES ... LIBS ...): a libFuzzer target (clang only), run by `./dev fuzz`.
function(qb_add_fuzzer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  qb_target_defaults(${name})
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS})
endfunction()
