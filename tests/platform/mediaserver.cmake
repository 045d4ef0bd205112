# The web server that throttles, stalls, cuts and lies; for every test that fetches something.
velmora_library(velmora_mediaserver STATIC ${CMAKE_CURRENT_SOURCE_DIR}/mediaserver.cpp)
target_compile_definitions(velmora_mediaserver PRIVATE VELMORA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_include_directories(velmora_mediaserver PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(velmora_mediaserver PUBLIC Qt6::Core Qt6::Network)
