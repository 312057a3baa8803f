#include "Vellum/Types/Visitors/Visitor.h"

#include "TypesTestSupport.h"

#include "Vellum/Types/Array.h"
#include "Vellum/Types/Batch.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/DataValue.h"
#include "Vellum/Types/Factories/ValueFactory.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/Int16.h"
#include "Vellum/Types/Int32.h"
#include "Vellum/Types/Int64.h"
#include "Vellum/Types/Int8.h"
#include "Vellum/Types/J2KCodingStyleDefault.h"
#include "Vellum/Types/J2KPictureComponent.h"
#include "Vellum/Types/J2KQuantisationDefault.h"
#include "Vellum/Types/Length.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/Orientation.h"
#include "Vellum/Types/Position.h"
#include "Vellum/Types/ProductVersion.h"
#include "Vellum/Types/RGBALayout.h"
#include "Vellum/Types/Rational.h"
#include "Vellum/Types/SignalStandard.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/Timestamp.h"
#include "Vellum/Types/UInt16.h"
#include "Vellum/Types/UInt32.h"
#include "Vellum/Types/UInt64.h"
#include "Vellum/Types/UInt8.h"
#include "Vellum/Types/UMID32.h"
#include "Vellum/Types/UMID64.h"
#include "Vellum/Types/UTF16.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/Types/Unknown.h"
#include "Vellum/Types/VersionType.h"
#include "Vellum/Types/Visitors/NonConstNullVisitor.h"
#include "Vellum/Types/Visitors/NonConstVisitor.h"
#include "Vellum/Types/Visitors/NullVisitor.h"
#include "Vellum/Types/WeakReference.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <typeindex>
#include <typeinfo>
#include <utility>
#include <vector>

namespace {

using namespace VellumTypesTest;
namespace T = Vellum::Types;

// Records the static type and address of what each slot was called with.
struct Record {
    const std::type_info* type = nullptr;
    const void* address = nullptr;
    int calls = 0;

    template <class Value>
    void take(const Value& value) {
        type = &typeid(Value);
        address = &value;
        ++calls;
    }
};

// Every concrete value type: each visitor has one slot for each.
// clang-format off
#define EVERY_VALUE_TYPE(X) \
    X(J2KQuantisationDefault) X(J2KCodingStyleDefault) X(J2KPictureComponent) X(DataValue) \
    X(StrongReference) X(WeakReference) X(Unknown) X(VersionType) X(UUID) X(UTF16String) \
    X(UTF16) X(UniversalLabel) X(UMID64) X(UMID32) X(UInt8) X(UInt64) X(UInt32) X(UInt16) \
    X(Timestamp) X(SignalStandard) X(RGBALayout) X(Rational) X(ProductVersion) X(Position) \
    X(Orientation) X(LocalTag) X(Length) X(ISO7String) X(Int8) X(Int64) X(Int32) X(Int16) \
    X(DataStream) X(Boolean) X(Batch) X(Array)
// clang-format on

#define RECORD_CONST(Type)                                                                         \
    void visit(const T::Type& v) override {                                                        \
        record.take(v);                                                                            \
    }
#define RECORD(Type)                                                                               \
    void visit(T::Type& v) override {                                                              \
        record.take(v);                                                                            \
    }

class RecordingVisitor : public T::Visitors::Visitor {
public:
    Record record;
    EVERY_VALUE_TYPE(RECORD_CONST)
};

class NonConstRecordingVisitor : public T::Visitors::NonConstVisitor {
public:
    Record record;
    EVERY_VALUE_TYPE(RECORD)
};

#undef RECORD
#undef RECORD_CONST
#undef EVERY_VALUE_TYPE

// One value of every concrete type, collections included.
std::vector<std::unique_ptr<T::BaseType>> everyValue() {
    std::vector<std::unique_ptr<T::BaseType>> values;
    for (const Sample& s : samples()) {
        values.push_back(
            T::Factories::ValueFactory::create(s.type, {s.bytes.data(), s.bytes.size()}));
    }
    values.push_back(std::make_unique<T::LocalTag>(0x3C0A));
    values.push_back(std::make_unique<T::DataValue>(std::vector<std::uint8_t>{1, 2}));
    values.push_back(std::make_unique<T::Batch>(2, Id::UInt16));
    values.push_back(std::make_unique<T::Array>(16, Id::UUID));
    return values;
}

TEST(Visitor, EveryTypeReachesItsOwnSlot) {
    const auto values = everyValue();
    std::set<std::type_index> distinct;
    for (const auto& value : values) {
        const T::BaseType& object = *value;
        const std::type_info& dynamicType = typeid(object);
        RecordingVisitor visitor;
        std::as_const(*value).accept(visitor);
        NonConstRecordingVisitor nonConst;
        value->accept(nonConst);
        for (const Record& r : {visitor.record, nonConst.record}) {
            ASSERT_EQ(r.calls, 1);
            EXPECT_EQ(*r.type, dynamicType) << dynamicType.name();
            EXPECT_EQ(r.address, value.get());
        }
        distinct.insert(dynamicType);
    }
    EXPECT_EQ(distinct.size(), 36U) << "every visitor slot is exercised";
}

TEST(Visitor, NullVisitorsIgnoreWhatTheyDoNotOverride) {
    struct OnlyUInt16 : T::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const T::UInt16& v) override { seen.push_back(v.value()); }
        std::vector<std::uint16_t> seen;
    } visitor;
    struct BumpUInt16 : T::Visitors::NonConstNullVisitor {
        using NonConstNullVisitor::visit;
        void visit(T::UInt16& v) override { v.setValue(static_cast<std::uint16_t>(v.value() + 1)); }
    } bump;
    for (const auto& value : everyValue()) {
        value->accept(bump);
        std::as_const(*value).accept(visitor);
    }
    EXPECT_EQ(visitor.seen, std::vector<std::uint16_t>{0xBEF0}); // the one UInt16 sample, bumped
}

} // namespace
