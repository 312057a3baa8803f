#include "Vellum/DataIO/File/FileDataSink.h"

#include "Support/TempDir.h"

#include "Vellum/Exceptions/IOError.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Vellum::DataIO::File::FileDataSink;

TEST(FileDataSink, CommitReplacesTheTarget) {
    VellumTest::TempDir dir;
    const auto target = dir.write("out.klv", {9, 9, 9});
    {
        FileDataSink sink(target);
        sink.writeUInt16(0x0102);
        EXPECT_EQ(VellumTest::readFile(target), (std::vector<std::uint8_t>{9, 9, 9}))
            << "the target is untouched until commit";
        sink.commit();
        EXPECT_THROW(sink.commit(), Vellum::Exceptions::IOError);
    }
    EXPECT_EQ(VellumTest::readFile(target), (std::vector<std::uint8_t>{1, 2}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

TEST(FileDataSink, AbandonedSinkLeavesTheTargetAndNoTemporaryFile) {
    VellumTest::TempDir dir;
    const auto target = dir.write("out.klv", {7});
    {
        FileDataSink sink(target);
        sink.writeUInt32(0xFFFFFFFFU);
    }
    EXPECT_EQ(VellumTest::readFile(target), (std::vector<std::uint8_t>{7}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

// What the path names survives as what it was: a link stays a link to the new file, the
// replacement keeps the replaced file's permissions, and a pipe is written, not replaced.
TEST(FileDataSink, ReplacesOnlyTheFileThePathNames) {
    namespace fs = std::filesystem;
    VellumTest::TempDir dir;
    const auto target = dir.write("target.klv", {1});
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const auto link = dir.file("link.klv");
    fs::create_symlink("target.klv", link);
    {
        FileDataSink sink(link);
        sink.writeUInt8(2);
        sink.commit();
    }
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(VellumTest::readFile(target), (std::vector<std::uint8_t>{2}));
    EXPECT_EQ(fs::status(target).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);

    const auto pipe = dir.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    {
        FileDataSink sink(pipe);
        sink.writeUInt16(0x0304);
        sink.commit();
    }
    std::uint8_t got[4] = {};
    EXPECT_EQ(read(reader, got, sizeof got), 2);
    close(reader);
    EXPECT_EQ(got[0], 3);
    EXPECT_EQ(got[1], 4);
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), {}), 3);
}

TEST(FileDataSink, UnwritableDirectoryIsAnIOError) {
    EXPECT_THROW(FileDataSink("/nonexistent/dir/out.klv"), Vellum::Exceptions::IOError);
}

} // namespace
