#include "sitedb/tabledef.h"

#include <gtest/gtest.h>

#include "core/error.h"

namespace sitedb {
namespace {

int ErrorOf(const std::string& text) {
    try {
        CreateTableSql("t", ParseTableDef(text));
    } catch (const core::ErrorNumber& error) {
        return error.number();
    }
    return 0;
}

TEST(ParseTableDef, ReadsWhatStandsBetweenTheMarks) {
    const TableDef def = ParseTableDef(
        "any heading, with a comma\r\n"
        "\"FIELD DEFINITIONS START\r\n"
        "ID,Long,4\r\n"
        "Name,String,50,FI,'a comment\r\n"
        "FIELD DEFINITIONS END\r\n"
        "INDEX DEFINITIONS START\r\n"
        "Key,ID,uq,prim\r\n"
        "ByName,Name+ID, \r\n"
        "INDEX DEFINITIONS END\r\n");
    EXPECT_EQ(CreateTableSql("t", def), "CREATE TABLE \"t\" (\"ID\" INTEGER PRIMARY KEY, \"Name\" TEXT)");
    ASSERT_EQ(CreateIndexSql("t", def).size(), 1U);
    EXPECT_EQ(CreateIndexSql("t", def)[0].create, "CREATE INDEX \"t_ByName\" ON \"t\" (\"Name\",\"ID\")");
    EXPECT_EQ(def.fields[1].attributes, 1);
    EXPECT_TRUE(ParseTableDef("FIELD DEFINITIONS START\n,Long\nFIELD DEFINITIONS END\n").fields.empty());
}

TEST(ParseTableDef, RefusesWhatItDoesNotKnow) {
    const std::string field = "FIELD DEFINITIONS START\nID,Long,4\nFIELD DEFINITIONS END\nINDEX DEFINITIONS START\n";
    EXPECT_EQ(ErrorOf("FIELD DEFINITIONS START\nID,Long,4,XX\n"), 1103);
    EXPECT_EQ(ErrorOf(field + "Key,ID,unique\n"), 1109);
    EXPECT_EQ(ErrorOf(field + "Key,ID,, \n"), 1110);  // a blank is allowed in the unique column alone
    EXPECT_NE(ErrorOf("FIELD DEFINITIONS START\nID,long,4\n"), 0);
    EXPECT_EQ(ErrorOf(field + "Key,ID, ,P\n"), 0);
}

}  // namespace
}  // namespace sitedb
