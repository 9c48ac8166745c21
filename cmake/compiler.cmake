# Warnings, sanitizers and platform definitions shared by every target of this project.
add_library(project_options INTERFACE)
if(EMDISK_WERROR)
    set(werror -Werror)
endif()
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow ${werror})
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 reports these for the standard library's own string and algorithm code once it is inlined.
    target_compile_options(project_options INTERFACE -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow
        -Wno-stringop-overread)
endif()
if(EMDISK_SANITIZE)
    target_compile_options(project_options INTERFACE -fsanitize=${EMDISK_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    target_link_options(project_options INTERFACE -fsanitize=${EMDISK_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # The sanitizers' checks hide from GCC which variables the standard library has set.
        target_compile_options(project_options INTERFACE -Wno-maybe-uninitialized)
    else()
        # A host stores the component's objects as plain handles, so its function types differ from the component's.
        target_compile_options(project_options INTERFACE -fno-sanitize=function)
    endif()
endif()
if(EMDISK_FUZZ)
    target_compile_options(project_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
        -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(project_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
    target_compile_definitions(project_options INTERFACE
        WINVER=0x0501 _WIN32_WINNT=0x0501 WIN32_LEAN_AND_MEAN NOMINMAX)
    # Reproducible builds.
    target_link_options(project_options INTERFACE LINKER:--no-insert-timestamp)
    # The compiler's runtime library is linked statically, unless a target sets this property.
    set(own_runtime "$<NOT:$<BOOL:$<TARGET_PROPERTY:SHARED_RUNTIME>>>")
    target_link_options(project_options INTERFACE "$<${own_runtime}:-static>")
    if(EMDISK_WINDOWS_CPU STREQUAL "i686")
        # Comes before the compiler's own libraries, which are searched after all others.
        file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/oldwindows/*.cpp)
        add_library(old_windows STATIC ${sources})
        target_compile_options(old_windows PRIVATE -Wall -Wextra -Wpedantic ${werror})
        target_link_libraries(project_options INTERFACE "$<${own_runtime}:old_windows>")
        target_link_options(project_options INTERFACE
            "$<${own_runtime}:LINKER:-u,__imp__CreateSemaphoreW@16,--wrap=_imp__GetModuleHandleA@4>")
    endif()
else()
    find_package(Threads REQUIRED)
    target_link_libraries(project_options INTERFACE Threads::Threads)
endif()
find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
