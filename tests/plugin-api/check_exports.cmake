# SPDX-License-Identifier: GPL-3.0-or-later
cmake_minimum_required(VERSION 3.25)

# Compares the strong dynamic symbols of LIBRARY with CLASSES and FUNCTIONS, both separated by commas.
string(REPLACE "," ";" classes "${CLASSES}")
string(REPLACE "," ";" functions "${FUNCTIONS}")

execute_process(
    COMMAND "${NM}" -DC --defined-only "${LIBRARY}"
    OUTPUT_VARIABLE listing
    COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" "," listing "${listing}")
string(REPLACE "[" "(" listing "${listing}")
string(REPLACE "]" ")" listing "${listing}")
string(REPLACE "\n" ";" lines "${listing}")

set(found)
set(unintended)
foreach(line IN LISTS lines)
    # T, D, B, R: code and data of the library's own. Weak symbols come from the headers of others.
    if(NOT line MATCHES "^[0-9a-f]+ [TDBR] (.*)$")
        continue()
    endif()
    set(symbol "${CMAKE_MATCH_1}")
    if(symbol MATCHES "^(_|mangle_path)")
        # What sanitizers and coverage counters add.
        continue()
    elseif(symbol MATCHES "^([A-Za-z0-9_]+)::" AND CMAKE_MATCH_1 IN_LIST classes)
        list(APPEND found "${CMAKE_MATCH_1}")
    elseif(symbol MATCHES "^([A-Za-z0-9_]+)(\\(.*)?$" AND CMAKE_MATCH_1 IN_LIST functions)
        list(APPEND found "${CMAKE_MATCH_1}")
    else()
        list(APPEND unintended "${symbol}")
    endif()
endforeach()

set(missing ${classes} ${functions})
if(found)
    list(REMOVE_ITEM missing ${found})
endif()
if(unintended)
    message(SEND_ERROR "${LIBRARY} exports without being meant to: ${unintended}")
endif()
if(missing)
    message(SEND_ERROR "${LIBRARY} does not export: ${missing}")
endif()
