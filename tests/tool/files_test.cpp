#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <sstream>

#include "jpeg/encoder.h"
#include "picture/exif.h"
#include "picture/png.h"
#include "picture/pnm.h"
#include "picture/y4m.h"
#include "picture_file.h"
#include "pictures.h"
#include "psnr.h"

using namespace pqx_codec;
using namespace pqxvideo;
using namespace tool_test;

namespace {

std::vector<int> samples_of(const Image& image) {
  std::vector<int> samples;
  for (int y = 0; y < image.height(); ++y)
    samples.insert(samples.end(), image.row(y), image.row(y) + image.row_bytes());
  return samples;
}

/// PNG files of 3 x 1 pixels, of every kind that needs a conversion, made by this test's own hand.
Bytes make_png(int depth, int colour, const Bytes& row, const std::vector<std::pair<std::string, Bytes>>& chunks) {
  Bytes png{0x89, 'P', 'N', 'G', 13, 10, 26, 10};
  const auto put_word = [](Bytes& out, uint32_t word) {
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(uint8_t(word >> shift));
  };
  const auto chunk = [&](const std::string& name, const Bytes& contents) {
    Bytes body(name.begin(), name.end());
    body.insert(body.end(), contents.begin(), contents.end());
    put_word(png, uint32_t(contents.size()));
    png.insert(png.end(), body.begin(), body.end());
    put_word(png, uint32_t(crc32(0, body.data(), uInt(body.size()))));
  };
  chunk("IHDR", {0, 0, 0, 3, 0, 0, 0, 1, uint8_t(depth), uint8_t(colour), 0, 0, 0});
  for (const auto& [name, contents] : chunks) chunk(name, contents);
  Bytes filtered{0}, data(100);
  filtered.insert(filtered.end(), row.begin(), row.end());
  uLongf size = data.size();
  compress(data.data(), &size, filtered.data(), uLong(filtered.size()));
  data.resize(size);
  chunk("IDAT", data);
  chunk("IEND", {});
  return png;
}

}  // namespace

TEST(Files, PicturesSurviveWritingAndReading) {
  const Workplace place;
  for (const char* const name : {"a.png", "b.ppm", "c.PGM"})
    for (const int channels : {1, 3})
      for (const int width : {1, 2, 17}) {
        const Image image = make_picture(width, 5, channels, Content::noise);
        write_picture(place / name, image);
        EXPECT_EQ(compare(image, read_picture(place / name)).largest_of_all(), 0) << name;
      }
  EXPECT_EQ(place.files(), (std::vector<std::string>{"a.png", "b.ppm", "c.PGM"})) << "something left behind";
}

TEST(Files, PnmHeadersMayHoldCommentsAndSmallMaxima) {
  const std::vector<int> grey{0, 255, 128};
  EXPECT_EQ(samples_of(read_pnm(text(std::string("P5 3 1 255\n\0\xFF\x80", 14)))), grey);
  EXPECT_EQ(samples_of(read_pnm(text("P5#one\n#two 9\r3\t1 # three\n255 " + std::string("\0\xFF\x80", 3)))), grey);
  EXPECT_EQ(samples_of(read_pnm(text("P6 1 1 3\n" + std::string("\0\1\3", 3)))), (std::vector<int>{0, 85, 255}));
  // 2.55, 7.65 and 97.5 of 255ths: to the nearest, a half up.
  EXPECT_EQ(samples_of(read_pnm(text("P5 2 1 100\n\1\3"))), (std::vector<int>{3, 8}));
  EXPECT_EQ(samples_of(read_pnm(text("P5 1 1 34\n\15"))), (std::vector<int>{98}));
}

TEST(Files, PngSamplesOfEveryKindAreReduced) {
  const Bytes palette{10, 20, 30, 40, 50, 60};
  EXPECT_EQ(samples_of(read_png(make_png(8, 4, {7, 0, 8, 99, 9, 255}, {}))), (std::vector<int>{7, 8, 9}));
  EXPECT_EQ(samples_of(read_png(make_png(8, 6, {1, 2, 3, 0, 4, 5, 6, 9, 7, 8, 9, 255}, {}))),
            (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(samples_of(read_png(make_png(1, 0, {0b10100000}, {{"tRNS", {0, 1}}}))), (std::vector<int>{255, 0, 255}));
  EXPECT_EQ(samples_of(read_png(make_png(16, 0, {0x80, 0x80, 0xFF, 0xFF, 0x10, 0}, {}))),
            (std::vector<int>{0x80, 0xFF, 0x10}));
  EXPECT_EQ(samples_of(read_png(make_png(2, 3, {0b00010000}, {{"PLTE", palette}, {"tRNS", {0, 128}}}))),
            (std::vector<int>{10, 20, 30, 40, 50, 60, 10, 20, 30}));
}

TEST(Files, Y4mChromaOfOddPicturesIsRoundedUp) {
  Bytes y4m = text("YUV4MPEG2 W3 H5 F25:1 C420jpeg\nFRAME\n");
  for (uint8_t sample = 0; sample < 3 * 5 + 2 * (2 * 3); ++sample) y4m.push_back(sample);
  Y4mReader reader(y4m);
  YuvPicture picture;
  ASSERT_TRUE(reader.next(picture));
  EXPECT_EQ(*picture.planes[0].at(2, 4), 14);
  EXPECT_EQ(*picture.planes[1].at(1, 2), 15 + 5);
  EXPECT_EQ(*picture.planes[2].at(1, 2), 15 + 11);
  EXPECT_FALSE(reader.next(picture));
  for (size_t missing = 1; missing <= 12; ++missing) {
    Y4mReader shorter{std::span(y4m).first(y4m.size() - missing)};
    EXPECT_THROW(shorter.next(picture), Failure) << missing;
  }
}

TEST(Files, ExifOrientationIsFound) {
  for (const bool big : {false, true})
    for (const uint8_t value : {1, 3, 8, 9}) {
      Bytes tiff = big ? Bytes{'M', 'M', 0, 42, 0,  0, 0, 8, 0, 2, 1, 0, 0,     3, 0, 0, 0, 1, 0,
                               5,   0,   0, 1,  18, 0, 3, 0, 0, 0, 1, 0, value, 0, 0, 0, 0, 0, 0}
                       : Bytes{'I', 'I', 42, 0,  8, 0, 0, 0, 2, 0, 0, 1,     3, 0, 1, 0, 0, 0, 5,
                               0,   0,   0,  18, 1, 3, 0, 1, 0, 0, 0, value, 0, 0, 0, 0, 0, 0, 0};
      const Bytes png = make_png(8, 0, {1, 2, 3}, {{"gAMA", {0, 0, 0, 1}}, {"eXIf", tiff}});
      const int stated = value == 9 ? 1 : value;
      EXPECT_EQ(png_orientation(png), stated);
      for (size_t size = 0; size <= tiff.size(); ++size)
        EXPECT_EQ(exif_orientation(std::span(tiff).first(size)), size < 34 ? 1 : stated) << size;
    }
}

TEST(Files, PsnrIsThatOfItsFormula) {
  Image a(3, 1, 3), b(3, 1, 3);
  for (int i = 0; i < 9; ++i) a.row(0)[i] = b.row(0)[i] = uint8_t(20 * i);
  b.row(0)[4] += 3;  // green
  b.row(0)[5] -= 4;  // blue
  std::ostringstream out;
  print(out, compare(a, b));
  // 10 log10(255^2 * 3 / 9), of 255^2 * 3 / 16 and of 255^2 * 9 / 25.
  EXPECT_EQ(out.str(),
            "red         inf dB   largest difference 0\n"
            "green     43.36 dB   largest difference 3\n"
            "blue      40.86 dB   largest difference 4\n"
            "overall   43.69 dB   largest difference 4\n");
}

TEST(Tool, GoesFromPictureToJpegAndBack) {
  const Workplace place;
  write_picture(place / "in.png", make_picture(53, 38, 3, Content::smooth));
  write_picture(place / "grey.ppm", make_picture(53, 38, 1));
  expect_successes(place, {"jpeg encode {in.png} {a.jpg} --quality 90 --sampling 444", "jpeg decode {a.jpg} {a.ppm}",
                           "jpeg encode {in.png} {b.jpg} --optimize", "jpeg decode --upsampling nn {b.jpg} {b.png}",
                           "jpeg encode {grey.ppm} {c.jpg} --time", "jpeg decode {c.jpg} {c.ppm}",
                           "psnr {in.png} {a.jpg}", "sheet -o {sheet.png} {in.png} {a.ppm} {b.png}"});
  const Image in = read_picture(place / "in.png");
  EXPECT_GT(compare(in, read_picture(place / "a.ppm")).psnr(), 35);
  EXPECT_GT(compare(in, read_picture(place / "b.png")).psnr(), 32);
  EXPECT_EQ(read_bytes(place / "c.ppm").at(1), '5') << "grey must stay grey";
  const Image sheet = read_picture(place / "sheet.png");
  EXPECT_EQ(sheet.width(), 3 * 53);
  EXPECT_EQ(sheet.height(), 2 * 38);
  // The defaults are quality 75 and 4:2:0.
  EXPECT_EQ(read_bytes(place / "b.jpg"), jpeg::encode(in, {75, jpeg::Sampling::s420, true}));
}

TEST(Tool, BoundsMemoryBeforeItReads) {
  const Workplace place;
  const Image image = make_picture(7, 5, 3);
  for (const char* const name : {"a.png", "a.ppm"}) write_picture(place / name, image);
  // A text of 200 MB in all, and a profile beside it.
  Bytes packed(10000), content = text("k");
  uLongf size = packed.size();
  const Bytes plain(1 << 20, 'a');
  compress(packed.data(), &size, plain.data(), uLong(plain.size()));
  content.insert(content.end(), {0, 0});
  content.insert(content.end(), packed.begin(), packed.begin() + ptrdiff_t(size));
  std::vector<std::pair<std::string, Bytes>> chunks(200, {"zTXt", content});
  chunks.emplace_back("iCCP", content);
  const Bytes plane = jpeg::encode(make_picture(7, 5, 1), {}), header = text("YUV4MPEG2 W7 H5\n");
  write_files(place, {{"a.jpg", jpeg::encode(image, {})},
                      {"scans.jpg", assemble(7, 5, {plane, plane, plane}, {0x11, 0x11, 0x11}, -1)},
                      {"a.y4m", y4m_of({YuvPicture(7, 5)})},
                      {"text.png", make_png(8, 0, {1, 2, 3}, chunks)},
                      {"sparse", {}},
                      {"sparse.y4m", header},
                      {"sparse.ppm", text("P6 7 5 255\n")}});
  for (const char* const name : {"sparse", "sparse.y4m", "sparse.ppm"})
    std::filesystem::resize_file(place / name, uintmax_t{3900} << 20);

  const struct {
    const char* command;
    const char* reason;
  } cases[] = {{"jpeg encode {sparse} {o.jpg}", "not a PNG, PNM or JPEG file"},
               {"jpeg encode {sparse.ppm} {o.jpg}", "file too large"},
               {"jpeg decode {sparse} {o.png}", "not a JPEG file"},
               {"h261 encode {sparse.y4m} {o.h261}", "file too large"},
               {"psnr {a.png} {sparse}", "not a PNG, PNM or JPEG file"},
               {"show {sparse} {o.png}", "neither a Y4M file nor an H.261 stream"},
               {"jpeg encode /dev/zero {o.jpg}", "not a PNG, PNM or JPEG file"},
               {"h261 decode /dev/zero {o.y4m}", "not an H.261 stream"},
               {"jpeg encode {text.png} {o.jpg}", nullptr}};
  for (const auto& [command, reason] : cases) {
    const Outcome outcome = run(place, std::string(PQXVIDEO " ") + command);
    EXPECT_EQ(outcome.status, reason ? 1 : 0) << command << outcome.errors;
    EXPECT_NE(outcome.errors.find(reason ? reason : ""), std::string::npos) << command << outcome.errors;
    EXPECT_LT(outcome.memory, 32 + MEMORY_FOR_DAMAGE) << command << ", MiB";
  }
  for (const std::string command :
       {"jpeg encode {a.png} {o.jpg}", "jpeg encode {a.ppm} {o.jpg}", "jpeg decode {a.jpg} {o.png}",
        "jpeg decode {scans.jpg} {o.png}", "show {a.y4m} {o.png}", "sheet -o {o.png} {a.png} {a.jpg}",
        "psnr {a.y4m} {a.y4m}"}) {
    EXPECT_EQ(run(place, PQXVIDEO " " + command + " --max-pixels 35").errors, "") << command;
    const Outcome outcome = run(place, PQXVIDEO " " + command + " --max-pixels 34");
    EXPECT_EQ(outcome.status, 1) << command;
    EXPECT_NE(outcome.errors.find(": picture too large: 7 x 5 pixels, more than 34\n"), std::string::npos) << command;
  }
}

TEST(Tool, ReportsErrorsInOneLineAndLeavesNothing) {
  const Workplace place;
  const Image image = make_picture(40, 30, 3);
  write_picture(place / "in.png", image);
  write_picture(place / "other.ppm", make_picture(41, 30, 3));
  write_picture(place / "grey.ppm", make_picture(40, 30, 1));
  const Bytes jpeg = jpeg::encode(image, {});
  Bytes longer = jpeg, restart = encode_outside(image, "-grayscale -restart 1"), deep = jpeg;
  longer.insert(longer.end() - 2, {0, 0});
  const auto place_of = [](const Bytes& part, Bytes& bytes) {
    return std::search(bytes.begin(), bytes.end(), part.begin(), part.end());
  };
  ++place_of({0xFF, 0xD1}, restart)[1];
  place_of({0xFF, 0xC0, 0, 17}, deep)[4] = 12;
  Bytes damaged = read_bytes(place / "in.png");
  damaged[damaged.size() / 2] ^= 1;
  write_files(place, {{"in.jpg", jpeg},
                      {"half.jpg", Bytes(jpeg.begin(), jpeg.begin() + ptrdiff_t(jpeg.size() / 2))},
                      {"endless.jpg", Bytes(jpeg.begin(), jpeg.end() - 1)},
                      {"longer.jpg", longer},
                      {"restart.jpg", restart},
                      {"deep.jpg", deep},
                      {"progressive.jpg", encode_outside(image, "-progressive")},
                      {"arithmetic.jpg", encode_outside(image, "-arithmetic")},
                      {"440.jpg", encode_outside(image, "-sample 1x2")},
                      {"411.jpg", encode_outside(image, "-sample 4x1")},
                      {"huge.ppm", text("P6 20000 20000 255\n")},
                      {"wide.ppm", text("P5 65536 1 255\n" + std::string(65536, '\0'))},
                      {"short.ppm", text("P6 20 20 255\nabc")},
                      {"deep.pgm", text("P5 1 1 65535\nab")},
                      {"ascii.ppm", text("P3 1 1 255\n1 2 3\n")},
                      {"damaged.png", damaged},
                      {"empty.jpg", {}}});

  const FailingCommand cases[] = {
      {"jpeg decode {half.jpg} {out.ppm}", 1, "half.jpg", "truncated"},
      {"jpeg decode {endless.jpg} {out.ppm}", 1, "endless.jpg", "truncated"},
      {"jpeg decode {longer.jpg} {out.png}", 1, "longer.jpg", "damaged JPEG: data of the picture left over"},
      {"jpeg decode {restart.jpg} {out.png}", 1, "restart.jpg", "damaged JPEG: a restart marker"},
      {"jpeg decode {deep.jpg} {out.png}", 1, "deep.jpg", "not supported: JPEG of 12-bit samples"},
      {"jpeg decode {progressive.jpg} {out.png}", 1, "progressive.jpg", "not supported: progressive"},
      {"jpeg decode {arithmetic.jpg} {out.png}", 1, "arithmetic.jpg", "not supported: arithmetic"},
      {"jpeg decode {440.jpg} {out.png}", 1, "440.jpg", "not supported: JPEG with sampling factors 1x2,1x1,1x1"},
      {"jpeg decode {411.jpg} {out.png}", 1, "411.jpg", "not supported: JPEG with sampling factors 4x1,1x1,1x1"},
      {"jpeg decode {in.png} {out.png}", 1, "in.png", "not a JPEG file"},
      {"jpeg decode {empty.jpg} {out.png}", 1, "empty.jpg", "not a JPEG file"},
      {"jpeg decode {missing.jpg} {out.png}", 1, "missing.jpg", "No such file"},
      {"jpeg decode {in.jpg} {nowhere/out.png}", 1, "nowhere/out.png", "No such file"},
      {"jpeg encode {in.png} {}", 1, "", "directory"},
      {"jpeg encode {huge.ppm} {out.jpg}", 1, "huge.ppm", "too large: 20000 x 20000"},
      {"jpeg encode {wide.ppm} {out.jpg}", 1, "out.jpg", "too large for JPEG"},
      {"jpeg encode {short.ppm} {out.jpg}", 1, "short.ppm", "truncated"},
      {"jpeg encode {deep.pgm} {out.jpg}", 1, "deep.pgm", "not supported"},
      {"jpeg encode {ascii.ppm} {out.jpg}", 1, "ascii.ppm", "not supported: PNM of type P3"},
      {"jpeg encode {damaged.png} {out.jpg}", 1, "damaged.png", "damaged PNG"},
      {"psnr {in.png} {other.ppm}", 1, "other.ppm", "differ in size"},
      {"psnr {in.png} {grey.ppm}", 1, "grey.ppm", "grey"},
      {"sheet -o {out.png} {in.png} {other.ppm}", 1, "in.png", "differ"},
      {"jpeg decode {in.jpg} {out.bmp}", 2, "out.bmp", "must end in"},
      {"jpeg decode {in.jpg} {out.png} --upsampling cubic", 2, "", "upsampling"},
      {"jpeg encode {in.png} {out.jpg} --quality 0", 2, "", "quality"},
      {"jpeg encode {in.png} {out.jpg} --quality high", 2, "", "quality"},
      {"jpeg encode {in.png} {out.jpg} --sampling 411", 2, "", "sampling"},
      {"jpeg encode {in.png} {out.jpg} {third}", 2, "", "third"},
      {"jpeg encode {in.png}", 2, "", "OUT"},
      {"jpeg", 2, "", "subcommand"},
      {"", 2, "", "subcommand"},
  };
  expect_failures(place, cases);

  // What stood under the name before stays.
  run(place, PQXVIDEO " jpeg decode {half.jpg} {other.ppm}");
  EXPECT_EQ(compare(read_picture(place / "other.ppm"), make_picture(41, 30, 3)).largest_of_all(), 0);
}
