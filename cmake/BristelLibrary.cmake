# bristel_add_library(<name> COMPONENT <Component> SOURCES <files...> [HEADERS <files...>]
#                     [QT <Qt targets...>] [DEPENDS <bristel libraries...>])
#
# A library of the installation's shared layer, compiled once and linked twice:
#   <name>         a static library for the programs and tests of this tree.  bristel-compile
#                  links it, so its start-up loads no library of ours (BENCHMARKS.md, "Our own
#                  libraries at start-up", has the measurement);
#   <name>_shared  lib<name with dashes>.so.<BRISTEL_SOVERSION>, installed and exported as
#                  Bristel::<Component> for the other programs of the installation.
# The objects are built position-independent with hidden symbols: only what a header marks
# with the generated <NAME>_EXPORT macro is visible outside the shared library.  HEADERS are
# installed under include/bristel/<directory>/ beside the generated <name>_export.h, and a
# pkg-config file lib<name with dashes>.pc names the library for make-based builds.
include(GenerateExportHeader)
include(GNUInstallDirs)

set(BRISTEL_EXPORT_HEADER_DIR ${CMAKE_BINARY_DIR}/exports)
set(BRISTEL_PKGCONFIG_TEMPLATE ${CMAKE_CURRENT_LIST_DIR}/bristel-library.pc.in)

function(bristel_add_library name)
    cmake_parse_arguments(ARG "" "COMPONENT" "SOURCES;HEADERS;QT;DEPENDS" ${ARGN})
    string(REPLACE "_" "-" file_name ${name})
    get_filename_component(directory ${CMAKE_CURRENT_SOURCE_DIR} NAME)

    add_library(${name}_objects OBJECT ${ARG_SOURCES} ${ARG_HEADERS})
    set_target_properties(${name}_objects PROPERTIES
        POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    target_link_libraries(${name}_objects PRIVATE ${ARG_QT} ${ARG_DEPENDS})

    add_library(${name} STATIC $<TARGET_OBJECTS:${name}_objects>)
    target_link_libraries(${name} PUBLIC ${ARG_QT} ${ARG_DEPENDS})

    set(shared_depends)
    set(pc_requires)
    foreach(qt ${ARG_QT})
        string(REPLACE "::" "" qt_module ${qt})
        list(APPEND pc_requires ${qt_module})
    endforeach()
    foreach(dependency ${ARG_DEPENDS})
        list(APPEND shared_depends ${dependency}_shared)
        string(REPLACE "_" "-" dependency_file ${dependency})
        list(APPEND pc_requires lib${dependency_file})
    endforeach()
    add_library(${name}_shared SHARED $<TARGET_OBJECTS:${name}_objects>)
    target_link_libraries(${name}_shared PUBLIC ${ARG_QT} ${shared_depends})
    target_include_directories(${name}_shared INTERFACE
        $<BUILD_INTERFACE:${BRISTEL_SOURCE_DIR}> $<BUILD_INTERFACE:${BRISTEL_EXPORT_HEADER_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    set_target_properties(${name}_shared PROPERTIES
        OUTPUT_NAME ${file_name} VERSION ${BRISTEL_SOVERSION}.0.0 SOVERSION ${BRISTEL_SOVERSION}
        EXPORT_NAME ${ARG_COMPONENT} LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
    # The libraries exported so far, for the package configuration and the ABI check.
    set_property(GLOBAL APPEND PROPERTY BRISTEL_SHARED_LIBRARIES ${name}_shared)
    set_property(GLOBAL APPEND PROPERTY BRISTEL_QT_COMPONENTS ${ARG_QT})

    install(TARGETS ${name}_shared EXPORT BristelTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libraries NAMELINK_COMPONENT development)
    if(ARG_HEADERS)
        generate_export_header(${name}_shared BASE_NAME ${name}
                               EXPORT_FILE_NAME ${BRISTEL_EXPORT_HEADER_DIR}/${name}_export.h)
        install(FILES ${ARG_HEADERS} ${BRISTEL_EXPORT_HEADER_DIR}/${name}_export.h
                DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/bristel/${directory} COMPONENT development)
    endif()

    # The .pc file names the prefix it is installed under, which is known only at install time
    # (a package, a DESTDIR or a --prefix install).
    list(JOIN pc_requires " " BRISTEL_PC_REQUIRES)
    set(BRISTEL_PC_NAME lib${file_name})
    set(BRISTEL_PC_LIBRARY ${file_name})
    set(BRISTEL_PC_DESCRIPTION "bristel ${directory} library (Bristel::${ARG_COMPONENT})")
    set(BRISTEL_PC_PREFIX "@BRISTEL_PC_PREFIX@") # kept for the install-time pass
    set(pc_template ${CMAKE_CURRENT_BINARY_DIR}/lib${file_name}.pc.in)
    set(pc_file ${CMAKE_CURRENT_BINARY_DIR}/pkgconfig/lib${file_name}.pc)
    configure_file(${BRISTEL_PKGCONFIG_TEMPLATE} ${pc_template} @ONLY)
    install(CODE "set(BRISTEL_PC_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
configure_file(\"${pc_template}\" \"${pc_file}\" @ONLY)
file(INSTALL DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig\" TYPE FILE FILES \"${pc_file}\")"
            COMPONENT development)
endfunction()
