// Files that are written: what they look like, and what becomes of those that they replace.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/plugins/zopmekxmlpxd/XmlFixture.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

const std::string HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

class Save : public testing::Test, protected XmlParser {
protected:
    unsigned int SaveText(const std::string& text, const std::string& path) {
        const Handle document = Parse(text);
        return entries.Save(document.get(), path.c_str());
    }

    static struct stat StatusOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(0, lstat(path.c_str(), &status));
        return status;
    }

    const TempFolder m_folder;
    const std::string m_path = m_folder.Path("file.xml");
};

TEST_F(Save, LaysOutWithoutChangingTexts) {
    const struct {
        std::string xml;
        std::string saved;
    } cases[] = {
        {"<r/>", "<r/>\n"},
        {"<r><a>1</a><b/><c><d> </d></c></r>",
         "<r>\n    <a>1</a>\n    <b/>\n    <c>\n        <d> </d>\n    </c>\n</r>\n"},
        {"<r>\n\n\n            <a/>\n\t</r>", "<r>\n\n    <a/>\n</r>\n"},
        {"<r><a> <b/>text<c><d/></c></a><e/></r>",
         "<r>\n    <a> <b/>text<c><d/></c></a>\n    <e/>\n</r>\n"},
        {"<r><a>&#13;<b/></a><a><![CDATA[ ]]><b/></a></r>",
         "<r>\n    <a>&#13;<b/></a>\n    <a><![CDATA[ ]]><b/></a>\n</r>\n"},
        {"<r><a xml:space='preserve'> <b/></a></r>",
         "<r>\n    <a xml:space=\"preserve\"> <b/></a>\n</r>\n"},
        {"<?xml version='1.0' standalone='yes'?><!DOCTYPE r [<!ENTITY e 'x'>]><?p a?><!--c-->"
         "<r><!--d\n e--><?q?><u:unknown/></r><!--f-->",
         "<!DOCTYPE r [<!ENTITY e 'x'>]>\n<?p a?>\n<!--c-->\n<r>\n    <!--d\n e-->\n    <?q?>\n"
         "    <u:unknown/>\n</r>\n<!--f-->\n"},
        {"<r a='&#13;&#10;&#9; x\ny'>&#13;\n\t</r>", "<r a=\"&#13;&#10;&#9; x y\">&#13;\n\t</r>\n"},
        // Beside a comment alone, white space is a value; a comment stays on its line.
        {"<r><a><!--none--></a><b> <?p q?></b></r>",
         "<r>\n    <a><!--none--></a>\n    <b> <?p q?></b>\n</r>\n"},
        {"<r>\n<a/>  <!--of a-->\n\n\n<!--of b-->\n<b/></r>",
         "<r>\n    <a/>  <!--of a-->\n\n    <!--of b-->\n    <b/>\n</r>\n"}};
    for (const auto& c : cases) {
        ASSERT_EQ(0U, SaveText(c.xml, m_path));
        const std::string saved = ReadFile(m_path);
        const size_t headEnd = saved.find('\n') + 1;
        EXPECT_EQ(c.xml.find("standalone") == std::string::npos
                      ? HEAD
                      : HEAD.substr(0, HEAD.size() - 3) + " standalone=\"yes\"?>\n",
                  saved.substr(0, headEnd));
        EXPECT_EQ(c.saved, saved.substr(headEnd)) << c.xml;
        const Handle again = Document(entries.CreateDocByFile(m_path.c_str(), &err));
        ASSERT_EQ(0U, entries.Save(again.get(), m_path.c_str()));
        EXPECT_EQ(saved, ReadFile(m_path)) << "saving again changes nothing";
    }
}

TEST_F(Save, KeepsModeAndOwnerAndFollowsLinks) {
    const std::string link = m_folder.Path("link");
    ASSERT_EQ(0U, SaveText("<old/>", m_path));
    EXPECT_EQ(0600U, StatusOf(m_path).st_mode & 07777U) << "settings may hold passwords";
    fs::create_symlink("file.xml", link);
    ASSERT_EQ(0, chmod(m_path.c_str(), 0664));
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(0, chown(m_path.c_str(), 65534, 65533));
    }
    EXPECT_EQ(0U, SaveText("<new/>", link));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(HEAD + "<new/>\n", ReadFile(m_path));
    const struct stat status = StatusOf(m_path);
    EXPECT_EQ(0664U, status.st_mode & 07777U);
    EXPECT_EQ(isRoot ? 65534U : geteuid(), status.st_uid);
    EXPECT_EQ(isRoot ? 65533U : getegid(), status.st_gid);
}

TEST_F(Save, TargetsThatAreNoFiles) {
    ASSERT_EQ(0, mkfifo(m_path.c_str(), 0600));
    EXPECT_EQ(8U, SaveText("<r/>", m_path));
    EXPECT_TRUE(fs::is_fifo(m_path));
    EXPECT_EQ(8U, SaveText("<r/>", ""));
}

}  // namespace
