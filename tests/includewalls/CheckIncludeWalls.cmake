# cmake -DTOOL=include_walls -DWORK_DIR=... -P this
# The include walls' check on small trees made here: a tree within its walls passes; an include
# that reaches up, one that reaches sideways, a public header that includes an internal one, a
# circle of includes, a folder the rules don't know and a circle among the rules each fail with
# the file and line.
file(REMOVE_RECURSE "${WORK_DIR}")

function(make_tree name)
    set(tree "${WORK_DIR}/${name}")
    file(WRITE "${tree}/cmake/IncludeWalls.txt"
         "outside: tests\nlow:\nmiddle: low\nside: low\nhigh: middle side\nlodeqdb: high\n")
    file(WRITE "${tree}/low/Low.cpp" "#include \"low/LowInternal.h\"\n#include <vector>\n")
    file(WRITE "${tree}/low/LowInternal.h" "#pragma once\n")
    file(WRITE "${tree}/include/lodeqdb/low/Low.h" "#pragma once\n#include <string>\n")
    file(WRITE "${tree}/middle/Middle.cpp" "#include <lodeqdb/low/Low.h>\n")
    file(WRITE "${tree}/side/Side.cpp" "#include <lodeqdb/low/Low.h>\n")
    file(WRITE "${tree}/high/High.cpp"
         "#include \"middle/Middle.h\"\n#include <lodeqdb/low/Low.h>\n#include \"side/Side.h\"\n")
    file(WRITE "${tree}/middle/Middle.h" "#pragma once\n")
    file(WRITE "${tree}/side/Side.h" "#pragma once\n")
    file(WRITE "${tree}/include/lodeqdb/LodeQDB.h" "#include <lodeqdb/low/Low.h>\n")
    file(WRITE "${tree}/tests/AnyTest.cpp" "#include \"high/High.h\"\n#include \"low/LowInternal.h\"\n")
    set(tree "${tree}" PARENT_SCOPE)
endfunction()

function(expect_walls tree expected_result expected_text)
    execute_process(COMMAND "${TOOL}" "${tree}" "${tree}/cmake/IncludeWalls.txt" "${tree}/stamp"
                    RESULT_VARIABLE result ERROR_VARIABLE err OUTPUT_VARIABLE out)
    if(NOT result EQUAL expected_result)
        message(FATAL_ERROR "${tree}: exit ${result}, expected ${expected_result}\n${err}")
    endif()
    string(FIND "${err}" "${expected_text}" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "${tree}: the report lacks \"${expected_text}\":\n${err}")
    endif()
    if(expected_result EQUAL 0 AND NOT EXISTS "${tree}/stamp")
        message(FATAL_ERROR "${tree}: passed without writing its stamp")
    endif()
    if(NOT expected_result EQUAL 0 AND EXISTS "${tree}/stamp")
        message(FATAL_ERROR "${tree}: failed but wrote its stamp")
    endif()
endfunction()

make_tree(within)
expect_walls("${tree}" 0 "")

make_tree(up)
file(APPEND "${tree}/low/Low.cpp" "#include \"middle/Middle.h\"\n")
expect_walls("${tree}" 1 "low/Low.cpp:3: error: low may not include middle/Middle.h")

make_tree(sideways)
file(WRITE "${tree}/side/Side.cpp" "#include <lodeqdb/low/Low.h>\n#include \"middle/Middle.h\"\n")
expect_walls("${tree}" 1 "side/Side.cpp:2: error: side may not include middle/Middle.h")

make_tree(public_internal)
file(APPEND "${tree}/include/lodeqdb/low/Low.h" "#include \"low/LowInternal.h\"\n")
expect_walls("${tree}" 1 "include/lodeqdb/low/Low.h:3: error: a public header includes the internal header low/LowInternal.h")

make_tree(circle)
file(WRITE "${tree}/middle/Middle.h" "#pragma once\n#include \"middle/Other.h\"\n")
file(WRITE "${tree}/middle/Other.h" "#pragma once\n#include \"middle/Middle.h\"\n")
expect_walls("${tree}" 1 "a circle of includes: middle/Middle.h -> middle/Other.h -> middle/Middle.h")

make_tree(unknown_folder)
file(WRITE "${tree}/extra/Extra.cpp" "#include <lodeqdb/low/Low.h>\n")
expect_walls("${tree}" 1 "the folder extra has no place in the include walls")

make_tree(rules_circle)
file(WRITE "${tree}/cmake/IncludeWalls.txt"
     "outside: tests\nlow: high\nmiddle: low\nside: low\nhigh: middle side\nlodeqdb: high\n")
expect_walls("${tree}" 1 "the folders form a circle")
