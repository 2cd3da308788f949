# Builds the example against the install tree, runs it on a copy of the sample file and checks with the installed tool what
# it did. Registration is ruled out: the registry file does not exist.

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV}\nended with ${result}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect text)
    if(NOT output STREQUAL text)
        message(FATAL_ERROR "expected\n${text}\ngot\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(COPY ${EXAMPLES}/cpp DESTINATION ${WORK})
file(COPY ${EXAMPLES}/policy.xml DESTINATION ${WORK})
set(ENV{ZUREGISTRY} ${WORK}/no-registry)

set(flags "")
if(SANITIZE)
    set(flags -fsanitize=${SANITIZE})
endif()

if(WAY STREQUAL "cmake")
    run(${CMAKE_COMMAND} -S ${WORK}/cpp -B ${WORK}/build -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_FLAGS=${flags}
        -DCMAKE_PREFIX_PATH=${INSTALL})
    run(${CMAKE_COMMAND} --build ${WORK}/build)
    set(client ${WORK}/build/new_entries)
else()
    find_program(pkgConfig NAMES pkg-config pkgconf REQUIRED)
    set(ENV{PKG_CONFIG_PATH} ${INSTALL}/${LIBDIR}/pkgconfig)
    run(${pkgConfig} --cflags --libs zuPolicyManager)
    separate_arguments(found UNIX_COMMAND "${output}")
    set(client ${WORK}/new_entries)
    # g++ takes C++17 by itself; clang takes an older standard without the option.
    set(standard "")
    if(CXX MATCHES "clang")
        set(standard -std=c++17)
    endif()
    run(${CXX} ${standard} ${flags} ${WORK}/cpp/NewEntries.cpp -o ${client} ${found} -Wl,-rpath,${INSTALL}/${LIBDIR})
endif()

run(${client} ${WORK}/policy.xml)
expect("policy PRODUCTA1000: 3 sections
policy PRODUCTB2000: 2 sections
policy PRODUCTC3000: 1 sections
task PRODUCTA1000 {task-1}: Nächtliche Prüfung
task PRODUCTA1000 {task-2}: 定期更新 🗓
task PRODUCTB2000 {task-1}: Inventory
added policy PRODUCTD4000 and task PRODUCTD4000 {task-1}
")

set(tool ${INSTALL}/bin/zupolicy)
run(${tool} get ${WORK}/policy.xml PRODUCTD4000 General Enabled)
expect("1\n")
run(${tool} get ${WORK}/policy.xml PRODUCTD4000 Schedule Hour --task {task-1})
expect("4\n")
run(${tool} get ${WORK}/policy.xml PRODUCTA1000 Notify Recipients)
expect("it@example.org\n")
run(${tool} get ${WORK}/policy.xml PRODUCTA1000 General ScanInterval)
expect("60\n")
