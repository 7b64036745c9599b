# Cross-compiling for 32-bit Windows with mingw-w64 (winpthread is linked statically, so the
# DLL needs no winpthread at run time).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR X86)
set(VX_TRIPLET i686-w64-mingw32)
set(CMAKE_C_COMPILER   ${VX_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VX_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER  ${VX_TRIPLET}-windres)
set(VX_WIDL            ${VX_TRIPLET}-widl)
set(CMAKE_FIND_ROOT_PATH /usr/${VX_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
