#include "foundation/DebugLogStream.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "foundation/Tag.h"
#include "platform/module.h"
#include "platform/moduleName.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

class DebugLogStreamFile : public testing::Test {
protected:
    DebugLogStreamFile() { std::filesystem::remove(path); }
    ~DebugLogStreamFile() override { std::filesystem::remove_all(path); }

    std::string content() const {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    // The file stands beside this program, which stands for the library. Each test has its own, as others run
    // at the same time.
    const std::string application = testing::UnitTest::GetInstance()->current_test_info()->name();
    const std::string path = platform::moduleDirectory(moduleName) + DebugLogStream::fileName(application);
};

TEST(DebugLogStream, IsNamedForItsApplicationWithoutBlanks) {
    EXPECT_EQ(DebugLogStream::fileName("Date Book"), "TsrDateBook.log");
    EXPECT_EQ(DebugLogStream::fileName("Memo Pad"), "TsrMemoPad.log");
    EXPECT_EQ(DebugLogStream::fileName("Mail"), "TsrMail.log");
    EXPECT_EQ(DebugLogStream::fileName(" a  b "), "Tsrab.log");
}

TEST_F(DebugLogStreamFile, IsMadeAsItIsOpened) {
    DebugLogStream log;
    EXPECT_FALSE(std::filesystem::exists(path));
    log.open(application);
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(DebugLogStreamFile, TakesTaggedTextBehindWhatItHolds) {
    for (int session = 1; session <= 2; ++session) {
        DebugLogStream log;
        log.open(application);
        log << "session $n" << Tag('n') << session << '\n';
    }
    EXPECT_EQ(content(), "session 1\nsession 2\n");
}

TEST_F(DebugLogStreamFile, LosesWhatCannotBeWritten) {
    std::filesystem::create_directory(path); // a file of this name can't be opened
    DebugLogStream log;
    log.open(application);
    log << "lost\n";
    EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST(DebugLogStream, LosesWhatIsWrittenBeforeItIsOpened) {
    DebugLogStream log;
    log << "lost $n" << Tag('n') << 1 << '\n';
}

} // namespace
} // namespace tsr
