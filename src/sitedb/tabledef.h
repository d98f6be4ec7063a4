#pragma once

#include <string>
#include <string_view>
#include <vector>

// Table definition files: which fields and indexes a table has. Anything outside the two marked sections of a file is
// comment. See docs/formats.md.
namespace sitedb {

struct FieldDef {
    std::string name{};
    int type =
        0;  // 10 text, 1 boolean, 2 byte, 3 integer, 4 long, 5 currency, 6 single, 7 double, 8 date, 11 binary, 12 memo
    int size = 0;
    int attributes = 0;  // 1 fixed size, 16 counter
};

struct IndexDef {
    std::string name{};
    std::string fields{};  // column names joined by "+"
    bool unique = false;
    bool primary = false;
};

struct TableDef {
    std::vector<FieldDef> fields{};  // empty: nothing to build
    std::vector<IndexDef> indexes{};
};

// Raises 1106 (wildcard in the path), 1107 (missing or empty), 1103 (field attribute), 1109, 1110 (index columns).
TableDef ReadTableDef(const std::string& path);
TableDef ParseTableDef(std::string_view text);

// The statements that make the table. A primary index on one Long field makes that field the row's number; one on
// several fields clusters the table by them. Indexes are apart, so that a big load can go without them for a while.
std::string CreateTableSql(std::string_view table, const TableDef& def);
struct IndexSql {
    std::string name{};
    std::string create{};
};
std::vector<IndexSql> CreateIndexSql(std::string_view table, const TableDef& def);

}  // namespace sitedb
