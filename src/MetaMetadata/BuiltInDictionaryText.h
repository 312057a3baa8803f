#ifndef VELLUM_SRC_METAMETADATA_BUILTINDICTIONARYTEXT_H
#define VELLUM_SRC_METAMETADATA_BUILTINDICTIONARYTEXT_H

#include <string_view>

namespace Vellum::MetaMetadata {

/// The text of data/vellum-dictionary.txt as the library was built with it. The build
/// generates the definition (cmake/EmbedFile.cmake); the text lives until the program ends.
std::string_view builtInDictionaryText();

} // namespace Vellum::MetaMetadata

#endif
