# Installs the four libraries, their headers, the message resources and the client, and
# exports a CMake package: find_package(LodeQDB) then link LodeQDB::LodeQDB (and
# LodeQDB::Relocate for repathing and packing).
include(CMakePackageConfigHelpers)

# Only the public interface is installed: the headers under include/lodeqdb/, each library's
# file set, included by clients as <lodeqdb/...>.
install(TARGETS lode_util pwdb LodeQDB LodeQDBRelocate LodeQDBIndex
    EXPORT LodeQDBTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

install(EXPORT LodeQDBTargets
    NAMESPACE LodeQDB::
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/LodeQDB")

configure_package_config_file(cmake/LodeQDBConfig.cmake.in
    "${PROJECT_BINARY_DIR}/LodeQDBConfig.cmake"
    INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/LodeQDB"
    PATH_VARS CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/LodeQDBConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/LodeQDBConfig.cmake"
              "${PROJECT_BINARY_DIR}/LodeQDBConfigVersion.cmake"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/LodeQDB")
