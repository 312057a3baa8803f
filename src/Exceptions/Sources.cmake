target_sources(Vellum_Core_Objects PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/BaseException.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Kinds.cpp)
