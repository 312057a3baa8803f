#ifndef VELLUM_KLV_KEYCLASSIFICATION_H
#define VELLUM_KLV_KEYCLASSIFICATION_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Key.h"

/// @file
/// What a key introduces, judged from its bytes alone. Byte 8 (the registry version) is
/// ignored throughout, since writers do not agree on it.

namespace Vellum::KLV {

/// Whether a key names a structural metadata set of SMPTE ST 377-1 (the class 0D.01.01.01.01.01
/// sets: preface, packages, tracks, components, descriptors ...), in any local-set coding.
VELLUM_CORE_EXPORT bool isStructuralMetadataSet(const Key& key) noexcept;

/// Whether a key is that of a local set in one of the codings MXF uses: 2-byte local tags with
/// 2-byte lengths (byte 6 is 0x53) or with BER lengths (0x13).
VELLUM_CORE_EXPORT bool isLocalSet(const Key& key) noexcept;

/// Whether a local-set key says its items have BER lengths (byte 6 is 0x13) rather than 2-byte
/// lengths.
VELLUM_CORE_EXPORT bool hasBERItemLengths(const Key& key) noexcept;

/// The key with the BER-item-length coding (byte 6 is 0x13) taken as the 2-byte one (0x53),
/// which names the same set and is the form the dictionary names sets by. Any other key is
/// returned as it is.
VELLUM_CORE_EXPORT Key withTwoByteItemLengths(const Key& key) noexcept;

/// The key that names a set whatever its writer chose: without the registry version and with
/// 2-byte item lengths, so that the keys of one set in either coding and any version are equal.
VELLUM_CORE_EXPORT Key setIdentityKey(const Key& key) noexcept;

/// Whether a key is KLV fill (06.0E.2B.34.01.01.01.xx.03.01.02.10.01.00.00.00).
VELLUM_CORE_EXPORT bool isFill(const Key& key) noexcept;

/// Whether a key is a header, body or footer partition pack (any status).
VELLUM_CORE_EXPORT bool isPartitionPack(const Key& key) noexcept;

/// Whether a key is the primer pack.
VELLUM_CORE_EXPORT bool isPrimerPack(const Key& key) noexcept;

/// Whether a key is the random index pack.
VELLUM_CORE_EXPORT bool isRandomIndexPack(const Key& key) noexcept;

} // namespace Vellum::KLV

#endif
