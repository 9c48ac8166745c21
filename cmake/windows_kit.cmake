# The development kit for 32-bit Windows: the modules again, linked with the compiler's shared runtime library. There an
# exception passes from one module to another only where both use the same runtime library, while what the suite ships
# needs no library at all. In the build folder the kit's modules are in kit/; they are installed in place of the others,
# which are left out: of two files for one place CMake skips the second if both were linked within the same second.
set(EMDISK_KIT OFF)
set(EMDISK_KIT_INSTEAD "")
if(EMDISK_WINDOWS_CPU STREQUAL "i686" AND NOT BUILD_TESTING)
    set(EMDISK_KIT ON)
    set(EMDISK_KIT_INSTEAD EXCLUDE_FROM_ALL)
endif()

# kit_module(<target>): the module of the same name for the kit, made when all is said of the target.
function(kit_module target)
    if(EMDISK_KIT)
        cmake_language(EVAL CODE "cmake_language(DEFER CALL make_kit_module ${target})")
    endif()
endfunction()

function(make_kit_module target)
    set(kit ${target}_kit)
    add_library(${kit} SHARED)
    foreach(property SOURCES COMPILE_OPTIONS LINK_LIBRARIES LINK_LIBRARY_OVERRIDE LINK_OPTIONS PREFIX SUFFIX OUTPUT_NAME)
        get_target_property(value ${target} ${property})
        if(NOT value MATCHES "-NOTFOUND$")
            set_property(TARGET ${kit} PROPERTY ${property} "${value}")
        endif()
    endforeach()
    set_target_properties(${kit} PROPERTIES SHARED_RUNTIME ON
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/kit ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/kit)
    add_dependencies(${kit} ${target})  # which has what else it is made of
    install(TARGETS ${kit} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()
