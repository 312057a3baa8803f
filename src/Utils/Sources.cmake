target_sources(Vellum_Core PRIVATE ${CMAKE_CURRENT_LIST_DIR}/StringConversion.cpp)
