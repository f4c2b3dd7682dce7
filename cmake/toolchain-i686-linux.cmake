# 32-bit Linux on a 64-bit machine (Debian's multilib packages, which leave the kernel's headers in
# the folder of the 64-bit machine). SSE2 gives floating point that rounds as it does elsewhere.
set(flags "-m32 -msse2 -mfpmath=sse -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
