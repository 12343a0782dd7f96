// mpeg_seeds FOLDER: small MPEG streams of every kind to begin with.
#include <fstream>

#include "written.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::map<std::string, int> used;
  for (unsigned seed = 0; seed < 24; ++seed) {
    const auto stream = mpeg_test::write_stream({seed % 4 != 0, seed % 4 < 2, seed % 8 == 7, 48, 64}, seed, used);
    std::ofstream(argv[1] + ("/" + std::to_string(seed)), std::ios::binary)
        .write(reinterpret_cast<const char*>(stream.data()), std::streamsize(stream.size()));
  }
}
