#include "logdefs/formatstore.h"

#include <gtest/gtest.h>

#include "core/inistore.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace logdefs {
namespace {

using Names = std::vector<std::string>;

struct FormatStore : testing::Test {
    std::string Store(const std::string& name, const std::vector<std::string>& specs) {
        return LogFmtStore(ini, name, specs, file).value_or("stored");
    }
    testsupport::TempFolder folder{};
    testsupport::ScriptedUser user{};
    core::IniStore ini{user};
    const std::string file = folder.File("logfmts.ini");
};

TEST_F(FormatStore, RefusesWhatItCannotHold) {
    EXPECT_TRUE(Store("x", {"%S|%r "}).starts_with("A specification cannot hold |"));
    EXPECT_TRUE(Store("x", {"%S \xFF"}).starts_with("A specification must be UTF-8"));
    EXPECT_TRUE(Store("x", {"a %% %x"}).starts_with("A specification without a placeholder"));
    EXPECT_EQ(Store("x", {}), "A log format needs at least one specification.");
    ini.IniPut("Google", "Domain", "google", file);  // definitions of engines stand in the same file
    for (const char* name : {"", " x", "a|b", "a]", "a\tb", "main", "AltNo.1", "google"})
        EXPECT_NE(Store(name, {"%S "}), "stored") << name;
    EXPECT_TRUE(LogFmtNames(ini, file).empty());
}

TEST_F(FormatStore, StoresReplacesAndErases) {
    EXPECT_EQ(Store("mine", {"%S %r ", "\"%S\" \""}), "stored");
    EXPECT_EQ(Store("touching", {"%S%r "}), "stored");  // a blank is assumed between them
    EXPECT_EQ(Store("MINE", {"%S \""}), "stored");
    EXPECT_EQ(LogFmtNames(ini, file), (Names{"mine", "touching"}));
    EXPECT_EQ(LogFmtSpecs(ini, "mine", file).Items()[1], "%S \"");
    EXPECT_FALSE(LogFmtSequence(ini, {"touching", "mine"}, file));
    EXPECT_FALSE(LogFmtErase(ini, "Mine", file));
    EXPECT_EQ(LogFmtNames(ini, file), (Names{"touching"}));
    EXPECT_FALSE(LogFmtLoad(ini, "mine", file).found);
}

TEST_F(FormatStore, ALongFormatKeepsItsEnd) {
    const std::vector<std::string> specs(400, std::string(300, 'x') + " %S;");
    EXPECT_EQ(Store("long", specs), "stored");
    EXPECT_EQ(LogFmtSpecs(ini, "long", file).Items().size(), specs.size() + 1);
    EXPECT_EQ(LogFmtSpecs(ini, "long", file).Items().back(), specs.back());
}

TEST_F(FormatStore, TellsThatItCannotBeWritten) {
    const std::string nowhere = folder.File("none/logfmts.ini");
    user.WillPressOk(4);
    EXPECT_TRUE(LogFmtStore(ini, "x", {"%S "}, nowhere).value_or("").starts_with("The log formats could not be"));
}

}  // namespace
}  // namespace logdefs
