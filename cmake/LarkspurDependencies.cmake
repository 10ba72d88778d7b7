# Finds Python 2.7's headers, SDL 1.2 and SDL_gfx, or says what to install.
#
# Give -DPython2_EXECUTABLE=<path> to choose the interpreter whose headers are used.

find_package(Python2 2.7 QUIET COMPONENTS Interpreter Development.Module)
if(NOT Python2_FOUND)
    message(FATAL_ERROR
        "larkspur needs Python 2.7 with its headers, and none was found.\n"
        "Run script/setup, which finds or installs one, or name the interpreter with "
        "-DPython2_EXECUTABLE=/path/to/python2.7.")
endif()
message(STATUS "Python ${Python2_VERSION}: ${Python2_EXECUTABLE}")

# The interpreter's headers come in as system headers: they are not ours to mend.
add_library(larkspur_python INTERFACE)
add_library(larkspur::python ALIAS larkspur_python)
target_include_directories(larkspur_python SYSTEM INTERFACE ${Python2_INCLUDE_DIRS})

find_package(PkgConfig REQUIRED)
foreach(dependency IN ITEMS "sdl;sdl;libsdl1.2-dev" "sdl_gfx;SDL_gfx;libsdl-gfx1.2-dev")
    list(GET dependency 0 name)
    list(GET dependency 1 module)
    list(GET dependency 2 package)
    pkg_check_modules(${name} QUIET IMPORTED_TARGET ${module})
    if(NOT ${name}_FOUND)
        message(FATAL_ERROR
            "larkspur needs ${module}'s headers and library, and pkg-config does not know them.\n"
            "Run script/setup, or install the package ${package}.")
    endif()
    message(STATUS "${module} ${${name}_VERSION}")
    add_library(larkspur_${name} INTERFACE)
    add_library(larkspur::${name} ALIAS larkspur_${name})
    target_link_libraries(larkspur_${name} INTERFACE PkgConfig::${name})
endforeach()
