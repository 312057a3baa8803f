# Writes a C++ source that holds a text file as string literal chunks.
#
#   cmake -DINPUT=<text file> -DOUTPUT=<.cpp> -DHEADER=<include of the declaration>
#         -DNAMESPACE=<C++ namespace> -DFUNCTION=<function name> -P EmbedFile.cmake
#
# The generated function `std::string_view FUNCTION()` returns the whole text; it joins the
# chunks once, on first use. The text must be printable ASCII with tabs and line breaks, so
# the literals need no character-set care. Each chunk stays well under the 64 KiB that
# compilers must accept for one string literal.

foreach(argument INPUT OUTPUT HEADER NAMESPACE FUNCTION)
    if(NOT DEFINED ${argument})
        message(FATAL_ERROR "EmbedFile.cmake: -D${argument}=... is required")
    endif()
endforeach()

file(READ "${INPUT}" content)
string(LENGTH "${content}" content_length)

string(REGEX MATCH "[^\t\n\r -~]" unexpected "${content}")
if(NOT unexpected STREQUAL "")
    message(FATAL_ERROR "EmbedFile.cmake: ${INPUT} holds a byte that is not printable ASCII")
endif()

set(chunk_size 8192)
set(chunks "")
set(offset 0)
while(offset LESS content_length)
    string(SUBSTRING "${content}" ${offset} ${chunk_size} piece)
    string(REPLACE "\\" "\\\\" piece "${piece}")
    string(REPLACE "\"" "\\\"" piece "${piece}")
    string(REPLACE "?" "\\?" piece "${piece}")
    string(REPLACE "\t" "\\t" piece "${piece}")
    string(REPLACE "\r" "\\r" piece "${piece}")
    # One source line per text line keeps the generated file readable.
    string(REPLACE "\n" "\\n\"\n    \"" piece "${piece}")
    string(APPEND chunks "    \"${piece}\"sv,\n")
    math(EXPR offset "${offset} + ${chunk_size}")
endwhile()

get_filename_component(input_name "${INPUT}" NAME)
set(source "// Generated from ${input_name} by cmake/EmbedFile.cmake; do not edit.
#include \"${HEADER}\"

#include <string>

namespace ${NAMESPACE} {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view chunks[] = {
${chunks}    \"\"sv,
};

} // namespace

std::string_view ${FUNCTION}() {
    static const std::string whole = [] {
        std::string joined;
        joined.reserve(${content_length});
        for (const std::string_view chunk : chunks) {
            joined.append(chunk);
        }
        return joined;
    }();
    return whole;
}

} // namespace ${NAMESPACE}
")

file(WRITE "${OUTPUT}" "${source}")
