# The kernels: loops over memory that know neither Python nor SDL's functions. Include this file
# wherever they are compiled: in the module, in its native tests and in the benches.
set(larkspur_kernel_sources
    ${CMAKE_CURRENT_LIST_DIR}/alpha_kernels.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fade_kernels.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fill_kernels.cpp
    ${CMAKE_CURRENT_LIST_DIR}/flip_kernels.cpp
    ${CMAKE_CURRENT_LIST_DIR}/gradient_kernels.cpp
    ${CMAKE_CURRENT_LIST_DIR}/subtract_kernels.cpp)

# copy_rows() has its reason not to be a memcpy.
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/flip_kernels.cpp PROPERTIES
    COMPILE_OPTIONS -fno-tree-loop-distribute-patterns)
