# Compiles every public header alone, with every warning, as the oldest and the newest C++ that clients may use.
file(GLOB_RECURSE headers RELATIVE ${INCLUDE} ${INCLUDE}/zuPolicyManager/*.h)
if(WINDOWS)
    # The native component runtime's own header; Windows clients have the system's.
    list(REMOVE_ITEM headers zuPolicyManager/zucomrt.h)
endif()
if(NOT headers)
    message(FATAL_ERROR "no headers in ${INCLUDE}")
endif()
foreach(header IN LISTS headers)
    file(WRITE ${WORK}/Client.cpp "#include <${header}>\n")
    # Client.h has the parts of the C++ client for the newest C++, too.
    set(standards ${STANDARDS})
    if(header MATCHES "/client/")
        list(GET STANDARDS 0 standards)
    endif()
    foreach(standard IN LISTS standards)
        execute_process(
            COMMAND ${CXX} -std=c++${standard} -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                -Wsign-conversion -Wold-style-cast -Wno-non-virtual-dtor -Werror -I${INCLUDE} ${WORK}/Client.cpp
            RESULT_VARIABLE result ERROR_VARIABLE output)
        if(NOT result EQUAL 0)
            message(SEND_ERROR "${header} is no C++${standard} for ${CXX}\n${output}")
        endif()
    endforeach()
endforeach()
