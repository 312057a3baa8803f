#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/NotFoundInPrimer.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace Vellum::Exceptions;

struct KindCase {
    const char* name;
    std::function<void()> raise;
    ExceptionKind kind;
};

class ExceptionKinds : public ::testing::TestWithParam<KindCase> {};

TEST_P(ExceptionKinds, ReportKindNameAndLocation) {
    const auto& c = GetParam();
    try {
        c.raise();
        FAIL() << "nothing thrown";
    } catch (const BaseException& e) {
        EXPECT_EQ(e.kind(), c.kind);
        EXPECT_STREQ(e.kindName(), c.name);
        EXPECT_EQ(e.message(), u"boom \u00E9");
        EXPECT_EQ(e.what(), e.message());
        EXPECT_EQ(e.utf8Message(), "boom \xC3\xA9");
        EXPECT_EQ(e.sourceName(), "tests/Core/BaseExceptionTest.cpp");
        EXPECT_GT(e.line(), 0U);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, ExceptionKinds,
    ::testing::Values(
        KindCase{"InvalidFormat", [] { VELLUM_THROW(InvalidFormat, "boom \xC3\xA9"); },
                 ExceptionKind::InvalidFormat},
        KindCase{"InvalidLength", [] { VELLUM_THROW(InvalidLength, u"boom \u00E9"); },
                 ExceptionKind::InvalidLength},
        KindCase{"NotFoundInPrimer", [] { VELLUM_THROW(NotFoundInPrimer, "boom \xC3\xA9"); },
                 ExceptionKind::NotFoundInPrimer},
        KindCase{"IOError", [] { VELLUM_THROW(IOError, "boom \xC3\xA9"); }, ExceptionKind::IOError},
        KindCase{"ParseError", [] { VELLUM_THROW(ParseError, "boom \xC3\xA9"); },
                 ExceptionKind::ParseError}),
    [](const auto& p) { return p.param.name; });

TEST(BaseException, ParseErrorHasKind33) {
    EXPECT_EQ(static_cast<unsigned>(ParseError("x", "f", 1).kind()), 33U);
}

TEST(BaseException, CheckMessageIsConditionThenExplanation) {
    const int count = 3;
    try {
        VELLUM_CHECK(count == 4, "a rational has two parts");
        FAIL() << "nothing thrown";
    } catch (const InvalidFormat& e) {
        EXPECT_EQ(e.utf8Message(), "count == 4: a rational has two parts");
    }
    EXPECT_NO_THROW(VELLUM_CHECK(count == 3, "unused"));
}

TEST(BaseException, CopiesKeepEverything) {
    const InvalidLength original("short", "here.cpp", 12);
    const InvalidLength copy = original; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.message(), u"short");
    EXPECT_EQ(copy.sourceName(), "here.cpp");
    EXPECT_EQ(copy.line(), 12U);
}

} // namespace
