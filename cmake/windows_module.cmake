# Modules with their Windows names, on Linux too: the Windows layer loads them by these names.

# windows_resources(<target> <rc>): compiles a resource script (UTF-8) into the target. On Linux the compiled form
# (.res) becomes the section ".rsrc" of the file, where the layer finds it, and is kept as
# ${CMAKE_CURRENT_BINARY_DIR}/<target>.res. Further arguments are files that the script includes, searched in their
# folders.
function(windows_resources target rc)
    set(folders ${CMAKE_CURRENT_BINARY_DIR})
    foreach(file IN LISTS ARGN)
        cmake_path(GET file PARENT_PATH folder)
        list(APPEND folders ${folder})
    endforeach()
    list(REMOVE_DUPLICATES folders)
    if(WIN32)
        target_sources(${target} PRIVATE ${rc})
        set_source_files_properties(${rc} PROPERTIES OBJECT_DEPENDS "${ARGN}" COMPILE_OPTIONS "-c65001"
            INCLUDE_DIRECTORIES "${folders}")
        return()
    endif()
    find_program(WINDRES NAMES i686-w64-mingw32-windres x86_64-w64-mingw32-windres REQUIRED)
    set(compiled ${CMAKE_CURRENT_BINARY_DIR}/${target}.res)
    add_custom_command(OUTPUT ${compiled}
        COMMAND ${WINDRES} -c 65001 "-I$<JOIN:${folders},;-I>" -O res -o ${compiled} ${rc}
        DEPENDS ${rc} ${ARGN}
        COMMENT "Compiling ${rc}"
        COMMAND_EXPAND_LISTS VERBATIM)
    add_custom_target(${target}_resources DEPENDS ${compiled})
    add_dependencies(${target} ${target}_resources)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${compiled})
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --add-section .rsrc=${compiled} $<TARGET_FILE:${target}>
        VERBATIM)
endfunction()

function(windows_exports target decorated)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${decorated})
    file(READ ${decorated} names)
    string(REGEX REPLACE "@[0-9]+" "" plain "${names}")
    file(CONFIGURE OUTPUT ${target}.def CONTENT "${plain}" @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.def)
    if(NOT CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
        return()
    endif()
    target_link_options(${target} PRIVATE -Wl,--enable-stdcall-fixup)
    if(NOT plain STREQUAL names)
        add_custom_command(TARGET ${target} POST_BUILD
            COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${decorated}
                --output-lib $<TARGET_LINKER_FILE_NAME:${target}>  # a path would become part of its members' names
            WORKING_DIRECTORY $<TARGET_LINKER_FILE_DIR:${target}>
            VERBATIM)
    endif()
endfunction()

# windows_module(<target> <file name without .dll> <source>...): a dynamic library that exports the names in its export
# list and starts at DllMain. The list is <folder of the caller>/<target>.exports on Linux (a version script) and
# <target>.def on Windows. Names are exported without the decoration of 32-bit Windows (_name@bytes); a list with
# decorated names (name@bytes) makes an import library for callers, which use those.
function(windows_module target name)
    add_library(${target} SHARED ${ARGN})
    target_link_libraries(${target} PRIVATE project_options)
    target_compile_options(${target} PRIVATE ${unloadable})
    set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX ".dll" OUTPUT_NAME ${name}
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/host RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/host)
    if(WIN32)
        windows_exports(${target} ${CMAKE_CURRENT_SOURCE_DIR}/${target}.def)
        return()
    endif()
    set(exports ${CMAKE_CURRENT_SOURCE_DIR}/${target}.exports)
    target_link_libraries(${target} PRIVATE winlayer)
    target_link_options(${target} PRIVATE -Wl,-e,DllMain -Wl,--version-script=${exports}
        -Wl,-O1 -Wl,--as-needed -Wl,-Bsymbolic-functions)
    if(NOT EMDISK_SANITIZE)  # the sanitizers' functions are in the program
        target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
    set_target_properties(${target} PROPERTIES BUILD_RPATH "$ORIGIN" LINK_DEPENDS ${exports})
endfunction()
