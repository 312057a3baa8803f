target_sources(Vellum_Core_Objects PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/Key.cpp
    ${CMAKE_CURRENT_LIST_DIR}/BERLength.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Value.cpp
    ${CMAKE_CURRENT_LIST_DIR}/KeyClassification.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TripletReader.cpp)
