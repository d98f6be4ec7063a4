#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace core {
class Progress;
}

// The thin wrapper around the store's library: every return code is tested here and nowhere else. What is not
// "row" or "done" is a StoreError, never the end of the rows. All values are bound; no SQL is made of data.
namespace sitedb {

// A failed call. number() is 3022 for a duplicate key, else 3051; code() is the library's own.
class StoreError;

class Statement {
public:
    Statement() = default;
    Statement(sqlite3* db, std::string_view sql);
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&& other) noexcept;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    explicit operator bool() const { return statement_ != nullptr; }

    // Parameters count from 1. A bound text must live until the next Reset.
    Statement& Bind(int parameter, std::int64_t value);
    Statement& Bind(int parameter, double value);
    Statement& Bind(int parameter, std::string_view text);
    Statement& BindNull(int parameter);

    bool Step();   // true: a row stands there
    void Run();    // steps to the end and resets
    void Reset();  // also forgets the bindings' texts

    // Columns count from 0. A Null number reads as 0, a Null text as "". Views live until the next Step or Reset.
    bool IsNull(int column);
    std::int64_t Int(int column);
    double Number(int column);
    std::string_view Text(int column);

private:
    [[noreturn]] void Fail(int code, std::string_view call);
    void Check(int code, std::string_view call);

    sqlite3_stmt* statement_ = nullptr;
};

struct OpenOptions {
    bool create = false;
    bool readOnly = false;
};

class Database {
public:
    Database() = default;
    Database(const std::string& path, const OpenOptions& options);
    Database(Database&& other) noexcept;
    Database& operator=(Database&& other) noexcept;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database();

    bool IsOpen() const { return db_ != nullptr; }
    void Close();  // throws when a statement is still open
    const std::string& Path() const { return path_; }

    Statement Prepare(std::string_view sql) { return Statement(db_, sql); }
    void Exec(const std::string& sql);
    std::int64_t Scalar(std::string_view sql);  // first column of the first row, 0 without a row
    void Interrupt();                           // from any thread: the running statement ends with core::Stopped
    std::int64_t Changes() const;
    std::int64_t LastRowId() const;

    // A function of one text for queries; nothing gives Null. It must not throw anything but memory errors.
    using TextFunction = std::function<std::optional<std::string>(std::string_view)>;
    void AddTextFunction(const char* name, TextFunction function);

    sqlite3* Handle() const { return db_; }

private:
    sqlite3* db_ = nullptr;
    std::string path_{};
};

// Lets the window live while one statement takes long. Where `MayStop` is Yes a confirmed stop ends the statement with
// core::Stopped; a statement that writes then takes its whole transaction back, so it is for jobs that are one
// transaction, or none. One at a time for a database.
enum class MayStop { No, Yes };
class Heartbeat {
public:
    Heartbeat(Database& db, core::Progress& progress, MayStop mayStop);
    ~Heartbeat();
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;

private:
    static int Beat(void* self);

    sqlite3* db_;
    core::Progress& progress_;
    bool mayStop_;
};

// Runs `work` on a thread of its own while this one beats: for calls into the store that have no beat, such as a commit
// that flushes much. Nothing else may use the database meanwhile; what `work` throws comes out here. On a stop `stop`
// is called once, from this thread; without it the work goes on to its end.
void RunAlive(core::Progress& progress, const std::function<void()>& work, const std::function<void()>& stop = {});

// Rolls back unless committed.
class Transaction {
public:
    explicit Transaction(Database& db);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit();
    void Commit(core::Progress& progress);  // a long one: the window lives meanwhile

private:
    Database& db_;
    bool open_ = true;
};

}  // namespace sitedb
