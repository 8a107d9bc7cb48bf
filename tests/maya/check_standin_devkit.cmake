# The stand-in headers refuse what Maya's refuse, so that the adapter's CI compile catches the
# same mistakes; and accept what Maya's accept.
# In: CXX_COMPILER, INCLUDE_DIR (the stand-in's include/), WORK_DIR.

# case(WHAT PATTERN BODY [SECOND_BODY]): PATTERN "" means it must build. A second body, a second
# file of the same shared library, is written without semicolons, which would split it.
function(case what pattern body)
    file(REMOVE_RECURSE "${WORK_DIR}")
    set(objects)
    set(index 0)
    foreach(code IN ITEMS "${body}" ${ARGN})
        math(EXPR index "${index} + 1")
        file(WRITE "${WORK_DIR}/file${index}.cpp" "#include <maya/MFnPlugin.h>\n${code}\n")
        list(APPEND objects "${WORK_DIR}/file${index}.o")
        execute_process(
            COMMAND ${CXX_COMPILER} -std=c++17 -fPIC -c -I${INCLUDE_DIR}
                "${WORK_DIR}/file${index}.cpp" -o "${WORK_DIR}/file${index}.o"
            RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
        if(NOT result EQUAL 0)
            break()
        endif()
    endforeach()
    if(result EQUAL 0)
        execute_process(COMMAND ${CXX_COMPILER} -shared ${objects} -o "${WORK_DIR}/lib.so"
            RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    endif()
    if(pattern STREQUAL "" AND NOT result EQUAL 0)
        message(FATAL_ERROR "${what} does not build against the stand-in:\n${output}")
    elseif(NOT pattern STREQUAL "" AND (result EQUAL 0 OR NOT output MATCHES "${pattern}"))
        message(FATAL_ERROR "${what} is not refused as Maya's headers refuse it:\n${output}")
    endif()
endfunction()

case("a function set as Autodesk's examples make it" ""
    "MStatus load(MObject obj) { MStatus s; MFnPlugin p(obj, \"v\", \"1\", \"Any\", &s); return s; }")
case("a function set from a const object" "is private within this context"
    "void load(const MObject& obj) { MFnPlugin p(obj); }")
case("the address of a function set" "is private within this context"
    "MFnPlugin* load(MObject obj) { MFnPlugin p(obj); return &p; }")
case("MFnPlugin.h in two files" "multiple definition of `MApiVersion'"
    "void one() {}" "void two() {}")
