#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/NotFoundInPrimer.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

namespace {

using namespace Vellum::Exceptions;

struct KindCase {
    const char* name;
    std::function<void()> raise;
    ExceptionKind kind;
};
VELLUM_PRINT_CASE_NAME(KindCase)

class ExceptionKinds : public ::testing::TestWithParam<KindCase> {};

TEST_P(ExceptionKinds, ReportKindNameAndLocation) {
    const auto& c = GetParam();
    EXPECT_TRUE(VellumTest::whenThrown<BaseException>(c.raise, [&](const BaseException& e) {
        EXPECT_EQ(e.kind(), c.kind);
        EXPECT_STREQ(e.kindName(), c.name);
        EXPECT_EQ(e.message(), u"boom \u00E9");
        EXPECT_EQ(e.what(), e.message());
        EXPECT_EQ(e.utf8Message(), "boom \xC3\xA9");
        EXPECT_EQ(e.sourceName(), "tests/Core/BaseExceptionTest.cpp");
        EXPECT_GT(e.line(), 0U);
    }));
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

TEST(BaseException, CheckMessageIsConditionThenExplanation) {
    const int count = 3;
    EXPECT_THROW_MSG(VELLUM_CHECK(count == 4, "a rational has two parts"), InvalidFormat,
                     "count == 4: a rational has two parts");
    EXPECT_NO_THROW(VELLUM_CHECK(count == 3, "unused"));
}

// The throw checks of the tests themselves: each way of missing says what happened.
TEST(ExpectThrow, FailuresSayWhatHappenedInstead) {
    using VellumTest::throwsWithMessage;
    const auto nothing = [] {
    };
    const auto wrongKind = [] {
        throw InvalidLength("short", "f", 1);
    };
    const auto standard = [] {
        throw std::runtime_error("plain");
    };
    const auto right = [] {
        throw InvalidFormat("bad key 06.0E", "f", 1);
    };
    const struct {
        ::testing::AssertionResult result;
        const char* says; // empty when the check passes
    } cases[] = {
        {throwsWithMessage<InvalidFormat>(nothing, "InvalidFormat", "x", false),
         "threw nothing; expected InvalidFormat"},
        {throwsWithMessage<InvalidFormat>(wrongKind, "InvalidFormat", "short", false),
         "threw InvalidLength (\"short\") instead of InvalidFormat"},
        {throwsWithMessage<InvalidFormat>(standard, "InvalidFormat", "plain", false),
         "threw std::exception (\"plain\") instead of InvalidFormat"},
        {throwsWithMessage<InvalidFormat>(right, "InvalidFormat", "bad key", false),
         "threw InvalidFormat with the message\n  \"bad key 06.0E\"\nnot equal to\n  \"bad key\""},
        {throwsWithMessage<InvalidFormat>(right, "InvalidFormat", "06.0F", true),
         "threw InvalidFormat with the message\n  \"bad key 06.0E\"\nnot holding\n  \"06.0F\""},
        {VellumTest::throwsNamed(wrongKind, "InvalidFormat", "short"),
         "threw InvalidLength (\"short\") instead of InvalidFormat"},
        {throwsWithMessage<InvalidFormat>(right, "InvalidFormat", "06.0E", true), ""},
        {throwsWithMessage<BaseException>(right, "BaseException", "bad key 06.0E", false), ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(static_cast<bool>(c.result), *c.says == '\0') << c.says;
        EXPECT_EQ(c.result.message(), std::string(c.says));
    }
}

} // namespace
