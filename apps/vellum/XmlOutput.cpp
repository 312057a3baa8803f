#include "XmlOutput.h"

#include "ArgumentParser.h"
#include "UsageError.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/XMLBuilder/Partition2XML.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Utils.h"

#include <exception>

namespace Vellum::App {

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

std::string XmlOutput::render(Metadata::PartitionMetadata& partition,
                              const std::string& source) const {
    std::string bytes;
    try {
        const XMLBuilder::DocumentNodePtr document =
            XMLBuilder::partition2XML(&partition, m_typedReferences, m_structuralOnly);
        if (!document) {
            VELLUM_THROW(InvalidFormat, "'" + source + "': the header metadata has no Preface");
        }
        XMLUtils::domToBytes(document.get(), bytes, m_encoding,
                             XMLUtils::SerializeOptions{!m_compact, true});
    } catch (const Exceptions::BaseException&) {
        throw;
    } catch (const std::exception&) {
        throw;
    } catch (...) {
        // Xerces-C reports its faults with its own exception classes; the program reports
        // only the toolkit's.
        XMLUtils::rethrowTranslated(__FILE__, __LINE__);
    }
    return bytes;
}

} // namespace Vellum::App
