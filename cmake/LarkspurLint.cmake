# With LARKSPUR_LINT on, clang-tidy checks each unit before it is compiled. A unit with a finding is
# not compiled, so the next build checks it again, as it does units of which any header changed.
# Options of g++ that clang refuses are left out of such a tree.
option(LARKSPUR_LINT "Check units with clang-tidy as they are built" OFF)
if(NOT LARKSPUR_LINT)
    return()
endif()

find_program(LARKSPUR_CLANG_TIDY clang-tidy REQUIRED)
mark_as_advanced(LARKSPUR_CLANG_TIDY)

# With other checks or another clang-tidy all is checked anew: the command names both.
file(GLOB_RECURSE larkspur_tidy_files LIST_DIRECTORIES OFF
    ${PROJECT_SOURCE_DIR}/bench/.clang-tidy
    ${PROJECT_SOURCE_DIR}/src/.clang-tidy
    ${PROJECT_SOURCE_DIR}/tests/.clang-tidy)
list(APPEND larkspur_tidy_files ${PROJECT_SOURCE_DIR}/.clang-tidy)
execute_process(COMMAND ${LARKSPUR_CLANG_TIDY} --version OUTPUT_VARIABLE larkspur_tidy_state)
foreach(file IN LISTS larkspur_tidy_files)
    file(READ ${file} checks)
    string(APPEND larkspur_tidy_state "${checks}")
endforeach()
string(MD5 larkspur_tidy_state "${larkspur_tidy_state}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
    ${larkspur_tidy_files} ${LARKSPUR_CLANG_TIDY})

# Warnings and optimizations that only g++ knows are passed over.
set(CMAKE_CXX_CLANG_TIDY ${LARKSPUR_CLANG_TIDY} --quiet
    --extra-arg=-Wno-ignored-optimization-argument --extra-arg=-Wno-unknown-warning-option
    --extra-arg=-DLARKSPUR_CHECKS_${larkspur_tidy_state})
set(CMAKE_C_CLANG_TIDY ${CMAKE_CXX_CLANG_TIDY})
