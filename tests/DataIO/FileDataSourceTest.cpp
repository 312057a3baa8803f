#include "Vellum/DataIO/File/FileDataSource.h"

#include "Support/ExpectThrow.h"
#include "Support/TempDir.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidLength.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Vellum::DataIO::File::FileDataSource;

std::vector<std::uint8_t> pattern(std::size_t n) {
    std::vector<std::uint8_t> v(n);
    for (std::size_t i = 0; i < n; ++i) {
        v[i] = static_cast<std::uint8_t>(i * 7 + (i >> 8));
    }
    return v;
}

TEST(FileDataSource, ReadsAcrossBufferBoundaries) {
    VellumTest::TempDir dir;
    const auto data = pattern(1000);
    FileDataSource source(dir.write("a.bin", data), 64);
    EXPECT_EQ(source.size(), 1000U);
    std::vector<std::uint8_t> got(1000);
    // Reads of awkward sizes, so that many straddle two buffer fills.
    std::size_t at = 0;
    for (std::size_t n : {1, 63, 2, 200, 5, 729}) {
        source.read(got.data() + at, n);
        at += n;
    }
    EXPECT_EQ(got, data);
    EXPECT_EQ(source.remaining(), 0U);
    // Reads of a buffer or more bypass it; the position stays right either way.
    source.seek(300);
    std::vector<std::uint8_t> part(100);
    source.read(part.data(), part.size());
    EXPECT_TRUE(std::equal(part.begin(), part.end(), data.begin() + 300));
    EXPECT_EQ(source.readUInt8(), data[400]);
    EXPECT_EQ(source.position(), 401U);
}

TEST(FileDataSource, SeeksBackwardsAndForwards) {
    VellumTest::TempDir dir;
    const auto data = pattern(5000);
    FileDataSource source(dir.write("a.bin", data), 128);
    source.seek(4000);
    EXPECT_EQ(source.readUInt8(), data[4000]);
    source.seek(10);
    EXPECT_EQ(source.readUInt8(), data[10]);
    source.skip(100);
    EXPECT_EQ(source.position(), 111U);
    EXPECT_EQ(source.readUInt8(), data[111]);
    source.seek(5000);
    EXPECT_EQ(source.remaining(), 0U);
    EXPECT_THROW(source.seek(5001), Vellum::Exceptions::InvalidLength);
    EXPECT_THROW(source.readUInt8(), Vellum::Exceptions::InvalidLength);
}

TEST(FileDataSource, MissingFileIsAnIOErrorNamingThePath) {
    EXPECT_THROW_MSG_HAS(FileDataSource("/nonexistent/dir/file.mxf"), IOError,
                         "/nonexistent/dir/file.mxf");
}

TEST(FileDataSource, EmptyFileHasNothingToRead) {
    VellumTest::TempDir dir;
    FileDataSource source(dir.write("empty", {}));
    EXPECT_EQ(source.remaining(), 0U);
    EXPECT_THROW(source.readUInt8(), Vellum::Exceptions::InvalidLength);
}

} // namespace
