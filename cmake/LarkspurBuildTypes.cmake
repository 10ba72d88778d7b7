# Release is the default; Sanitize is a debug build under AddressSanitizer and
# UndefinedBehaviorSanitizer whose reports end the process; Fuzz is the like for fuzz targets, with
# clang's coverage.
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Release, Sanitize or Fuzz" FORCE)
endif()
set_property(CACHE CMAKE_BUILD_TYPE PROPERTY STRINGS Release Sanitize Fuzz)

# "undefined" leaves out a float that does not fit into the integer it is cast to.
set(larkspur_sanitizers "-fsanitize=address,undefined,float-cast-overflow \
-fno-sanitize-recover=undefined,float-cast-overflow")
set(CMAKE_C_FLAGS_SANITIZE "-O1 -g -fno-omit-frame-pointer ${larkspur_sanitizers}")
set(CMAKE_CXX_FLAGS_SANITIZE "${CMAKE_C_FLAGS_SANITIZE}")
set(CMAKE_EXE_LINKER_FLAGS_SANITIZE "${larkspur_sanitizers}")
set(CMAKE_MODULE_LINKER_FLAGS_SANITIZE "${larkspur_sanitizers}")
set(CMAKE_SHARED_LINKER_FLAGS_SANITIZE "${larkspur_sanitizers}")

set(CMAKE_CXX_FLAGS_FUZZ "-O2 -g -fno-omit-frame-pointer -fsanitize=fuzzer-no-link \
${larkspur_sanitizers}")
set(CMAKE_C_FLAGS_FUZZ "${CMAKE_CXX_FLAGS_FUZZ}")
set(CMAKE_EXE_LINKER_FLAGS_FUZZ "${larkspur_sanitizers}")
set(CMAKE_MODULE_LINKER_FLAGS_FUZZ "${larkspur_sanitizers}")
set(CMAKE_SHARED_LINKER_FLAGS_FUZZ "${larkspur_sanitizers}")
