# The rules of the player screen.
foreach(subject playlist stations rules)
  velmora_test(player_${subject}_test SOURCES ${CMAKE_CURRENT_LIST_DIR}/player_${subject}_test.cpp
    LIBS velmora_rules velmora_contracts LABELS unit)
endforeach()
