# cmake -DASSEMBLER=<as> -DOBJCOPY=<objcopy> -DSOURCE=<file> -DOUTPUT=<file> -P build_loader.cmake
# Assembles a second-stage loader and sets its checksum: the words from offset 0x200 on must add up to 5555h.

function(assemble checksum)
    execute_process(COMMAND ${ASSEMBLER} --32 -I ${CMAKE_CURRENT_LIST_DIR} --defsym checksum=${checksum}
        -o ${OUTPUT}.o ${SOURCE} COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${OBJCOPY} -O binary -j .text ${OUTPUT}.o ${OUTPUT} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Result: the sum of the covered words, modulo 65536.
function(covered_sum result)
    file(SIZE ${OUTPUT} size)
    math(EXPR covered "${size} - 512")
    math(EXPR rest "${size} % 512")
    if(covered LESS 512 OR size GREATER 65024 OR NOT rest EQUAL 0)
        message(FATAL_ERROR "${OUTPUT} has ${size} bytes; a loader has a multiple of 512, 1024 to 65024.")
    endif()
    file(READ ${OUTPUT} hex OFFSET 512 HEX)
    string(REGEX REPLACE "(..)(..)" "0x\\2\\1;" words "${hex}")
    set(sum 0)
    foreach(word IN LISTS words)
        if(word)
            math(EXPR sum "(${sum} + ${word}) & 0xFFFF")
        endif()
    endforeach()
    set(${result} ${sum} PARENT_SCOPE)
endfunction()

assemble(0)
covered_sum(sum)
math(EXPR checksum "(0x5555 - ${sum}) & 0xFFFF")
assemble(${checksum})
covered_sum(sum)
if(NOT sum EQUAL 0x5555)
    message(FATAL_ERROR "The checksum of ${OUTPUT} cannot be set: the sum is ${sum}.")
endif()
