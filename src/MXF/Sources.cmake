target_sources(Vellum_Core_Objects PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/PartitionPack.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RandomIndexPack.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MXFFile.cpp
    ${CMAKE_CURRENT_LIST_DIR}/HeaderMetadataRegions.cpp
    ${CMAKE_CURRENT_LIST_DIR}/HeaderMetadataUpdate.cpp)
