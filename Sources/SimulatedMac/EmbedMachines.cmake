# Writes a C++ source that contains the CSV tables as text: cmake -DOUTPUT=file -DFOLDER=Machines -P EmbedMachines.cmake
file(GLOB tables "${FOLDER}/*.csv")
list(SORT tables)
set(literals "")
set(entries "")
set(number 0)
foreach(table IN LISTS tables)
    get_filename_component(name "${table}" NAME_WLE)
    file(READ "${table}" csv)
    # A raw string literal, so that the table needs no escapes.
    string(APPEND literals "constexpr std::string_view table${number} = R\"csv(${csv})csv\";\n\n")
    string(APPEND entries "    EmbeddedTable{\"${name}\", table${number}},\n")
    math(EXPR number "${number} + 1")
endforeach()
file(WRITE "${OUTPUT}" "// Made from Machines/*.csv by EmbedMachines.cmake.

#include \"SimulatedMac/MachineTable.h\"

#include <array>

namespace simulated {

namespace {

${literals}constexpr std::array<EmbeddedTable, ${number}> tables{
${entries}};

} // namespace

std::span<const EmbeddedTable> embeddedTables() {
    return tables;
}

} // namespace simulated
")
