# flat_binary(<output> <source>): assembles 16-bit x86 source to the raw bytes of its .text section.
#
# The assembler runs on the build machine, also in cross builds: any GNU assembler for x86 accepts `--32` and gives the
# same bytes. No linker runs, so the source must not need one to resolve anything.

function(find_x86_assembler)
    foreach(prefix "" x86_64-linux-gnu- i686-linux-gnu- x86_64-w64-mingw32- i686-w64-mingw32-)
        find_program(assembler_${prefix} ${prefix}as NO_CMAKE_FIND_ROOT_PATH)
        find_program(objcopy_${prefix} ${prefix}objcopy NO_CMAKE_FIND_ROOT_PATH)
        mark_as_advanced(assembler_${prefix} objcopy_${prefix})
        if(NOT assembler_${prefix} OR NOT objcopy_${prefix})
            continue()
        endif()
        execute_process(COMMAND ${assembler_${prefix}} --32 --version
            RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
        if(result EQUAL 0)
            set(X86_ASSEMBLER ${assembler_${prefix}} CACHE FILEPATH "GNU assembler for x86")
            set(X86_OBJCOPY ${objcopy_${prefix}} CACHE FILEPATH "objcopy beside X86_ASSEMBLER")
            mark_as_advanced(X86_ASSEMBLER X86_OBJCOPY)
            return()
        endif()
    endforeach()
    message(FATAL_ERROR "No GNU assembler for x86 found (package binutils).")
endfunction()

if(NOT X86_ASSEMBLER OR NOT X86_OBJCOPY)
    find_x86_assembler()
endif()

function(flat_binary output source)
    add_custom_command(OUTPUT ${output}
        COMMAND ${X86_ASSEMBLER} --32 -o ${output}.o ${source}
        COMMAND ${X86_OBJCOPY} -O binary -j .text ${output}.o ${output}
        DEPENDS ${source}
        COMMENT "Assembling ${source}"
        VERBATIM)
endfunction()
