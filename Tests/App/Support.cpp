#include "Support.h"

#include <cstdlib>
#include <iterator>

#include <unistd.h>

namespace AppTest {

namespace {

fs::path MakeFolder() {
  std::string pattern = (fs::temp_directory_path() / "captivo-app-XXXXXX").string();
  if (!::mkdtemp(pattern.data()))
    throw std::runtime_error("no folder for a test");
  return pattern;
}

} // namespace

Folder::Folder() : mPath(MakeFolder()) {}

Folder::~Folder() {
  std::error_code error;
  fs::permissions(mPath, fs::perms::owner_all, fs::perm_options::add, error);
  fs::remove_all(mPath, error);
}

fs::path Folder::Write(const std::string& name, std::string_view bytes) const {
  std::ofstream(mPath / name, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return mPath / name;
}

fs::path Folder::WriteZeros(const std::string& name, std::uintmax_t count) const {
  const fs::path path = Write(name, {});
  fs::resize_file(path, count);
  return path;
}

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

SessionTest::SessionTest() : cc1(App::GetStreamFormat("cea608", 1)) {
  // Nothing of the user's is read or written.
  ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
  ::setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
  const auto problem = session().NewProject(folder / "Harbour.captivo");
  EXPECT_FALSE(problem) << problem->text;
  clip = AddClip("Harbour");
}

SessionTest::~SessionTest() {
  clip = nullptr;
  session().CloseProject();
}

InterfaceRef<BE::MasterClip> SessionTest::AddClip(const std::string& name) {
  BE::MediaInfo info;
  info.width = 640;
  info.height = 360;
  info.frameRate = zebmediatypes::kFrameRate_25;
  info.duration = zebmediatypes::TickTime(60 * zebmediatypes::kTicksPerSecond);
  return project()->AddClip(zebcore::FromUTF8(name), {}, info, false);
}

SessionTest::Picture SessionTest::TakePicture() {
  Picture picture;
  picture.path = project()->GetPath();
  for (const auto& each : project()->GetClips()) {
    ++picture.clips;
    picture.streams += each->GetStreams().size();
  }
  picture.undo = project()->GetUndoNames();
  return picture;
}

} // namespace AppTest
