# Finds a Maya devkit: -DMAYA_DEVKIT=<dir>, or the DEVKIT_LOCATION / MAYA_LOCATION environment.
#
# Defines Maya_FOUND, Maya_INCLUDE_DIR, Maya_API_VERSION (eight digits), Maya_VERSION (2025),
# Maya_QT_MAJOR and Maya_CXX11_ABI (what that Maya was built with), and the imported target
# Maya::Maya (headers, OpenMaya, OpenMayaUI, Foundation).

set(MAYA_DEVKIT "" CACHE PATH "Maya devkit (or Maya installation) to build the plug-in against")

set(_maya_roots)
foreach(_maya_root "${MAYA_DEVKIT}" "$ENV{DEVKIT_LOCATION}" "$ENV{MAYA_LOCATION}")
    if(_maya_root)
        list(APPEND _maya_roots "${_maya_root}")
    endif()
endforeach()

if(_maya_roots)
    find_path(Maya_INCLUDE_DIR maya/MTypes.h
        PATHS ${_maya_roots} PATH_SUFFIXES include NO_DEFAULT_PATH)
    foreach(_maya_lib OpenMaya OpenMayaUI Foundation)
        find_library(Maya_${_maya_lib}_LIBRARY ${_maya_lib}
            PATHS ${_maya_roots} PATH_SUFFIXES lib NO_DEFAULT_PATH)
    endforeach()
endif()

if(Maya_INCLUDE_DIR AND EXISTS "${Maya_INCLUDE_DIR}/maya/MTypes.h")
    file(STRINGS "${Maya_INCLUDE_DIR}/maya/MTypes.h" _maya_api_line
        REGEX "^#define[ \t]+MAYA_API_VERSION[ \t]+[0-9]+")
    string(REGEX REPLACE ".*MAYA_API_VERSION[ \t]+([0-9]+).*" "\\1" Maya_API_VERSION
        "${_maya_api_line}")
    string(SUBSTRING "${Maya_API_VERSION}" 0 4 Maya_VERSION)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Maya
    REQUIRED_VARS Maya_INCLUDE_DIR Maya_OpenMaya_LIBRARY Maya_OpenMayaUI_LIBRARY
                  Maya_Foundation_LIBRARY Maya_API_VERSION
    VERSION_VAR Maya_VERSION)

if(Maya_FOUND)
    # Maya 2025 moved to Qt 6; 2024 is the first built with the C++11 string ABI.
    if(Maya_VERSION VERSION_LESS 2025)
        set(Maya_QT_MAJOR 5)
    else()
        set(Maya_QT_MAJOR 6)
    endif()
    if(Maya_VERSION VERSION_LESS 2024)
        set(Maya_CXX11_ABI 0)
    else()
        set(Maya_CXX11_ABI 1)
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
