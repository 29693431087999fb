# What is shipped is compiled with mcs_build_flags, tests with mcs_test_flags.
add_library(mcs_warnings INTERFACE)
target_compile_options(mcs_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<CXX_COMPILER_ID:GNU>:-Wcast-align=strict>
  $<$<CXX_COMPILER_ID:Clang>:-Wcast-align>
  $<$<BOOL:${MCS_WERROR}>:-Werror>)

add_library(mcs_build_flags INTERFACE)
target_link_libraries(mcs_build_flags INTERFACE mcs_warnings)
# The same bytes wherever they are built; but gcov has to find the sources.
if(NOT MCS_COVERAGE)
  target_compile_options(mcs_build_flags INTERFACE
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
endif()

# Sanitizers and coverage look at what is under test. In the tests themselves they would cost as much time again.
add_library(mcs_test_flags INTERFACE)
target_link_libraries(mcs_test_flags INTERFACE mcs_warnings)
if(MCS_SANITIZERS)
  target_compile_options(mcs_build_flags INTERFACE
    -fsanitize=${MCS_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(mcs_build_flags INTERFACE -fsanitize=${MCS_SANITIZERS})
  target_link_options(mcs_test_flags INTERFACE -fsanitize=${MCS_SANITIZERS})
endif()
if(MCS_COVERAGE)
  target_compile_options(mcs_build_flags INTERFACE --coverage)
  target_link_options(mcs_build_flags INTERFACE --coverage)
  target_link_options(mcs_test_flags INTERFACE --coverage)
endif()

# The same interface on 32-bit systems as on 64-bit ones. Only what stands in for libc does without.
set(MCS_64_BIT_INTERFACES _FILE_OFFSET_BITS=64 _TIME_BITS=64)
