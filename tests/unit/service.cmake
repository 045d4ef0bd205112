if(NOT TARGET velmora_service)
  return()
endif()
velmora_test(service_rules_test SOURCES service_rules_test.cpp LIBS velmora_rules velmora_contracts LABELS unit)
foreach(subject nextlimit webservice renewal login settings reply)
  velmora_test(service_${subject}_test SOURCES service_${subject}_test.cpp LIBS velmora_service fake_ws device_twin
    LABELS unit)
endforeach()
