#include "tessera/TesseraSession.h"

#include "foundation/Error.h"

namespace tsr {

namespace {

constexpr std::size_t maxErrors = 100;

} // namespace

Response TesseraSession::handle(const Request& request) {
    try {
        return {request.code, ResultCode::Success, "", service_.answer(state_, request)};
    } catch (const RequestRefused& refusal) {
        return refuse(request.code, refusal.result(), refusal.what());
    } catch (const std::exception& failure) {
        return refuse(request.code, ResultCode::ServerFailed, failure.what());
    } catch (const Error& failure) {
        return refuse(request.code, ResultCode::ServerFailed, errorText(failure));
    }
}

std::vector<std::uint8_t> TesseraSession::handleFrame(const RequestHeader& header,
                                                      std::span<const std::uint8_t> body) {
    try {
        return toFrame(handle({header.code, parseBody(body)}));
    } catch (const RequestRefused& refusal) {
        return toFrame(refuse(header.code, refusal.result(), refusal.what()));
    }
}

std::size_t TesseraSession::maxRequestBytes() const {
    return state_.userId ? maxFrameBytes : maxStrangerRequestBytes;
}

Response TesseraSession::refuse(std::uint32_t code, ResultCode result, const std::string& message) {
    ++state_.errorCount;
    state_.outbox.reset();
    if (state_.errors.size() < maxErrors) state_.errors.push_back(message);
    return {code, result, message, {}};
}

} // namespace tsr
