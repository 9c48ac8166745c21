# The Debian package of the installed files: cmake --build <build> --target package
set(EMDISK_MAINTAINER "The maintainers <maintainers@localhost>" CACHE STRING "Maintainer of the Debian package")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME emergency-disk)
set(CPACK_PACKAGE_CONTACT ${EMDISK_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "makes bootable emergency diskettes")
set(CPACK_PACKAGE_DESCRIPTION
"Two programs: emergency-disk makes, checks and formats 1.44 MB diskettes, in a
drive or as image files; zar packs the archives that they are made from.
.
For programs of the same suite there are the libraries with their headers and
the files by which CMake and pkg-config find them, and the wizard component.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/winlayer ${PROJECT_BINARY_DIR}/host)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# A script adds what only a Debian package contains.
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/debian_documents.cmake.in debian_documents.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/debian_documents.cmake)
include(CPack)
