#include "XmlOutput.h"

#include "ArgumentParser.h"
#include "UsageError.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/XMLBuilder/Partition2XMLText.h"

#include <ostream>
#include <streambuf>

namespace Vellum::App {
namespace {

/// A stream buffer that appends what is written to a string, without a copy at the end.
class StringAppender : public std::streambuf {
public:
    explicit StringAppender(std::string& out) noexcept
        : m_out(out) {}

protected:
    int_type overflow(int_type c) override {
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            m_out.push_back(traits_type::to_char_type(c));
        }
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char_type* text, std::streamsize count) override {
        m_out.append(text, static_cast<std::size_t>(count));
        return count;
    }

private:
    std::string& m_out;
};

} // namespace

void XmlOutput::declareOptions(ArgumentParser& parser) {
    parser.addFlag("typed-references");
    parser.addFlag("structural-only");
    parser.addValueOption("encoding");
    parser.addFlag("compact");
}

std::string XmlOutput::optionHelp() {
    return "  --typed-references\n"
           "                     nest the target of each strong reference inside the\n"
           "                     property and name weak targets by their set; without it\n"
           "                     every reference is a '_REF' element and strong targets\n"
           "                     follow at the top level\n"
           "  --structural-only  follow only references to structural metadata sets\n"
           "  --encoding E       utf-8 (the default) or utf-16 (little-endian, with a byte\n"
           "                     order mark)\n"
           "  --compact          no indentation or line breaks between elements\n";
}

XmlOutput::XmlOutput(const ArgumentParser& arguments)
    : m_typedReferences(arguments.flag("typed-references"))
    , m_structuralOnly(arguments.flag("structural-only"))
    , m_compact(arguments.flag("compact")) {
    const std::string encoding = arguments.value("encoding").value_or("utf-8");
    if (encoding == "utf-8") {
        m_encoding = XMLUtils::EncodingType::UTF8;
    } else if (encoding == "utf-16") {
        m_encoding = XMLUtils::EncodingType::UTF16;
    } else {
        throw UsageError("option '--encoding' needs utf-8 or utf-16, not '" + encoding + "'",
                         arguments.synopsis());
    }
}

std::string XmlOutput::render(const Metadata::PartitionMetadata& partition,
                              const std::string& source) const {
    std::string bytes;
    StringAppender appender(bytes);
    std::ostream out(&appender);
    if (!XMLBuilder::partition2XML(&partition, m_typedReferences, m_structuralOnly, m_encoding, out,
                                   XMLUtils::SerializeOptions{!m_compact, true})) {
        VELLUM_THROW(InvalidFormat, "'" + source + "': the header metadata has no Preface");
    }
    return bytes;
}

} // namespace Vellum::App
