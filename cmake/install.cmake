# Installation for programs of the suite: libraries, their public headers, and the files by which a build finds them
# (find_package(emergency_disk), pkg-config). None of these names the build folder.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(EMDISK_LIBRARIES ${CMAKE_INSTALL_LIBDIR}/emergency-disk)  # static libraries and modules
set(EMDISK_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/emergency-disk)
set(EMDISK_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/emergency_disk)

# install_library(<target> [header...]): a target of the package, emergency_disk::<target>, and the headers that its
# users include. Headers included by these are added automatically.
function(install_library target)
    add_library(emergency_disk::${target} ALIAS ${target})
    target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${EMDISK_HEADERS}>)
    target_compile_features(${target} INTERFACE cxx_std_20)
    install(TARGETS ${target} EXPORT emergency_disk
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${EMDISK_LIBRARIES}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ${EMDISK_KIT_INSTEAD})
    set_property(GLOBAL APPEND PROPERTY public_headers ${ARGN})
endfunction()

# install_module(<target>): a module, with its import library if it has one; otherwise beside the modules that it needs,
# where the linker does not look.
function(install_module target)
    if(WIN32)
        install_library(${target})
        kit_module(${target})
    else()
        set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/..")
        install(TARGETS ${target} LIBRARY DESTINATION ${EMDISK_LIBRARIES})
    endif()
endfunction()

# install_package(): the headers and the files that describe the package; called after every install_library.
function(install_package)
    get_property(headers GLOBAL PROPERTY public_headers)
    install(CODE "
        set(HEADERS ${headers})
        set(SOURCE ${PROJECT_SOURCE_DIR})
        set(DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${EMDISK_HEADERS}\")
        include(${PROJECT_SOURCE_DIR}/cmake/install_headers.cmake)")
    install(FILES ${PROJECT_SOURCE_DIR}/docs/api.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/emergency-disk)
    install(EXPORT emergency_disk NAMESPACE emergency_disk:: DESTINATION ${EMDISK_PACKAGE}
        FILE emergency_diskConfig.cmake)
    write_basic_package_version_file(emergency_diskConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/emergency_diskConfigVersion.cmake DESTINATION ${EMDISK_PACKAGE})
    if(NOT WIN32)
        cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
            BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig OUTPUT_VARIABLE to_prefix)
        configure_file(${PROJECT_SOURCE_DIR}/cmake/emergency_disk.pc.in emergency_disk.pc @ONLY)
        install(FILES ${CMAKE_CURRENT_BINARY_DIR}/emergency_disk.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    endif()
endfunction()
