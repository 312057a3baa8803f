#ifndef VELLUM_TESTS_SUPPORT_EXPECTTHROW_H
#define VELLUM_TESTS_SUPPORT_EXPECTTHROW_H

#include "Vellum/Exceptions/BaseException.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <type_traits>
#include <utility>

/// @file
/// Checks that a statement throws a Vellum exception of a given kind with a given message:
///   EXPECT_THROW_MSG(source.readUInt32(), InvalidLength, "read needs 4 bytes ...");
///   EXPECT_THROW_MSG_HAS(Key("zz", DottedHex), InvalidFormat, "is not a valid key");
/// A failure says what happened instead: nothing thrown, another kind, or another message.
/// `VellumTest::whenThrown<Kind>` hands the exception to a check of its own.

namespace VellumTest {

/// What `inspect` says of `thrown`: its AssertionResult, or success when it returns nothing.
template <typename Kind, typename Inspect>
::testing::AssertionResult inspected(const Kind& thrown, Inspect& inspect) {
    if constexpr (std::is_void_v<std::invoke_result_t<Inspect&, const Kind&>>) {
        inspect(thrown);
        return ::testing::AssertionSuccess();
    } else {
        return inspect(thrown);
    }
}

/// Runs `statement`; when it throws `Kind`, returns what `inspect` (called with the exception)
/// returns: an AssertionResult, or success when `inspect` returns nothing. Anything else
/// (nothing thrown, another kind) is a failure that says what happened instead.
template <typename Kind, typename Statement, typename Inspect>
::testing::AssertionResult whenThrown(Statement&& statement, Inspect&& inspect,
                                      const char* kindName = "the expected kind") {
    static_assert(std::is_base_of_v<Vellum::Exceptions::BaseException, Kind>);
    try {
        statement();
    } catch (const Vellum::Exceptions::BaseException& e) {
        if constexpr (std::is_same_v<Kind, Vellum::Exceptions::BaseException>) {
            return inspected(e, inspect);
        } else {
            if (const auto* wanted = dynamic_cast<const Kind*>(&e)) {
                return inspected(*wanted, inspect);
            }
            return ::testing::AssertionFailure()
                   << "threw " << e.kindName() << " (\"" << e.utf8Message() << "\") instead of "
                   << kindName;
        }
    } catch (const std::exception& e) {
        return ::testing::AssertionFailure()
               << "threw std::exception (\"" << e.what() << "\") instead of " << kindName;
    } catch (...) {
        return ::testing::AssertionFailure() << "threw something unknown instead of " << kindName;
    }
    return ::testing::AssertionFailure() << "threw nothing; expected " << kindName;
}

/// Whether the UTF-8 message of `thrown` equals `expected` (or, with `contains`, holds it).
inline ::testing::AssertionResult messageMatches(const Vellum::Exceptions::BaseException& thrown,
                                                 const std::string& expected, bool contains) {
    const std::string message = thrown.utf8Message();
    if (contains ? message.find(expected) != std::string::npos : message == expected) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "threw " << thrown.kindName() << " with the message\n  \"" << message << "\"\nnot "
           << (contains ? "holding" : "equal to") << "\n  \"" << expected << "\"";
}

/// Whether `statement` throws `Kind` whose message equals `expected` (or, with `contains`,
/// holds it).
template <typename Kind, typename Statement>
::testing::AssertionResult throwsWithMessage(Statement&& statement, const char* kindName,
                                             const std::string& expected, bool contains) {
    return whenThrown<Kind>(
        std::forward<Statement>(statement),
        [&](const Kind& e) { return messageMatches(e, expected, contains); }, kindName);
}

/// Whether `statement` throws the Vellum exception whose kind name is `kindName` (as
/// "InvalidFormat"), with a message that holds `fragment`; for tables that mix kinds.
template <typename Statement>
::testing::AssertionResult throwsNamed(Statement&& statement, const std::string& kindName,
                                       const std::string& fragment) {
    using Vellum::Exceptions::BaseException;
    return whenThrown<BaseException>(
        std::forward<Statement>(statement),
        [&](const BaseException& e) {
            if (e.kindName() != kindName) {
                return ::testing::AssertionFailure()
                       << "threw " << e.kindName() << " (\"" << e.utf8Message() << "\") instead of "
                       << kindName;
            }
            return messageMatches(e, fragment, true);
        },
        kindName.c_str());
}

} // namespace VellumTest

/// Expects `statement` to throw Vellum::Exceptions::`Kind` whose message is `message`.
#define EXPECT_THROW_MSG(statement, Kind, message)                                                 \
    EXPECT_TRUE(::VellumTest::throwsWithMessage<::Vellum::Exceptions::Kind>(                       \
        [&] { statement; }, #Kind, message, false))                                                \
        << "from: " #statement

/// Expects `statement` to throw Vellum::Exceptions::`Kind` whose message holds `fragment`.
#define EXPECT_THROW_MSG_HAS(statement, Kind, fragment)                                            \
    EXPECT_TRUE(::VellumTest::throwsWithMessage<::Vellum::Exceptions::Kind>(                       \
        [&] { statement; }, #Kind, fragment, true))                                                \
        << "from: " #statement

#endif
