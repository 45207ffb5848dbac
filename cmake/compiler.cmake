# What every target of the project is compiled with: brimley_options.
add_library(brimley_options INTERFACE)
target_include_directories(brimley_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(brimley_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align
    -Woverloaded-virtual -Wconversion -Wno-sign-conversion -Werror
    # g++ 12 takes some inlined string copies for overlapping or oversized ones.
    -Wno-restrict -Wno-stringop-overflow -Wno-array-bounds)
target_link_libraries(brimley_options INTERFACE fmt::fmt)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # The compiler collects its garbage from 1 GiB on instead of 128 MiB, which saves a seventh of the time of a unit.
    target_compile_options(brimley_options INTERFACE "SHELL:--param ggc-min-heapsize=1048576")
endif()

if(BRIMLEY_SANITIZE)
    # src/ adds the sanitizers themselves.
    target_compile_options(brimley_options INTERFACE
        -fno-sanitize-recover=all -fno-omit-frame-pointer
        # GCC 12 takes the checks of a variant for reads of what is not set.
        -Wno-maybe-uninitialized)
    target_link_options(brimley_options INTERFACE -fsanitize=address,undefined)
endif()
if(BRIMLEY_FUZZ)
    # Only clang has libFuzzer. It does not know g++'s warnings, and has others; those of g++ are the ones that count.
    target_compile_options(brimley_options INTERFACE -fsanitize=fuzzer-no-link -Wno-unknown-warning-option -Wno-error)
endif()
if(BRIMLEY_COVERAGE)
    target_compile_options(brimley_options INTERFACE --coverage)
    target_link_options(brimley_options INTERFACE --coverage)
endif()

# brimley_in_units(TARGET [LARGEST n]): with CMAKE_UNITY_BUILD the sources of a folder are compiled as one, or as several
# of at most n sources, but for those with options of their own. A name without linkage must then be the only one in its
# folder. That each source includes what it uses is seen where it is compiled alone, in the debug preset.
function(brimley_in_units target)
    cmake_parse_arguments(UNITS "" "LARGEST" "" ${ARGN})
    get_target_property(sources ${target} SOURCES)
    set(folders "")
    foreach(source IN LISTS sources)
        cmake_path(GET source PARENT_PATH folder)
        string(MAKE_C_IDENTIFIER "${folder}" group)
        list(APPEND folders ${group})
        list(APPEND sources_of_${group} ${source})
    endforeach()
    list(REMOVE_DUPLICATES folders)
    foreach(group IN LISTS folders)
        set(units 1)
        list(LENGTH sources_of_${group} count)
        if(UNITS_LARGEST)
            math(EXPR units "(${count} + ${UNITS_LARGEST} - 1) / ${UNITS_LARGEST}")
        endif()
        set(number 0)
        foreach(source IN LISTS sources_of_${group})
            math(EXPR unit "${number} * ${units} / ${count}")
            math(EXPR number "${number} + 1")
            set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${group}_${unit}")
        endforeach()
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
    if(CMAKE_UNITY_BUILD)
        # A source in a unit looks like a header.
        target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
    endif()
endfunction()

# A quicker linker, where there is one.
find_program(BRIMLEY_MOLD mold)
if(BRIMLEY_MOLD)
    add_link_options(-fuse-ld=mold)
endif()

# brimley_reads_command_line(FILE...): sources with CLI11, which is large. They run once, so no time goes into making them fast.
function(brimley_reads_command_line)
    set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS -O0 SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# brimley_define(FILE NAME VALUE): a text that one source file alone is compiled with.
function(brimley_define file name value)
    set_property(SOURCE ${file} APPEND PROPERTY COMPILE_DEFINITIONS "${name}=\"${value}\"")
endfunction()

# brimley_precompiled_headers(NAME library... HEADERS header...): an object library whose precompiled header others reuse. It
# belongs into the folder of those who do, for the sake of the folder's compile options.
file(WRITE ${CMAKE_BINARY_DIR}/empty.cpp "")
function(brimley_precompiled_headers name)
    cmake_parse_arguments(PRECOMPILED "" "" "HEADERS" ${ARGN})
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/empty.cpp)
    target_link_libraries(${name} PUBLIC brimley_options ${PRECOMPILED_UNPARSED_ARGUMENTS})
    target_precompile_headers(${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled.h ${PRECOMPILED_HEADERS})
endfunction()

# brimley_room(NAME FOLDER DEPENDS room...): the library of one folder under src/, made of the .cpp
# files directly in the folders named, except the main files of programs (*_main.cpp).
function(brimley_room name)
    cmake_parse_arguments(ROOM "" "" "FOLDERS;DEPENDS" ${ARGN})
    set(sources "")
    foreach(folder IN LISTS ROOM_FOLDERS)
        file(GLOB found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp)
        list(FILTER found EXCLUDE REGEX "_main\\.cpp$")
        list(APPEND sources ${found})
    endforeach()
    if(sources)
        add_library(${name} STATIC ${sources})
        target_link_libraries(${name} PUBLIC brimley_options ${ROOM_DEPENDS})
        target_precompile_headers(${name} REUSE_FROM brimley_precompiled)
        brimley_in_units(${name} LARGEST 16)
    else()
        add_library(${name} INTERFACE)
        target_link_libraries(${name} INTERFACE brimley_options ${ROOM_DEPENDS})
    endif()
endfunction()

# brimley_rooms_of(OUT library...): the rooms among the libraries and among those that they link, each once.
function(brimley_rooms_of out)
    set(rooms "")
    foreach(library IN LISTS ARGN)
        if(library MATCHES "^brimley_" AND TARGET ${library})
            get_target_property(type ${library} TYPE)
            if(type STREQUAL STATIC_LIBRARY)
                list(APPEND rooms ${library})
            endif()
        endif()
        if(TARGET ${library})
            get_target_property(further ${library} INTERFACE_LINK_LIBRARIES)
            if(further)
                brimley_rooms_of(further ${further})
                list(APPEND rooms ${further})
            endif()
        endif()
    endforeach()
    list(REMOVE_DUPLICATES rooms)
    set(${out} ${rooms} PARENT_SCOPE)
endfunction()

# brimley_product_first(TARGET library...): where an inline function is compiled in the product and in a test, or in a source that
# only reads the command line, the linker takes the first one that it meets. Let it be the product's, optimised and with its
# sanitizers; of the product the lowest room first.
function(brimley_product_first target)
    brimley_rooms_of(rooms ${ARGN})
    get_target_property(type ${target} TYPE)
    if(rooms AND type STREQUAL EXECUTABLE)
        list(REVERSE rooms)
        list(TRANSFORM rooms REPLACE "(.+)" "$<TARGET_FILE:\\1>")
        list(JOIN rooms " " rooms)
        target_link_options(${target} PRIVATE "SHELL:-Wl,--whole-archive ${rooms} -Wl,--no-whole-archive")
    endif()
endfunction()
