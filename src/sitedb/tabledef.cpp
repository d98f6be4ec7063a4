#include "sitedb/tabledef.h"

#include <algorithm>
#include <array>

#include "core/errnums.h"
#include "core/error.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/text.h"
#include "dialogs/csv.h"

namespace sitedb {
namespace {

using core::ErrorNumber;

constexpr int kLongType = 4;
constexpr int kCounterAttribute = 16;

struct TypeRow {
    std::string_view word;
    int type;
    int attributes;
    std::string_view sql;
};
// Words compare exactly: "long" is no type.
constexpr std::array kTypes{
    TypeRow{"String", 10, 0, "TEXT"},     TypeRow{"A", 10, 0, "TEXT"},
    TypeRow{"Counter", 4, 16, "INTEGER"}, TypeRow{"True/False", 1, 0, "INTEGER"},
    TypeRow{"L", 1, 0, "INTEGER"},        TypeRow{"Byte", 2, 0, "INTEGER"},
    TypeRow{"Integer", 3, 0, "INTEGER"},  TypeRow{"N", 3, 0, "INTEGER"},
    TypeRow{"Long", 4, 0, "INTEGER"},     TypeRow{"P", 4, 0, "INTEGER"},
    TypeRow{"Currency", 5, 0, "REAL"},    TypeRow{"Single", 6, 0, "REAL"},
    TypeRow{"Double", 7, 0, "REAL"},      TypeRow{"Date/Time", 8, 0, "REAL"},
    TypeRow{"Binary", 11, 0, "BLOB"},     TypeRow{"B", 11, 0, "BLOB"},
    TypeRow{"Memo", 12, 0, "TEXT"},
};

std::string Quoted(std::string_view name) { return "\"" + core::fReplace(name, "\"", "\"\"") + "\""; }

std::string Column(const std::vector<std::string>& row, std::size_t i) { return i < row.size() ? row[i] : ""; }

FieldDef ParseField(const std::vector<std::string>& row) {
    FieldDef field;
    field.name = Column(row, 0);
    const std::string word = Column(row, 1);
    const auto type = std::ranges::find(kTypes, word, &TypeRow::word);
    if (type != kTypes.end()) {
        field.type = type->type;
        field.attributes = type->attributes;
    }
    field.size = core::ToLong(core::fNum(Column(row, 2)));
    for (std::size_t i = 3; i < row.size(); ++i) {
        if (row[i].empty() || row[i].starts_with('\'')) continue;
        if (row[i] != "FI") throw ErrorNumber(core::errnum::kFieldAttribute, "BLDTDEFS_AddTable: attribute " + row[i]);
        field.attributes += 1;
    }
    return field;
}

IndexDef ParseIndex(const std::vector<std::string>& row) {
    constexpr std::array<std::string_view, 6> kPrimaryWords{"P", "p", "primary", "Primary", "prim", "Prim"};
    IndexDef index{Column(row, 0), Column(row, 1)};
    const std::string unique = Column(row, 2);
    const std::string primary = Column(row, 3);
    index.unique = unique == "UQ" || unique == "uq";
    if (!index.unique && !unique.empty() && unique != " ")
        throw ErrorNumber(core::errnum::kIndexUnique, "BLDTDEFS_AddTable: unique column " + unique);
    index.primary = std::ranges::find(kPrimaryWords, primary) != kPrimaryWords.end();
    if (!index.primary && !primary.empty())
        throw ErrorNumber(core::errnum::kIndexPrimary, "BLDTDEFS_AddTable: primary column " + primary);
    return index;
}

std::vector<std::string> IndexFields(const IndexDef& index) {
    std::vector<std::string> names;
    std::string rest = index.fields;
    for (core::Token token; (token = core::fNextToken(rest, "+")).found;) names.push_back(token.text);
    names.push_back(rest);
    return names;
}

std::string FieldList(const IndexDef& index) {
    std::string list;
    for (const std::string& name : IndexFields(index)) list += (list.empty() ? "" : ",") + Quoted(name);
    return list;
}

const IndexDef* PrimaryOf(const TableDef& def) {
    const auto at = std::ranges::find_if(def.indexes, [](const IndexDef& index) { return index.primary; });
    return at == def.indexes.end() ? nullptr : &*at;
}

// The one Long field that can be the row's number, or "".
std::string RowNumberField(const TableDef& def) {
    const IndexDef* primary = PrimaryOf(def);
    if (primary == nullptr || IndexFields(*primary).size() != 1) return {};
    const auto field = std::ranges::find(def.fields, primary->fields, &FieldDef::name);
    return field != def.fields.end() && field->type == kLongType ? field->name : std::string();
}

std::string FieldSql(const FieldDef& field, bool rowNumber) {
    const auto type = std::ranges::find(kTypes, field.type, &TypeRow::type);
    if (type == kTypes.end() || field.name.empty())
        throw ErrorNumber(core::errnum::kStore, "The table definition has a field of no known type: " + field.name);
    std::string sql = Quoted(field.name) + " " + std::string(type->sql);
    if (rowNumber) sql += " PRIMARY KEY";
    if (rowNumber && (field.attributes & kCounterAttribute) != 0) sql += " AUTOINCREMENT";
    return sql;
}

}  // namespace

TableDef ParseTableDef(std::string_view text) {
    TableDef def;
    enum class Section { None, Fields, Indexes } section = Section::None;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find('\n', from), text.size());
        std::string_view line = text.substr(from, end - from);
        from = end + 1;
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::string_view mark = line.starts_with('"') ? line.substr(1) : line;
        if (mark.starts_with("FIELD DEFINITIONS START")) {
            section = Section::Fields;
        } else if (mark.starts_with("INDEX DEFINITIONS START")) {
            section = Section::Indexes;
        } else if (mark.starts_with("FIELD DEFINITIONS END") || mark.starts_with("INDEX DEFINITIONS END")) {
            section = Section::None;
        } else if (section != Section::None && !core::fTrim(line).empty()) {
            const std::vector<std::string> row = dialogs::CsvReadLine(line);
            if (section == Section::Fields && !row.front().empty()) def.fields.push_back(ParseField(row));
            if (section == Section::Indexes) def.indexes.push_back(ParseIndex(row));
        }
    }
    return def;
}

TableDef ReadTableDef(const std::string& path) {
    if (path.find('*') != std::string::npos)
        throw ErrorNumber(core::errnum::kDefPathWildcard, "BLDTDEFS_AddTable: " + path);
    const core::ReadText file = core::ReadFile(path);
    if (!file.result || file.text.empty())
        throw ErrorNumber(core::errnum::kDefMissing, "The table definition file is missing or empty: " + path);
    return ParseTableDef(file.text);
}

std::string CreateTableSql(std::string_view table, const TableDef& def) {
    const std::string rowNumber = RowNumberField(def);
    std::string sql = "CREATE TABLE " + Quoted(table) + " (";
    for (const FieldDef& field : def.fields) {
        if (&field != &def.fields.front()) sql += ", ";
        sql += FieldSql(field, field.name == rowNumber);
    }
    const IndexDef* primary = PrimaryOf(def);
    if (primary == nullptr || !rowNumber.empty()) return sql + ")";
    return sql + ", PRIMARY KEY (" + FieldList(*primary) + ")) WITHOUT ROWID";
}

std::vector<IndexSql> CreateIndexSql(std::string_view table, const TableDef& def) {
    std::vector<IndexSql> all;
    for (const IndexDef& index : def.indexes) {
        if (index.primary) continue;
        const std::string name = std::string(table) + "_" + index.name;
        all.push_back({name, std::string("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX " + Quoted(name) +
                                 " ON " + Quoted(table) + " (" + FieldList(index) + ")"});
    }
    return all;
}

}  // namespace sitedb
