# larkspur_missing(REASON): ends the configuration, tells why and which packages to install.
#
# The reason is also left in missing.txt in the build folder, for setup.py to end with.
function(larkspur_missing reason)
    file(WRITE ${CMAKE_BINARY_DIR}/missing.txt "${reason}\n")
    file(READ ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/packages.txt packages)
    message(FATAL_ERROR "${reason}\n${packages}")
endfunction()
