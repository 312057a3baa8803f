#ifndef VELLUM_TYPES_REFERENCE_H
#define VELLUM_TYPES_REFERENCE_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/SimpleDataType.h"
#include "Vellum/Types/StringRepresentation.h"
#include "Vellum/Types/UUID.h"

#include <cstddef>
#include <cstdint>

namespace Vellum::Types {

/// A reference to a metadata set by the set's instance UUID (16 bytes). The kinds are
/// `StrongReference` (the referring set owns the target) and `WeakReference`.
class VELLUM_CORE_EXPORT Reference : public SimpleDataType {
public:
    /// Refers to the set whose instance UUID is `uuid`.
    explicit Reference(const UUID& uuid) noexcept
        : m_uuid(uuid) {}
    /// Refers to the set whose instance UUID has this text form. Throws InvalidFormat naming
    /// the text if it is not a valid UUID text.
    explicit Reference(const WString& uuidText,
                       StringRepresentationEncodingType encoding = DottedHex);
    ~Reference() override;

    /// The target's instance UUID.
    const UUID& uuid() const noexcept { return m_uuid; }
    /// Bytes of the stored form (16).
    static constexpr std::size_t size() noexcept { return UUID::byteCount; }
    /// The UUID's text form (encoding 0).
    WString toString() const;

    /// Writes the UUID's 16 bytes.
    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override;

protected:
    Reference(const Reference&) = default;
    Reference(Reference&&) = default;
    Reference& operator=(const Reference&) = default;
    Reference& operator=(Reference&&) = default;

private:
    UUID m_uuid;
};

} // namespace Vellum::Types

#endif
