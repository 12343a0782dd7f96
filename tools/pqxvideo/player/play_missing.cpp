#include "core/failure.h"
#include "player/play.h"

namespace pqxvideo {

void play(const std::string&, int, bool, int64_t) {
  throw Failure("this build has no player: SDL2 was not found when it was made");
}

}  // namespace pqxvideo
