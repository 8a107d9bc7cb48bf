# Holds a linked plug-in to the C and C++ runtime its Maya version's machines have. A plug-in that
# needs a newer GLIBC, GLIBCXX or CXXABI symbol version links here, then fails to load there with
# "version `GLIBCXX_3.4.30' not found".
# In: LIBRARY, MAYA_VERSION, ENFORCE (fail, removing LIBRARY so that the next build links and
# checks again; otherwise only report), OBJDUMP and CXXFILT (found on the path when not given).
#
# The floors are those of the VFX Reference Platform year each Maya follows, on the base system
# the devtoolset / gcc-toolset builds rely on; the toolsets link newer parts statically. Later
# Maya versions are held to the newest known floor.

cmake_minimum_required(VERSION 3.16)

if(MAYA_VERSION VERSION_LESS 2024)
    set(floor_GLIBC 2.17)
    set(floor_GLIBCXX 3.4.19)
    set(floor_CXXABI 1.3.7)
    set(platform "CentOS/RHEL 7")
    set(toolset "gcc 9.3 from devtoolset-9")
else()
    set(floor_GLIBC 2.28)
    set(floor_GLIBCXX 3.4.25)
    set(floor_CXXABI 1.3.11)
    set(platform "RHEL/Rocky 8")
    set(toolset "gcc 11.2 from gcc-toolset-11")
endif()
set(floors "GLIBC_${floor_GLIBC}, GLIBCXX_${floor_GLIBCXX}, CXXABI_${floor_CXXABI}")
get_filename_component(name "${LIBRARY}" NAME)

# Fails, or only reports, with the text made of all the arguments.
function(refuse)
    string(CONCAT text ${ARGV})
    if(ENFORCE)
        file(REMOVE "${LIBRARY}")
        message(FATAL_ERROR "${text}\n${name} is removed, so that the next build links and checks "
            "it again.")
    endif()
    message(STATUS "${text}\n(Reported only: built against the stand-in devkit, or with "
        "PICKER_ENFORCE_SYMBOL_FLOOR off.)")
endfunction()

if(NOT OBJDUMP)
    find_program(OBJDUMP objdump)
endif()
if(NOT OBJDUMP)
    refuse("Cannot check ${name} against Maya ${MAYA_VERSION}'s runtime: objdump (binutils) is "
        "not found.")
    return()
endif()
# Mangled names: they hold no brackets or semicolons to confuse CMake's lists.
execute_process(COMMAND "${OBJDUMP}" -T "${LIBRARY}" RESULT_VARIABLE result
    OUTPUT_VARIABLE table ERROR_VARIABLE error)
if(NOT result EQUAL 0)
    refuse("Cannot read the symbol versions of ${LIBRARY}: ${error}")
    return()
endif()

# Only what the library needs from elsewhere: undefined symbols with their version.
string(REGEX MATCHALL "\\*UND\\*[ \t]+[0-9a-f]+[ \t]+\\(?(GLIBC|GLIBCXX|CXXABI)_[0-9.]+\\)?[ \t]+[^ \t\n]+"
    needed "${table}")
set(above)
foreach(entry IN LISTS needed)
    string(REGEX MATCH "(GLIBC|GLIBCXX|CXXABI)_([0-9.]+)\\)?[ \t]+([^ \t]+)$" _ "${entry}")
    set(family "${CMAKE_MATCH_1}")
    set(version "${CMAKE_MATCH_2}")
    if(version VERSION_GREATER floor_${family})
        list(APPEND above "${family}_${version}|${CMAKE_MATCH_3}")
    endif()
endforeach()

if(NOT above)
    message(STATUS "${name}: its runtime symbol versions are within Maya ${MAYA_VERSION}'s "
        "(${floors})")
    return()
endif()

if(NOT CXXFILT)
    find_program(CXXFILT c++filt)
endif()
list(SORT above COMPARE NATURAL ORDER DESCENDING)
set(lines)
foreach(entry IN LISTS above)
    string(REPLACE "|" ";" parts "${entry}")
    list(GET parts 0 version)
    list(GET parts 1 symbol)
    string(REGEX REPLACE "_[0-9.]+$" "" family "${version}")
    if(CXXFILT)
        execute_process(COMMAND "${CXXFILT}" "${symbol}" OUTPUT_VARIABLE symbol
            OUTPUT_STRIP_TRAILING_WHITESPACE)
    endif()
    string(APPEND lines "\n  ${version} (floor ${family}_${floor_${family}}): ${symbol}")
endforeach()
refuse("${name} needs newer C/C++ runtime symbols than Maya ${MAYA_VERSION}'s machines have "
    "(${platform}: at most ${floors}):${lines}\nMaya would not load it there. Build with "
    "${toolset}, as docs/install-in-maya.md shows.")
