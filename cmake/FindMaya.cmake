# Finds a Maya devkit: -DMAYA_DEVKIT=<dir>, or the DEVKIT_LOCATION / MAYA_LOCATION environment.
# The headers come from the devkit, the libraries from the Maya installation (MAYA_LOCATION): a
# devkit holds no libOpenMaya.so. An explicit MAYA_DEVKIT without them stops the configure and
# names what is missing.
#
# Defines Maya_FOUND, Maya_ROOTS (where the devkit and Maya's libraries were looked for),
# Maya_INCLUDE_DIR, Maya_API_VERSION (eight digits), Maya_VERSION (2025), what that Maya was
# built with: Maya_QT_MAJOR, Maya_QT_VERSION (5.15 or 6.5), Maya_GCC_VERSION, Maya_GCC_TOOLSET
# (the Red Hat toolset that gcc comes in) and Maya_CXX11_ABI (read from the devkit's
# libFoundation.so when it is there), Maya_STAND_IN (the test suite's stand-in devkit, no real
# Maya), and the imported target Maya::Maya (headers, OpenMaya, OpenMayaUI, Foundation).

set(MAYA_DEVKIT "" CACHE PATH "Maya devkit (or Maya installation) to build the plug-in against")

set(Maya_ROOTS)
foreach(_maya_root "${MAYA_DEVKIT}" "$ENV{DEVKIT_LOCATION}" "$ENV{MAYA_LOCATION}")
    if(_maya_root)
        list(APPEND Maya_ROOTS "${_maya_root}")
    endif()
endforeach()

if(Maya_ROOTS)
    find_path(Maya_INCLUDE_DIR maya/MTypes.h
        PATHS ${Maya_ROOTS} PATH_SUFFIXES include NO_DEFAULT_PATH)
    foreach(_maya_lib OpenMaya OpenMayaUI Foundation)
        find_library(Maya_${_maya_lib}_LIBRARY ${_maya_lib}
            PATHS ${Maya_ROOTS} PATH_SUFFIXES lib NO_DEFAULT_PATH)
    endforeach()
endif()

if(MAYA_DEVKIT)
    if(NOT Maya_INCLUDE_DIR)
        message(FATAL_ERROR "MAYA_DEVKIT=${MAYA_DEVKIT} is not a Maya devkit: it has no "
            "include/maya/MTypes.h (nor has DEVKIT_LOCATION or MAYA_LOCATION). Unpack the devkit "
            "for your Maya version and point MAYA_DEVKIT at the folder holding include/.")
    endif()
    set(_maya_missing)
    foreach(_maya_lib OpenMaya OpenMayaUI Foundation)
        if(NOT Maya_${_maya_lib}_LIBRARY)
            list(APPEND _maya_missing "lib/lib${_maya_lib}.so")
        endif()
    endforeach()
    if(_maya_missing)
        list(JOIN _maya_missing ", " _maya_missing)
        if("$ENV{MAYA_LOCATION}" STREQUAL "")
            set(_maya_location "MAYA_LOCATION is not set")
        else()
            set(_maya_location "nor has MAYA_LOCATION=$ENV{MAYA_LOCATION}")
        endif()
        message(FATAL_ERROR "Maya's libraries are not found: MAYA_DEVKIT=${MAYA_DEVKIT} has no "
            "${_maya_missing}, ${_maya_location}. Set MAYA_LOCATION to the Maya installation "
            "whose lib/ holds them (for example MAYA_LOCATION=/usr/autodesk/maya2025).")
    endif()
endif()

if(Maya_INCLUDE_DIR AND EXISTS "${Maya_INCLUDE_DIR}/maya/MTypes.h")
    file(STRINGS "${Maya_INCLUDE_DIR}/maya/MTypes.h" _maya_api_line
        REGEX "^#define[ \t]+MAYA_API_VERSION[ \t]+[0-9]+")
    string(REGEX REPLACE ".*MAYA_API_VERSION[ \t]+([0-9]+).*" "\\1" Maya_API_VERSION
        "${_maya_api_line}")
    string(SUBSTRING "${Maya_API_VERSION}" 0 4 Maya_VERSION)
    file(STRINGS "${Maya_INCLUDE_DIR}/maya/MTypes.h" _maya_stand_in
        REGEX "^#define[ \t]+PICKER_STAND_IN_DEVKIT")
    if(_maya_stand_in)
        set(Maya_STAND_IN TRUE)
    else()
        set(Maya_STAND_IN FALSE)
    endif()
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Maya
    REQUIRED_VARS Maya_INCLUDE_DIR Maya_OpenMaya_LIBRARY Maya_OpenMayaUI_LIBRARY
                  Maya_Foundation_LIBRARY Maya_API_VERSION
    VERSION_VAR Maya_VERSION)

if(Maya_FOUND)
    # What each Maya runs; a plug-in built otherwise links, then fails to load.
    if(Maya_VERSION VERSION_LESS 2025)
        set(Maya_QT_MAJOR 5)
        set(Maya_QT_VERSION 5.15)
    else()
        set(Maya_QT_MAJOR 6)
        set(Maya_QT_VERSION 6.5)
    endif()
    # The toolsets link the parts of libstdc++ newer than the base system's statically.
    if(Maya_VERSION VERSION_LESS 2024)
        set(Maya_GCC_VERSION 9.3)
        set(Maya_GCC_TOOLSET devtoolset-9)
        set(Maya_CXX11_ABI 0)
    else()
        set(Maya_GCC_VERSION 11.2)
        set(Maya_GCC_TOOLSET gcc-toolset-11)
        set(Maya_CXX11_ABI 1)
    endif()
    set(_maya_abi_source "the table for Maya ${Maya_VERSION}")
    find_program(Maya_NM nm)
    mark_as_advanced(Maya_NM)
    if(Maya_NM)
        execute_process(COMMAND ${Maya_NM} -D "${Maya_Foundation_LIBRARY}"
            OUTPUT_VARIABLE _maya_foundation_symbols ERROR_QUIET RESULT_VARIABLE _maya_nm_result)
        if(_maya_nm_result EQUAL 0 AND _maya_foundation_symbols MATCHES "_Z")
            if(_maya_foundation_symbols MATCHES "__cxx11")
                set(Maya_CXX11_ABI 1)
            else()
                set(Maya_CXX11_ABI 0)
            endif()
            set(_maya_abi_source "libFoundation.so")
        endif()
    endif()
    if(NOT Maya_FIND_QUIETLY OR MAYA_DEVKIT)
        message(STATUS "Maya ${Maya_VERSION}: Qt ${Maya_QT_VERSION}, gcc ${Maya_GCC_VERSION}, "
            "_GLIBCXX_USE_CXX11_ABI=${Maya_CXX11_ABI} (from ${_maya_abi_source})")
    endif()

    if(NOT TARGET Maya::Maya)
        foreach(_maya_lib OpenMaya OpenMayaUI Foundation)
            add_library(Maya::${_maya_lib} SHARED IMPORTED)
            set_target_properties(Maya::${_maya_lib} PROPERTIES
                IMPORTED_LOCATION "${Maya_${_maya_lib}_LIBRARY}")
        endforeach()
        add_library(Maya::Maya INTERFACE IMPORTED)
        set_target_properties(Maya::Maya PROPERTIES
            INTERFACE_INCLUDE_DIRECTORIES "${Maya_INCLUDE_DIR}"
            INTERFACE_COMPILE_DEFINITIONS "_BOOL;LINUX;LINUX_64;REQUIRE_IOSTREAM"
            INTERFACE_LINK_LIBRARIES "Maya::OpenMaya;Maya::OpenMayaUI;Maya::Foundation")
    endif()
endif()

mark_as_advanced(Maya_INCLUDE_DIR Maya_OpenMaya_LIBRARY Maya_OpenMayaUI_LIBRARY
    Maya_Foundation_LIBRARY)
