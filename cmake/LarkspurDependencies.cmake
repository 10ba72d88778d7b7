# Finds Python 2.7's headers, SDL 1.2 and SDL_gfx, or says what to install.
#
# Give -DPython2_EXECUTABLE=<path> to choose the interpreter whose headers are used.
include(LarkspurMissing)

find_package(Python2 2.7 QUIET COMPONENTS Interpreter Development.Module)
if(NOT Python2_FOUND)
    string(CONCAT reason
        "No Python 2.7 with its headers (Python.h) was found "
        "(-DPython2_EXECUTABLE=/path/to/python2.7 names one). "
        "Packages: python2.7-dev (Debian 11, Ubuntu 22.04), python2.7 (Fedora), python2 (Arch's "
        "user repository). Elsewhere script/setup in larkspur's sources finds or builds one.")
    larkspur_missing("${reason}")
endif()
message(STATUS "Python ${Python2_VERSION}: ${Python2_EXECUTABLE}")

# The interpreter's headers come in as system headers: they are not ours to mend.
add_library(larkspur_python INTERFACE)
add_library(larkspur::python ALIAS larkspur_python)
target_include_directories(larkspur_python SYSTEM INTERFACE ${Python2_INCLUDE_DIRS})

find_package(PkgConfig QUIET)
if(NOT PKG_CONFIG_FOUND)
    larkspur_missing("pkg-config was not found. It tells where SDL is.")
endif()
foreach(dependency IN ITEMS "sdl;sdl;SDL 1.2" "sdl_gfx;SDL_gfx;SDL_gfx")
    list(GET dependency 0 name)
    list(GET dependency 1 module)
    list(GET dependency 2 title)
    pkg_check_modules(${name} QUIET IMPORTED_TARGET ${module})
    if(NOT ${name}_FOUND)
        larkspur_missing(
            "${title} with its headers was not found: pkg-config knows no module ${module}.")
    endif()
    message(STATUS "${module} ${${name}_VERSION}")
    add_library(larkspur_${name} INTERFACE)
    add_library(larkspur::${name} ALIAS larkspur_${name})
    target_link_libraries(larkspur_${name} INTERFACE PkgConfig::${name})
endforeach()
