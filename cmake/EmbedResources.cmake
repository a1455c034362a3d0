# Embeds files into a C++ source at build time.
#
#   quor2d_embed_resources(<target> <file>...)
#
# adds a generated source to <target> that defines ZELK_QUOR2D::findResource (output/Resources.h) over the files, each
# under its name without folders. Line ends become "\n", whatever the checkout made of them. The contents are written
# as single characters, since compilers limit the length of a string literal.
#
# Run as a script (cmake -P) the same file writes that source: -DFILES=a;b;c -DOUTPUT=resources.cpp

set(QUOR2D_EMBED_SCRIPT "${CMAKE_CURRENT_LIST_FILE}")

function(quor2d_embed_resources target)
    list(TRANSFORM ARGN PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" OUTPUT_VARIABLE files)
    set(output "${CMAKE_CURRENT_BINARY_DIR}/EmbeddedResources.cpp")
    add_custom_command(
        OUTPUT "${output}"
        COMMAND ${CMAKE_COMMAND} "-DFILES=${files}" "-DOUTPUT=${output}" -P "${QUOR2D_EMBED_SCRIPT}"
        DEPENDS ${files} "${QUOR2D_EMBED_SCRIPT}"
        COMMENT "Embedding resources"
        VERBATIM)
    # The target may live in another folder, where the command above is not known; it waits for this one instead.
    add_custom_target(${target}_embedded DEPENDS "${output}")
    add_dependencies(${target} ${target}_embedded)
    target_sources(${target} PRIVATE "${output}")
endfunction()

# Appends to the named variable the definition of an array with the file's bytes and a terminating zero.
function(quor2d_append_array text name file)
    file(READ "${file}" bytes HEX)
    string(REGEX REPLACE "(..)" "\\1 " bytes "${bytes}") # apart, so that no match straddles two bytes
    string(REPLACE "0d 0a " "0a " bytes "${bytes}")
    string(REGEX REPLACE "(.. .. .. .. .. .. .. .. .. .. .. .. .. .. .. )" "\\1\n" bytes "${bytes}")
    string(REGEX REPLACE "([0-9a-f][0-9a-f]) " "'\\\\x\\1'," body "${bytes}")
    set(${text} "${${text}}const char ${name}[] = {\n${body}\n'\\0'};\n\n" PARENT_SCOPE)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    set(arrays "")
    set(entries "")
    set(number 0)
    foreach(file IN LISTS FILES)
        get_filename_component(fileName "${file}" NAME)
        quor2d_append_array(arrays kResource${number} "${file}")
        string(APPEND entries "    {\"${fileName}\", kResource${number}},\n")
        math(EXPR number "${number} + 1")
    endforeach()
    file(WRITE "${OUTPUT}"
"#include \"output/Resources.h\"

#include <cstring>

namespace ZELK_QUOR2D
{

namespace
{

${arrays}struct Resource {
    const char* name;
    const char* text;
};

const Resource kResources[] = {
${entries}};

} // namespace

const char* findResource(const char* name)
{
    for (const Resource& resource : kResources) {
        if (name && std::strcmp(name, resource.name) == 0)
            return resource.text;
    }
    return nullptr;
}

} // namespace ZELK_QUOR2D
")
endif()
