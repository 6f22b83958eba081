#pragma once

#include "bench/scale/Scene.h"

namespace tsr::bench {

// The meetings of a busy year, of which a fifth repeats each week.
class MeetingScene : public Scene {
public:
    MeetingScene(std::size_t meetings, Place place); // with all of them on one side

private:
    void addToHandheld(HandheldDatabase& database, std::size_t number) override;
    Properties document(std::size_t number) override;
};

} // namespace tsr::bench
