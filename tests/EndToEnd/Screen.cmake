# What runs the real program: other tests here use it as well.
add_library(end_to_end_support STATIC
  ChildProcess.cpp ChildProcess.h
  ProgramHome.cpp ProgramHome.h
)
target_include_directories(end_to_end_support PUBLIC ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(end_to_end_support
  PUBLIC Qt6::Core GTest::gtest
  PRIVATE morvane_options Qt6::Network)

find_package(Qt6 REQUIRED COMPONENTS DBus)

# Where on the screen something of the program is; scripts/demo uses it too.
add_executable(find_accessible FindAccessible.cpp AccessibleTree.cpp AccessibleTree.h)
target_include_directories(find_accessible PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(find_accessible PRIVATE morvane_options Qt6::Core Qt6::DBus)

# Stands in for the models of the real agents that scripts/try-agent runs.
add_executable(model_endpoint
  ModelDialects.cpp ModelDialects.h
  ModelEndpoint.cpp ModelEndpoint.h
  ModelEndpointMain.cpp
)
target_include_directories(model_endpoint PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(model_endpoint PRIVATE morvane_options core Qt6::Network)

add_executable(screen_tests
  ScreenTest.cpp
  VirtualDisplay.cpp VirtualDisplay.h
)
target_link_libraries(screen_tests PRIVATE
  morvane_options end_to_end_support GTest::gtest_main)
target_compile_definitions(screen_tests PRIVATE
  MORVANE="$<TARGET_FILE:morvane>"
  FIND_ACCESSIBLE="$<TARGET_FILE:find_accessible>"
)
add_dependencies(screen_tests morvane find_accessible)
gtest_discover_tests(screen_tests PROPERTIES TIMEOUT 300 LABELS screen)
