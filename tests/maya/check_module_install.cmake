# Configures the whole project against the stand-in devkit in fresh build trees, builds and
# installs the Maya module, and checks the installed tree and the module file's exact text.
# In: SOURCE_DIR, DEVKIT, WORK_DIR, GENERATOR, CXX_COMPILER, QT_MAJOR, QT_DIR.

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
    -DMAYA_DEVKIT=${DEVKIT} -DPICKER_TESTS=OFF -DPICKER_BENCH=OFF)

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

if(NOT QT_MAJOR EQUAL 6)
    message(STATUS "The stand-in's OpenMayaUI was built with Qt ${QT_MAJOR}; install not checked")
    return()
endif()

set(build "${WORK_DIR}/build")
run_checked(${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${build}" ${configure_args}
    -DPICKER_QT_MAJOR=6 -DQt6_DIR=${QT_DIR})
run_checked(${CMAKE_COMMAND} --build "${build}" --target TalvoraPicker)

set(block2025 "+ MAYAVERSION:2025 PLATFORM:linux TalvoraPicker 1.4.2 .
plug-ins: plug-ins/2025
scripts: scripts
icons: icons
")

set(fresh "${WORK_DIR}/fresh")
run_checked(${CMAKE_COMMAND} --install "${build}" --component maya_module --prefix "${fresh}")
set(module "${fresh}/TalvoraPicker")
foreach(file TalvoraPicker.mod plug-ins/2025/TalvoraPicker.so scripts/userSetup.mel
        scripts/shelf_TalvoraPicker.mel icons/TalvoraPicker.png docs/index.html docs/command.html
        docs/install-in-maya.md)
    if(NOT EXISTS "${module}/${file}")
        message(FATAL_ERROR "the module lacks ${file}")
    endif()
endforeach()
file(GLOB_RECURSE installed RELATIVE "${fresh}" "${fresh}/*")
list(LENGTH installed count)
if(NOT count EQUAL 8)
    message(FATAL_ERROR "the module holds more than it should: ${installed}")
endif()
expect_text("${module}/TalvoraPicker.mod" "${block2025}")

# Maya finds the plug-in through its two entry points and its API version; nothing else leaves.
find_program(NM nm)
if(NM)
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
endif()

# Installing over a module file from builds for other Maya versions keeps their blocks in order
# and replaces only this version's.
set(merged "${WORK_DIR}/merged")
file(WRITE "${merged}/TalvoraPicker/TalvoraPicker.mod"
"+ MAYAVERSION:2026 PLATFORM:linux TalvoraPicker 1.4.2 .
plug-ins: plug-ins/2026

+ MAYAVERSION:2025 PLATFORM:linux TalvoraPicker 1.3.0 .
plug-ins: plug-ins/old

+ MAYAVERSION:2024 PLATFORM:linux TalvoraPicker 1.4.2 .
plug-ins: plug-ins/2024
scripts: scripts
")
run_checked(${CMAKE_COMMAND} --install "${build}" --component maya_module --prefix "${merged}")
expect_text("${merged}/TalvoraPicker/TalvoraPicker.mod"
"+ MAYAVERSION:2024 PLATFORM:linux TalvoraPicker 1.4.2 .
plug-ins: plug-ins/2024
scripts: scripts

${block2025}
+ MAYAVERSION:2026 PLATFORM:linux TalvoraPicker 1.4.2 .
plug-ins: plug-ins/2026
")
