# The pictures themselves: reads files only.
velmora_test(unit_artwork SOURCES ${CMAKE_CURRENT_LIST_DIR}/artwork_test.cpp LIBS Qt6::Gui LABELS unit)
