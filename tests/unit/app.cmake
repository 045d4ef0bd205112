# Error texts and the crash reporter.
velmora_test(unit_app_errortexts SOURCES apperrortexts.cpp LIBS velmora_rules LABELS unit)

if(TARGET velmora_app)
  velmora_program(unit_app_crashchild appcrashchild.cpp)
  target_link_libraries(unit_app_crashchild PRIVATE velmora_app)
  velmora_test(unit_app_crash SOURCES appcrash.cpp LIBS Qt6::Core LABELS unit)
  target_compile_definitions(unit_app_crash PRIVATE CRASH_CHILD="$<TARGET_FILE:unit_app_crashchild>")
  add_dependencies(unit_app_crash unit_app_crashchild)
endif()
