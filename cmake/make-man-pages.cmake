# Makes the manual pages: those of the commands by asking the tool, the others from templates. Run as
#
#   cmake -DTOOL=... -DVERSION=... -DTEMPLATES=FOLDER -DPAGES=FOLDER -P make-man-pages.cmake
#
# A variable SOURCE_DATE_EPOCH gives the date of the pages, so that the same sources give the same bytes.
cmake_minimum_required(VERSION 3.21)

function(ask_tool output)
    execute_process(COMMAND ${TOOL} ${ARGN} OUTPUT_VARIABLE text RESULT_VARIABLE code)
    if(NOT code STREQUAL "0")
        message(FATAL_ERROR "zupolicy ${ARGN} ended with ${code}")
    endif()
    set(${output} "${text}" PARENT_SCOPE)
endfunction()

# The tool leaves the date of a page empty.
function(make_page name)
    ask_tool(page help --man ${ARGN})
    string(REGEX REPLACE "^(\\.TH \"[^\"]*\" \"1\") \"\"" "\\1 \"${DATE}\"" page "${page}")
    file(WRITE ${PAGES}/man1/${name}.1 "${page}")
endfunction()

string(TIMESTAMP DATE "%Y-%m-%d" UTC)
file(REMOVE_RECURSE ${PAGES})
make_page(zupolicy)
# The commands, each at the beginning of a line and followed by a tab.
ask_tool(candidates __complete words 1 help)
string(REGEX MATCHALL "(^|\n)[a-z-]+\t" lines "${candidates}")
foreach(line IN LISTS lines)
    string(STRIP "${line}" command)
    make_page(zupolicy-${command} ${command})
endforeach()

file(GLOB templates ${TEMPLATES}/*.in)
foreach(template IN LISTS templates)
    cmake_path(GET template STEM LAST_ONLY page)
    string(REGEX REPLACE ".*\\." "" section "${page}")
    configure_file(${template} ${PAGES}/man${section}/${page} @ONLY)
endforeach()
