target_sources(Vellum_Core PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/PartitionPack.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RandomIndexPack.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MXFFile.cpp)
