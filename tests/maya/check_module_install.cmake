# Configures the whole project against the stand-in devkit in fresh build trees, builds and
# installs the Maya module, and checks the installed tree and the module file's exact text.
# In: SOURCE_DIR, DEVKIT, WORK_DIR, GENERATOR, CXX_COMPILER, CXX_LAUNCHER, CXX_VERSION, QT_MAJOR,
# QT_DIR, QT_VERSION, VERSION (the project's); for Qt 5 also QT_INCLUDE_DIR, QT_LIBRARIES and QT_TOOLS
# (paths joined with "|").

function(run_checked)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
        ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed (${result}): ${ARGN}\n${output}")
    endif()
endfunction()

function(expect_text path expected)
    file(READ "${path}" actual)
    if(NOT actual STREQUAL expected)
        message(FATAL_ERROR "${path} reads\n[${actual}]\ninstead of\n[${expected}]")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
set(configure_args -G "${GENERATOR}" -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    "-DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_LAUNCHER}" -DMAYA_DEVKIT=${DEVKIT} -DPICKER_TESTS=OFF
    -DPICKER_BENCH=OFF)

# The stand-in is Maya 2025, which runs Qt 6: a Qt 5 configuration must stop and say what to do.
set(qt5_args -DPICKER_QT_MAJOR=5)
if(QT_MAJOR EQUAL 5)
    list(APPEND qt5_args -DQt5_DIR=${QT_DIR})
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${WORK_DIR}/qt5" ${configure_args} ${qt5_args}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
string(REGEX REPLACE "[ \t\n]+" " " output "${output}")
if(result EQUAL 0 OR NOT output MATCHES
        "Maya 2025 runs Qt 6, but this build uses Qt 5\\. Configure with -DPICKER_QT_MAJOR=6")
    message(FATAL_ERROR "a Qt 5 build against Maya 2025 was not refused:\n${output}")
endif()

# A devkit named explicitly but missing its parts is a configure error that names them.
file(MAKE_DIRECTORY "${WORK_DIR}/not-a-devkit/include")
execute_process(
    COMMAND ${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${WORK_DIR}/bad" -G "${GENERATOR}"
        -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DMAYA_DEVKIT=${WORK_DIR}/not-a-devkit
        -DPICKER_TESTS=OFF -DPICKER_BENCH=OFF -DPICKER_QT_MAJOR=${QT_MAJOR}
        -DQt${QT_MAJOR}_DIR=${QT_DIR}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
string(REGEX REPLACE "[ \t\n]+" " " output "${output}")
set(missing "include/maya/MTypes\\.h, lib/libOpenMaya\\.so, lib/libOpenMayaUI\\.so, lib/libFoundation\\.so")
if(result EQUAL 0 OR NOT output MATCHES "is not a Maya devkit: it has no ${missing}")
    message(FATAL_ERROR "a folder that is no devkit was not refused by name:\n${output}")
endif()

if(QT_MAJOR EQUAL 5)
    # The stand-in dressed as Maya 2024: no Qt package, only the header archive, Maya's own
    # libQt5*.so and the devkit's moc, rcc and uic; the build must put Qt together from those.
    set(dk "${WORK_DIR}/devkit2024")
    file(COPY "${DEVKIT}/include/maya" DESTINATION "${dk}/include")
    file(READ "${DEVKIT}/include/maya/MTypes.h" types)
    string(REPLACE "MAYA_API_VERSION 20250000" "MAYA_API_VERSION 20240000" types "${types}")
    file(WRITE "${dk}/include/maya/MTypes.h" "${types}")
    file(MAKE_DIRECTORY "${dk}/lib" "${dk}/devkit/bin")
    foreach(lib OpenMaya OpenMayaUI Foundation)
        file(CREATE_LINK "${DEVKIT}/lib/lib${lib}.so" "${dk}/lib/lib${lib}.so" SYMBOLIC)
    endforeach()
    string(REPLACE "|" ";" QT_LIBRARIES "${QT_LIBRARIES}")
    string(REPLACE "|" ";" QT_TOOLS "${QT_TOOLS}")
    foreach(lib IN LISTS QT_LIBRARIES)
        string(REGEX MATCH "libQt5[A-Za-z]+" name "${lib}")
        file(CREATE_LINK "${lib}" "${dk}/lib/${name}.so" SYMBOLIC)
    endforeach()
    foreach(tool IN LISTS QT_TOOLS)
        get_filename_component(name "${tool}" NAME)
        file(CREATE_LINK "${tool}" "${dk}/devkit/bin/${name}" SYMBOLIC)
    endforeach()
    run_checked(${CMAKE_COMMAND} -E chdir "${QT_INCLUDE_DIR}" ${CMAKE_COMMAND} -E tar czf
        "${dk}/include/qt_5.15.2-include.tar.gz" QtCore QtGui QtWidgets)

    set(build "${WORK_DIR}/build2024")
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${build}" -G "${GENERATOR}"
            -DCMAKE_CXX_COMPILER=${CXX_COMPILER} "-DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_LAUNCHER}"
            -DMAYA_DEVKIT=${dk} -DPICKER_QT_MAJOR=5
            -DPICKER_TESTS=OFF -DPICKER_BENCH=OFF
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0 OR NOT output MATCHES "Found MayaQt5: ${build}/maya_qt5_include")
        message(FATAL_ERROR "Maya 2024's Qt was not put together from the devkit:\n${output}")
    endif()
    run_checked(${CMAKE_COMMAND} --build "${build}" --target TalvoraPicker)
    set(fresh "${WORK_DIR}/fresh2024")
    run_checked(${CMAKE_COMMAND} --install "${build}" --component maya_module --prefix "${fresh}")
    expect_text("${fresh}/TalvoraPicker.mod"
"+ MAYAVERSION:2024 PLATFORM:linux TalvoraPicker ${VERSION} TalvoraPicker
plug-ins: plug-ins/2024
scripts: scripts
icons: icons
MAYA_SHELF_PATH +:= shelves
")
    if(NOT EXISTS "${fresh}/TalvoraPicker/plug-ins/2024/TalvoraPicker.so")
        message(FATAL_ERROR "the Maya 2024 module lacks its plug-in")
    endif()
    return()
endif()

# This machine's Qt 6 is not Maya 2025's 6.5: the build must refuse it unless told it is the
# stand-in, and say which compiler and ABI Maya expects.
set(build "${WORK_DIR}/build")
execute_process(
    COMMAND ${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${build}" ${configure_args}
        -DPICKER_QT_MAJOR=6 -DQt6_DIR=${QT_DIR}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
string(REGEX REPLACE "[ \t\n]+" " " output "${output}")
if(NOT output MATCHES "Maya 2025: Qt 6\\.5, gcc 11\\.2, _GLIBCXX_USE_CXX11_ABI=1 \\(from libFoundation\\.so\\)")
    message(FATAL_ERROR "the devkit's versions and ABI were not reported:\n${output}")
endif()
if(NOT QT_VERSION MATCHES "^6\\.5\\." AND (result EQUAL 0 OR NOT output MATCHES
        "Maya 2025 runs Qt 6\\.5, but this build found Qt ${QT_VERSION}"))
    message(FATAL_ERROR "Qt ${QT_VERSION} was not refused for Maya 2025:\n${output}")
endif()
if(NOT CXX_VERSION MATCHES "^11\\.2\\." AND NOT output MATCHES
        "Maya 2025 was built with gcc 11\\.2, this build uses GNU ${CXX_VERSION}")
    message(FATAL_ERROR "gcc ${CXX_VERSION} was not warned about for Maya 2025:\n${output}")
endif()

run_checked(${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${build}" ${configure_args}
    -DPICKER_QT_MAJOR=6 -DQt6_DIR=${QT_DIR} -DPICKER_ALLOW_QT_MISMATCH=ON)
run_checked(${CMAKE_COMMAND} --build "${build}" --target TalvoraPicker)

set(block2025 "+ MAYAVERSION:2025 PLATFORM:linux TalvoraPicker ${VERSION} TalvoraPicker
plug-ins: plug-ins/2025
scripts: scripts
icons: icons
MAYA_SHELF_PATH +:= shelves
")

# The module file sits at the prefix, the module folder beside it: a prefix of ~/maya/modules
# needs no environment variable.
set(fresh "${WORK_DIR}/fresh")
run_checked(${CMAKE_COMMAND} --install "${build}" --component maya_module --prefix "${fresh}")
set(expected TalvoraPicker.mod TalvoraPicker/plug-ins/2025/TalvoraPicker.so
    TalvoraPicker/scripts/userSetup.py TalvoraPicker/shelves/shelf_TalvoraPicker.mel
    TalvoraPicker/icons/TalvoraPicker.png TalvoraPicker/docs/index.html
    TalvoraPicker/docs/command.html TalvoraPicker/docs/install-in-maya.md
    TalvoraPicker/docs/help/quick-start.html TalvoraPicker/docs/help/editing.html
    TalvoraPicker/docs/help/namespaces.html TalvoraPicker/docs/help/shortcuts.html)
file(GLOB_RECURSE installed RELATIVE "${fresh}" "${fresh}/*")
list(SORT installed)
list(SORT expected)
if(NOT installed STREQUAL expected)
    message(FATAL_ERROR "the module holds\n${installed}\ninstead of\n${expected}")
endif()
expect_text("${fresh}/TalvoraPicker.mod" "${block2025}")
set(module "${fresh}/TalvoraPicker")

# Loaded once Maya is up, and only when nothing loaded it in the meantime.
file(READ "${module}/scripts/userSetup.py" setup)
# Two steps: the second pattern needs the function name the first one matched.
if(NOT setup MATCHES "def ([a-z_]+)\\(\\):\n[^\n]*\n?[ ]+if maya\\.cmds\\.pluginInfo\\(\"TalvoraPicker\", query=True, loaded=True\\)")
    message(FATAL_ERROR "userSetup.py does not check whether the plug-in is loaded:\n${setup}")
endif()
if(NOT setup MATCHES "\nmaya\\.cmds\\.evalDeferred\\(${CMAKE_MATCH_1}\\)\n")
    message(FATAL_ERROR "userSetup.py does not defer the checked load:\n${setup}")
endif()

find_program(NM nm)
if(NM)
    # Maya finds the plug-in through its two entry points and its API version; nothing else leaves.
    execute_process(
        COMMAND ${NM} -D -C --defined-only "${module}/plug-ins/2025/TalvoraPicker.so"
        OUTPUT_VARIABLE symbols)
    foreach(symbol "initializePlugin\\(Autodesk::Maya::OpenMaya20250000::MObject\\)"
            "uninitializePlugin\\(Autodesk::Maya::OpenMaya20250000::MObject\\)" "MApiVersion")
        if(NOT symbols MATCHES " ${symbol}\n")
            message(FATAL_ERROR "the plug-in does not export ${symbol}:\n${symbols}")
        endif()
    endforeach()
    if(symbols MATCHES "picker")
        message(FATAL_ERROR "the plug-in exports its internals:\n${symbols}")
    endif()
    # The embedded host belongs to the standalone program and the tests, never to the plug-in.
    execute_process(COMMAND ${NM} -C "${module}/plug-ins/2025/TalvoraPicker.so"
        OUTPUT_VARIABLE symbols)
    if(NOT symbols MATCHES "picker_main::initialize")
        message(FATAL_ERROR "the plug-in's own symbols are not listed; cannot check it:\n${symbols}")
    endif()
    if(symbols MATCHES "picker_embedded_host|picker_mel_parse")
        message(FATAL_ERROR "the plug-in carries embedded-host code")
    endif()
endif()

# Installing over a module file from builds for other Maya versions keeps their blocks in order
# and replaces only this version's.
set(merged "${WORK_DIR}/merged")
file(WRITE "${merged}/TalvoraPicker.mod"
"+ MAYAVERSION:2026 PLATFORM:linux TalvoraPicker ${VERSION} TalvoraPicker
plug-ins: plug-ins/2026

+ MAYAVERSION:2025 PLATFORM:linux TalvoraPicker 1.3.0 TalvoraPicker
plug-ins: plug-ins/old

+ MAYAVERSION:2024 PLATFORM:linux TalvoraPicker ${VERSION} TalvoraPicker
plug-ins: plug-ins/2024
scripts: scripts
")
run_checked(${CMAKE_COMMAND} --install "${build}" --component maya_module --prefix "${merged}")
expect_text("${merged}/TalvoraPicker.mod"
"+ MAYAVERSION:2024 PLATFORM:linux TalvoraPicker ${VERSION} TalvoraPicker
plug-ins: plug-ins/2024
scripts: scripts

${block2025}
+ MAYAVERSION:2026 PLATFORM:linux TalvoraPicker ${VERSION} TalvoraPicker
plug-ins: plug-ins/2026
")
