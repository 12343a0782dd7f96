#include "pictures.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "files.h"
#include "pan.h"
#include "picture_file.h"

namespace tool_test {

using pqx_codec::Image;

Image make_picture(int width, int height, int channels, Content content) {
  Image image(width, height, channels);
  std::mt19937 random(unsigned(width * 1000003 + height * 31 + channels));
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      for (int c = 0; c < channels; ++c) {
        double value = 128 + 90 * std::sin(0.07 * x + 0.05 * y * (c + 1) + c);
        if (content == Content::edges && (x / 5 + y / 7) % 3 == 0) value = (x + c) % 2 ? 255 : 20 * c;
        if (content == Content::noise) value = random() % 256;
        image.row(y)[x * channels + c] = uint8_t(std::clamp(value + double(random() % 7) - 3, 0.0, 255.0));
      }
  return image;
}

Pictures make_pan(bool cif, int frames) {
  const pqxvideo::Pan pan(make_picture(500, 400, 3, Content::edges), cif ? 352 : 176, cif ? 288 : 144);
  Pictures clip;
  for (int k = 0; k < frames; ++k) clip.push_back(pan.frame(k));
  return clip;
}

Pictures make_wandering(int frames) {
  const pqxvideo::Pan still(make_picture(176, 144, 3, Content::smooth), 176, 144);
  Pictures clip(size_t(frames), still.frame(0));
  for (int k = 0; k < frames; ++k)
    for (int y = 0; y < 20; ++y)
      for (int x = 0; x < 20; ++x) *clip[size_t(k)].planes[0].at(30 + 4 * k + x, 50 + k + y) = uint8_t(60 + 8 * x);
  return clip;
}

Bytes encode(const Pictures& clip, const pqx_codec::h261::EncoderOptions& options, Pictures* reconstruction) {
  pqx_codec::h261::Encoder encoder(clip[0].width(), clip[0].height(), options);
  Bytes stream;
  for (const pqx_codec::YuvPicture& picture : clip) {
    const Bytes coded = encoder.encode(picture);
    stream.insert(stream.end(), coded.begin(), coded.end());
    if (reconstruction) reconstruction->push_back(encoder.reconstruction());
  }
  return stream;
}

Bytes y4m_of(const Pictures& clip, pqx_codec::FrameRate rate) {
  const Workplace place;
  pqxvideo::OutputFile file(place / "clip.y4m");
  pqx_codec::Y4mWriter writer(file, clip[0].width(), clip[0].height(), rate);
  for (const pqx_codec::YuvPicture& picture : clip) writer.write(picture);
  file.commit();
  return read_bytes(place / "clip.y4m");
}

Bytes text(const std::string& s) { return Bytes(s.begin(), s.end()); }

Workplace::Workplace() {
  std::string name = (std::filesystem::temp_directory_path() / "pqxvideo-test-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no temporary directory");
  path_ = name;
}

std::vector<std::string> Workplace::files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

int peak_memory() {
  struct rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return int(usage.ru_maxrss / 1024);
}

Bytes read_bytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), {});
}

void write_bytes(const std::string& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), ptrdiff_t(bytes.size()));
}

void write_files(const Workplace& place, const std::vector<std::pair<std::string, Bytes>>& files) {
  for (const auto& [name, bytes] : files) write_bytes(place / name, bytes);
}

void damage(Bytes& bytes, std::mt19937& random) {
  const auto below = [&](size_t n) { return n ? size_t(random() % n) : 0; };
  // Headers are short: every third place is chosen among the first bytes.
  const auto place = [&] { return below(random() % 3 ? bytes.size() : std::min<size_t>(bytes.size(), 200)); };
  for (size_t times = 1 + below(4); times > 0 && !bytes.empty(); --times) {
    const size_t at = place(), length = below(std::min<size_t>(bytes.size() - at, 30));
    const auto first = bytes.begin() + ptrdiff_t(at), last = first + ptrdiff_t(length);
    const Bytes part(first, last);
    const size_t kind = below(16);
    if (kind == 0)
      bytes.erase(first, last);
    else if (kind == 1)
      bytes.insert(bytes.begin() + ptrdiff_t(place()), part.begin(), part.end());
    else if (kind == 2)
      bytes.resize(at);
    else if (kind == 3)
      *first = random() % 2 ? 0xFF : 0;
    else if (kind == 4)
      *first = uint8_t(random());
    else
      *first ^= uint8_t(1 << below(8));
  }
}

Outcome run(const Workplace& place, std::string command) {
  for (size_t open; (open = command.find('{')) != std::string::npos;) {
    const size_t close = command.find('}', open);
    command.replace(open, close - open + 1, place / command.substr(open + 1, close - open - 1));
  }
  const Workplace streams;
  command += " >" + streams / "out" + " 2>" + streams / "errors";
  const pid_t shell = fork();
  if (shell == 0) {
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  struct rusage usage;
  if (wait4(shell, &status, 0, &usage) != shell) throw std::runtime_error("cannot run " + command);
  const auto text = [&](const char* name) {
    const Bytes bytes = read_bytes(streams / name);
    return std::string(bytes.begin(), bytes.end());
  };
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text("out"), text("errors"), int(usage.ru_maxrss / 1024)};
}

void must_run(const Workplace& place, const std::string& command) {
  if (const Outcome outcome = run(place, command); outcome.status != 0)
    throw std::runtime_error(command + ": " + outcome.errors);
}

void expect_successes(const Workplace& place, std::initializer_list<const char*> commands) {
  for (const char* const command : commands) {
    const Outcome outcome = run(place, std::string(PQXVIDEO " ") + command);
    EXPECT_EQ(outcome.status, 0) << command << ": " << outcome.errors;
    EXPECT_EQ(outcome.errors, "") << command;
  }
}

void expect_failure(const Workplace& place, const std::string& command, int status, const std::string& file,
                    const std::string& reason) {
  const std::vector<std::string> before = place.files();
  const Outcome outcome = run(place, command);
  EXPECT_EQ(outcome.status, status) << command;
  EXPECT_EQ(outcome.out, "") << command;
  EXPECT_NE(outcome.errors.find(file), std::string::npos) << command << ": " << outcome.errors;
  EXPECT_NE(outcome.errors.find(reason), std::string::npos) << command << ": " << outcome.errors;
  EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << command << ": " << outcome.errors;
  EXPECT_EQ(place.files(), before) << command;
}

void expect_failures(const Workplace& place, std::span<const FailingCommand> commands) {
  for (const auto& [command, status, file, reason] : commands)
    expect_failure(place, std::string(PQXVIDEO " ") + command, status, file, reason);
}

Image judge(const Bytes& jpeg, bool smooth) {
  const Workplace place;
  write_bytes(place / "in.jpg", jpeg);
  must_run(place,
           std::string(DJPEG " -strict -dct float ") + (smooth ? "" : "-nosmooth ") + "-outfile {out.ppm} {in.jpg}");
  return pqxvideo::read_picture(place / "out.ppm");
}

Bytes encode_outside(const Image& image, const std::string& options) {
  const Workplace place;
  pqxvideo::write_picture(place / "in.ppm", image);
  must_run(place, CJPEG " " + options + " -outfile {out.jpg} {in.ppm}");
  return read_bytes(place / "out.jpg");
}

Bytes assemble(int width, int height, const std::vector<Bytes>& grey, const std::vector<int>& factors,
               int adobe_transform) {
  Bytes out{0xFF, 0xD8};
  const auto append = [&](const Bytes& bytes) { out.insert(out.end(), bytes.begin(), bytes.end()); };
  if (adobe_transform >= 0)
    append({0xFF, 0xEE, 0, 14, 'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, uint8_t(adobe_transform)});
  const uint8_t count = uint8_t(grey.size());
  append({0xFF, 0xC0, 0, uint8_t(8 + 3 * count), 8, uint8_t(height >> 8), uint8_t(height), uint8_t(width >> 8),
          uint8_t(width), count});
  for (uint8_t i = 0; i < count; ++i) append({uint8_t(i + 1), uint8_t(factors[i]), 0});
  for (uint8_t i = 0; i < count; ++i)
    for (size_t at = 2; at + 4 < grey[i].size();) {
      const uint8_t marker = grey[i][at + 1];
      const size_t length = size_t(grey[i][at + 2]) << 8 | grey[i][at + 3];
      if (marker == 0xDA) {
        append({0xFF, 0xDA, 0, 8, 1, uint8_t(i + 1), 0, 0, 63, 0});
        append(Bytes(grey[i].begin() + ptrdiff_t(at + 2 + length), grey[i].end() - 2));
        break;
      }
      if (i == 0 && (marker == 0xDB || marker == 0xC4))
        append(Bytes(grey[i].begin() + ptrdiff_t(at), grey[i].begin() + ptrdiff_t(at + 2 + length)));
      at += 2 + length;
    }
  append({0xFF, 0xD9});
  return out;
}

}  // namespace tool_test
