# Writes a C++ source with the parts of the page as arrays, and the hashes of the style and the script for the page's
# security policy.
#
#   cmake -D FOLDER=... -D SCRIPTS=a.js,b.js -D OUTPUT=PageParts.cpp -P Embed.cmake
cmake_minimum_required(VERSION 3.20)

# Base64 of a text of hexadecimal digits.
function(to_base64 hex out)
    set(letters "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    set(result "")
    string(LENGTH "${hex}" digits)
    set(at 0)
    while(at LESS digits)
        string(SUBSTRING "${hex}" ${at} 6 group)
        string(LENGTH "${group}" length)
        string(SUBSTRING "${group}00000" 0 6 padded)
        math(EXPR bits "0x${padded}")
        # Four letters for three bytes, three for two, two for one.
        math(EXPR count "${length} / 2 + 1")
        foreach(shift 18 12 6 0)
            if(count GREATER 0)
                math(EXPR letter "(${bits} >> ${shift}) & 63")
                string(SUBSTRING "${letters}" ${letter} 1 letter)
                string(APPEND result "${letter}")
            else()
                string(APPEND result "=")
            endif()
            math(EXPR count "${count} - 1")
        endforeach()
        math(EXPR at "${at} + 6")
    endwhile()
    set(${out} "${result}" PARENT_SCOPE)
endfunction()

# Appends a constant to the source. The parts are ASCII, so each byte fits into a char.
function(append_part name text)
    string(HEX "${text}" hex)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
    if(bytes MATCHES "0x[89a-f]")
        message(FATAL_ERROR "${name}: a character that is not ASCII")
    endif()
    set(source "${source}constexpr char k${name}Bytes[] = {${bytes}};\n" PARENT_SCOPE)
    string(APPEND constants
        "const std::string_view kPage${name}(static_cast<const char*>(k${name}Bytes), sizeof(k${name}Bytes));\n")
    if(NOT name STREQUAL "Document")
        string(SHA256 hash "${text}")
        to_base64("${hash}" hash)
        string(APPEND constants "const std::string_view kPage${name}Hash = \"${hash}\";\n")
    endif()
    set(constants "${constants}" PARENT_SCOPE)
endfunction()

set(source "")
set(constants "")
file(READ "${FOLDER}/page.html" document)
file(READ "${FOLDER}/page.css" style)
set(script "\"use strict\";\n")
string(REPLACE "," ";" scripts "${SCRIPTS}")
foreach(name IN LISTS scripts)
    file(READ "${FOLDER}/${name}" text)
    string(APPEND script "${text}")
endforeach()
append_part(Document "${document}")
append_part(Style "${style}")
append_part(Script "${script}")
file(WRITE "${OUTPUT}"
    "#include \"tools/zupolicy/report/PageParts.h\"\n\nnamespace {\n${source}}  // namespace\n\n"
    "namespace zupm::tool {\n${constants}}  // namespace zupm::tool\n")
