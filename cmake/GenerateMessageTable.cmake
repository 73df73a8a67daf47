# cmake -DTABLE=messages.txt -DOUTPUT=MessageTable.cpp -P GenerateMessageTable.cmake
#
# A table line is "NUMBER<white space>TEXT"; blank lines and lines starting with '#' are
# skipped. The text is taken literally (UTF-8), "%1" marks where an argument goes.
# The output defines the module's one entry point, lodeMessageText(number), which gives the
# zero-terminated UTF-16 text or null for a number the table lacks.
cmake_minimum_required(VERSION 3.25)
file(STRINGS "${TABLE}" lines ENCODING UTF-8)
set(entries "")
set(seen "")
set(line_number 0)
foreach(line IN LISTS lines)
    math(EXPR line_number "${line_number} + 1")
    if(line MATCHES "^[ \t]*(#.*)?$")
        continue()
    endif()
    if(NOT line MATCHES "^([0-9]+)[ \t]+(.*)$")
        message(FATAL_ERROR "${TABLE}:${line_number}: expected NUMBER TEXT")
    endif()
    set(number "${CMAKE_MATCH_1}")
    set(text "${CMAKE_MATCH_2}")
    if(number IN_LIST seen)
        message(FATAL_ERROR "${TABLE}:${line_number}: number ${number} appears twice")
    endif()
    list(APPEND seen "${number}")
    string(REPLACE "\\" "\\\\" text "${text}")
    string(REPLACE "\"" "\\\"" text "${text}")
    string(APPEND entries "    {${number}u, u\"${text}\"},\n")
endforeach()

file(WRITE "${OUTPUT}.tmp" "// Generated from ${TABLE}; edit that table instead.
namespace {
struct Entry {
    unsigned number;
    const char16_t* text;
};
constexpr Entry kEntries[] = {
${entries}};
}  // namespace

extern \"C\" __attribute__((visibility(\"default\"))) const char16_t* lodeMessageText(unsigned number) {
    for (const Entry& entry : kEntries) {
        if (entry.number == number) return entry.text;
    }
    return nullptr;
}
")
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.tmp")
