#include <gtest/gtest.h>

#include "core/error.h"
#include "core/ports.h"
#include "sitedb/sqlite.h"
#include "tests/support/tempfolder.h"

namespace sitedb {
namespace {

// Counts the beats, and wants to stop from the given one on.
class BeatCounter final : public core::Progress {
public:
    int stopAt = 0;  // 0: never
    int beats = 0;

    int PIStart(std::string_view, std::string_view, double) override { return 1; }
    bool PIStep(int, double, std::string_view) override { return false; }
    void PIDone(int) override {}
    bool Beat() override { return ++beats >= stopAt && stopAt > 0; }
};

constexpr const char* kLong =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200000) SELECT count(*) FROM n";

constexpr const char* kEndless =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";

class HeartbeatTest : public ::testing::Test {
protected:
    testsupport::TempFolder folder_{};
    Database db_{folder_.File("beat.db"), {.create = true}};
    BeatCounter progress_{};
};

TEST_F(HeartbeatTest, BeatsWithinOneStatementAndOnlyWhileItLives) {
    {
        const Heartbeat heart(db_, progress_, MayStop::No);
        EXPECT_EQ(db_.Scalar(kLong), 200000);
    }
    const int beats = progress_.beats;
    EXPECT_GT(beats, 10);
    db_.Scalar(kLong);
    EXPECT_EQ(progress_.beats, beats);
}

// A batch of stored lines must not be taken back by a stop that its own loop would have answered with a commit.
TEST_F(HeartbeatTest, AStopEndsTheStatementOnlyWhereTheJobAllowsIt) {
    progress_.stopAt = 3;
    {
        const Heartbeat heart(db_, progress_, MayStop::No);
        EXPECT_EQ(db_.Scalar(kLong), 200000);
    }
    progress_.beats = 0;
    db_.Exec("CREATE TABLE t(i)");
    {
        const Heartbeat heart(db_, progress_, MayStop::Yes);
        Transaction all(db_);
        db_.Exec("INSERT INTO t VALUES (1)");
        EXPECT_THROW(db_.Exec(std::string("INSERT INTO t ") + kLong), core::Stopped);
    }
    EXPECT_EQ(progress_.beats, 3);
    EXPECT_EQ(db_.Scalar("SELECT count(*) FROM t"), 0);
}

// A call that cannot beat itself: the caller's thread beats, hears the stop once, and gets what was thrown.
TEST_F(HeartbeatTest, WorkOnAThreadOfItsOwnBeatsHereAndEndsHere) {
    progress_.stopAt = 2;
    int stops = 0;
    const auto longer = [this] { db_.Exec(kEndless); };
    EXPECT_THROW(RunAlive(progress_, longer,
                          [&] {
                              ++stops;
                              db_.Interrupt();
                          }),
                 core::Stopped);
    EXPECT_EQ(stops, 1);
    EXPECT_GE(progress_.beats, 2);
    RunAlive(progress_, [this] { db_.Exec("CREATE TABLE later(i)"); });
    EXPECT_EQ(db_.Scalar("SELECT count(*) FROM sqlite_schema WHERE name='later'"), 1);
}

}  // namespace
}  // namespace sitedb
