# Qt 5.15 as a Maya 2022-2024 devkit ships it, which has no dependable Qt5Config: the headers
# from include/qt_5.15.2-include.tar.gz (extracted in place, or into the build folder here),
# Maya's own libQt5*.so, and the devkit's moc, rcc and uic (devkit/bin, older layouts bin).
# In: Maya_ROOTS. Defines MayaQt5_FOUND, Qt5Core_VERSION and the imported targets Qt5::Core,
# Qt5::Gui, Qt5::Widgets, Qt5::moc, Qt5::rcc and Qt5::uic that the rest of the build uses.

set(_mayaqt_suffixes include/qt_5.15.2-include include/qt-5.15.2-include include/Qt include)
find_path(MayaQt5_INCLUDE_DIR QtCore/qglobal.h
    PATHS ${Maya_ROOTS} PATH_SUFFIXES ${_mayaqt_suffixes} NO_DEFAULT_PATH)
if(NOT MayaQt5_INCLUDE_DIR)
    find_file(MayaQt5_HEADER_ARCHIVE NAMES qt_5.15.2-include.tar.gz qt-5.15.2-include.tar.gz
        PATHS ${Maya_ROOTS} PATH_SUFFIXES include NO_DEFAULT_PATH)
    if(MayaQt5_HEADER_ARCHIVE)
        set(_mayaqt_unpacked "${CMAKE_BINARY_DIR}/maya_qt5_include")
        file(MAKE_DIRECTORY "${_mayaqt_unpacked}")
        execute_process(COMMAND ${CMAKE_COMMAND} -E tar xzf "${MayaQt5_HEADER_ARCHIVE}"
            WORKING_DIRECTORY "${_mayaqt_unpacked}" RESULT_VARIABLE _mayaqt_result)
        if(_mayaqt_result EQUAL 0)
            find_path(MayaQt5_INCLUDE_DIR QtCore/qglobal.h
                PATHS "${_mayaqt_unpacked}" "${_mayaqt_unpacked}/qt_5.15.2-include"
                NO_DEFAULT_PATH)
        endif()
    endif()
endif()

set(_mayaqt_required MayaQt5_INCLUDE_DIR)
foreach(_module Core Gui Widgets)
    find_library(MayaQt5_${_module}_LIBRARY Qt5${_module}
        PATHS ${Maya_ROOTS} PATH_SUFFIXES lib NO_DEFAULT_PATH)
    list(APPEND _mayaqt_required MayaQt5_${_module}_LIBRARY)
endforeach()
foreach(_tool moc rcc uic)
    find_program(MayaQt5_${_tool}_EXECUTABLE ${_tool}
        PATHS ${Maya_ROOTS} PATH_SUFFIXES devkit/bin bin NO_DEFAULT_PATH)
    list(APPEND _mayaqt_required MayaQt5_${_tool}_EXECUTABLE)
endforeach()

if(MayaQt5_INCLUDE_DIR)
    foreach(_header qconfig.h qtcore-config.h qglobal.h)
        if(NOT Qt5Core_VERSION AND EXISTS "${MayaQt5_INCLUDE_DIR}/QtCore/${_header}")
            file(STRINGS "${MayaQt5_INCLUDE_DIR}/QtCore/${_header}" _mayaqt_version_line
                REGEX "^#[ \t]*define[ \t]+QT_VERSION_STR[ \t]+\"[0-9.]+\"")
            string(REGEX MATCH "[0-9]+\\.[0-9]+\\.[0-9]+" Qt5Core_VERSION
                "${_mayaqt_version_line}")
        endif()
    endforeach()
endif()

set(_mayaqt_reason "Maya's Qt is the devkit's include/qt_5.15.2-include.tar.gz, the libQt5*.so \
in Maya's lib folder (set MAYA_LOCATION) and moc, rcc and uic in the devkit's devkit/bin or bin")
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(MayaQt5
    REQUIRED_VARS ${_mayaqt_required} Qt5Core_VERSION
    VERSION_VAR Qt5Core_VERSION
    REASON_FAILURE_MESSAGE "${_mayaqt_reason}")

if(MayaQt5_FOUND AND NOT TARGET Qt5::Core)
    string(REPLACE "." ";" _mayaqt_parts "${Qt5Core_VERSION}")
    list(GET _mayaqt_parts 0 Qt5Core_VERSION_MAJOR)
    list(GET _mayaqt_parts 1 Qt5Core_VERSION_MINOR)
    set(Qt5_FOUND TRUE)
    set(Qt5_VERSION "${Qt5Core_VERSION}")
    set(Qt5_VERSION_MAJOR "${Qt5Core_VERSION_MAJOR}")
    set(Qt5_VERSION_MINOR "${Qt5Core_VERSION_MINOR}")
    set(Qt5Widgets_VERSION "${Qt5Core_VERSION}")

    set(_mayaqt_depends_Core "")
    set(_mayaqt_depends_Gui "Qt5::Core")
    set(_mayaqt_depends_Widgets "Qt5::Gui")
    foreach(_module Core Gui Widgets)
        string(TOUPPER "${_module}" _upper)
        add_library(Qt5::${_module} SHARED IMPORTED)
        set_target_properties(Qt5::${_module} PROPERTIES
            IMPORTED_LOCATION "${MayaQt5_${_module}_LIBRARY}"
            INTERFACE_INCLUDE_DIRECTORIES
                "${MayaQt5_INCLUDE_DIR};${MayaQt5_INCLUDE_DIR}/Qt${_module}"
            INTERFACE_COMPILE_DEFINITIONS "QT_${_upper}_LIB"
            INTERFACE_LINK_LIBRARIES "${_mayaqt_depends_${_module}}")
    endforeach()
    # What AUTOMOC reads to pick the moc for this Qt.
    set_target_properties(Qt5::Core PROPERTIES
        INTERFACE_QT_MAJOR_VERSION 5
        COMPATIBLE_INTERFACE_STRING QT_MAJOR_VERSION)
    # Maya's Qt is built with reduce-relocations: its qglobal.h refuses code built without -fPIC,
    # executables' -fPIE included, as Qt's own package says.
    set_property(TARGET Qt5::Core APPEND PROPERTY INTERFACE_COMPILE_OPTIONS -fPIC)
    foreach(_tool moc rcc uic)
        add_executable(Qt5::${_tool} IMPORTED)
        set_target_properties(Qt5::${_tool} PROPERTIES
            IMPORTED_LOCATION "${MayaQt5_${_tool}_EXECUTABLE}")
    endforeach()
endif()

mark_as_advanced(MayaQt5_INCLUDE_DIR MayaQt5_HEADER_ARCHIVE MayaQt5_Core_LIBRARY
    MayaQt5_Gui_LIBRARY MayaQt5_Widgets_LIBRARY MayaQt5_moc_EXECUTABLE MayaQt5_rcc_EXECUTABLE
    MayaQt5_uic_EXECUTABLE)
