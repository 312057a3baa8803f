#ifndef VELLUM_XMLBUILDER_FROMXMLVALUEPARSER_H
#define VELLUM_XMLBUILDER_FROMXMLVALUEPARSER_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/Types/SimpleDataType.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/XMLNode.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace Vellum::XMLBuilder {

/// Turns the XML form of one value (the text of an element or attribute, or the child
/// elements of a compound value) back into a value object, by the type number the dictionary
/// gives. The counterpart of ToXMLBaseTypeVisitor.
///
/// Text forms: numbers in decimal (leading blanks skipped, anything after the number
/// ignored, no number read as 0, and the number cut to the width of its type: UInt8 300 is
/// 44); Boolean "0" is false and any other text true; identifiers in dotted hexadecimal;
/// DataStream and Unknown as two hexadecimal digits a byte; strings as they stand. Compound
/// values are read from children in "urn:SMPTE:Types:MXF" (prefix "types") or, for the
/// JPEG 2000 values, "urn:SMPTE:S422MTypes:MXF" (prefix "s422mTypes"); the prefix must be
/// bound where the value is, else NodeSelector's namespace ParseError is thrown.
class VELLUM_XMLBUILDER_EXPORT FromXMLValueParser {
public:
    FromXMLValueParser() = delete;

    /// Source name recorded in the exceptions of the value parser.
    static constexpr const char* sourceName = "Vellum/XMLBuilder/FromXMLElementVisitor";

    /// A new value of type `type` read from `element`, owned by the caller. Empty when the
    /// element has neither text nor children (no value, whatever the type), when `type` has
    /// no text form (Float, Indirect, PackageID, Opaque, Stream, VariableSize, the collection
    /// kinds and the references), and for a Rational or ProductVersion that lacks a part.
    /// Throws InvalidFormat for malformed hexadecimal, for a Timestamp or JPEG 2000 value
    /// that lacks a part (the message names the part), and what the value classes throw for
    /// malformed identifier text or out-of-range fields.
    static Templates::auto_ptr<Types::SimpleDataType> parse(const XMLNode& element,
                                                            Types::Identifiers::Identifier type);

    /// The same for a value written as the attribute `attribute`: a compound value has no
    /// parts there.
    static Templates::auto_ptr<Types::SimpleDataType> parse(const XMLAttribute& attribute,
                                                            Types::Identifiers::Identifier type);

    /// The same for the text `text` of an element or attribute named `localName` (a compound
    /// value has no parts here); an empty text is a value, as for an attribute.
    static Templates::auto_ptr<Types::SimpleDataType>
    parseText(std::u16string_view text, Types::Identifiers::Identifier type,
              std::u16string_view localName = std::u16string_view());

    /// The bytes of `text`, two hexadecimal digits (either case) a byte, most significant
    /// first; empty text gives no bytes. Throws InvalidFormat "Value has invalid Length" for
    /// an odd number of characters and "Value contains non Hexadecimal characters" for any
    /// other character (blanks and separators included).
    static std::vector<std::uint8_t> readHex(std::u16string_view text);

    /// The first decimal number in `text` as stream extraction reads it (leading blanks and
    /// one sign accepted, the first non-digit ends it, no digits give 0), kept modulo 2^64 so
    /// that narrowing it to a type's width cuts it as that type's arithmetic does.
    static std::uint64_t readDecimal(std::u16string_view text) noexcept;

    /// The text of the first child of `parent` named `prefix`:`localName`, empty when there is
    /// none. Throws ParseError when `prefix` is unbound there.
    static WString readChildText(const XMLNode& parent, std::u16string_view prefix,
                                 std::u16string_view localName);
};

} // namespace Vellum::XMLBuilder

#endif
