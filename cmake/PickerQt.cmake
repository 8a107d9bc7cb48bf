# Picks Qt 5.15 or Qt 6 from PICKER_QT_MAJOR and exposes version-neutral target names.
if(NOT PICKER_QT_MAJOR MATCHES "^(5|6)$")
    message(FATAL_ERROR "PICKER_QT_MAJOR must be 5 or 6, not '${PICKER_QT_MAJOR}'")
endif()

set(_picker_qt Qt${PICKER_QT_MAJOR})
if(PICKER_QT_MAJOR EQUAL 5)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Test)
else()
    find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets Test)
endif()

set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

foreach(_component Core Gui Widgets Test)
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
