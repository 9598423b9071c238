# bristel_compile_translations(<target> <output-dir> <qm-files-variable> <ts-files...>)
# Compiles every .ts file with lrelease into <output-dir>/<name>.qm at build time, under a
# target that is part of every build, and returns the .qm paths in <qm-files-variable>.
find_program(LRELEASE lrelease HINTS /usr/lib/qt6/bin REQUIRED)

function(bristel_compile_translations target output_dir qm_files_variable)
    set(qm_files)
    foreach(ts ${ARGN})
        get_filename_component(base ${ts} NAME_WE)
        set(qm ${output_dir}/${base}.qm)
        add_custom_command(OUTPUT ${qm}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${output_dir}
            COMMAND ${LRELEASE} -silent ${ts} -qm ${qm}
            DEPENDS ${ts} VERBATIM)
        list(APPEND qm_files ${qm})
    endforeach()
    add_custom_target(${target} ALL DEPENDS ${qm_files})
    set(${qm_files_variable} ${qm_files} PARENT_SCOPE)
endfunction()
