#pragma once

#include "bench/scale/Scene.h"

namespace tsr::bench {

class MemoScene : public Scene {
public:
    MemoScene(std::size_t memos, Place place); // with all of them on one side

private:
    void addToHandheld(HandheldDatabase& database, std::size_t number) override;
    Properties document(std::size_t number) override;
};

} // namespace tsr::bench
