#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "App/Session.h"
#include "zebcore/Messaging.h"

namespace AppTest {

namespace fs = std::filesystem;
using App::Session;
using zebcore::classref::InterfaceRef;

// A folder that goes with the test.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  fs::path operator/(const std::string& name) const { return mPath / name; }
  const fs::path& GetPath() const { return mPath; }
  fs::path Write(const std::string& name, std::string_view bytes) const;
  // As many zeros, without taking the room on disk.
  fs::path WriteZeros(const std::string& name, std::uintmax_t count) const;

 private:
  fs::path mPath;
};

std::string ReadFile(const fs::path& path);

// A session on a project in a file of its own, with one clip of 25 frames a second that has no media file.
class SessionTest : public ::testing::Test {
 protected:
  SessionTest();
  ~SessionTest() override;

  Session& session() { return Session::Instance(); }
  InterfaceRef<BE::Project> project() { return session().GetProject(); }
  InterfaceRef<BE::MasterClip> AddClip(const std::string& name);

  // What the open project holds, to tell that something left it as it was.
  struct Picture {
    fs::path path;
    std::size_t clips = 0;
    std::size_t streams = 0;
    std::vector<zebcore::UString> undo;
    friend bool operator==(const Picture&, const Picture&) = default;
  };
  Picture TakePicture();

  // Ordinary captions, SubRip.
  static constexpr const char* kTwoCaptions = "1\n00:00:01,000 --> 00:00:02,000\nThe harbour wakes.\n\n"
                                              "2\n00:00:03,000 --> 00:00:04,500\nA gull calls.\n";

  Folder folder;
  InterfaceRef<BE::MasterClip> clip;
  zebcaptioning::StreamFormat cc1;
};

} // namespace AppTest
