#include "platform/InputFile.h"
#include "support/FileBytes.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace tessaly::tests {
namespace {

class InputFileTest : public testing::Test {
 protected:
  std::filesystem::path fileWith(const std::string& text) const {
    writeText(folder_ / "file", text);
    return folder_ / "file";
  }

  std::filesystem::path inFolder(const char* name) const { return folder_ / name; }

  TemporaryFolder folder_;
};

std::string textAt(const InputFile& file, std::int64_t offset, std::size_t length) {
  std::string text(length, '?');
  text.resize(file.readAt(offset, std::as_writable_bytes(std::span(text))));
  return text;
}

template <typename Action>
int errorNumber(Action action) {
  try {
    action();
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code().category(), std::generic_category());
    return error.code().value();
  }
  return 0;
}

TEST_F(InputFileTest, ReadsAtAnyPosition) {
  const InputFile file(fileWith("0123456789"));
  EXPECT_EQ(file.size(), 10);
  EXPECT_EQ(textAt(file, 3, 4), "3456");
  EXPECT_EQ(textAt(file, 0, 2), "01");
}

TEST_F(InputFileTest, GivesFewerBytesOnlyAtTheEnd) {
  const InputFile file(fileWith("0123456789"));
  EXPECT_EQ(textAt(file, 8, 5), "89");
  EXPECT_EQ(textAt(file, 10, 5), "");
  EXPECT_EQ(textAt(file, 1'000'000, 5), "");
  EXPECT_EQ(textAt(file, 4, 0), "");
}

TEST_F(InputFileTest, KeepsTheSizeItHadWhenItWasOpened) {
  const InputFile file(fileWith("0123456789"));
  std::filesystem::resize_file(inFolder("file"), 4);
  EXPECT_EQ(file.size(), 10);
  EXPECT_EQ(textAt(file, 2, 8), "23");
}

TEST_F(InputFileTest, StaysOpenWhenAnotherFileTakesItsName) {
  const InputFile file(fileWith("first"));
  std::filesystem::rename(inFolder("file"), inFolder("moved"));
  (void)fileWith("other");
  EXPECT_EQ(textAt(file, 0, 5), "first");
}

TEST_F(InputFileTest, FollowsALink) {
  std::filesystem::create_symlink(fileWith("text"), inFolder("link"));
  EXPECT_EQ(textAt(InputFile(inFolder("link")), 0, 4), "text");
}

TEST_F(InputFileTest, OpensAnEmptyFile) {
  const InputFile file(fileWith(""));
  EXPECT_TRUE(file.isRegular());
  EXPECT_EQ(file.size(), 0);
}

TEST_F(InputFileTest, ReportsAMissingFile) {
  EXPECT_EQ(errorNumber([&] { InputFile{inFolder("missing")}; }), ENOENT);
}

TEST_F(InputFileTest, ReportsADanglingLink) {
  std::filesystem::create_symlink("nowhere", inFolder("link"));
  EXPECT_EQ(errorNumber([&] { InputFile{inFolder("link")}; }), ENOENT);
}

TEST_F(InputFileTest, ReportsAFileWithoutPermission) {
  const std::filesystem::path path = fileWith("secret");
  std::filesystem::permissions(folder_.path(), std::filesystem::perms{0755});
  std::filesystem::permissions(path, std::filesystem::perms::none);
  EXPECT_EQ(asOrdinaryUser([&] { return errorNumber([&] { InputFile{path}; }); }), EACCES);
}

TEST_F(InputFileTest, KnowsThatAFolderIsNoFile) {
  const InputFile file(folder_.path());
  EXPECT_FALSE(file.isRegular());
  EXPECT_EQ(file.size(), 0);
}

TEST_F(InputFileTest, KnowsThatADeviceIsNoFile) {
  EXPECT_FALSE(InputFile("/dev/zero").isRegular());
  EXPECT_FALSE(InputFile("/dev/null").isRegular());
}

TEST_F(InputFileTest, NeitherWaitsForAFIFONorWakesItsWriter) {
  ASSERT_EQ(::mkfifo(inFolder("fifo").c_str(), 0600), 0);
  const InputFile file(inFolder("fifo"));
  EXPECT_FALSE(file.isRegular());
  EXPECT_EQ(::open(inFolder("fifo").c_str(), O_WRONLY | O_NONBLOCK), -1);
  EXPECT_EQ(errno, ENXIO) << "the FIFO was opened for reading";
}

TEST_F(InputFileTest, KnowsThatASocketIsNoFile) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, inFolder("socket").c_str(), sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_FALSE(InputFile(inFolder("socket")).isRegular());
  ::close(socket);
}

TEST_F(InputFileTest, ReportsAnIOError) {
  const InputFile memory("/proc/self/mem");  // its first page is never mapped: reading it is an I/O error
  std::array<std::byte, 8> bytes{};
  EXPECT_EQ(errorNumber([&] { (void)memory.readAt(0, bytes); }), EIO);
}

TEST_F(InputFileTest, ClosesItsDescriptor) {
  int descriptor = -1;
  {
    const InputFile file(fileWith("text"));
    descriptor = file.descriptor();
    EXPECT_GE(::fcntl(descriptor, F_GETFD), 0);
    EXPECT_TRUE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
  }
  EXPECT_EQ(::fcntl(descriptor, F_GETFD), -1);
}

TEST_F(InputFileTest, MovesWithItsDescriptor) {
  InputFile first(fileWith("text"));
  InputFile second(std::move(first));
  EXPECT_EQ(textAt(second, 0, 4), "text");
  InputFile third(inFolder("file"));
  third = std::move(second);
  EXPECT_EQ(textAt(third, 1, 2), "ex");
  EXPECT_EQ(third.size(), 4);
}

}  // namespace
}  // namespace tessaly::tests
