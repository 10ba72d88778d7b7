# Enables C and C++17, or says what is wrong with the compilers of this machine.
include(CheckLanguage)
include(LarkspurMissing)

check_language(C)
if(NOT CMAKE_C_COMPILER)
    larkspur_missing("No working C compiler was found (CC names one).")
endif()
enable_language(C)

check_language(CXX)
if(NOT CMAKE_CXX_COMPILER)
    larkspur_missing("No working C++ compiler was found (CXX names one).")
endif()
enable_language(CXX)

if(NOT cxx_std_17 IN_LIST CMAKE_CXX_COMPILE_FEATURES)
    string(CONCAT reason
        "The C++ compiler ${CMAKE_CXX_COMPILER} (${CMAKE_CXX_COMPILER_ID} "
        "${CMAKE_CXX_COMPILER_VERSION}) does not know C++17 (CXX names another).")
    larkspur_missing("${reason}")
endif()
