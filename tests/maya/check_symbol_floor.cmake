# The check run after linking the plug-in, on libraries built to need a too-new C++ runtime
# symbol and none: what it says and whether it stops the build.
# In: CHECK (the check script), TOO_NEW, PLAIN (the libraries), WORK_DIR.

# case(LIBRARY MAYA_VERSION ENFORCE FAILS PATTERN)
function(case library maya enforce fails pattern)
    # An enforced failure removes the library; the built one stays for the next run.
    get_filename_component(name "${library}" NAME)
    file(COPY "${library}" DESTINATION "${WORK_DIR}")
    set(copy "${WORK_DIR}/${name}")
    execute_process(
        COMMAND ${CMAKE_COMMAND} -DLIBRARY=${copy} -DMAYA_VERSION=${maya} -DENFORCE=${enforce}
            -P "${CHECK}"
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    string(REGEX REPLACE "[ \t\n]+" " " folded "${output}")
    set(failed TRUE)
    if(result EQUAL 0)
        set(failed FALSE)
    endif()
    if(NOT failed STREQUAL fails OR NOT folded MATCHES "${pattern}")
        message(FATAL_ERROR "${name} against Maya ${maya} (enforce ${enforce}) gave ${result}:\n"
            "${output}")
    endif()
    set(gone TRUE)
    if(EXISTS "${copy}")
        set(gone FALSE)
    endif()
    if(NOT gone STREQUAL fails)
        message(FATAL_ERROR "${name}: a refused library must go, any other stay")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
set(wait "std::condition_variable::wait\\(std::unique_lock<std::mutex>&\\)")
case("${TOO_NEW}" 2025 ON TRUE
    "libsymbol_floor_too_new\\.so needs newer C/C\\+\\+ runtime symbols than Maya 2025's machines have \\(RHEL/Rocky 8: at most GLIBC_2\\.28, GLIBCXX_3\\.4\\.25, CXXABI_1\\.3\\.11\\): GLIBCXX_3\\.4\\.30 \\(floor GLIBCXX_3\\.4\\.25\\): ${wait} Maya would not load it there\\. Build with gcc 11\\.2 from gcc-toolset-11")
case("${TOO_NEW}" 2022 OFF FALSE
    "GLIBCXX_3\\.4\\.30 \\(floor GLIBCXX_3\\.4\\.19\\): ${wait} .*Build with gcc 9\\.3 from devtoolset-9.*\\(Reported only")
case("${PLAIN}" 2022 ON FALSE
    "libsymbol_floor_plain\\.so: its runtime symbol versions are within Maya 2022's \\(GLIBC_2\\.17, GLIBCXX_3\\.4\\.19, CXXABI_1\\.3\\.7\\)")
