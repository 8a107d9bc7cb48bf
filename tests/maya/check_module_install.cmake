# Follows docs/install-in-maya.md against the stand-in devkit laid out as Autodesk ships it (the
# headers and Qt.tgz in the devkit, the libraries in the Maya installation): configures the whole
# project in fresh build trees, builds, installs and packs the Maya module, and checks the
# installed tree, the module file's exact text, the shelf's MEL and the release archive.
# In: SOURCE_DIR, DEVKIT, WORK_DIR, GENERATOR, CXX_COMPILER, CXX_LAUNCHER, CXX_VERSION, QT_MAJOR,
# QT_DIR, QT_VERSION, VERSION (the project's); for Qt 5 also QT_INCLUDE_DIR, QT_LIBRARIES and QT_TOOLS
# (paths joined with "|").

function(run_checked)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
        ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed (${result}): ${ARGN}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_text path expected)
    file(READ "${path}" actual)
    if(NOT actual STREQUAL expected)
        message(FATAL_ERROR "${path} reads\n[${actual}]\ninstead of\n[${expected}]")
    endif()
endfunction()

# configure(BUILD MAYA_LOCATION args...): a fresh configure as a user runs it, with MAYA_LOCATION
# set ("" for unset) and nothing else of Maya's in the environment; sets result and output (one
# line, blanks folded).
function(configure build maya_location)
    set(location --unset=MAYA_LOCATION)
    if(maya_location)
        set(location MAYA_LOCATION=${maya_location})
    endif()
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env --unset=DEVKIT_LOCATION ${location}
            ${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${build}" -G "${GENERATOR}"
            -DCMAKE_CXX_COMPILER=${CXX_COMPILER} "-DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_LAUNCHER}"
            -DCMAKE_BUILD_TYPE=Release -DPICKER_TESTS=OFF -DPICKER_BENCH=OFF ${ARGN}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    string(REGEX REPLACE "[ \t\n]+" " " output "${output}")
    set(result "${result}" PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

# expect_refused(WHAT MAYA_LOCATION PATTERN args...): the configure stops and says PATTERN.
function(expect_refused what maya_location pattern)
    configure("${WORK_DIR}/refused" "${maya_location}" ${ARGN})
    if(result EQUAL 0 OR NOT output MATCHES "${pattern}")
        message(FATAL_ERROR "${what} was not refused as expected:\n${output}")
    endif()
    file(REMOVE_RECURSE "${WORK_DIR}/refused")
endfunction()

function(expect_cached build variable expected)
    file(STRINGS "${build}/CMakeCache.txt" line REGEX "^${variable}:")
    string(REGEX REPLACE "^[^=]*=" "" value "${line}")
    if(NOT value STREQUAL expected)
        message(FATAL_ERROR "${variable} is ${value}, not ${expected}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
find_program(TAR tar REQUIRED)

if(QT_MAJOR EQUAL 5)
    # The stand-in dressed as Maya 2024: no Qt package, only the header archive, Maya's own
    # libQt5*.so and the devkit's moc, rcc and uic; the build must put Qt together from those,
    # and take Qt 5 for Maya 2024 unasked.
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
    configure("${build}" "" -DMAYA_DEVKIT=${dk})
    if(NOT result EQUAL 0 OR NOT output MATCHES "Found MayaQt5: ${build}/maya_qt5_include")
        message(FATAL_ERROR "Maya 2024's Qt was not put together from the devkit:\n${output}")
    endif()
    # This Qt, as Maya's, is built with reduce-relocations: executables compile only with -fPIC.
    run_checked(${CMAKE_COMMAND} --build "${build}" --target TalvoraPicker pkrtool)
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

# Maya 2025 as shipped: the devkit holds the headers and Qt.tgz, whose top level is Qt/ (here a
# Qt 6 prefix made of this machine's Qt packages); Maya's libraries are in MAYA_LOCATION.
set(dk "${WORK_DIR}/devkit2025")
set(maya "${WORK_DIR}/maya2025")
file(COPY "${DEVKIT}/include/maya" DESTINATION "${dk}/include")
file(MAKE_DIRECTORY "${maya}/lib" "${WORK_DIR}/qt/Qt/lib/cmake")
foreach(lib OpenMaya OpenMayaUI Foundation)
    file(CREATE_LINK "${DEVKIT}/lib/lib${lib}.so" "${maya}/lib/lib${lib}.so" SYMBOLIC)
endforeach()
get_filename_component(qt_packages "${QT_DIR}" DIRECTORY)
file(GLOB qt_packages LIST_DIRECTORIES true "${qt_packages}/Qt6*")
foreach(package IN LISTS qt_packages)
    get_filename_component(name "${package}" NAME)
    file(CREATE_LINK "${package}" "${WORK_DIR}/qt/Qt/lib/cmake/${name}" SYMBOLIC)
endforeach()
run_checked(${CMAKE_COMMAND} -E chdir "${WORK_DIR}/qt" ${CMAKE_COMMAND} -E tar czf
    "${dk}/Qt.tgz" Qt)

# What a devkit set up wrong is told.
file(MAKE_DIRECTORY "${WORK_DIR}/not-a-devkit/include")
expect_refused("a folder that is no devkit" ""
    "MAYA_DEVKIT=${WORK_DIR}/not-a-devkit is not a Maya devkit: it has no include/maya/MTypes\\.h"
    -DMAYA_DEVKIT=${WORK_DIR}/not-a-devkit)
expect_refused("a devkit without MAYA_LOCATION" ""
    "Maya's libraries are not found: MAYA_DEVKIT=${dk} has no lib/libOpenMaya\\.so, lib/libOpenMayaUI\\.so, lib/libFoundation\\.so, MAYA_LOCATION is not set\\. Set MAYA_LOCATION"
    -DMAYA_DEVKIT=${dk})
expect_refused("a packed Qt.tgz" "${maya}"
    "The devkit's Qt is still packed: run `cd ${dk} && tar -xzf Qt\\.tgz`"
    -DMAYA_DEVKIT=${dk})
expect_refused("a Qt 5 build against Maya 2025" "${maya}"
    "Maya 2025 runs Qt 6, but this build uses Qt 5\\. Configure with -DPICKER_QT_MAJOR=6"
    -DMAYA_DEVKIT=${dk} -DPICKER_QT_MAJOR=5)

# Extracted into a Qt folder of its own, the archive nests; the build takes it there and says so.
# This machine's Qt is not Maya 2025's 6.5: refused unless the build is told it is the stand-in.
file(MAKE_DIRECTORY "${dk}/Qt")
run_checked(${CMAKE_COMMAND} -E chdir "${dk}" ${TAR} -xzf Qt.tgz -C Qt)
set(build "${WORK_DIR}/build")
configure("${build}" "${maya}" -DMAYA_DEVKIT=${dk})
if(NOT output MATCHES "The devkit's Qt is at ${dk}/Qt/Qt: Qt\\.tgz was extracted into a Qt folder of its own")
    message(FATAL_ERROR "the nested Qt was not taken with a word:\n${output}")
endif()
expect_cached("${build}" Qt6_DIR "${dk}/Qt/Qt/lib/cmake/Qt6")
if(NOT QT_VERSION MATCHES "^6\\.5\\." AND (result EQUAL 0 OR NOT output MATCHES
        "Maya 2025 runs Qt 6\\.5, but this build found Qt ${QT_VERSION}"))
    message(FATAL_ERROR "Qt ${QT_VERSION} was not refused for Maya 2025:\n${output}")
endif()

# As the docs say: extracted in place, it is <devkit>/Qt.
file(REMOVE_RECURSE "${dk}/Qt" "${build}")
run_checked(${CMAKE_COMMAND} -E chdir "${dk}" ${TAR} -xzf Qt.tgz)
configure("${build}" "${maya}" -DMAYA_DEVKIT=${dk} -DPICKER_ALLOW_QT_MISMATCH=ON)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the documented configure failed:\n${output}")
endif()
expect_cached("${build}" Qt6_DIR "${dk}/Qt/lib/cmake/Qt6")
if(NOT output MATCHES "Maya 2025: Qt 6\\.5, gcc 11\\.2, _GLIBCXX_USE_CXX11_ABI=1 \\(from libFoundation\\.so\\)")
    message(FATAL_ERROR "the devkit's versions and ABI were not reported:\n${output}")
endif()
if(NOT CXX_VERSION MATCHES "^11\\.2\\." AND NOT output MATCHES
        "Maya 2025 was built with gcc 11\\.2, this build uses GNU ${CXX_VERSION}.* gcc 11\\.2 from gcc-toolset-11 \\(/opt/rh/gcc-toolset-11/root/usr/bin/g\\+\\+")
    message(FATAL_ERROR "gcc ${CXX_VERSION} was not warned about for Maya 2025:\n${output}")
endif()

# The plug-in's runtime needs are read after linking; the stand-in is only reported on.
run_checked(${CMAKE_COMMAND} --build "${build}" --target TalvoraPicker)
if(NOT output MATCHES "TalvoraPicker\\.so(: its runtime symbol versions are within| needs newer C/C\\+\\+ runtime symbols)")
    message(FATAL_ERROR "the plug-in's symbol versions were not checked:\n${output}")
endif()

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
list(SORT expected)
file(GLOB_RECURSE installed RELATIVE "${fresh}" "${fresh}/*")
list(SORT installed)
if(NOT installed STREQUAL expected)
    message(FATAL_ERROR "the module holds\n${installed}\ninstead of\n${expected}")
endif()
expect_text("${fresh}/TalvoraPicker.mod" "${block2025}")
set(module "${fresh}/TalvoraPicker")

# The release archive holds the same, module file and folder at its top, ready to extract into
# a modules folder.
set(archive "${build}/TalvoraPicker-${VERSION}-maya2025-linux.tar.gz")
run_checked(${CMAKE_COMMAND} -E chdir "${build}" cpack)
run_checked(${TAR} -tzf "${archive}")
string(REGEX REPLACE "[^\n]*/\n" "" packed "${output}")
string(REGEX REPLACE "\n$" "" packed "${packed}")
string(REPLACE "\n" ";" packed "${packed}")
list(SORT packed)
if(NOT packed STREQUAL expected)
    message(FATAL_ERROR "${archive} holds\n${packed}\ninstead of\n${expected}")
endif()

# Loaded once Maya is up, and only when nothing loaded it in the meantime.
file(READ "${module}/scripts/userSetup.py" setup)
# Two steps: the second pattern needs the function name the first one matched.
if(NOT setup MATCHES "def ([a-z_]+)\\(\\):\n[^\n]*\n?[ ]+if maya\\.cmds\\.pluginInfo\\(\"TalvoraPicker\", query=True, loaded=True\\)")
    message(FATAL_ERROR "userSetup.py does not check whether the plug-in is loaded:\n${setup}")
endif()
if(NOT setup MATCHES "\nmaya\\.cmds\\.evalDeferred\\(${CMAKE_MATCH_1}\\)\n")
    message(FATAL_ERROR "userSetup.py does not defer the checked load:\n${setup}")
endif()

# The shelf button's MEL is read whole before it runs, when the command may not exist yet: after
# loading the plug-in it may name the command only through eval.
file(READ "${module}/shelves/shelf_TalvoraPicker.mel" shelf)
if(NOT shelf MATCHES "-command \"(([^\"\\\\]|\\\\.)*)\"")
    message(FATAL_ERROR "the shelf button has no command:\n${shelf}")
endif()
set(button "${CMAKE_MATCH_1}")
string(REPLACE "\\\"" "\"" button "${button}")
string(REPLACE "\\n" "\n" button "${button}")
if(NOT button MATCHES "loadPlugin TalvoraPicker;\neval\\(\"TalvoraPicker\"\\);$"
        OR button MATCHES "(^|[;\n])[ ]*TalvoraPicker[ ]*(;|$)")
    message(FATAL_ERROR "the shelf button calls the command before it exists:\n${button}")
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
