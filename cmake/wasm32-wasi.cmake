# WebAssembly by Debian's clang: no threads, no exceptions, no operating system.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_FLAGS_INIT "-fno-exceptions -fno-rtti")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
