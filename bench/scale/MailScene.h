#pragma once

#include "bench/scale/Scene.h"

namespace tsr::bench {

// Messages: in the user's Inbox where Notes has them, and drafts where the handheld does.
class MailScene : public Scene {
public:
    MailScene(std::size_t messages, Place place); // with all of them on one side

private:
    void addToHandheld(HandheldDatabase& database, std::size_t number) override;
    Properties document(std::size_t number) override;
};

} // namespace tsr::bench
