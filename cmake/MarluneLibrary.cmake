# Compiler settings of every target, and the one way to declare a library.

add_library(marlune_options INTERFACE)
# Clang counts sign conversions among -Wconversion, g++ does not; both are held to the g++ meaning.
target_compile_options(marlune_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
    # g++ 12 warns of overlapping copies inside its own std::string where there are none.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${MARLUNE_WERROR}>:-Werror>)
# What is shipped is hardened: overruns of the stack and of known buffers end the program, tables are read-only.
if(NOT MARLUNE_SANITIZE)
    target_compile_options(marlune_options INTERFACE
        $<$<CONFIG:Release>:-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
    target_link_options(marlune_options INTERFACE $<$<CONFIG:Release>:-Wl,-z,relro,-z,now>)
endif()
if(MARLUNE_SANITIZE)
    target_compile_options(marlune_options INTERFACE
        -fsanitize=${MARLUNE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1
        # Between a sanitizer's calls g++ sees uninitialised values in an optional where there are none.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(marlune_options INTERFACE -fsanitize=${MARLUNE_SANITIZE})
endif()

# marlune_library(NAME SOURCES file... [LINKS library...]): the library of a folder under src/, named after it.
# LINKS is the list of what the folder may know: tools/check_layers.py holds every #include to it.
function(marlune_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC marlune_options ${ARG_LINKS})
endfunction()

# marlune_program(NAME SOURCES main.cpp LINKS library...): a composition root.
function(marlune_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE marlune_options ${ARG_LINKS})
endfunction()
