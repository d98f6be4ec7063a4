#include "sitedb/sqlite.h"

#include <sqlite3.h>

#include <chrono>
#include <future>
#include <system_error>
#include <utility>

#include "core/error.h"
#include "core/ports.h"
#include "sitedb/storeerror.h"

namespace sitedb {
namespace {

constexpr int kInstructionsPerBeat =
    1000;                                // of the store's engine: some ten microseconds, more where it reads the disk
constexpr int kMaxTextLength = 8 << 20;  // bytes of one value or row: far above any line

std::string Advice(int code) {
    switch (code & 0xff) {
        case SQLITE_FULL:
            return " The disk is full: free some space and try again. What was stored before is safe.";
        case SQLITE_READONLY:
            return " The database or its folder is read-only: reports work, adding does not.";
        case SQLITE_BUSY:
            return " Another program is using this database.";
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return " The database file is damaged; it was left as it is. Restore it from a copy.";
        case SQLITE_CANTOPEN:
            return " The database file cannot be opened: check that it exists and may be read.";
        default:
            return {};
    }
}

[[noreturn]] void Raise(sqlite3* db, int code, std::string_view call) {
    const int extended = db != nullptr ? sqlite3_extended_errcode(db) : code;
    if (extended == SQLITE_INTERRUPT) throw core::Stopped("Heartbeat");  // nothing else interrupts
    const char* text = db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(code);
    const bool duplicate = extended == SQLITE_CONSTRAINT_PRIMARYKEY || extended == SQLITE_CONSTRAINT_UNIQUE ||
                           extended == SQLITE_CONSTRAINT_ROWID;
    throw StoreError(duplicate ? core::errnum::kDuplicateKey : core::errnum::kStore, extended != 0 ? extended : code,
                     "Database: " + std::string(text) + " (" + std::string(call.substr(0, call.find(' '))) + ", " +
                         std::to_string(extended) + ")." + Advice(extended != 0 ? extended : code));
}

// One thread does all the work, and nobody reads the library's statistics: without both it is a good deal faster.
// Before its first use; a later call would be refused, which costs only speed.
bool ConfigureOnce() {
    static const bool done = sqlite3_config(SQLITE_CONFIG_SINGLETHREAD) == SQLITE_OK &&
                             sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) == SQLITE_OK;
    return done;
}

}  // namespace

bool StoreError::Busy() const noexcept { return (code_ & 0xff) == SQLITE_BUSY; }

Statement::Statement(sqlite3* db, std::string_view sql) {
    const int code = sqlite3_prepare_v3(db, sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                                        &statement_, nullptr);
    if (code != SQLITE_OK) Raise(db, code, sql);
}

Statement::Statement(Statement&& other) noexcept : statement_(std::exchange(other.statement_, nullptr)) {}

Statement& Statement::operator=(Statement&& other) noexcept {
    std::swap(statement_, other.statement_);
    return *this;
}

// The code of finalize repeats that of the last step, which was tested.
Statement::~Statement() { sqlite3_finalize(statement_); }

void Statement::Fail(int code, std::string_view call) { Raise(sqlite3_db_handle(statement_), code, call); }

void Statement::Check(int code, std::string_view call) {
    if (code != SQLITE_OK) Fail(code, call);
}

Statement& Statement::Bind(int parameter, std::int64_t value) {
    Check(sqlite3_bind_int64(statement_, parameter, value), "bind");
    return *this;
}

Statement& Statement::Bind(int parameter, double value) {
    Check(sqlite3_bind_double(statement_, parameter, value), "bind");
    return *this;
}

Statement& Statement::Bind(int parameter, std::string_view text) {
    const char* data = text.data() != nullptr ? text.data() : "";
    Check(sqlite3_bind_text64(statement_, parameter, data, text.size(), SQLITE_STATIC, SQLITE_UTF8), "bind");
    return *this;
}

Statement& Statement::BindNull(int parameter) {
    Check(sqlite3_bind_null(statement_, parameter), "bind");
    return *this;
}

bool Statement::Step() {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    Fail(code, sqlite3_sql(statement_));
}

void Statement::Run() {
    while (Step()) {}
    Reset();
}

void Statement::Reset() { Check(sqlite3_reset(statement_), "reset"); }

bool Statement::IsNull(int column) { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }

std::int64_t Statement::Int(int column) { return sqlite3_column_int64(statement_, column); }

double Statement::Number(int column) { return sqlite3_column_double(statement_, column); }

std::string_view Statement::Text(int column) {
    const unsigned char* text = sqlite3_column_text(statement_, column);
    if (text == nullptr) {
        // Null, or no memory for the conversion: the two must not look alike.
        if (sqlite3_errcode(sqlite3_db_handle(statement_)) == SQLITE_NOMEM) Fail(SQLITE_NOMEM, "column text");
        return {};
    }
    const int length = sqlite3_column_bytes(statement_, column);
    return {static_cast<const char*>(static_cast<const void*>(text)), static_cast<std::size_t>(length)};
}

Database::Database(const std::string& path, const OpenOptions& options) : path_(path) {
    ConfigureOnce();
    int flags = options.readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    if (options.create) flags |= SQLITE_OPEN_CREATE;
    const int code = sqlite3_open_v2(path.c_str(), &db_, flags | SQLITE_OPEN_EXRESCODE, nullptr);
    try {
        if (code != SQLITE_OK) Raise(db_, code, "open " + path);
        const int defensive = sqlite3_db_config(db_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        if (defensive != SQLITE_OK) Raise(db_, defensive, "defensive");
        sqlite3_limit(db_, SQLITE_LIMIT_LENGTH, kMaxTextLength);
        sqlite3_limit(db_, SQLITE_LIMIT_ATTACHED, 1);
        Exec("PRAGMA trusted_schema=OFF; PRAGMA cell_size_check=ON");
    } catch (...) {
        sqlite3_close_v2(std::exchange(db_, nullptr));
        throw;
    }
}

Database::Database(Database&& other) noexcept : db_(std::exchange(other.db_, nullptr)), path_(std::move(other.path_)) {}

Database& Database::operator=(Database&& other) noexcept {
    std::swap(db_, other.db_);
    std::swap(path_, other.path_);
    return *this;
}

Database::~Database() { sqlite3_close_v2(db_); }

void Database::Close() {
    if (db_ == nullptr) return;
    const int code = sqlite3_close(db_);
    if (code != SQLITE_OK) Raise(db_, code, "close");
    db_ = nullptr;
}

void Database::Exec(const std::string& sql) {
    const int code = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) Raise(db_, code, sql);
}

std::int64_t Database::Scalar(std::string_view sql) {
    Statement statement = Prepare(sql);
    return statement.Step() ? statement.Int(0) : 0;
}

void Database::Interrupt() { sqlite3_interrupt(db_); }

std::int64_t Database::Changes() const { return sqlite3_changes64(db_); }

std::int64_t Database::LastRowId() const { return sqlite3_last_insert_rowid(db_); }

void Database::AddTextFunction(const char* name, TextFunction function) {
    const auto call = [](sqlite3_context* context, int, sqlite3_value** values) {
        const auto* callee = static_cast<TextFunction*>(sqlite3_user_data(context));
        const auto* text = static_cast<const char*>(static_cast<const void*>(sqlite3_value_text(values[0])));
        const auto length = static_cast<std::size_t>(sqlite3_value_bytes(values[0]));
        try {
            const auto result = (*callee)({text != nullptr ? text : "", text != nullptr ? length : 0});
            if (result) sqlite3_result_text64(context, result->data(), result->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        } catch (const std::exception&) {
            sqlite3_result_error_nomem(context);
        }
    };
    // The library takes the function over and deletes it, also when this call fails.
    auto* owned = new TextFunction(std::move(function));
    const int code = sqlite3_create_function_v2(db_, name, 1, SQLITE_UTF8 | SQLITE_DIRECTONLY, owned, call, nullptr,
                                                nullptr, [](void* taken) { delete static_cast<TextFunction*>(taken); });
    if (code != SQLITE_OK) Raise(db_, code, name);
}

Heartbeat::Heartbeat(Database& db, core::Progress& progress, MayStop mayStop)
    : db_(db.Handle()), progress_(progress), mayStop_(mayStop == MayStop::Yes) {
    sqlite3_progress_handler(db_, kInstructionsPerBeat, &Heartbeat::Beat, this);
}

Heartbeat::~Heartbeat() { sqlite3_progress_handler(db_, 0, nullptr, nullptr); }

int Heartbeat::Beat(void* self) {
    auto* const heart = static_cast<Heartbeat*>(self);
    try {
        return heart->progress_.Beat() && heart->mayStop_ ? 1 : 0;
    } catch (const std::exception&) {  // nothing may fly through the library; the job's next step tells
        return 0;
    }
}

void RunAlive(core::Progress& progress, const std::function<void()>& work, const std::function<void()>& stop) {
    constexpr std::chrono::milliseconds kBeat(20);
    std::future<void> done;
    try {
        done = std::async(std::launch::async, work);
    } catch (const std::system_error&) {  // no further thread to be had
        work();
        return;
    }
    bool stopped = false;
    while (done.wait_for(kBeat) != std::future_status::ready) {
        if (!progress.Beat() || stopped) continue;
        stopped = true;
        if (stop) stop();
    }
    done.get();
}

Transaction::Transaction(Database& db) : db_(db) { db_.Exec("BEGIN IMMEDIATE"); }

Transaction::~Transaction() {
    if (!open_) return;
    // A failed statement may have rolled back already; then there is nothing left to undo.
    if (sqlite3_get_autocommit(db_.Handle()) == 0) sqlite3_exec(db_.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
    db_.Exec("COMMIT");
    open_ = false;
}

void Transaction::Commit(core::Progress& progress) {
    RunAlive(progress, [this] { db_.Exec("COMMIT"); });
    open_ = false;
}

}  // namespace sitedb
