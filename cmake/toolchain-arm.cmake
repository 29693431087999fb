# Production: 32-bit little-endian ARM Linux, run here under qemu-user. Hard float unless the includer says otherwise.
if(NOT triplet)
  set(triplet arm-linux-gnueabihf)
endif()
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
# All is built by one compiler: how older ones passed parameters is of no interest.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L /usr/${triplet})
