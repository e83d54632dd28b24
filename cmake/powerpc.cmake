# The controller: Linux on a 32-bit PowerPC, big-endian. QEMU runs its programs on this machine.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ppc)
set(CMAKE_C_COMPILER powerpc-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER powerpc-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc-static -L /usr/powerpc-linux-gnu)

# Code for any address is larger here, and a static program stands at fixed ones.
set(CMAKE_C_FLAGS_INIT -fno-pie)
set(CMAKE_CXX_FLAGS_INIT -fno-pie)
set(CMAKE_EXE_LINKER_FLAGS_INIT -no-pie)
