#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "tessera/Store.h"
#include "tessera/TcpServer.h"
#include "tessera/TesseraService.h"
#include "tessera/passwords.h"

namespace tsr::test {

inline constexpr std::int64_t noon = 1012998896;

// A user's databases behind a server.
class Office {
public:
    Office() : service_(store_, [this] { return clock_.load(); }) {
        User user;
        user.name = "Max";
        store_.addUser(user, hashPassword("pw", PasswordCost::Minimal));
        userId_ = store_.findUser("Max")->id;
        server_ = std::make_unique<TcpServer>(service_, "127.0.0.1", 0);
        server_->start();
    }

    void setZone(const ZoneRule& zone) { // before a handheld asks for it
        User user = *store_.findUser(userId_);
        user.zone = zone;
        store_.changeUser(user);
    }

    void setClock(std::int64_t secondsSince1970) { clock_ = secondsSince1970; } // the server's

    std::int64_t addUser(const std::string& name) { // another one, who doesn't log in
        User user;
        user.name = name;
        store_.addUser(user, "");
        return store_.findUser(name)->id;
    }

    std::string port() const { return std::to_string(server_->port()); }
    Store& store() { return store_; }
    TesseraService& service() { return service_; }
    std::int64_t userId() const { return userId_; }
    std::int64_t database(const char* kind) { return store_.database(userId_, kind).id; }

private:
    std::atomic<std::int64_t> clock_ = noon; // asked by the threads of sessions
    Store store_ = Store::inMemory();
    TesseraService service_;
    std::int64_t userId_ = 0;
    std::unique_ptr<TcpServer> server_;
};

} // namespace tsr::test
