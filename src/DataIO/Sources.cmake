target_sources(Vellum_Core_Objects PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/Slice.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DataSource.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DataSink.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MemoryDataSource.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MemoryDataSink.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FileDataSource.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FileDataSink.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ReplacedFile.cpp)
