// The Windows library and what stands around it, run by Wine: TSR_WINE names the program, TSR_WINDOWS_OUT the
// folder of the libraries.

#include <cstdlib>
#include <filesystem>

#include <unistd.h>

#include "handheld/HandheldFolder.h"
#include "replication/MemoItems.h"
#include "replication/RemoteHost.h"
#include "replication/ReplicationTest.h"

namespace tsr {
namespace {

namespace fs = std::filesystem;

using test::RemoteHost;
using test::SessionAnswer;
using test::SessionRequest;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    if (value == nullptr) throw std::runtime_error(std::string(name) + " isn't set");
    return value;
}

fs::path windowsFolder() { return variable("TSR_WINDOWS_OUT"); }

std::string windowsProgram(const std::string& name) {
    return variable("TSR_WINE") + ' ' + (windowsFolder() / name).string();
}

class WindowsLibrary : public test::ApplicationTest<test::MemoItems> {
protected:
    SessionRequest requestWith(const std::vector<std::string>& faults) {
        SessionRequest request;
        request.creator = kind().application().creator;
        request.clock = test::noon;
        request.faults = faults;
        request.handheld = handheld;
        return request;
    }

    static SessionAnswer ask(const SessionRequest& request) {
        SessionAnswer answer = RemoteHost(windowsProgram("conduithost.exe")).ask(request);
        EXPECT_EQ(answer.result, 0);
        return answer;
    }

    SessionAnswer sessionWith(const std::vector<std::string>& faults) { return ask(requestWith(faults)); }
};

TEST_F(WindowsLibrary, RunsASession) {
    addToNotes({{"Subject", {"Lunch"}}});
    const SessionAnswer answer = sessionWith({});
    EXPECT_THAT(answer.log, ElementsAre("19 Memo Pad", "20 Memo Pad"));
    EXPECT_THAT(answer.progress, Contains("Memo Pad: receiving items"));
}

TEST_F(WindowsLibrary, FailsAtTheFirstConnectWithoutNetworking) {
    const SessionAnswer answer = sessionWith({"no-networking"});
    EXPECT_THAT(answer.log, Contains(EndsWith(" ** Unable to connect to Tessera Services.")));
    EXPECT_THAT(answer.log, Contains(EndsWith(" **** Unable to find an appropriate version of WinSock.")));
    EXPECT_THAT(answer.progress, testing::IsEmpty()); // it comes first
}

// The error is that of GetProcAddress, in the system's words.
TEST_F(WindowsLibrary, FailsAtTheFirstConnectWithoutOneOfTheSocketFunctions) {
    for (const char* name : {"WSACleanup", "gethostbyname", "shutdown"}) { // the first, one, and the last
        SCOPED_TRACE(name);
        const SessionAnswer answer = sessionWith({std::string("no-function ") + name});
        EXPECT_THAT(answer.log, Contains(EndsWith(" ** Unable to connect to Tessera Services.")));
        EXPECT_THAT(answer.log, Contains(HasSubstr(" **** Procedure not found.")));
    }
}

// The reason of the system stands behind the call's name, in the system's words.
TEST_F(WindowsLibrary, TellsWhyTheServerIsOutOfReach) {
    office.reset();
    EXPECT_THAT(sessionWith({}).log, Contains(HasSubstr("**** connect( ) failed: Connection refused")));
}

TEST_F(WindowsLibrary, NumbersATextThatItDoesNotFind) {
    office.reset();
    EXPECT_THAT(sessionWith({"no-strings"}).log,
                Contains(EndsWith(" ** Unable to find string resource 1200")));
}

TEST_F(WindowsLibrary, TracesBesideItselfWhileControlIsDown) {
    const fs::path trace = windowsFolder() / "TsrMemoPad.log";
    fs::remove(trace);
    sessionWith({});
    ASSERT_TRUE(fs::exists(trace));
    EXPECT_EQ(fs::file_size(trace), 0U);
    SessionRequest request = requestWith({});
    request.traceFile = "TsrMemoPad.log";
    EXPECT_THAT(ask(request).trace, HasSubstr("2.4.2.0")); // of the version record
}

TEST_F(WindowsLibrary, ManyCallsThatDoNotGetToTheServerLeaveNothingBehind) {
    for (const char* fault : {"no-networking", "no-function gethostbyname"}) {
        SCOPED_TRACE(fault);
        SessionRequest request = requestWith({fault});
        request.repeats = 1000 + test::callsThatWarmUp;
        const SessionAnswer answer = ask(request);
        EXPECT_THAT(answer.log, Contains(EndsWith(" ** Unable to connect to Tessera Services.")));
        EXPECT_EQ(answer.handlesLeft, 0);
        EXPECT_LT(answer.bytesLeft, 1000); // less than a byte for each call
    }
}

TEST_F(WindowsLibrary, SynchronisesAFolderThatLinuxHasMade) {
    const fs::path folder = fs::temp_directory_path() / ("windows-palm-" + std::to_string(getpid()));
    addToNotes({{"Subject", {"Lunch"}}});
    HandheldFolder::create(folder, handheld);
    const std::string command =
        windowsProgram("hotsync.exe") + ' ' + folder.string() + " --application memo >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(HandheldFolder::open(folder).handheld().find("MemoDB")->records().size(), 1U);
    fs::remove_all(folder);
}

} // namespace
} // namespace tsr
