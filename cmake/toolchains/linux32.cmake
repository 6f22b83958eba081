# Linux on 32 bits: the compiler of this machine, from Debian's g++-multilib, and the libraries in build/i386, where
# scripts/setup-i386 has put them.
set(CMAKE_CXX_FLAGS_INIT "-m32")

get_filename_component(i386 ${CMAKE_CURRENT_LIST_DIR}/../../build/i386 ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${i386})
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_LIBDIR} ${i386}/usr/lib/i386-linux-gnu/pkgconfig)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${i386})

# Programs find them there, and these find each other, which is what the older form of the tag is for.
set(path ${i386}/usr/lib/i386-linux-gnu)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--disable-new-dtags,-rpath,${path},-rpath-link,${path}")
