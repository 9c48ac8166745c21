# cmake -DPROGRAM=<consumer> [-DEMULATOR=<what runs it>] -DFOLDER=<where it works> -P run.cmake: runs the consumer and checks what it prints.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND ${EMULATOR} ${PROGRAM} WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\r\n" "\n" printed "${printed}")
file(READ ${CMAKE_CURRENT_LIST_DIR}/expected.txt expected)
if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "The consumer printed:\n${printed}instead of:\n${expected}")
endif()
