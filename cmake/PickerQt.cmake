# Picks Qt 5.15 or Qt 6 from PICKER_QT_MAJOR and exposes version-neutral target names. Against a
# Maya devkit the Qt is the one that Maya ships: 2025 and later as a Qt prefix at <devkit>/Qt,
# 2022-2024 as pieces that FindMayaQt5 puts together.
if(NOT PICKER_QT_MAJOR MATCHES "^(5|6)$")
    message(FATAL_ERROR "PICKER_QT_MAJOR must be 5 or 6, not '${PICKER_QT_MAJOR}'")
endif()

set(_picker_qt_components Core Gui Widgets)
if(PICKER_TESTS)
    list(APPEND _picker_qt_components Test)
endif()

set(_picker_qt Qt${PICKER_QT_MAJOR})
if(Maya_FOUND AND PICKER_QT_MAJOR EQUAL 6 AND Maya_QT_MAJOR EQUAL 6)
    foreach(_root IN LISTS Maya_ROOTS)
        if(EXISTS "${_root}/Qt/lib/cmake/Qt6")
            list(APPEND CMAKE_PREFIX_PATH "${_root}/Qt")
        elseif(EXISTS "${_root}/Qt/Qt/lib/cmake/Qt6")
            # Qt.tgz holds a top-level Qt/, so extracting it into a Qt folder of its own nests it.
            message(STATUS "The devkit's Qt is at ${_root}/Qt/Qt: Qt.tgz was extracted into a Qt "
                "folder of its own. Using it there; `cd ${_root} && tar -xzf Qt.tgz` puts it at "
                "${_root}/Qt.")
            list(APPEND CMAKE_PREFIX_PATH "${_root}/Qt/Qt")
        else()
            foreach(_archive Qt.tgz Qt.tar.gz)
                if(EXISTS "${_root}/${_archive}")
                    message(FATAL_ERROR "The devkit's Qt is still packed: run "
                        "`cd ${_root} && tar -xzf ${_archive}`. The archive holds a top-level Qt/, "
                        "which gives ${_root}/Qt/lib/cmake/Qt6.")
                endif()
            endforeach()
        endif()
    endforeach()
endif()

if(Maya_FOUND AND PICKER_QT_MAJOR EQUAL 5 AND Maya_QT_MAJOR EQUAL 5)
    # The Qt 5 headers, libraries and tools Maya itself ships; never the system's.
    if(PICKER_TESTS)
        message(FATAL_ERROR "Maya ${Maya_VERSION}'s Qt has no Qt Test: build the plug-in with "
            "-DPICKER_TESTS=OFF, and the tests in a build without MAYA_DEVKIT.")
    endif()
    find_package(MayaQt5 REQUIRED)
elseif(PICKER_QT_MAJOR EQUAL 5)
    find_package(Qt5 5.15 REQUIRED COMPONENTS ${_picker_qt_components})
else()
    find_package(Qt6 REQUIRED COMPONENTS ${_picker_qt_components})
endif()

set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

foreach(_component IN LISTS _picker_qt_components)
    if(NOT TARGET Picker::Qt${_component})
        add_library(Picker::Qt${_component} INTERFACE IMPORTED)
        set_target_properties(Picker::Qt${_component} PROPERTIES
            INTERFACE_LINK_LIBRARIES ${_picker_qt}::${_component})
    endif()
endforeach()

# Encoding slips (implicit const char* <-> QString) are compile errors in our own code.
set(PICKER_QT_DEFINES
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH
    QT_NO_URL_CAST_FROM_STRING)
