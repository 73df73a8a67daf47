# Installs the three libraries, their headers, the message resources and the client, and
# exports a CMake package: find_package(LodeQDB) then link LodeQDB::LodeQDB.
include(CMakePackageConfigHelpers)

set(LODEQDB_INCLUDE_DIR "${CMAKE_INSTALL_INCLUDEDIR}/lodeqdb")

install(TARGETS lode_util pwdb LodeQDB
    EXPORT LodeQDBTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${LODEQDB_INCLUDE_DIR}"
    FILE_SET umbrella DESTINATION "${LODEQDB_INCLUDE_DIR}"
    INCLUDES DESTINATION "${LODEQDB_INCLUDE_DIR}")

install(EXPORT LodeQDBTargets
    NAMESPACE LodeQDB::
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/LodeQDB")

configure_package_config_file(cmake/LodeQDBConfig.cmake.in
    "${PROJECT_BINARY_DIR}/LodeQDBConfig.cmake"
    INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/LodeQDB")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/LodeQDBConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/LodeQDBConfig.cmake"
              "${PROJECT_BINARY_DIR}/LodeQDBConfigVersion.cmake"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/LodeQDB")
