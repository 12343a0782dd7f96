#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <regex>

#include "picture_file.h"
#include "pictures.h"

using namespace pqx_codec;
using namespace pqxvideo;
using namespace tool_test;

namespace {

/// Every command that writes a file, with "OUT" and an ending in its place.
constexpr const char* writers[] = {"jpeg encode {in.png} OUT.jpg",     "jpeg decode {in.jpg} OUT.png",
                                   "jpeg decode {in.jpg} OUT.ppm",     "sheet -o OUT.ppm {in.png} {in.png}",
                                   "h261 encode {in.y4m} OUT.h261",    "h261 decode {in.h261} OUT.y4m",
                                   "pan {in.png} OUT.y4m --size qcif", "show {in.y4m} OUT.png"};

class Faults : public testing::Test {
 protected:
  Faults() {
    write_picture(place / "in.png", make_picture(360, 300, 3));
    expect_successes(place, {"jpeg encode {in.png} {in.jpg}", "pan {in.png} {in.y4m} --size qcif --frames 4",
                             "h261 encode {in.y4m} {in.h261}", "pan {in.png} {long.y4m} --frames 90"});
    for (const char* const kind : {"jpg", "png", "ppm", "h261", "y4m"}) {
      std::filesystem::create_symlink("/dev/full", place / (std::string("full.") + kind));
      std::filesystem::create_symlink("/dev/stdout", place / (std::string("pipe.") + kind));
    }
    std::filesystem::create_directory(place / "closed");
    std::filesystem::permissions(place / "closed", std::filesystem::perms(0555));
  }

  /// The command with its output named, run by a shell as `around` says.
  static std::string compose(const std::string& around, const std::string& command, const std::string& out) {
    const std::string named = std::regex_replace(command, std::regex("OUT(\\S*)"), "{" + out + "$1}");
    return std::regex_replace("(" + around + ")", std::regex("TOOL"), PQXVIDEO " " + named);
  }
  /// It must fail with that status and one line.
  void expect_failure(const std::string& around, const std::string& command, const std::string& out, int status,
                      const std::string& reason) {
    tool_test::expect_failure(place, compose(around, command, out), status, "", reason + "\n");
    EXPECT_TRUE(std::filesystem::is_empty(place / "closed")) << command;
  }

  const Workplace place;
  // The superuser writes everywhere until that right is given up.
  const std::string without_rights = geteuid() ? "" : "setpriv --inh-caps=-all --bounding-set=-all ";
};

}  // namespace

TEST_F(Faults, AtWritingAreReportedAndLeaveNothing) {
  for (const char* const command : writers) {
    expect_failure("TOOL", command, "full", 1, ": cannot write: No space left on device");
    expect_failure("ulimit -f 2; TOOL", command, "out", 1, ": cannot write: File too large");
    expect_failure(without_rights + "TOOL", command, "closed/out", 1, ": cannot write: Permission denied");
  }
  for (const char* const command : {writers[2], writers[3], writers[5], writers[6]})  // more than a pipe holds
    expect_failure("(TOOL; [ $? = 1 ] || echo >&2) | true", command, "pipe", 0, ": cannot write: Broken pipe");
  for (const char* const command :
       {"psnr {in.png} {in.jpg}", "--help", "--version", "jpeg encode {in.png} /dev/null --time"})
    expect_failure("TOOL >/dev/full", command, "", 1, "pqxvideo: cannot write to standard output");
  expect_failure("TOOL >&-", "psnr {in.png} {in.jpg}", "", 1, "pqxvideo: cannot write to standard output");
  for (const char* const existing : {"", "touch {out.jpg};"})
    expect_failure(std::string(existing) + FAILING "close TOOL; status=$?; rm -f {out.jpg}; (exit $status)",
                   writers[0], "out", 1, "out.jpg: cannot write: Input/output error");
}

TEST_F(Faults, InterruptionLeavesNothing) {
  for (const auto& [name, number] : {std::pair{"INT", 2}, {"TERM", 15}, {"HUP", 1}})
    for (const char* const unnamed : {"", FAILING "unnamed "})
      expect_failure(
          std::string("env --default-signal=INT,TERM,HUP ") + unnamed +
              "TOOL & while kill -0 $! && ! ls -l /proc/$!/fd 2>/dev/null | grep -q '/[.]pqxvideo-\\|/#[0-9]* "
              "(deleted)'; do sleep 0.01; done; "
              "kill -" +
              name + " $!; wait $! 2>/dev/null",
          "h261 encode {long.y4m} OUT.h261", "out", 128 + number, "pqxvideo: interrupted");
}

TEST_F(Faults, NeverDestroyAnOriginal) {
  std::filesystem::create_hard_link(place / "in.png", place / "same.jpg");
  std::filesystem::create_symlink("in.h261", place / "link.y4m");
  const Bytes picture = read_bytes(place / "in.png"), stream = read_bytes(place / "in.h261");
  const FailingCommand cases[] = {
      {"jpeg encode {in.png} {same.jpg}", 1, "same.jpg", "it is the file that is read"},
      {"sheet -o {in.png} {in.jpg} {in.png}", 1, "in.png", "it is the file that is read"},
      {"sheet -o {in.png} {in.png} {in.jpg}", 1, "in.png", "it is the file that is read"},
      {"h261 decode {in.h261} {link.y4m}", 1, "link.y4m", "it is the file that is read"},
      {"show {in.h261} {in.h261} --format png", 1, "in.h261", "it is the file that is read"},
      {"pan {in.png} {in.png} --format y4m", 1, "in.png", "it is the file that is read"},
      {"jpeg encode {in.jpg} {in.png}", 2, "in.png", "must end in .jpg or .jpeg, or --format"},
      {"jpeg decode {in.jpg} {in.y4m}", 2, "in.y4m", "must end in .png, .ppm, .pgm or .pnm, or --format"},
      {"jpeg decode {in.jpg} /dev/stdout", 2, "/dev/stdout", "must end in .png"},
      {"h261 encode {in.y4m} {in.png}", 2, "in.png", "must end in .h261, or --format"},
      {"h261 decode {in.h261} {in.png}", 2, "in.png", "must end in .y4m, or --format"},
      {"pan {in.png} {in.jpg}", 2, "in.jpg", "must end in .y4m"},
      {"sheet {in.png} {in.jpg} {in.jpg}", 2, "", "--output"},
  };
  expect_failures(place, cases);
  tool_test::expect_failure(place, "(" PQXVIDEO " h261 decode {in.h261} /dev/stdout >>{in.h261})", 1, "in.h261",
                            "it is the file that is read");
  EXPECT_EQ(read_bytes(place / "in.png"), picture);
  EXPECT_EQ(read_bytes(place / "in.h261"), stream);

  expect_successes(place, {"jpeg encode {in.png} {any} --format jpeg", "jpeg decode {in.jpg} {any.jpg} --format pnm",
                           "h261 encode {in.y4m} {any.bin} --format h261", "jpeg encode {in.png} {upper.JPG}"});
  EXPECT_EQ(read_bytes(place / "any"), read_bytes(place / "in.jpg"));
  EXPECT_EQ(read_bytes(place / "any.jpg").at(0), 'P');
}

TEST_F(Faults, StandardDescriptorsAreKeptApart) {
  const Bytes stream = read_bytes(place / "in.h261");
  const std::string whole = "before\n" + std::string(stream.begin(), stream.end()) + "after\n";
  for (const char* const out : {"/dev/stdout", "/dev/fd/1", "{pipe.h261}"})
    for (const char* const redirection : {">", ">>"}) {
      write_bytes(place / "log", {});
      must_run(place, std::string("((echo before; " PQXVIDEO " h261 encode {in.y4m} ") + out + "; echo after) " +
                          redirection + "{log})");
      EXPECT_TRUE(read_bytes(place / "log") == text(whole)) << out << redirection;
    }
  // Without standard error, what would have been reported must not get into the file.
  Bytes stamped = y4m_of(make_pan(false, 4), {25, 1});
  write_bytes(place / "stamped.y4m", stamped);
  must_run(place, PQXVIDEO " h261 encode {stamped.y4m} {plain.h261} 2>/dev/null");
  must_run(place, PQXVIDEO " h261 encode {stamped.y4m} {closed.h261} 0<&- 2>&-");
  EXPECT_EQ(read_bytes(place / "closed.h261"), read_bytes(place / "plain.h261"));
}

TEST_F(Faults, WhatIsOverwrittenKeepsModeOwnerAndLinks) {
  for (const std::string unnamed : {"", FAILING "unnamed "}) {
    write_files(place, {{"a.jpg", text("old")}, {"b.jpg", text("old")}});
    must_run(
        place,
        "chmod 640 {a.jpg}; ln -sf a.jpg {link.jpg}; ln -sf {new.jpg} {dangling.jpg}; rm -f {new.jpg}; umask 027; " +
            unnamed + PQXVIDEO " jpeg encode {in.png} {link.jpg} && " + unnamed +
            PQXVIDEO " jpeg encode {in.png} {dangling.jpg}");
    for (const auto& [link, file] : {std::pair{"link.jpg", "a.jpg"}, {"dangling.jpg", "new.jpg"}}) {
      EXPECT_TRUE(std::filesystem::is_symlink(place / link)) << link;
      EXPECT_EQ(read_bytes(place / file), read_bytes(place / "in.jpg")) << file;
      EXPECT_EQ(std::filesystem::status(place / file).permissions(), std::filesystem::perms(0640)) << file;
    }
    if (geteuid()) continue;
    ASSERT_EQ(chown((place / "b.jpg").c_str(), 12345, 12345) | chmod((place / "b.jpg").c_str(), 0666), 0);
    struct stat info;
    for (const std::string& rights : {std::string(), without_rights}) {
      const Outcome outcome = run(place, unnamed + rights + PQXVIDEO " jpeg encode {in.png} {b.jpg}");
      EXPECT_EQ(outcome.status, 0);
      EXPECT_EQ(stat((place / "b.jpg").c_str(), &info), 0);
      EXPECT_EQ(info.st_uid, rights.empty() ? 12345u : 0u);
      EXPECT_EQ(info.st_mode & 07777, 0666u);
      EXPECT_EQ(outcome.errors.find("its owner") != std::string::npos, !rights.empty()) << outcome.errors;
    }
  }
}

TEST_F(Faults, WritesAreLargeAndMessagesStayInTheirLine) {
  for (const char* const command : writers)
    EXPECT_EQ(run(place, compose(FAILING "small TOOL", command, "out")).errors, "") << command;
  EXPECT_EQ(
      run(place, PQXVIDEO " jpeg encode \"$(printf 'a\\n\\033\\233\\t\\302\\205\\303\\244.png')\" {out.jpg}").errors,
      "pqxvideo: a\\n\\x1b\\x9b\\t\\xc2\\x85\u00e4.png: cannot read: No such file or directory\n");
  write_bytes(place / "control.y4m", text("YUV4MPEG2 W2 H2 C\033[31m\n"));
  EXPECT_NE(run(place, PQXVIDEO " show {control.y4m} {out.png}").errors.find("Y4M of kind \\x1b[31m\n"),
            std::string::npos);
}

TEST_F(Faults, WhatIsDroppedIsSaid) {
  Bytes full = y4m_of(make_pan(false, 1), {50, 2}), turned = read_bytes(place / "in.jpg");
  const std::string range = " XCOLORRANGE=FULL";
  full.insert(std::ranges::find(full, uint8_t{'\n'}), range.begin(), range.end());
  turned.insert(turned.begin() + 2, {0xFF, 0xE1, 0, 34, 'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8,
                                     0,    1,    1, 18, 0,   3,   0,   0,   0, 1, 0,   6,   0, 0,  0, 0, 0, 0});
  write_files(place, {{"wide.y4m", full}, {"turned.jpg", turned}});
  const struct {
    const char* command;
    std::vector<const char*> lines;
  } cases[] = {{"h261 encode {wide.y4m} {out.h261}",
                {"wide.y4m: 50:2 pictures a second become", "wide.y4m: full-range samples are coded"}},
               {"h261 encode {in.y4m} {out.h261}", {}},
               {"show {wide.y4m} {out.png}", {"wide.y4m: full-range samples are shown"}},
               {"show {in.y4m} {out.png}", {}},
               {"jpeg decode {turned.jpg} {out.png}", {"turned.jpg: its Exif orientation, 6, is dropped"}},
               {"psnr {turned.jpg} {in.jpg}", {"turned.jpg: its Exif orientation, 6, is dropped"}},
               {"psnr {in.jpg} {in.jpg}", {}}};
  for (const auto& [command, lines] : cases) {
    const Outcome outcome = run(place, std::string(PQXVIDEO " ") + command);
    EXPECT_EQ(outcome.status, 0) << command;
    EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), ptrdiff_t(lines.size())) << command << outcome.errors;
    for (const char* const line : lines) EXPECT_NE(outcome.errors.find(line), std::string::npos) << command;
  }
}
