#include "XmlCheck.h"

#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"
#include "Vellum/XMLUtils/Utils.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include <cctype>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace VellumTest {
namespace {

using namespace Vellum;

std::size_t countSets(const xercesc::DOMElement* root) {
    std::size_t count = 0;
    std::vector<const xercesc::DOMElement*> stack{root};
    while (!stack.empty()) {
        const xercesc::DOMElement* element = stack.back();
        stack.pop_back();
        count += element->getAttributeNode(u"rp210:InstanceUID") != nullptr ? 1 : 0;
        for (auto* child = element->getFirstElementChild(); child != nullptr;
             child = child->getNextElementSibling()) {
            stack.push_back(child);
        }
    }
    return count;
}

bool isHex(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

// Whether `text` holds 16 dotted hex pairs at `at` that are not part of something longer.
bool identifierAt(const std::string& text, std::size_t at) {
    constexpr std::size_t length = 47;
    if (length > text.size() - at) {
        return false;
    }
    for (std::size_t i = 0; i < length; ++i) {
        const char c = text[at + i];
        if (i % 3 == 2 ? c != '.' : !isHex(c)) {
            return false;
        }
    }
    const bool before = at > 0 && (isHex(text[at - 1]) || text[at - 1] == '.');
    const std::size_t end = at + length;
    const bool after = end < text.size() && (isHex(text[end]) || text[end] == '.');
    return !before && !after;
}

} // namespace

XmlSummary summariseXml(const std::string& bytes) {
    XmlSummary summary;
    try {
        const XMLUtils::ParserPtr parser = XMLUtils::Initializer::instance().createParser();
        const XMLUtils::DocumentPtr document = XMLUtils::loadDocumentFromBuffer(
            reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), *parser);
        const xercesc::DOMElement* root = document->getDocumentElement();
        summary.rootName = Utils::wstringToString(std::u16string_view(root->getNodeName()));
        summary.sets = countSets(root);
        XMLUtils::cleanEmptyTextNodes(document.get());
        XMLUtils::domToBytes(document.get(), summary.canonical, XMLUtils::EncodingType::UTF8,
                             XMLUtils::SerializeOptions{false, false});
    } catch (...) {
        XMLUtils::rethrowTranslated(__FILE__, __LINE__);
    }
    return summary;
}

std::string normaliseIdentifiers(const std::string& text) {
    std::map<std::string, std::size_t> seen;
    std::string result;
    std::size_t at = 0;
    while (at < text.size()) {
        if (!identifierAt(text, at) || text.compare(at, 11, "06.0E.2B.34") == 0) {
            result += text[at++];
            continue;
        }
        const auto inserted = seen.emplace(text.substr(at, 47), seen.size());
        result += "#" + std::to_string(inserted.first->second);
        at += 47;
    }
    return result;
}

} // namespace VellumTest
