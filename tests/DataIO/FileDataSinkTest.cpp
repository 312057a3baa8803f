#include "Vellum/DataIO/File/FileDataSink.h"

#include "Support/TempDir.h"

#include "Vellum/Exceptions/IOError.h"

#include <gtest/gtest.h>

#include <filesystem>

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

TEST(FileDataSink, UnwritableDirectoryIsAnIOError) {
    EXPECT_THROW(FileDataSink("/nonexistent/dir/out.klv"), Vellum::Exceptions::IOError);
}

} // namespace
