# What runs the real program: other tests here use it as well.
add_library(end_to_end_support STATIC
  ChildProcess.cpp ChildProcess.h
  ProgramHome.cpp ProgramHome.h
  VirtualDisplay.cpp VirtualDisplay.h
  WindowManager.h
)
target_include_directories(end_to_end_support PUBLIC ${PROJECT_SOURCE_DIR}/tests)
read_test_headers(end_to_end_support)
target_link_libraries(end_to_end_support
  PUBLIC Qt6::Core GTest::gtest
  PRIVATE morvane_options Qt6::Network)

add_executable(screen_tests
  OnScreen.h
  ProgramOnScreen.h
  ScreenTest.cpp
  TrayTest.cpp
)
read_test_headers(screen_tests)
target_link_libraries(screen_tests PRIVATE
  morvane_options end_to_end_support loop_test_main Qt6::DBus)
target_compile_definitions(screen_tests PRIVATE
  MORVANE="$<TARGET_FILE:morvane>"
  NOTCHED_MORVANE="$<TARGET_FILE:notched_morvane>"
  FIND_ACCESSIBLE="$<TARGET_FILE:find_accessible>"
)
add_dependencies(screen_tests morvane notched_morvane find_accessible)
discover_tests(screen_tests ${fewer_managers} PROPERTIES TIMEOUT 300 LABELS screen)
