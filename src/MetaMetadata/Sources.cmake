target_sources(Vellum_Core_Objects PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/AbstractMetaAttribute.cpp
    ${CMAKE_CURRENT_LIST_DIR}/AbstractMetaAttributeVisitor.cpp
    ${CMAKE_CURRENT_LIST_DIR}/AttributeRequiredStatus.cpp
    ${CMAKE_CURRENT_LIST_DIR}/BuiltInDictionaryTables.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Dictionary.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DictionaryBuilder.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DictionaryParser.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DictionaryTableLoader.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MetaAttribute.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MetaCollectionElement.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MetaElement.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MetaMetadataSet.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MisplacedAttribute.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SetTableResolver.cpp
    ${CMAKE_CURRENT_LIST_DIR}/UnknownAttribute.cpp)

# The dictionary data is compiled in: a generated source holds the text of the data file and
# is made again whenever the file changes.
get_filename_component(VELLUM_DICTIONARY_DATA ${CMAKE_CURRENT_LIST_DIR}/../../data/vellum-dictionary.txt
    ABSOLUTE)
get_filename_component(vellum_embed_script ${CMAKE_CURRENT_LIST_DIR}/../../cmake/EmbedFile.cmake ABSOLUTE)
set(vellum_dictionary_source ${PROJECT_BINARY_DIR}/generated/MetaMetadata/BuiltInDictionaryText.cpp)
add_custom_command(
    OUTPUT ${vellum_dictionary_source}
    COMMAND ${CMAKE_COMMAND}
        -DINPUT=${VELLUM_DICTIONARY_DATA}
        -DOUTPUT=${vellum_dictionary_source}
        -DHEADER=MetaMetadata/BuiltInDictionaryText.h
        -DNAMESPACE=Vellum::MetaMetadata
        -DFUNCTION=builtInDictionaryText
        -P ${vellum_embed_script}
    DEPENDS ${VELLUM_DICTIONARY_DATA} ${vellum_embed_script}
    COMMENT "Embedding the meta-dictionary data"
    VERBATIM)
target_sources(Vellum_Core_Objects PRIVATE ${vellum_dictionary_source})

if(VELLUM_INSTALL)
    install(FILES ${VELLUM_DICTIONARY_DATA} DESTINATION ${CMAKE_INSTALL_DATADIR}/vellum)
endif()
