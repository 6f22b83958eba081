#include "tessera/FaultOrders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/ConnectionLost.h"
#include "tessera/TesseraSession.h"
#include "tessera/passwords.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;

class FaultOrdersTest : public ::testing::Test {
protected:
    FaultOrdersTest() : service(store, [] { return std::int64_t{1012780800}; }), session(service) {
        User user;
        user.name = "Ann";
        store.addUser(user, hashPassword("secret", PasswordCost::Minimal));
        session.handle({1, {"0", "Ann", "secret", "2.4.2.0", ".", "0", "", "", "Palm", "160x160"}});
    }

    Response sendNew(const std::string& subject) {
        return session.handle({355, {"", std::string(16, '0'), std::string(32, '0'), "Subject=" + subject}});
    }

    std::size_t memos() {
        return store.documents(store.database(store.findUser("Ann")->id, "journal").id, "memo").size();
    }

    Store store = Store::inMemory();
    TesseraService service;
    TesseraSession session;
};

TEST_F(FaultOrdersTest, RefuseItems) {
    service.orderFaults({.refusedItems = {2}});
    EXPECT_EQ(sendNew("a").result, ResultCode::Success);
    const Response refused = sendNew("b");
    EXPECT_EQ(refused.result, ResultCode::ItemRefused);
    EXPECT_EQ(refused.message, "The item is refused by order.");
    EXPECT_EQ(sendNew("c").result, ResultCode::Success);
    EXPECT_EQ(memos(), 2u);
    EXPECT_THAT(session.handle({200, {}}).strings, ElementsAre("1", "The item is refused by order."));
}

TEST_F(FaultOrdersTest, FailRequestsWithoutCarryingThemOut) {
    service.orderFaults({.failedRequests = {1, 3}});
    const Response failed = sendNew("a");
    EXPECT_EQ(failed.result, ResultCode::ServerFailed);
    EXPECT_EQ(failed.message, "The request fails by order.");
    EXPECT_EQ(sendNew("a").result, ResultCode::Success);
    EXPECT_EQ(session.handle({7, {}}).result, ResultCode::ServerFailed);
    EXPECT_EQ(session.handle({7, {}}).result, ResultCode::Success);
    EXPECT_EQ(memos(), 1u);
}

TEST_F(FaultOrdersTest, LoseAnswersOfRequestsThatAreCarriedOut) {
    service.orderFaults({.lostAnswers = {1, 2}});
    EXPECT_THROW(sendNew("a"), ConnectionLost);
    EXPECT_EQ(memos(), 1u);
    EXPECT_THROW(session.handle({9999, {}}), ConnectionLost); // a refusal is an answer too
    EXPECT_EQ(sendNew("b").result, ResultCode::Success);
}

TEST_F(FaultOrdersTest, CountOverAllSessionsSinceTheyWereGiven) {
    service.orderFaults({.failedRequests = {2}});
    TesseraSession other(service);
    EXPECT_EQ(other.handle({3, {}}).result, ResultCode::Success);
    EXPECT_EQ(session.handle({7, {}}).result, ResultCode::ServerFailed);
    service.orderFaults({.failedRequests = {2}});
    EXPECT_EQ(session.handle({7, {}}).result, ResultCode::Success);
    EXPECT_EQ(other.handle({3, {}}).result, ResultCode::ServerFailed);
}

} // namespace
} // namespace tsr
