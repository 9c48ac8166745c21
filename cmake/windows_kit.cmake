# The development kit for 32-bit Windows: the modules again, linked with the compiler's shared runtime library. On
# 32-bit Windows an exception passes between modules only if both use the same runtime library, while the product needs
# no library at all. The build puts the kit's modules in kit/; they are installed instead of the others, which are left
# out: of two files for one destination CMake skips the second if both were linked within the same second.
set(EMDISK_KIT OFF)
set(EMDISK_KIT_INSTEAD "")
if(EMDISK_WINDOWS_CPU STREQUAL "i686" AND NOT BUILD_TESTING)
    set(EMDISK_KIT ON)
    set(EMDISK_KIT_INSTEAD EXCLUDE_FROM_ALL)
endif()

# kit_module(<target>): the module of the same name for the kit; deferred until the target is complete.
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
    add_dependencies(${kit} ${target})  # which provides its other inputs
    install(TARGETS ${kit} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()
