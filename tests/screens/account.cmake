if(TARGET velmora_account AND TARGET fakescreens)
  velmora_test(test_selectuser SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/selectuser_test.cpp
    LIBS velmora_account fakescreens velmora_fake_platform velmora_resources LABELS screens)
  velmora_test(test_signin SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/signin_test.cpp
    LIBS velmora_account fakescreens velmora_fake_platform velmora_resources LABELS screens)
  velmora_test(test_activation SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/activation_test.cpp
    LIBS velmora_account fakescreens velmora_fake_platform velmora_resources LABELS screens)
endif()
