#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

// A folder for one test's media files, gone afterwards.
class MediaFolder : public testing::Test {
 protected:
  void SetUp() override {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    mFolder =
        std::filesystem::temp_directory_path() / ("captivo-media-" + std::to_string(getpid()) + "-" + test->name());
    std::filesystem::create_directories(mFolder);
  }
  void TearDown() override { std::filesystem::remove_all(mFolder); }

  std::filesystem::path Path(const std::string& name) const { return mFolder / name; }

  // Runs ffmpeg in the folder; the test fails if it does.
  std::filesystem::path Make(const std::string& arguments, const std::string& name) const {
    const std::string command =
        "cd '" + mFolder.string() + "' && ffmpeg -nostdin -v error -y " + arguments + " " + name;
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return Path(name);
  }
  std::filesystem::path WriteFile(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }
  std::string ReadFile(const std::string& name) const {
    std::ifstream in(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  std::filesystem::path mFolder;
};

inline const std::string kPicture = "-f lavfi -i testsrc2=s=96x64:r=25:d=2 ";
inline const std::string kSound = "-f lavfi -i sine=r=48000:d=2 ";
inline const std::string kCheapVideo = "-c:v mpeg4 -g 5 ";
