# The same with soft float.
set(triplet arm-linux-gnueabi)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-arm.cmake)
