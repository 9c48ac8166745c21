# Symbols that GCC marks as unique in the process keep their module loaded for good; a module's static objects must be
# destroyed when it is unloaded.
set(unloadable $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)

# room(<name> <folder>...): a static library of all C++ sources in the folders, without subfolders.
function(room name)
    set(sources)
    foreach(folder IN LISTS ARGN)
        file(GLOB found CONFIGURE_DEPENDS ${folder}/*.cpp)
        list(APPEND sources ${found})
    endforeach()
    if(sources)
        add_library(${name} STATIC ${sources})
        target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:project_options>)
        target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${ARGN}>")
        target_compile_options(${name} PRIVATE ${unloadable})
    else()
        add_library(${name} INTERFACE)
        target_link_libraries(${name} INTERFACE project_options)
        target_include_directories(${name} INTERFACE ${ARGN})
    endif()
endfunction()

# uses(<name> <library>...): what a module may include and link; each is an arrow of docs/architecture.md.
function(uses name)
    get_target_property(type ${name} TYPE)
    if(type STREQUAL "INTERFACE_LIBRARY")
        target_link_libraries(${name} INTERFACE ${ARGN})
    else()
        target_link_libraries(${name} PUBLIC ${ARGN})
    endif()
endfunction()
