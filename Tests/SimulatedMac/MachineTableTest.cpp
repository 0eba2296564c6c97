#include "SimulatedMac/MachineTable.h"

#include "SimulatedMac/FourCC.h"
#include "SimulatedMac/ValueCoding.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace simulated {
namespace {

constexpr const char* header = "index,key,key_hex,type_hex,size,attributes_hex,value_hex\n";

std::optional<MachineTable> parsed(const std::string& lines) {
    std::string error;
    return parseMachineTable("Test", header + lines, error);
}

TEST(MachineTable, EveryEmbeddedTableIsReadWhole) {
    ASSERT_FALSE(embeddedTables().empty());
    for (const EmbeddedTable& embedded : embeddedTables()) {
        std::string error;
        const auto table = parseMachineTable(embedded.name, embedded.csv, error);
        ASSERT_TRUE(table) << embedded.name << ": " << error;
        const auto lines =
            static_cast<std::size_t>(std::count(embedded.csv.begin(), embedded.csv.end(), '\n'));
        EXPECT_EQ(table->keys.size(), lines - 1) << embedded.name;
    }
}

TEST(MachineTable, KeyCountOfEveryMachineIsTheNumberOfItsKeys) {
    for (const EmbeddedTable& embedded : embeddedTables()) {
        const auto table = findMachine(embedded.name);
        ASSERT_TRUE(table);
        const KeyRecord& first = table->keys.front();
        EXPECT_EQ(first.code, fourCC("#KEY")) << embedded.name;
        EXPECT_EQ(decodeValue(first.type, first.bytes), static_cast<double>(table->keys.size()))
            << embedded.name;
    }
}

TEST(MachineTable, ALineKeepsCodeTypeSizeAttributesAndValue) {
    const auto table = parsed("0,FS! ,46532120,75693136,2,C0,0001\n");
    ASSERT_TRUE(table);
    const KeyRecord& key = table->keys.at(0);
    EXPECT_EQ(key.code, fourCC("FS! "));
    EXPECT_EQ(key.type, fourCC("ui16"));
    EXPECT_EQ(key.size, 2U);
    EXPECT_EQ(key.attributes, 0xC0);
    EXPECT_EQ(key.bytes[1], 1);
    EXPECT_EQ(key.readResult, 0);
}

TEST(MachineTable, AnUnreadableKeyKeepsItsResult) {
    const auto table = parsed("0,gP01,67503031,75693332,4,F0,unreadable:D7\n");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->keys.at(0).readResult, 0xD7);
}

TEST(MachineTable, AKeyWithoutTheReadableBitIsNotReadable) {
    const auto table = parsed("0,NATJ,4E41544A,75693820,1,50,\n");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->keys.at(0).readResult, 0x85);
}

TEST(MachineTable, ASizeBeyondTheRecordIsKept) {
    const auto table = parsed("0,LGPD,4C475044,63682A00,113,80,\n");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->keys.at(0).size, 113U);
}

TEST(MachineTable, MalformedLinesAreRefusedWithTheirNumberAndTheReason) {
    const std::string width = "the key, its type, its size or its attributes are not a number of their width";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"0,FNum", "fewer than seven columns"},
        {"1,FNum,464E756D,75693820,1,80,02", "the index is not 0"},
        {"0,FNum,464E756D,75693820,x,80,02", width},
        {"0,FNum,464E756D,75693820,1,180,02", width},
        {"0,FNum,464E756G,75693820,1,80,02", width},
        {"0,FNum,464E756D,75693820,1,80,0203", "the value is not hexadecimal or has another size"},
        {"0,FNum,464E756D,75693820,1,80,unreadable:100",
         "the result of reading is not a hexadecimal number from 01 to FF"}};
    for (const auto& [line, reason] : cases) {
        std::string error;
        EXPECT_FALSE(parseMachineTable("Test", header + line + "\n", error)) << line;
        EXPECT_EQ(error, "line 2: " + reason + ": " + line);
    }
}

TEST(MachineTable, NamesAreFoundWhateverTheirCase) {
    const auto table = findMachine("macbookPRO11,4");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->name, "MacBookPro11,4");
    EXPECT_FALSE(findMachine("MacBookPro11"));
    EXPECT_FALSE(findMachine(""));
}

TEST(MachineTable, DescriptionCountsWhatTheTableHolds) {
    EXPECT_EQ(describeMachine(*findMachine("MacBookPro11,4")),
              "2 fans, forced-fan mask, 46 temperature keys, 719 keys");
}

} // namespace
} // namespace simulated
