# SPDX-License-Identifier: MIT
# What every target is built with, and the functions that rooms, programs, tests, measurements and
# fuzz targets are declared with.

# Options shared by everything that is compiled here.
add_library(raincast_options INTERFACE)
target_compile_options(raincast_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-qual -Wformat=2 -Werror)
# GCC 12's -O2 sees overlaps and overflows inside std::string and std::vector that are not there
# (GCC bugs 105329, 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(raincast_options INTERFACE -Wno-restrict -Wno-stringop-overflow)
endif()
# What a mistake of ours may lead to is an end with a message, not somebody else's code.
target_compile_definitions(raincast_options INTERFACE _GLIBCXX_ASSERTIONS)
target_compile_options(raincast_options INTERFACE -fstack-clash-protection -fstack-protector-strong)
target_link_options(raincast_options INTERFACE -Wl,-z,relro,-z,now)
# A processor that multiplies and adds in one step rounds once instead of twice: pixels and positions
# would differ from one machine to another.
target_compile_options(raincast_options INTERFACE -ffp-contract=off)
target_compile_definitions(raincast_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_DISABLE_DEPRECATED_BEFORE=0x060400
    RAINCAST_VERSION="${PROJECT_VERSION}")
target_include_directories(raincast_options INTERFACE "${CMAKE_SOURCE_DIR}/src")
if(RAINCAST_SANITIZE)
    target_compile_options(raincast_options INTERFACE
        -fsanitize=${RAINCAST_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(raincast_options INTERFACE -fsanitize=${RAINCAST_SANITIZE})
endif()
if(RAINCAST_FUZZ)
    # Clang takes names of another source in the same batch for names that a header hides.
    target_compile_options(raincast_options INTERFACE -fsanitize=fuzzer-no-link -Wno-shadow)
endif()

# raincast_batches(TARGET ORDER): its sources are compiled several at a time, sorted "upwards" or
# "downwards", unless RAINCAST_BATCHES is empty.
function(raincast_batches target order)
    if(NOT RAINCAST_BATCHES)
        return()
    endif()
    get_target_property(sources ${target} SOURCES)
    list(SORT sources)
    if(order STREQUAL "downwards")
        list(REVERSE sources)
    endif()
    # The names in a source may come to clash.
    set(script "${CMAKE_SOURCE_DIR}/scripts/batches")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources} "${script}")
    execute_process(COMMAND "${script}" ${sources}
        OUTPUT_VARIABLE batches OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    foreach(source batch IN ZIP_LISTS sources batches)
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${target}_${batch})
    endforeach()
    set_target_properties(${target} PROPERTIES
        SOURCES "${sources}" UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # Only of a file that it compiles itself does GCC know that nobody else sees its types.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
    endif()
endfunction()

# All rooms declared so far, lowest first. A room may include those before it, never those after.
set_property(GLOBAL PROPERTY RAINCAST_ROOMS "")
# What the guard of the rooms and the picture of them read: a line "name | folders | rooms that it
# may include | what it holds" for each.
set(RAINCAST_ROOMS_FILE "${CMAKE_BINARY_DIR}/rooms.txt")
file(WRITE "${RAINCAST_ROOMS_FILE}.new" "")

# raincast_room(NAME HOLDS TEXT [FOLDERS FOLDER...] [ABOVE ROOM] [WITHOUT ROOM...]
#     [LIBRARIES LIBRARY...])
# Every .cpp of src/NAME and of the folders named, but main.cpp, as an object library. Object
# libraries, so that self-registering static objects are never dropped by the linker. With ABOVE the
# room stands beside the main line, on that room and those below it. It includes none of the rooms
# after WITHOUT, though they stand below it.
function(raincast_room name)
    cmake_parse_arguments(PARSE_ARGV 1 room "" "HOLDS;ABOVE" "FOLDERS;WITHOUT;LIBRARIES")
    set(patterns "${CMAKE_SOURCE_DIR}/src/${name}/*.cpp")
    foreach(folder IN LISTS room_FOLDERS)
        list(APPEND patterns "${CMAKE_SOURCE_DIR}/src/${name}/${folder}/*.cpp")
    endforeach()
    file(GLOB sources CONFIGURE_DEPENDS ${patterns})
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    add_library(${name} OBJECT ${sources})
    # What stands before a source in one preset stands after it in the other: an #include that it
    # lacks is missed in one of them, unless both have it.
    raincast_batches(${name} "${RAINCAST_BATCHES}")
    target_link_libraries(${name} PUBLIC raincast_options ${room_LIBRARIES})
    if(room_ABOVE)
        raincast_rooms_up_to(below ${room_ABOVE})
    else()
        get_property(below GLOBAL PROPERTY RAINCAST_ROOMS)
        set_property(GLOBAL APPEND PROPERTY RAINCAST_ROOMS ${name})
    endif()
    set_property(GLOBAL PROPERTY RAINCAST_UP_TO_${name} ${below} ${name})
    if(room_WITHOUT)
        list(REMOVE_ITEM below ${room_WITHOUT})
    endif()
    list(JOIN room_FOLDERS " " folders)
    list(JOIN below " " below)
    file(APPEND "${RAINCAST_ROOMS_FILE}.new" "${name} | ${folders} | ${below} | ${room_HOLDS}\n")
endfunction()

# raincast_rooms_done(): to be called after the last room.
function(raincast_rooms_done)
    file(COPY_FILE "${RAINCAST_ROOMS_FILE}.new" "${RAINCAST_ROOMS_FILE}" ONLY_IF_DIFFERENT)
endfunction()

# raincast_rooms_up_to(OUT NAME): NAME and every room below it, for a target_link_libraries call.
function(raincast_rooms_up_to out name)
    get_property(rooms GLOBAL PROPERTY RAINCAST_UP_TO_${name})
    if(NOT rooms)
        message(FATAL_ERROR "No room is called ${name}")
    endif()
    set(${out} ${rooms} PARENT_SCOPE)
endfunction()

# raincast_program(NAME ROOM [FOLDER DIR]): the program of src/ROOM/main.cpp, with ROOM and the rooms
# below it, to be installed in DIR instead of the programs' folder.
function(raincast_program name room)
    cmake_parse_arguments(PARSE_ARGV 2 program "" "FOLDER" "")
    if(NOT program_FOLDER)
        set(program_FOLDER ${CMAKE_INSTALL_BINDIR})
    endif()
    raincast_rooms_up_to(rooms ${room})
    add_executable(${name} ${CMAKE_SOURCE_DIR}/src/${room}/main.cpp)
    target_link_libraries(${name} PRIVATE ${rooms})
    install(TARGETS ${name} DESTINATION ${program_FOLDER})
endfunction()

# The compiled form of a locale that writes "22,4": the test suite runs under it as well.
set(RAINCAST_LOCALE_DIR "${CMAKE_BINARY_DIR}/locale")
function(raincast_make_comma_locale)
    # A file of it: an attempt that was interrupted may have left the folder.
    if(NOT EXISTS "${RAINCAST_LOCALE_DIR}/de_DE.UTF-8/LC_NUMERIC")
        file(MAKE_DIRECTORY "${RAINCAST_LOCALE_DIR}")
        execute_process(
            COMMAND localedef -i de_DE -f UTF-8 "${RAINCAST_LOCALE_DIR}/de_DE.UTF-8"
            COMMAND_ERROR_IS_FATAL ANY)
    endif()
endfunction()

# ThreadSanitizer knows no threads after a fork and delays signals; and many rounds of one thread show
# nothing new to it.
set(RAINCAST_LEFT_OUT "")
if(RAINCAST_SANITIZE STREQUAL "thread")
    string(CONCAT RAINCAST_LEFT_OUT ":EndSignals*:PeerServers*:*KilledInTheMiddle*:LivePicture*:LiveProgram*"
        ":NginxSettings*:Published*:Remote*:*Prometheus*:ServerClockJump*:ServerProgram*:TlsCurlFetcher*"
        ":TryLive*:*TenThousandRuns*")
endif()

# raincast_test(ROOM): the tests below tests/ROOM as one program and up to three ctest
# entries: ROOM; ROOM.comma, the same under a comma locale; ROOM.real_data, the suites named
# RealData..., which need the folder RAINCAST_TEST_DATA and show as skipped without it. Any entry
# shows as skipped when a test of it was skipped and none failed.
function(raincast_test room)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${room}/*.cpp")
    if(TARGET ${room})
        raincast_rooms_up_to(rooms ${room})
    endif()
    add_executable(${room}_tests ${sources})
    raincast_batches(${room}_tests downwards)
    target_link_libraries(${room}_tests PRIVATE ${rooms} test_support test_main ${ARGN}
        test_options)
    target_precompile_headers(${room}_tests REUSE_FROM test_support)

    # Suites named RealData... are an entry of their own, so that their skipping is seen.
    # KillTest, ManyFilesTest and the sweeps have entries of their own (tests/CMakeLists.txt): they
    # take long, or measure a whole process.
    set(own_entries "KillTest*:ManyFilesTest*:*MenuSweep*")
    set(synthetic "--gtest_filter=-RealData*:*/RealData*:${own_entries}${RAINCAST_LEFT_OUT}")
    add_test(NAME ${room} COMMAND ${room}_tests ${synthetic})
    add_test(NAME ${room}.comma COMMAND ${room}_tests ${synthetic})
    set(names ${room} ${room}.comma)
    set(real_data "")
    # A suite of that name may come or go in a file that is there already.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
    foreach(source IN LISTS sources)
        file(STRINGS "${source}" found REGEX "^TEST(_F|_P)?\\(RealData")
        list(APPEND real_data ${found})
    endforeach()
    if(real_data)
        add_test(NAME ${room}.real_data
            COMMAND ${room}_tests "--gtest_filter=RealData*:*/RealData*")
        list(APPEND names ${room}.real_data)
    endif()
    set(environment "QT_QPA_PLATFORM=offscreen" "RAINCAST_TEST_DATA=${RAINCAST_TEST_DATA}"
        "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0"
        "UBSAN_OPTIONS=print_stacktrace=1"
        "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/tsan.supp")
    foreach(test IN LISTS names)
        set_tests_properties(${test} PROPERTIES
            SKIP_RETURN_CODE 77 ENVIRONMENT "${environment};LC_ALL=C.UTF-8;LANGUAGE=en")
    endforeach()
    set_tests_properties(${room}.comma PROPERTIES ENVIRONMENT
        "${environment};LC_ALL=de_DE.UTF-8;LANGUAGE=en;LOCPATH=${RAINCAST_LOCALE_DIR};RAINCAST_EXPECT_COMMA=1")
endfunction()

# raincast_bench(NAME ROOM [LIBRARY...]): benchmarks/NAME_bench.cpp with ROOM and the rooms below it.
# The target "benchmarks" builds it.
function(raincast_bench name room)
    raincast_rooms_up_to(rooms ${room})
    add_executable(${name}_bench ${CMAKE_SOURCE_DIR}/benchmarks/${name}_bench.cpp)
    target_link_libraries(${name}_bench PRIVATE ${rooms} test_support benchmark::benchmark ${ARGN})
    add_dependencies(benchmarks ${name}_bench)
endfunction()

# raincast_fuzz(NAME ROOM): fuzz/NAME.cpp, a libFuzzer target with ROOM and the rooms below it.
# Its seeds are the files of fuzz/seeds/NAME.
function(raincast_fuzz name room)
    raincast_rooms_up_to(rooms ${room})
    add_executable(fuzz_${name} ${CMAKE_SOURCE_DIR}/fuzz/${name}.cpp)
    target_link_libraries(fuzz_${name} PRIVATE ${rooms} ${ARGN})
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
endfunction()
