# 32-bit Windows.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(VNCORE_TRIPLE i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)

# i686 guarantees no SSE; every machine that runs this code has SSE2. Wide loads and floating point
# that rounds as it does natively need it. Callers of a DLL may come with a stack aligned to four
# bytes only.
set(CMAKE_C_FLAGS_INIT "-march=i686 -msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_CXX_FLAGS_INIT "-march=i686 -msse2 -mfpmath=sse -mstackrealign")
