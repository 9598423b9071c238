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

# What Debian asks of every package beyond the files themselves: the manual pages compressed,
# a copyright file and a changelog in each package's doc folder, lintian's overrides, the
# maintainer scripts and control files (cmake/debian/), and the system-wide configuration as
# a conffile.  Everything is written at build time with fixed contents and times, so two
# builds make the same packages.
set(debian_dir ${CMAKE_CURRENT_LIST_DIR}/debian)
set(debian_build_dir ${CMAKE_BINARY_DIR}/debian)

# The manual pages, each compressed with gzip -9n (no name, no time stamp).
file(GLOB man_pages CONFIGURE_DEPENDS ${BRISTEL_SOURCE_DIR}/docs/man/*.[1-8])
set(compressed_man_pages)
foreach(page ${man_pages})
    get_filename_component(page_name ${page} NAME)
    string(REGEX REPLACE ".*\\.([1-8])$" "\\1" section ${page_name})
    set(compressed ${debian_build_dir}/man/${page_name}.gz)
    add_custom_command(OUTPUT ${compressed}
                       COMMAND ${CMAKE_COMMAND} -E make_directory ${debian_build_dir}/man
                       COMMAND gzip -9n -c ${page} > ${compressed}
                       DEPENDS ${page} VERBATIM)
    list(APPEND compressed_man_pages ${compressed})
    install(FILES ${compressed} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT programs)
endforeach()

configure_file(${debian_dir}/changelog.in ${debian_build_dir}/changelog @ONLY)
set(changelog ${debian_build_dir}/changelog.gz)
add_custom_command(OUTPUT ${changelog}
                   COMMAND gzip -9n -c ${debian_build_dir}/changelog > ${changelog}
                   DEPENDS ${debian_dir}/changelog.in VERBATIM)
add_custom_target(bristel_package_files ALL DEPENDS ${compressed_man_pages} ${changelog})

# Package name, component, control files.
set(debian_packages "bristel programs" "libbristel${BRISTEL_SOVERSION} libraries" "libbristel-dev development")
foreach(entry ${debian_packages})
    string(REPLACE " " ";" entry ${entry})
    list(GET entry 0 package)
    list(GET entry 1 component)
    install(FILES ${debian_dir}/copyright ${changelog}
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
    string(REGEX REPLACE "[0-9]+$" "" override_name ${package})
    install(FILES ${debian_dir}/${override_name}.lintian-overrides
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides COMPONENT ${component}
            RENAME ${package})
endforeach()

# The control files go in under their Debian names, one folder per package.
function(bristel_debian_control package component)
    set(files)
    foreach(name ${ARGN})
        file(COPY_FILE ${debian_dir}/${package}.${name} ${debian_build_dir}/${package}/${name} ONLY_IF_DIFFERENT)
        list(APPEND files ${debian_build_dir}/${package}/${name})
    endforeach()
    string(TOUPPER ${component} component)
    set(CPACK_DEBIAN_${component}_PACKAGE_CONTROL_EXTRA ${files} PARENT_SCOPE)
endfunction()
file(MAKE_DIRECTORY ${debian_build_dir}/bristel ${debian_build_dir}/libbristel)
bristel_debian_control(bristel programs postinst prerm postrm conffiles)
bristel_debian_control(libbristel libraries triggers)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)

# The system-wide configuration of the print server's filter, a conffile of the programs'
# package.  Under /etc when the prefix is /usr (the packages, or a system install); under the
# prefix otherwise, so that an install into a folder never writes to /etc.  A file already
# there is the administrator's and stays.
install(CODE "
if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
    set(bristel_etc /etc/bristel)
else()
    set(bristel_etc \"\${CMAKE_INSTALL_PREFIX}/etc/bristel\")
endif()
# file(INSTALL) puts DESTDIR in front of the folder itself.
if(NOT EXISTS \"\$ENV{DESTDIR}\${bristel_etc}/bristel.conf\")
    file(INSTALL DESTINATION \"\${bristel_etc}\" TYPE FILE
         PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ FILES \"${debian_dir}/bristel.conf\")
endif()" COMPONENT programs)

# Binaries without their symbol tables, and the libraries they need (libc, libstdc++, Qt)
# named by dpkg-shlibdeps.
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SOURCE bristel)
