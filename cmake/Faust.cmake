# The sounds of the built-in instruments are written in Faust and become C++ while the program is built.
find_program(FAUST faust REQUIRED)

# marlune_faust(TARGET VOICE=file.dsp:process ...): makes build/.../faust/VOICE.h, a class Faust<VOICE> out of that
# definition of the file, and lets the target include it as <faust_voices/VOICE.h>. The generated code is a stranger's:
# it is included as a system header, without the project's warnings.
function(marlune_faust target)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/faust)
    file(MAKE_DIRECTORY ${folder}/faust_voices)
    file(GLOB parts CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.lib)
    foreach(row ${ARGN})
        string(REGEX MATCH "^(.*)=(.*):(.*)$" row "${row}")
        set(name ${CMAKE_MATCH_1})
        set(source ${CMAKE_CURRENT_SOURCE_DIR}/${CMAKE_MATCH_2})
        set(made ${folder}/faust_voices/${name}.h)
        add_custom_command(OUTPUT ${made}
            COMMAND ${FAUST} -lang cpp -pn ${CMAKE_MATCH_3} -cn Faust${name} -scn dsp -ftz 2
                    -I ${CMAKE_CURRENT_SOURCE_DIR} ${source} -o ${made}
            DEPENDS ${source} ${parts}
            COMMENT "Faust ${CMAKE_MATCH_2} ${CMAKE_MATCH_3}"
            VERBATIM)
        list(APPEND headers ${made})
    endforeach()
    target_sources(${target} PRIVATE ${headers})
    target_include_directories(${target} SYSTEM PRIVATE ${folder})
endfunction()
