target_sources(Vellum_Core PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/StringRepresentation.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Identifiers.cpp)
