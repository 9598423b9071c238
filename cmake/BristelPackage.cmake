# The CMake package of the shared libraries (find_package(Bristel)), after every library has
# been declared with bristel_add_library.  Installed with the development files.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Bristel)
get_property(libraries GLOBAL PROPERTY BRISTEL_SHARED_LIBRARIES)
set(BRISTEL_PACKAGE_COMPONENTS)
foreach(library ${libraries})
    get_target_property(component ${library} EXPORT_NAME)
    list(APPEND BRISTEL_PACKAGE_COMPONENTS ${component})
endforeach()
get_property(qt_targets GLOBAL PROPERTY BRISTEL_QT_COMPONENTS)
list(REMOVE_DUPLICATES qt_targets)
list(TRANSFORM qt_targets REPLACE "^Qt6::" "" OUTPUT_VARIABLE BRISTEL_PACKAGE_QT_COMPONENTS)
list(JOIN BRISTEL_PACKAGE_QT_COMPONENTS " " BRISTEL_PACKAGE_QT_COMPONENTS)
list(JOIN BRISTEL_PACKAGE_COMPONENTS " " BRISTEL_PACKAGE_COMPONENTS)
set(BRISTEL_QT_VERSION ${Qt6_VERSION_MAJOR}.${Qt6_VERSION_MINOR})

install(EXPORT BristelTargets NAMESPACE Bristel:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/BristelConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/BristelConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/BristelConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/BristelConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/BristelConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# The shared libraries by file name, for scripts/abi-dump.sh: "<target> <file>" a line.
set(listing)
foreach(library ${libraries})
    string(APPEND listing "${library} $<TARGET_FILE:${library}>\n")
endforeach()
file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/shared-libraries.txt CONTENT "${listing}")
