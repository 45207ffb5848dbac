# How the tests' programs are made and run: docs/testing.md.

# brimley_test_code(TARGET library...): compiles the sources of a target as code of tests.
function(brimley_test_code target)
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${target} PUBLIC ${ARGN} GTest::gtest GTest::gmock)
    target_precompile_headers(${target} REUSE_FROM brimley_test_precompiled)
    brimley_in_units(${target})
    get_target_property(type ${target} TYPE)
    if(type STREQUAL EXECUTABLE)
        target_link_libraries(${target} PRIVATE known_leaks)
    endif()
    brimley_product_first(${target} ${ARGN})
endfunction()

# brimley_test_program(NAME FOLDER library...): one GoogleTest program of the .cpp files in tests/FOLDER.
function(brimley_test_program name folder)
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp)
    add_executable(${name} ${found})
    brimley_test_code(${name} ${ARGN} GTest::gtest_main)
endfunction()

# brimley_cases(NAME PROGRAM [PARTS n] [OPTIONS option=value...] [PROPERTIES property value...]): runs cases of a program in so
# many processes, NAME or NAME.1, NAME.2 ..., with options of run-cases (tests/runner).
function(brimley_cases name program)
    cmake_parse_arguments(CASES "" "PARTS" "OPTIONS;PROPERTIES" ${ARGN})
    if(NOT CASES_PARTS)
        set(CASES_PARTS 1)
    endif()
    foreach(number RANGE 1 ${CASES_PARTS})
        set(test ${name})
        if(CASES_PARTS GREATER 1)
            set(test ${name}.${number})
        endif()
        math(EXPR part "${number} - 1")
        add_test(NAME ${test}
            COMMAND run-cases $<TARGET_FILE:${program}> part=${part} parts=${CASES_PARTS} ${CASES_OPTIONS})
        # run-cases watches over the time of each case.
        set_tests_properties(${test} PROPERTIES TIMEOUT 7200 ${CASES_PROPERTIES})
    endforeach()
endfunction()

# brimley_file_cases(PROGRAM [PARTS n] [LEFT_TO_PLAIN filter]): the cases on files. What only the night has time for stands in
# suites instantiated as "Night". Cases that have OnAServer in their names hold on a server alone. What is left to the plain
# build is left out under the sanitizers.
function(brimley_file_cases program)
    cmake_parse_arguments(FILES "" "PARTS;LEFT_TO_PLAIN" "" ${ARGN})
    set(left_out "Night/*:*OnAServer*")
    if(BRIMLEY_SANITIZE AND FILES_LEFT_TO_PLAIN)
        string(APPEND left_out ":${FILES_LEFT_TO_PLAIN}")
    endif()
    brimley_cases(${program} ${program} PARTS "${FILES_PARTS}" OPTIONS "filter=-${left_out}")
    brimley_cases(night.${program} ${program} OPTIONS "filter=Night/*" seconds=600 may_be_empty=yes
        PROPERTIES LABELS night)
endfunction()

# brimley_server_cases(PROGRAM [PARTS n] [LEFT_OUT filter] [LEFT_TO_NIGHT filter] [SANITIZED]): the cases once more, the
# companies on the tests' server, without those that only hold for files, and in every run without those that other tests
# there stand for. The sanitizers look at them where the engine itself is tested; the rest is theirs on files.
function(brimley_server_cases program)
    cmake_parse_arguments(SERVER "SANITIZED" "PARTS;LEFT_OUT;LEFT_TO_NIGHT" "" ${ARGN})
    set(label LABELS plain)
    if(SERVER_SANITIZED)
        set(label "")
    endif()
    set(on_server FIXTURES_REQUIRED server ENVIRONMENT BRIMLEY_TEST_SERVER=${BRIMLEY_TEST_SERVER})
    brimley_cases(server.${program} ${program} PARTS "${SERVER_PARTS}" OPTIONS "filter=-Night/*:${SERVER_LEFT_OUT}:${SERVER_LEFT_TO_NIGHT}"
        PROPERTIES ${on_server} ${label})
    brimley_cases(night.server.${program} ${program} OPTIONS "filter=Night/*:${SERVER_LEFT_TO_NIGHT}" seconds=1800 may_be_empty=yes
        PROPERTIES ${on_server} LABELS night)
endfunction()

# brimley_test(NAME FOLDER room...): a program of the .cpp files in tests/FOLDER, its cases on files.
function(brimley_test name folder)
    brimley_test_program(${name} ${folder} ${ARGN})
    brimley_file_cases(${name})
endfunction()
