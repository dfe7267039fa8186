#include <filesystem>

#include "CostCountCommon/NamedLock.h"
#include "tests/host/settings/ProgramFixture.h"
#include "tests/support/Processes.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class DbCommand : public ProgramFixture {
protected:
    json Shown(const json& path, const json& volume, bool exists, bool isMoving) const {
        return {{"path", path},
                {"volume", volume},
                {"file", m_dbSettings},
                {"file_exists", exists},
                {"is_moving", isMoving}};
    }

    const Turn m_turn{"DBMOVE"};
    const std::string m_default = m_dataFolder + "/joblog";
};

TEST_F(DbCommand, InitialisesOnceAndShows) {
    EXPECT_EQ(Shown(nullptr, nullptr, false, false), Json("db show"));
    ExpectFailure(1, "db path", m_dbSettings + " does not exist");
    EXPECT_FALSE(fs::exists(m_dataFolder));

    EXPECT_EQ(m_dbSettings + ": initialised; the database is in " + m_default + "\n",
              RunTallyquist("db init", "/").out);
    EXPECT_EQ(Shown(m_default, "0", true, false), Json("db show"));
    EXPECT_EQ(
        "key          value\n"
        "path         " +
            m_default + "\nvolume       0\nfile         " + m_dbSettings +
            "\nfile exists  yes\nis moving    no\n",
        RunTallyquist("db show", "/").out);
    EXPECT_EQ(m_default + "\n", RunTallyquist("db path", "/").out);

    const std::string empty =
        "<joblogdbsetting><joblogdb_path/><joblogdb_volume>3</joblogdb_volume></joblogdbsetting>";
    WriteFile(m_dbSettings, empty);
    ExpectFailure(1, "db path", m_dbSettings + " has no path");
    json expected{
        {"path", m_default}, {"volume", "3"}, {"file", m_dbSettings}, {"initialised", true}};
    EXPECT_EQ(expected, Json("db init")) << "as left by a program that was killed";
    expected["initialised"] = false;
    EXPECT_EQ(expected, Json("db init"));
}

TEST_F(DbCommand, PathKeepsVolumeAndComments) {
    EXPECT_EQ("/first\n", RunTallyquist("db path /first", "/").out);  // makes the file
    EXPECT_EQ(Shown("/first", "0", true, false), Json("db show"));

    WriteFile(m_dbSettings, R"(<joblogdbsetting>
  <!-- kept -->
  <joblogdb_volume>7</joblogdb_volume>
</joblogdbsetting>
)");
    EXPECT_EQ(json({{"path", "/a & b"}, {"volume", "7"}, {"file", m_dbSettings}}),
              Json("db path '/a & b'"));
    EXPECT_NE(std::string::npos, ReadFile(m_dbSettings).find("<!-- kept -->"));

    ExpectFailure(2, "db path relative", "the path must be absolute, not 'relative'");
    WriteFile(m_dbSettings, "<joblogdbsetting>\n<joblogdb_path>");
    const std::string fault = m_dbSettings + ":2: not well-formed XML: Start-end tags mismatch";
    for (const char* arguments : {"db show", "db init", "db path", "db path /new"}) {
        ExpectFailure(1, arguments, fault);
    }
    EXPECT_EQ("<joblogdbsetting>\n<joblogdb_path>", ReadFile(m_dbSettings));
}

TEST_F(DbCommand, TellsOfAMoveAndOfAnotherFile) {
    CNamedLock lock;
    ASSERT_EQ(CNamedLock::LOCKED, lock.Lock("K7Q3MZP2WD.RX.qvtrel/DBMOVE", 0));
    EXPECT_EQ(Shown(nullptr, nullptr, false, true), Json("db show"));
    lock.Unlock();
    ASSERT_EQ(CNamedLock::LOCKED, lock.Lock("K7Q3MZP2WD.RX.qvtrel/DBMOVE", 0));
    for (int i = 0; i < 2; ++i) {
        ExpectFailure(1, "db path /new",
                      "the database is being moved; its path cannot be changed now");
    }
    lock.Unlock();

    EXPECT_EQ(0, RunTallyquist("settings set JobLogDBSettingPath /mine", "/").exitCode);
    EXPECT_EQ("tallyquist: helper tools are told of the database in " + m_dataFolder +
                  "/mine, which the setting JobLogDBSettingPath names\n",
              RunTallyquist("db show", "/").err);
    EXPECT_TRUE(RunTallyquist("db show extra", "/")
                    .err.ends_with("Run 'tallyquist db show --help' for more information.\n"));
    ExpectFailure(2, "db bogus",
                  "'bogus' is not a command\nRun 'tallyquist db --help' for more information.");
}

}  // namespace
