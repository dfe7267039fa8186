// Files that are written: what they look like, and that they are whole or untouched.
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
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

    Names FolderContents() const {
        Names names;
        for (const auto& entry : fs::directory_iterator(m_folder.Path())) {
            names.push_back(entry.path().filename());
        }
        return names;
    }

    static mode_t ModeOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(0, lstat(path.c_str(), &status));
        return status.st_mode;
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
    EXPECT_EQ(0600U, ModeOf(m_path) & 07777U) << "settings may hold passwords";
    fs::create_symlink("file.xml", link);
    ASSERT_EQ(0, chmod(m_path.c_str(), 0664));
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(0, chown(m_path.c_str(), 65534, 65533));
    }
    EXPECT_EQ(0U, SaveText("<new/>", link));
    EXPECT_TRUE(S_ISLNK(ModeOf(link)));
    EXPECT_EQ(HEAD + "<new/>\n", ReadFile(m_path));
    EXPECT_EQ(0664U, ModeOf(m_path) & 07777U);
    struct stat status {};
    ASSERT_EQ(0, stat(m_path.c_str(), &status));
    EXPECT_EQ(isRoot ? 65534U : geteuid(), status.st_uid);
    EXPECT_EQ(isRoot ? 65533U : getegid(), status.st_gid);
}

TEST_F(Save, TargetsThatAreNoFiles) {
    const std::string pipe = m_folder.Path("pipe");
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    for (const std::string& path :
         {pipe, m_folder.Path(), m_folder.Path("none/file"), std::string()}) {
        EXPECT_EQ(8U, SaveText("<r/>", path)) << path;
    }
    EXPECT_TRUE(S_ISFIFO(ModeOf(pipe)));
    EXPECT_EQ(Names{"pipe"}, FolderContents());
}

TEST_F(Save, FullDiskLeavesTheOldFile) {
    ASSERT_EQ(0U, SaveText("<old/>", m_path));
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(static_cast<int>(SaveText("<r>" + std::string(10000, 'x') + "</r>", m_path)));
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(8, WEXITSTATUS(status));
    EXPECT_EQ(HEAD + "<old/>\n", ReadFile(m_path));
    EXPECT_EQ(Names{"file.xml"}, FolderContents());
}

TEST_F(Save, KilledWriterLeavesAWholeFile) {
    const std::string texts[] = {"<r>" + std::string(300000, 'a') + "</r>",
                                 "<r>" + std::string(500000, 'b') + "</r>"};
    ASSERT_EQ(0U, SaveText(texts[0], m_path));
    for (useconds_t delay = 0; delay < 20; ++delay) {
        const pid_t child = fork();
        if (child == 0) {
            for (size_t turn = 0;; ++turn) {
                SaveText(texts[turn % 2], m_path);
            }
        }
        usleep(1000 * delay);
        ASSERT_EQ(0, kill(child, SIGKILL));
        ASSERT_EQ(child, waitpid(child, nullptr, 0));
        const std::string contents = ReadFile(m_path);
        EXPECT_TRUE(contents == HEAD + texts[0] + "\n" || contents == HEAD + texts[1] + "\n");
    }
}

}  // namespace
