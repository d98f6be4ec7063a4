#include "sitedb/loglines.h"

#include <algorithm>
#include <charconv>

#include "core/errnums.h"
#include "core/numbers.h"
#include "core/quicknum.h"
#include "core/text.h"
#include "sitedb/storeerror.h"

namespace sitedb {
namespace {

constexpr std::int32_t kMaxId = 2147483647;
constexpr std::string_view kInternalReferrer = "::::";
constexpr char kPart = '\x1f';  // between the parts of a key, each with its length in front where it can hold this

std::string_view CutInto(std::string_view text, int width, std::string& room) {
    if (text.size() + kCutMark.size() <= static_cast<std::size_t>(width)) return text;
    room = core::fLeft(text, width, kCutMark).text;
    return room;
}

std::int32_t LongOf(std::string_view text) { return core::ToLong(core::QuickNum(text)); }

void AppendNumber(std::string& key, std::int64_t number) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    key.append(digits, end.ptr);
    key += kPart;
}

void AppendText(std::string& key, std::string_view text) {
    AppendNumber(key, static_cast<std::int64_t>(text.size()));
    key.append(text);
}

std::string InsertSql(bool keep) {
    std::string names = "LogLnID, IP, PageID, Timestamp, Bytes, CntDupes";
    std::string marks = "?, ?, ?, ?, ?, 0";
    if (keep) {
        names += ", numIP, ProcTimeMicroSecs";
        marks += ", ?, ?";
        for (const TextColumn& column : kTextColumns) {
            names.append(", ").append(column.name);
            marks += ", ?";
        }
    }
    return "INSERT INTO logline (" + names + ") VALUES (" + marks + ")";
}

std::string SelectSql(bool keep) {
    std::string names = "LogLnID, Bytes, PageID, IP";
    if (keep) {
        names += ", numIP, ProcTimeMicroSecs";
        for (const TextColumn& column : kTextColumns) names.append(", ").append(column.name);
    }
    return "SELECT " + names + " FROM logline WHERE Timestamp=? ORDER BY LogLnID";
}

}  // namespace

void LogLn_Fill(LogLnRecord& record, const logdefs::LogLnFields& fields, std::int64_t timestamp, bool keep) {
    record.Timestamp = timestamp;
    record.Bytes = LongOf(fields[logdefs::kBytes]);
    record.IP = CutInto(fields[logdefs::kIP], kIpWidth, record.room.back());
    record.wholeReferrer = fields[logdefs::kReferrer];
    record.referrerCut = false;
    if (!keep) return;
    record.numIP = LongOf(fields[logdefs::kNumIP]);
    record.ProcTimeMicroSecs = LongOf(fields[logdefs::kProcTime]);
    for (std::size_t i = 0; i < kTextColumns.size(); ++i)
        record.texts[i] = CutInto(fields[kTextColumns[i].field], kTextColumns[i].width, record.room[i]);
    record.referrerCut = record.texts[kReferrerColumn].data() != record.wholeReferrer.data();
}

LogLines::LogLines(Database& db, Options options) : db_(db), options_(std::move(options)) {
    insert_ = db_.Prepare(InsertSql(options_.keep));
    insertReferrer_ = db_.Prepare("INSERT OR REPLACE INTO referrerwait (LogLnID, Referrer) VALUES (?, ?)");
    select_ = db_.Prepare(SelectSql(options_.keep));
    countDupe_ = db_.Prepare("UPDATE logline SET CntDupes=min(ifnull(CntDupes,0)+1, 2147483647) WHERE LogLnID=?");
}

void LogLines::StartFrom(std::int32_t stored) {
    const std::int64_t highest = db_.Scalar("SELECT ifnull(max(LogLnID), -1) FROM logline");
    lastId_ = static_cast<std::int32_t>(std::max<std::int64_t>(stored, highest));
}

void LogLines::Rewind(std::int32_t lastLogLnId) {
    lastId_ = lastLogLnId;
    groups_.Clear();
}

void LogLines::InsertRow(std::int32_t id, const LogLnRecord& record) {
    insert_.Bind(1, std::int64_t{id}).Bind(2, record.IP).Bind(3, std::int64_t{record.PageID});
    insert_.Bind(4, record.Timestamp).Bind(5, std::int64_t{record.Bytes});
    if (options_.keep) {
        insert_.Bind(6, std::int64_t{record.numIP}).Bind(7, std::int64_t{record.ProcTimeMicroSecs});
        for (std::size_t i = 0; i < record.texts.size(); ++i) insert_.Bind(static_cast<int>(i) + 8, record.texts[i]);
    }
    insert_.Run();
}

// With extra data only what was cut waits whole; without, every referrer that can matter.
void LogLines::StoreReferrer(std::int32_t id, const LogLnRecord& record) {
    std::string_view referrer = record.wholeReferrer;
    if (options_.keep && !record.referrerCut) return;
    if (referrer.empty() || referrer == "-") return;
    if (!options_.keep && !options_.domain.empty() && referrer.starts_with(options_.domain))
        referrer = kInternalReferrer;
    insertReferrer_.Bind(1, std::int64_t{id}).Bind(2, referrer).Run();
}

std::int32_t LogLines::LogLnRaw_Add(const LogLnRecord& record) {
    for (;;) {
        if (lastId_ >= kMaxId)
            throw core::ErrorNumber(core::errnum::kStore, "The database has no free line numbers left.");
        ++lastId_;
        try {
            InsertRow(lastId_, record);
            break;
        } catch (const StoreError& error) {
            if (error.number() != core::errnum::kDuplicateKey) throw;
            insert_ = db_.Prepare(InsertSql(options_.keep));  // and on with the next number
        }
    }
    StoreReferrer(lastId_, record);
    if (LineGroups::Group* group = groups_.Find(record.Timestamp)) {
        const std::string_view key = KeyOf(record);
        if (group->try_emplace(std::string(key), lastId_).second) groups_.Count(key.size());
    }
    return lastId_;
}

std::string_view LogLines::KeyOf(const LogLnRecord& record) {
    key_.clear();
    AppendNumber(key_, record.Bytes);
    AppendNumber(key_, record.PageID);
    AppendText(key_, record.IP);
    if (options_.keep) {
        AppendNumber(key_, record.numIP);
        AppendNumber(key_, record.ProcTimeMicroSecs);
        for (const std::string_view text : record.texts) AppendText(key_, text);
    }
    return key_;
}

void LogLines::LoadGroup(std::int64_t timestamp, LineGroups::Group& group) {
    select_.Bind(1, timestamp);
    std::string key;
    while (select_.Step()) {
        key.clear();
        AppendNumber(key, select_.Int(1));
        AppendNumber(key, select_.Int(2));
        AppendText(key, select_.Text(3));
        if (options_.keep) {
            AppendNumber(key, select_.Int(4));
            AppendNumber(key, select_.Int(5));
            for (std::size_t i = 0; i < kTextColumns.size(); ++i)
                AppendText(key, select_.Text(static_cast<int>(i) + 6));
        }
        // Rows come by number, so the first of equal lines is the one that is found.
        if (group.try_emplace(key, static_cast<std::int32_t>(select_.Int(0))).second) groups_.Count(key.size());
    }
    select_.Reset();
}

std::optional<std::int32_t> LogLines::LogLn_FindSame(const LogLnRecord& record) {
    LineGroups::Group* group = groups_.Find(record.Timestamp);
    if (group == nullptr) {
        group = &groups_.Make(record.Timestamp);
        LoadGroup(record.Timestamp, *group);
    }
    const auto at = group->find(KeyOf(record));
    if (at == group->end()) return std::nullopt;
    return at->second;
}

void LogLines::CountDupe(std::int32_t logLnId) { countDupe_.Bind(1, std::int64_t{logLnId}).Run(); }

}  // namespace sitedb
