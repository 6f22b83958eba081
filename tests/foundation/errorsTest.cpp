#include <cstdint>
#include <sstream>
#include <string>

#include "foundation/GeneralError.h"
#include "foundation/PalmSyncApiError.h"
#include "foundation/ServerRequestError.h"
#include "foundation/SessionTerminatedError.h"
#include "foundation/SingleItemError.h"
#include "foundation/SocketError.h"
#include "foundation/Win32Error.h"
#include "foundation/signals.h"
#include "platform/systemError.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

constexpr std::uint32_t noSuchFile = 2; // ENOENT

TEST(Error, InsertionIntoAStreamPrints) {
    std::ostringstream stream;
    stream << ServerRequestError(3, 7, "No such user") << "!";
    EXPECT_EQ(stream.str(), "No such user!");
}

TEST(Error, ACopySharesTheCause) {
    const SessionTerminatedError error(Message::ConnectFailed, GeneralError(Message::NotImplemented));
    const SessionTerminatedError copy = error;
    EXPECT_EQ(copy.cause(), error.cause());
}

TEST(GeneralError, FillsInItsValues) {
    const GeneralError error = GeneralError(Message::InternalError)
                            << Tag("n") << 17 << Tag("f") << "Replicator";
    EXPECT_EQ(errorText(error), "Internal error occured at line 17 in Replicator.");
}

TEST(GeneralError, TakesValuesOfEveryKind) {
    const auto month = [](auto value) {
        return errorText(GeneralError(Message::InvalidMonth) << Tag('m') << value);
    };
    EXPECT_EQ(month(-3), "The specified month (-3) is invalid.");
    EXPECT_EQ(month(4294967295u), "The specified month (4294967295) is invalid.");
    EXPECT_EQ(month(std::uint8_t(65)), "The specified month (65) is invalid."); // a number, not a letter
    EXPECT_EQ(month('A'), "The specified month (A) is invalid.");
    EXPECT_EQ(month(std::string("May")), "The specified month (May) is invalid.");
}

TEST(GeneralError, APlaceholderWithoutValueBecomesQuestionMarks) {
    EXPECT_EQ(errorText(GeneralError(Message::InvalidMonth)), "The specified month (??"
                                                              "?) is invalid.");
}

TEST(GeneralError, PrintsTheSameTextAgain) {
    const GeneralError error = GeneralError(Message::InvalidMonth) << Tag('m') << 13;
    EXPECT_EQ(errorText(error), "The specified month (13) is invalid.");
    EXPECT_EQ(errorText(error), "The specified month (13) is invalid.");
}

TEST(GeneralError, ACloneThatIsPrintedAfterItsOriginalPrintsTheSame) {
    const GeneralError error = GeneralError(Message::InvalidMonth) << Tag('m') << 13;
    const CountedPtr<Error> clone = error.clone();
    EXPECT_EQ(errorText(error), "The specified month (13) is invalid.");
    EXPECT_EQ(errorText(*clone), "The specified month (13) is invalid.");
}

TEST(GeneralError, ACopySharesTheTextAsItGrows) {
    GeneralError error(Message::InvalidMonth);
    const GeneralError copy = error;
    error << Tag('m') << 13;
    EXPECT_EQ(errorText(copy), "The specified month (13) is invalid.");
}

TEST(GeneralError, KeepsACloneOfItsCause) {
    const GeneralError error(Message::InvalidDbid, ServerRequestError(1, 2, "inner"));
    ASSERT_TRUE(error.cause());
    EXPECT_EQ(errorText(*error.cause()), "inner");
    EXPECT_FALSE(GeneralError(Message::InvalidDbid).cause());
}

TEST(ServerRequestError, PrintsTheServersMessageAlone) {
    const ServerRequestError error(7, 42, "No such user");
    EXPECT_EQ(errorText(error), "No such user");
    EXPECT_EQ(error.requestCode(), 7u);
    EXPECT_EQ(error.errorCode(), 42u);
    EXPECT_EQ(error.message(), "No such user");
    EXPECT_EQ(errorText(ServerRequestError(7, 42, "")), "");
    EXPECT_EQ(errorText(*error.clone()), "No such user");
}

TEST(SingleItemError, PrintsItsMessageAndTheOther) {
    const SingleItemError error(Message::SendOfItemFailed, 9, "Document locked");
    EXPECT_EQ(errorText(error), "Send of item to Notes failed - Document locked");
    EXPECT_EQ(error.messageId(), Message::SendOfItemFailed);
    EXPECT_EQ(error.errorCode(), 9u);
    EXPECT_EQ(errorText(*error.clone()), "Send of item to Notes failed - Document locked");
}

TEST(SessionTerminatedError, PrintsItsOwnMessageAndReachesTheRestThroughTheCause) {
    const GeneralError inner = GeneralError(Message::HostNotResolved) << Tag('n') << "tessera";
    const SessionTerminatedError error(Message::ConnectFailed, inner);
    EXPECT_EQ(errorText(error), "Unable to connect to Tessera Services.");
    EXPECT_EQ(error.messageId(), Message::ConnectFailed);
    EXPECT_EQ(errorText(*error.cause()), "Unable to resolve the hostname 'tessera' to an ip address.");
    EXPECT_EQ(errorText(*error.clone()->cause()),
              "Unable to resolve the hostname 'tessera' to an ip address.");
}

TEST(SessionTerminatedError, SubstitutesNothing) {
    EXPECT_EQ(errorText(SessionTerminatedError(Message::InvalidMonth, GeneralError(Message::NotImplemented))),
              "The specified month ($m) is invalid.");
}

TEST(PalmSyncApiError, DescribesTheResult) {
    const PalmSyncApiError error(0x4003, "SyncReadRecordById");
    EXPECT_EQ(errorText(error),
              "The function SyncReadRecordById( ) failed: The requested database, record, resource, etc. "
              "could not be found.\n");
    EXPECT_TRUE(error.isNotFound());
    EXPECT_EQ(error.code(), 0x4003u);
    EXPECT_EQ(error.functionName(), "SyncReadRecordById");
    EXPECT_EQ(errorText(*error.clone()), errorText(error));
}

TEST(PalmSyncApiError, ShowsAnUnknownResultInHexadecimal) {
    EXPECT_EQ(errorText(PalmSyncApiError(0x4020, "SyncWriteRec")),
              "The function SyncWriteRec( ) failed: Unknown conduit sync error:     4020\n");
    EXPECT_EQ(errorText(PalmSyncApiError(0, "SyncWriteRec")), // success is never described
              "The function SyncWriteRec( ) failed: Unknown conduit sync error:        0\n");
    EXPECT_FALSE(PalmSyncApiError(0x4020, "SyncWriteRec").isNotFound());
}

TEST(SocketError, NamesTheFunction) {
    const SocketError error(noSuchFile, "connect");
    EXPECT_EQ(errorText(error), "connect( ) failed: No such file or directory");
    EXPECT_EQ(error.code(), noSuchFile);
    EXPECT_EQ(errorText(*error.clone()), errorText(error));
}

TEST(Win32Error, TakesTheLastErrorAndLeavesTheFunctionOut) {
    platform::setLastError(noSuchFile);
    const Win32Error error("GetProcAddress");
    EXPECT_EQ(error.code(), noSuchFile);
    EXPECT_EQ(error.functionName(), "GetProcAddress");
    EXPECT_EQ(errorText(error), "No such file or directory");
    EXPECT_EQ(errorText(*error.clone()), errorText(error));
}

TEST(Signals, AreNoErrors) {
    const auto raise = [] {
        try {
            throw BadPalmRecord();
        } catch (const Error&) {
            FAIL();
        }
    };
    EXPECT_THROW(raise(), BadPalmRecord);
}

} // namespace
} // namespace tsr
